#include "PDFAnnotation.h"

#include "PDFFreeText.h"
#include "PDFOutline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using Numbers = std::vector<double>;
using Rectangle = QPDFObjectHandle::Rectangle;

/// Far beyond any page, and still a number that every reader takes.
constexpr double kFarthest = 100'000;
/// How far the control points of a quarter of a circle are from its ends, in radii.
constexpr double kQuarter = 0.5523;

/// All numbers of an array; nullopt when it is none or holds something else.
std::optional<Numbers> numbersOf(QPDFObjectHandle array)
{
    if (!array.isArray())
        return std::nullopt;
    Numbers numbers;
    for (const QPDFObjectHandle &item : array.getArrayAsVector()) {
        double value = 0;
        if (!QPDFObjectHandle(item).getValueAsNumber(value) || !(std::abs(value) <= kFarthest))
            return std::nullopt;
        numbers.push_back(value);
    }
    return numbers;
}

/// The points that an array of coordinates holds; what is no array of numbers holds none.
std::vector<Point> pointsOf(const QPDFObjectHandle &array)
{
    const Numbers numbers = numbersOf(array).value_or(Numbers());
    std::vector<Point> points;
    for (std::size_t i = 0; i + 1 < numbers.size(); i += 2)
        points.push_back({numbers[i], numbers[i + 1]});
    return points;
}

Point between(Point from, Point to, double part)
{
    return {from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part};
}

double distance(Point one, Point other)
{
    return std::hypot(other.x - one.x, other.y - one.y);
}

double orElse(QPDFObjectHandle object, double otherwise)
{
    double value = 0;
    return object.getValueAsNumber(value) && std::abs(value) <= kFarthest ? value : otherwise;
}

/// The operator that chooses a colour; empty for a transparent one.
/// @param names  of the operators, for grey, RGB and CMYK
std::string colourOperator(const Numbers &components, const std::array<const char *, 3> &names)
{
    std::string text;
    for (const double component : components)
        text += pdfNumber(component) + " ";
    switch (components.size()) {
    case 1:
        return text + names[0] + "\n";
    case 3:
        return text + names[1] + "\n";
    case 4:
        return text + names[2] + "\n";
    default:
        return "";
    }
}

constexpr std::array kStroking = {"G", "RG", "K"};
constexpr std::array kFilling = {"g", "rg", "k"};

/// How wide an annotation's lines are, and the operator for their dashes.
struct Border {
    double width = 1;
    std::string dashes;
};

std::string dashOperator(const Numbers &lengths)
{
    std::string text = "[";
    for (const double length : lengths)
        text += pdfNumber(length) + " ";
    const bool hasLength = std::ranges::any_of(lengths, [](double l) { return l > 0; });
    const bool isNegative = std::ranges::any_of(lengths, [](double l) { return l < 0; });
    return hasLength && !isNegative ? text + "] 0 d\n" : "";
}

Border borderOf(QPDFObjectHandle annotation)
{
    QPDFObjectHandle style = annotation.getKey("/BS");
    if (style.isDictionary()) {
        const bool isDashed = style.getKey("/S").isNameAndEquals("/D");
        return {std::max(0.0, orElse(style.getKey("/W"), 1)),
                isDashed ? dashOperator(numbersOf(style.getKey("/D")).value_or(Numbers{3})) : ""};
    }
    QPDFObjectHandle border = annotation.getKey("/Border");
    if (!border.isArray() || border.getArrayNItems() < 3)
        return {};
    QPDFObjectHandle dashes =
        border.getArrayNItems() > 3 ? border.getArrayItem(3) : QPDFObjectHandle::newNull();
    return {std::max(0.0, orElse(border.getArrayItem(2), 1)),
            dashOperator(numbersOf(dashes).value_or(Numbers()))};
}

/// The marks of one annotation, in the page's user space.
class Sketch {
public:
    Sketch(const QPDFObjectHandle &annotation, Platform::TextSetter &setter);

    void drawSquare();
    void drawCircle();
    void drawLine();
    void drawInk();
    void drawPolygon();
    void drawPolyLine();
    void drawHighlight();
    void drawUnderline() { drawAlongText(0.1); }
    void drawStrikeOut() { drawAlongText(0.5); }
    void drawSquiggly();
    void drawFreeText();

    /// The form XObject that draws them; nullopt when there are none.
    std::optional<QPDFObjectHandle> form(QPDF &document) const;

private:
    /// A stretch of text, its corners as it is read.
    struct Text {
        Point lowerLeft;
        Point lowerRight;
        Point upperLeft;
        Point upperRight;
    };

