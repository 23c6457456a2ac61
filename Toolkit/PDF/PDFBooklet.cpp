#include "PDFCommands.h"

#include "Imposition.h"
#include "PDFAnnotation.h"
#include "PDFDocument.h"
#include "PDFPage.h"

#include <qpdf/QPDFAcroFormDocumentHelper.hh>
#include <qpdf/QPDFAnnotationObjectHelper.hh>
#include <qpdf/QUtil.hh>

#include <string>
#include <utility>
#include <vector>

namespace {

/// The first version whose readers know the preference.
const std::string kDuplexVersion = "1.7";

QPDFObjectHandle name(const char *text)
{
    return QPDFObjectHandle::newName(text);
}

/// A side of a sheet while it is being drawn.
struct SideInProgress {
    QPDFObjectHandle objects = QPDFObjectHandle::newDictionary();
    QPDFObjectHandle layers = QPDFObjectHandle::newDictionary();
    std::string contents = {};
    int names = 0;

    std::string newName() { return "/Part" + std::to_string(++names); }
};

/// Draws the pages of a document on the sides of sheets.
class SidePainter {
public:
    SidePainter(PDFDocument &document, const Booklet &booklet, const SheetLayout &layout,
                Platform::TextSetter &texts)
        : _document(document),
          _booklet(booklet),
          _layout(layout),
          _texts(texts),
          _forms(document.qpdf())
    {
    }

    QPDFObjectHandle paint(const SheetSide &pages);

private:
    void drawPage(SideInProgress &side, const PDFPage &page, const Rectangle &area);
    void drawContents(SideInProgress &side, const PDFPage &page);
    void drawAnnotations(SideInProgress &side, const PDFPage &page);
    static void drawAnnotation(SideInProgress &side, const PDFPage &page,
                               QPDFObjectHandle annotation);

    static std::string onItsLayer(SideInProgress &side, QPDFObjectHandle annotation,
                                  const std::string &drawing);

