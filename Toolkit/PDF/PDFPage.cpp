#include "PDFPage.h"

#include <qpdf/Pipeline.hh>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

using Rectangle = QPDFObjectHandle::Rectangle;

/// More than the deepest page tree that is read.
constexpr int kMostLevels = 1000;
/// What readers take for a page that does not say its size.
constexpr double kLetterWidth = 612;
constexpr double kLetterHeight = 792;
/// The most that one page's contents may come to once they are put together.
constexpr std::size_t kMostContents = std::size_t{256} << 20;

/// The node of the page tree that holds the attribute for the page: the page itself or the nearest
/// one above it that has it; nullopt when there is none.
std::optional<QPDFObjectHandle> nodeWith(QPDFObjectHandle node, const std::string &key)
{
    for (int level = 0; level < kMostLevels && node.isDictionary(); ++level) {
        if (!node.getKey(key).isNull())
            return node;
        node = node.getKey("/Parent");
    }
    return std::nullopt;
}

QPDFObjectHandle attribute(const QPDFObjectHandle &page, const std::string &key)
{
    auto node = nodeWith(page, key);
    return node ? node->getKey(key) : QPDFObjectHandle::newNull();
}

/// The box of that name with its corners in order; nullopt when it is none or has no area.
std::optional<Rectangle> boxNamed(const QPDFObjectHandle &page, const std::string &key)
{
    QPDFObjectHandle box = attribute(page, key);
    if (!box.isRectangle())
        return std::nullopt;
    const Rectangle given = box.getArrayAsRectangle();
    const Rectangle ordered(std::min(given.llx, given.urx), std::min(given.lly, given.ury),
                            std::max(given.llx, given.urx), std::max(given.lly, given.ury));
    if (!(ordered.urx - ordered.llx > 0) || !(ordered.ury - ordered.lly > 0))
        return std::nullopt;
    return ordered;
}

Rectangle visibleBox(const QPDFObjectHandle &page)
{
    auto box = boxNamed(page, "/CropBox");
    if (!box)
        box = boxNamed(page, "/MediaBox");
    return box.value_or(Rectangle(0, 0, kLetterWidth, kLetterHeight));
}

/// Multiples of 90, also negative ones; anything else does not turn the page.
int rotationOf(const QPDFObjectHandle &page)
{
    QPDFObjectHandle rotate = attribute(page, "/Rotate");
    const double degrees = rotate.isNumber() ? std::fmod(rotate.getNumericValue(), 360) : 0;
    const int turned = static_cast<int>(degrees < 0 ? degrees + 360 : degrees);
    return turned % 90 == 0 ? turned : 0;
}

double userUnitOf(QPDFObjectHandle page)
{
    QPDFObjectHandle unit = page.getKey("/UserUnit");
    return unit.isNumber() && unit.getNumericValue() > 0 ? unit.getNumericValue() : 1;
}

/// Hands on what it is given, up to a limit.
class LimitedPipeline : public Pipeline {
public:
    LimitedPipeline(Pipeline *output, std::size_t limit) : Pipeline("limit", output), _left(limit)
    {
    }

    void write(const unsigned char *data, std::size_t size) override
    {
        if (size > _left)
            throw std::runtime_error("a page's contents are too large");
        _left -= size;
        getNext()->write(data, size);
    }
    /// The next one is not finished: more parts may follow.
    void finish() override {}

private:
    std::size_t _left;
};

/// Writes the parts of a page's contents with a line feed behind each, as they are to be read.
void pipeParts(std::vector<QPDFObjectHandle> parts, Pipeline *output)
{
    LimitedPipeline limited(output, kMostContents);
    for (QPDFObjectHandle &part : parts) {
        if (!part.pipeStreamData(&limited, 0, qpdf_dl_specialized, true))
            throw std::runtime_error("a page's contents are damaged");
        limited.writeCStr("\n");
    }
    output->finish();
}

/// A stream of its own with the same bytes as the parts one after another.
QPDFObjectHandle joined(QPDF &document, std::vector<QPDFObjectHandle> parts)
{
    if (parts.size() == 1)
        return parts.front().copyStream(); // still compressed, and read when it is written
    QPDFObjectHandle whole = QPDFObjectHandle::newStream(&document);
    whole.replaceStreamData([parts](Pipeline *output) { pipeParts(parts, output); },
                            QPDFObjectHandle::newNull(), QPDFObjectHandle::newNull());
    return whole;
}

} // namespace