    QPDFObjectHandle entry(const char *key) const
    {
        return QPDFObjectHandle(_annotation).getKey(key);
    }
    std::string textOf(const char *key) const;
    void chooseColours();
    void drawText(const Platform::ShapedText &text, Point start);
    void setLineWidth(double width);
    std::vector<Text> texts() const;
    Numbers differences() const;
    Rectangle inside() const;
    void drawAlongText(double height);
    void moveTo(Point point) { add({point}, "m\n"); }
    void path(const std::vector<Point> &points);
    void add(std::initializer_list<Point> points, const char *operation);
    void paint(bool closed);
    bool isTranslucent() const { return _multiplies || _opacity < 1; }

    QPDFObjectHandle _annotation;
    Platform::TextSetter &_setter;
    Border _border;
    double _opacity;
    std::string _stroke; ///< the operator for its colour; empty when nothing is stroked
    std::string _fill;
    bool _multiplies = false;
    Rectangle _rectangle; ///< the annotation's
    Rectangle _bounds;    ///< of that and of all that is drawn
    std::string _contents;
};

Rectangle ordered(const Rectangle &box)
{
    return {std::min(box.llx, box.urx), std::min(box.lly, box.ury), std::max(box.llx, box.urx),
            std::max(box.lly, box.ury)};
}

Sketch::Sketch(const QPDFObjectHandle &annotation, Platform::TextSetter &setter)
    : _annotation(annotation),
      _setter(setter),
      _border(borderOf(annotation)),
      _opacity(std::clamp(orElse(entry("/CA"), 1), 0.0, 1.0)),
      _rectangle(ordered(entry("/Rect").getArrayAsRectangle())),
      _bounds(_rectangle)
{
    chooseColours();
}

/// UTF-8; empty when there is none.
std::string Sketch::textOf(const char *key) const
{
    QPDFObjectHandle text = entry(key);
    return text.isString() ? text.getUTF8Value() : "";
}

/// Without a colour lines are black, and nothing is filled.
void Sketch::chooseColours()
{
    const auto colour = numbersOf(entry("/C"));
    const auto interior = numbersOf(entry("/IC"));
    _fill = colourOperator(interior.value_or(Numbers()), kFilling);
    _stroke = colourOperator(colour.value_or(Numbers{0}), kStroking);
}

/// Of the annotation's rectangle, on each side; none where they leave no room in it.
Numbers Sketch::differences() const
{
    Numbers sides = numbersOf(entry("/RD")).value_or(Numbers());
    sides.resize(4);
    const bool haveRoom = sides[0] + sides[2] < _rectangle.urx - _rectangle.llx &&
                          sides[1] + sides[3] < _rectangle.ury - _rectangle.lly;
    return haveRoom && std::ranges::min(sides) >= 0 ? sides : Numbers(4);
}

/// The annotation's rectangle without its differences and half a line.
Rectangle Sketch::inside() const
{
    const Numbers margins = differences();
    const double half = _border.width / 2;
    return {_rectangle.llx + margins[0] + half, _rectangle.lly + margins[1] + half,
            _rectangle.urx - margins[2] - half, _rectangle.ury - margins[3] - half};
}

void Sketch::drawSquare()
{
    const Rectangle box = inside();
    path({{box.llx, box.lly}, {box.urx, box.lly}, {box.urx, box.ury}, {box.llx, box.ury}});
    paint(true);
}

void Sketch::drawCircle()
{
    const Rectangle box = inside();
    const Point centre = {(box.llx + box.urx) / 2, (box.lly + box.ury) / 2};
    const Point radius = {(box.urx - box.llx) / 2, (box.ury - box.lly) / 2};
    const auto at = [&](double x, double y) {
        return Point{centre.x + radius.x * x, centre.y + radius.y * y};
    };
    moveTo(at(1, 0));
    add({at(1, kQuarter), at(kQuarter, 1), at(0, 1)}, "c\n");
    add({at(-kQuarter, 1), at(-1, kQuarter), at(-1, 0)}, "c\n");
    add({at(-1, -kQuarter), at(-kQuarter, -1), at(0, -1)}, "c\n");
    add({at(kQuarter, -1), at(1, -kQuarter), at(1, 0)}, "c\n");
    paint(true);
}

void Sketch::drawLine()
{
    path(pointsOf(entry("/L")));
    paint(false);
}

void Sketch::drawInk()
{
    QPDFObjectHandle strokes = entry("/InkList");
    _contents += "1 J 1 j\n"; // as a pen draws
    for (int i = 0; strokes.isArray() && i < strokes.getArrayNItems(); ++i)
        path(pointsOf(strokes.getArrayItem(i)));
    paint(false);
}