    PDFDocument &_document;
    const Booklet &_booklet;
    SheetLayout _layout;
    Platform::TextSetter &_texts;
    PDFPageForms _forms;
};

QPDFObjectHandle SidePainter::paint(const SheetSide &pages)
{
    const SheetLayout layout =
        layoutAtDepth(_layout, pages.depth, _document.pages().size(), _booklet);
    SideInProgress side;
    if (pages.left)
        drawPage(side, PDFPage(_document.pages().at(*pages.left - 1)), layout.left);
    if (pages.right)
        drawPage(side, PDFPage(_document.pages().at(*pages.right - 1)), layout.right);

    QPDFObjectHandle resources = QPDFObjectHandle::newDictionary();
    resources.replaceKey("/XObject", side.objects);
    resources.replaceKey("/Properties", side.layers);
    QPDFObjectHandle page = QPDFObjectHandle::newDictionary();
    page.replaceKey("/Type", name("/Page"));
    page.replaceKey("/MediaBox", QPDFObjectHandle::newArray(QPDFObjectHandle::Rectangle(
                                     0, 0, _layout.width, _layout.height)));
    page.replaceKey("/Resources", resources);
    page.replaceKey("/Contents", QPDFObjectHandle::newStream(&_document.qpdf(), side.contents));
    return page;
}

void SidePainter::drawPage(SideInProgress &side, const PDFPage &page, const Rectangle &area)
{
    const Placement place =
        placementInArea({page.width(), page.height()}, area, turnOfLandscapePages(_booklet));
    QPDFMatrix matrix;
    matrix.translate(place.x, place.y);
    matrix.rotatex90(place.turn);
    matrix.scale(place.scale, place.scale);
    matrix.concat(page.fromUserSpace());

    const QPDFObjectHandle::Rectangle box = page.box();
    side.contents += "q " + matrix.unparse() + " cm\n";
    for (const double value : {box.llx, box.lly, box.urx - box.llx, box.ury - box.lly})
        side.contents += QUtil::double_to_string(value) + " ";
    side.contents += "re W n\n";
    drawContents(side, page);
    drawAnnotations(side, page);
    side.contents += "Q\n";
}

void SidePainter::drawContents(SideInProgress &side, const PDFPage &page)
{
    auto form = _forms.formOf(page, page.box());
    if (!form)
        return;
    // A page's transparency group keeps to itself, whether it says so or not.
    QPDFObjectHandle group = page.object().getKey("/Group");
    if (group.isDictionary()) {
        group = group.shallowCopy();
        group.replaceKey("/I", QPDFObjectHandle::newBool(true));
        form->getDict().replaceKey("/Group", group);
    }
    const std::string object = side.newName();
    side.objects.replaceKey(object, *form);
    side.contents += object + " Do\n";
}

void SidePainter::drawAnnotations(SideInProgress &side, const PDFPage &page)
{
    QPDFObjectHandle annotations = page.object().getKey("/Annots");
    for (int i = 0; annotations.isArray() && i < annotations.getArrayNItems(); ++i) {
        QPDFObjectHandle annotation = annotations.getArrayItem(i);
        if (annotation.isDictionary())
            drawAnnotation(side, page, annotationWithLook(_document.qpdf(), annotation, _texts));
    }
}

/// What prints of an annotation is its normal appearance, and only if it asks to be printed.
void SidePainter::drawAnnotation(SideInProgress &side, const PDFPage &page,
                                 QPDFObjectHandle annotation)
{
    QPDFAnnotationObjectHelper helper(annotation);
    QPDFObjectHandle appearance = helper.getAppearanceStream("/N");
    if (!appearance.isStream() || !annotation.getKey("/Rect").isRectangle() ||
        annotation.getKey("/Subtype").isNameAndEquals("/Popup"))
        return;
    const std::string object = side.newName();
    const std::string drawing =
        helper.getPageContentForAppearance(object, page.rotation(), an_print, an_hidden);
    if (drawing.empty())
        return;

    QPDFObjectHandle description = appearance.getDict();
    description.replaceKey("/Subtype", name("/Form"));
    if (!description.hasKey("/Resources"))
        description.replaceKey("/Resources", page.resources());
    side.objects.replaceKey(object, appearance);
    side.contents += onItsLayer(side, annotation, drawing);
}

/// The drawing as part of the layer that the annotation belongs to, if any.
std::string SidePainter::onItsLayer(SideInProgress &side, QPDFObjectHandle annotation,
                                    const std::string &drawing)
{
    if (!annotation.hasKey("/OC"))
        return drawing;
    const std::string property = side.newName();
    side.layers.replaceKey(property, annotation.getKey("/OC"));
    return "/OC " + property + " BDC\n" + drawing + "EMC\n";
}

/// Fields that leave it to the reader to draw their values get appearances.
void fillFormFields(PDFDocument &document)
{
    if (document.qpdf().getRoot().hasKey("/AcroForm"))
        QPDFAcroFormDocumentHelper(document.qpdf()).generateAppearancesIfNeeded();
}

void askForDuplex(PDFDocument &document)
{
    QPDFObjectHandle root = document.qpdf().getRoot();
    QPDFObjectHandle preferences = root.getKey("/ViewerPreferences");
    preferences =
        preferences.isDictionary() ? preferences.shallowCopy() : QPDFObjectHandle::newDictionary();
    preferences.replaceKey("/Duplex", name("/DuplexFlipShortEdge"));
    preferences.removeKey("/PrintPageRange"); // it counts the pages, not the sides
    root.replaceKey("/ViewerPreferences", preferences);
    if (document.qpdf().getPDFVersion() < kDuplexVersion)
        root.replaceKey("/Version", QPDFObjectHandle::newName("/" + kDuplexVersion));
}

} // namespace

void applyToPDF(const Booklet &booklet, const Job &job)
{
    const SheetLayout layout = sheetLayout(sheetSize(booklet, job.ppdPath), booklet);
    PDFDocument document(job);
    fillFormFields(document);

    SidePainter painter(document, booklet, layout, job.texts);
    const std::size_t pages = document.pages().size();
    std::vector<QPDFObjectHandle> sides;
    for (std::size_t side = 0; side < bookletSideCount(pages); ++side)
        sides.push_back(painter.paint(bookletSide(side, pages, booklet)));
    job.texts.forgetFonts();
    document.replacePages(std::move(sides));
    askForDuplex(document);
    document.write(job.output);
}