PDFPage::PDFPage(const QPDFObjectHandle &page)
    : _page(page), _box(visibleBox(page)), _rotation(rotationOf(page)), _unit(userUnitOf(page))
{
}

double PDFPage::width() const
{
    return _unit * (_rotation % 180 == 0 ? _box.urx - _box.llx : _box.ury - _box.lly);
}

double PDFPage::height() const
{
    return _unit * (_rotation % 180 == 0 ? _box.ury - _box.lly : _box.urx - _box.llx);
}

std::array<double, 6> PDFPage::geometry() const
{
    return {_box.llx, _box.lly, _box.urx, _box.ury, static_cast<double>(_rotation), _unit};
}

QPDFMatrix PDFPage::toUserSpace() const
{
    QPDFMatrix matrix;
    matrix.translate(cornerX(), cornerY());
    matrix.rotatex90(_rotation);
    matrix.scale(1 / _unit, 1 / _unit);
    return matrix;
}

QPDFMatrix PDFPage::fromUserSpace() const
{
    QPDFMatrix matrix;
    matrix.scale(_unit, _unit);
    matrix.rotatex90((360 - _rotation) % 360);
    matrix.translate(-cornerX(), -cornerY());
    return matrix;
}

QPDFObjectHandle PDFPage::resources() const
{
    QPDFObjectHandle node = nodeWith(_page, "/Resources").value_or(_page);
    QPDFObjectHandle resources = node.getKey("/Resources");
    if (resources.isDictionary() && resources.isIndirect())
        return resources;
    if (!resources.isDictionary())
        resources = QPDFObjectHandle::newDictionary();
    resources = _page.getOwningQPDF()->makeIndirectObject(resources);
    node.replaceKey("/Resources", resources);
    return resources;
}

std::vector<QPDFObjectHandle> PDFPage::contents() const
{
    QPDFObjectHandle page = _page;
    QPDFObjectHandle contents = page.getKey("/Contents");
    std::vector<QPDFObjectHandle> parts;
    if (contents.isStream())
        parts.push_back(contents);
    for (int i = 0; contents.isArray() && i < contents.getArrayNItems(); ++i) {
        QPDFObjectHandle part = contents.getArrayItem(i);
        if (part.isStream())
            parts.push_back(part);
    }
    return parts;
}

std::optional<QPDFObjectHandle> PDFPageForms::formOf(const PDFPage &page, const Rectangle &bounds)
{
    std::vector<QPDFObjectHandle> parts = page.contents();
    if (parts.empty())
        return std::nullopt;

    QPDFObjectHandle resources = page.resources();
    QPDFObjectHandle box = boxOf(bounds);
    std::string key = resources.unparse() + " " + box.unparse() + " " +
                      page.object().getKey("/StructParents").unparse();
    for (QPDFObjectHandle &part : parts)
        key += " " + part.unparse();
    if (const auto known = _forms.find(key); known != _forms.end())
        return known->second;

    QPDFObjectHandle form = joined(_document, parts);
    QPDFObjectHandle description = form.getDict();
    description.replaceKey("/Type", QPDFObjectHandle::newName("/XObject"));
    description.replaceKey("/Subtype", QPDFObjectHandle::newName("/Form"));
    description.replaceKey("/BBox", box);
    description.replaceKey("/Resources", resources);
    // Contents that serve as an XObject elsewhere may bring these along.
    for (const char *unwanted : {"/Matrix", "/Group", "/OC", "/Ref"})
        description.removeKey(unwanted);
    _forms.emplace(std::move(key), form);
    return form;
}

/// Forms share it: to make text of its numbers takes as long as the rest of a form.
QPDFObjectHandle PDFPageForms::boxOf(const Rectangle &bounds)
{
    const auto [box, isNew] = _boxes.try_emplace({bounds.llx, bounds.lly, bounds.urx, bounds.ury});
    if (isNew)
        box->second = QPDFObjectHandle::newArray(bounds);
    return box->second;
}