void Sketch::drawPolygon()
{
    path(pointsOf(entry("/Vertices")));
    paint(true);
}

void Sketch::drawPolyLine()
{
    path(pointsOf(entry("/Vertices")));
    paint(false);
}

/// What lies below shows through; a highlight without a colour is none.
void Sketch::drawHighlight()
{
    _multiplies = true;
    _fill = colourOperator(numbersOf(entry("/C")).value_or(Numbers()), kFilling);
    _stroke.clear();
    for (const Text &text : texts())
        path({text.lowerLeft, text.lowerRight, text.upperRight, text.upperLeft});
    paint(true);
}

/// The corners of a stretch of text come row by row, the upper one first, as all programs write
/// them, or around it from the lower left, as the standard says.
std::vector<Sketch::Text> Sketch::texts() const
{
    const std::vector<Point> corners = pointsOf(entry("/QuadPoints"));
    std::vector<Text> texts;
    for (std::size_t i = 0; i + 3 < corners.size(); i += 4) {
        const Point &a = corners[i];
        const Point &b = corners[i + 1];
        const Point &c = corners[i + 2];
        const Point &d = corners[i + 3];
        const bool rowByRow = (b.x - a.x) * (d.x - c.x) + (b.y - a.y) * (d.y - c.y) > 0;
        texts.push_back(rowByRow ? Text{c, d, a, b} : Text{a, b, d, c});
    }
    return texts;
}

/// Draws a line along the texts.
/// @param height  how far above their lower edge, in parts of their height
void Sketch::drawAlongText(double height)
{
    for (const Text &text : texts()) {
        setLineWidth(distance(text.lowerLeft, text.upperLeft) / 16);
        path({between(text.lowerLeft, text.upperLeft, height),
              between(text.lowerRight, text.upperRight, height)});
        paint(false);
    }
}

/// Draws zigzags along the lower edge of the texts.
void Sketch::drawSquiggly()
{
    constexpr double kMost = 2000; // turns, of a text that has next to no height
    for (const Text &text : texts()) {
        const double height = distance(text.lowerLeft, text.upperLeft);
        const double turns = 10 * distance(text.lowerLeft, text.lowerRight) / std::max(height, 1.0);
        const int count = static_cast<int>(std::clamp(turns, 1.0, kMost));
        setLineWidth(height / 24);
        std::vector<Point> points;
        for (int turn = 0; turn <= count; ++turn)
            points.push_back(between(between(text.lowerLeft, text.lowerRight, 1.0 * turn / count),
                                     between(text.upperLeft, text.upperRight, 1.0 * turn / count),
                                     turn % 2 == 0 ? 0.05 : 0.13));
        path(points);
        paint(false);
    }
}

/// A box with a text in it. The colour is that of the box; the text's is its border's as well.
void Sketch::drawFreeText()
{
    const TextAppearance appearance = textAppearance(textOf("/DA"));
    _fill = colourOperator(numbersOf(entry("/C")).value_or(Numbers()), kFilling);
    _stroke = colourOperator(appearance.colour, kStroking);
    drawSquare();

    constexpr double kPadding = 2;
    const double gap = _border.width / 2 + kPadding;
    const Rectangle box = inside();
    const Rectangle room(box.llx + gap, box.lly + gap, box.urx - gap, box.ury - gap);
    QPDFObjectHandle alignment = entry("/Q");
    const double shares = std::clamp(orElse(alignment, 0), 0.0, 2.0) / 2;
    _contents += colourOperator(appearance.colour, kFilling);
    for (const TextLine &line : linesInBox(_setter, textOf("/Contents"), appearance.size,
                                           room.urx - room.llx, room.ury - room.lly, shares))
        drawText(line.text, {room.llx + line.start.x, room.lly + line.start.y});
}

/// @param start  of its baseline
void Sketch::drawText(const Platform::ShapedText &text, Point start)
{
    _contents += "q 1 0 0 1 " + pdfNumber(start.x) + " " + pdfNumber(start.y) + " cm\n" +
                 pathOperators(text.outline) + "Q\n";
}

/// Lines of a width of their own: what the annotation says of its border does not count.
void Sketch::setLineWidth(double width)
{
    _border = {width, ""};
    _contents += pdfNumber(width) + " w\n";
}

/// A line from point to point.
void Sketch::path(const std::vector<Point> &points)
{
    for (std::size_t i = 0; points.size() > 1 && i < points.size(); ++i)
        add({points[i]}, i == 0 ? "m\n" : "l\n");
}

void Sketch::add(std::initializer_list<Point> points, const char *operation)
{
    for (const Point &point : points) {
        _contents += pdfNumber(point.x) + " " + pdfNumber(point.y) + " ";
        _bounds.llx = std::min(_bounds.llx, point.x - _border.width);
        _bounds.lly = std::min(_bounds.lly, point.y - _border.width);
        _bounds.urx = std::max(_bounds.urx, point.x + _border.width);
        _bounds.ury = std::max(_bounds.ury, point.y + _border.width);
    }
    _contents += operation;
}

/// Paints what was outlined.
/// @param closed  whether it has an inside, and its end is joined with its begin
void Sketch::paint(bool closed)
{
    const bool fills = closed && !_fill.empty();
    const bool strokes = !_stroke.empty() && _border.width > 0;
    if (fills)
        _contents += strokes ? "b\n" : "f\n";
    else if (strokes)
        _contents += closed ? "s\n" : "S\n";
    else
        _contents += "n\n";
}

QPDFObjectHandle newForm(QPDF &document, const std::string &contents, const Rectangle &bounds)
{
    QPDFObjectHandle form = QPDFObjectHandle::newStream(&document, contents);
    QPDFObjectHandle description = form.getDict();
    description.replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
    description.replaceKey("/Subtype", QPDFObjectHandle::newName("/Form"));
    description.replaceKey("/BBox", QPDFObjectHandle::newArray(bounds));
    description.replaceKey("/Resources", QPDFObjectHandle::newDictionary());
    return form;
}

std::optional<QPDFObjectHandle> Sketch::form(QPDF &document) const
{
    if (_contents.empty())
        return std::nullopt;
    const std::string state = _stroke + _fill + pdfNumber(_border.width) + " w\n" + _border.dashes;
    QPDFObjectHandle marks = newForm(document, state + _contents, _bounds);
    if (!isTranslucent())
        return marks;

    // Marks that lie on one another show through as one.
    marks.getDict().replaceKey("/Group", QPDFObjectHandle::parse("<< /S /Transparency >>"));
    QPDFObjectHandle whole = newForm(document, "/Look gs /Marks Do\n", _bounds);
    QPDFObjectHandle look = QPDFObjectHandle::newDictionary();
    look.replaceKey("/CA", QPDFObjectHandle::newReal(_opacity, 4));
    look.replaceKey("/ca", QPDFObjectHandle::newReal(_opacity, 4));
    if (_multiplies)
        look.replaceKey("/BM", QPDFObjectHandle::newName("/Multiply"));
    QPDFObjectHandle resources = whole.getDict().getKey("/Resources");
    resources.replaceKey("/ExtGState", QPDFObjectHandle::newDictionary({{"/Look", look}}));
    resources.replaceKey("/XObject", QPDFObjectHandle::newDictionary({{"/Marks", marks}}));
    return whole;
}

/// How an annotation of that kind is drawn; null for one that is not.
void (Sketch::*drawingOf(QPDFObjectHandle subtype))()
{
    static constexpr std::pair<std::string_view, void (Sketch::*)()> kKinds[] = {
        {"/Square", &Sketch::drawSquare},       {"/Circle", &Sketch::drawCircle},
        {"/Line", &Sketch::drawLine},           {"/Ink", &Sketch::drawInk},
        {"/Polygon", &Sketch::drawPolygon},     {"/PolyLine", &Sketch::drawPolyLine},
        {"/Highlight", &Sketch::drawHighlight}, {"/Underline", &Sketch::drawUnderline},
        {"/StrikeOut", &Sketch::drawStrikeOut}, {"/Squiggly", &Sketch::drawSquiggly},
        {"/FreeText", &Sketch::drawFreeText},
    };
    const std::string name = subtype.isName() ? subtype.getName() : "";
    const auto *const kind = std::ranges::find(kKinds, name, [](const auto &k) { return k.first; });
    return kind == std::end(kKinds) ? nullptr : kind->second;
}

} // namespace

QPDFObjectHandle annotationWithLook(QPDF &document, QPDFObjectHandle annotation,
                                    Platform::TextSetter &texts)
{
    const auto draw = drawingOf(annotation.getKey("/Subtype"));
    QPDFObjectHandle rectangle = annotation.getKey("/Rect");
    if (draw == nullptr || annotation.hasKey("/AP") || !rectangle.isRectangle() ||
        !numbersOf(rectangle))
        return annotation;
    Sketch sketch(annotation, texts);
    (sketch.*draw)();
    const auto form = sketch.form(document);
    if (!form)
        return annotation;
    QPDFObjectHandle copy = annotation.shallowCopy();
    copy.replaceKey("/AP", QPDFObjectHandle::newDictionary({{"/N", *form}}));
    copy.replaceKey("/Rect", QPDFObjectHandle(*form).getDict().getKey("/BBox"));
    return copy;
}
