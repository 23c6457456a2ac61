#pragma once

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFMatrix.hh>
#include <qpdf/QPDFObjectHandle.hh>

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// A page as it is read: its CropBox (else its MediaBox, else what readers take: Letter), turned by
/// its /Rotate, in points. It refers to the page object, which the document keeps; box and rotation
/// are those of the time when it was made, width and height above 0.
class PDFPage {
public:
    /// @param page  a page object, whatever its entries are; its document outlives this object
    explicit PDFPage(const QPDFObjectHandle &page);

    QPDFObjectHandle object() const { return _page; }
    double width() const;
    double height() const;
    /// The visible area in user space, its corners in order.
    QPDFObjectHandle::Rectangle box() const { return _box; }
    /// How far the page is turned clockwise for reading: 0, 90, 180 or 270 degrees.
    int rotation() const { return _rotation; }

    /// Corners of the box, rotation and unit: where these are the same, so is all that is said
    /// above and the way between the page and its user space.
    std::array<double, 6> geometry() const;

    /// From points right of and above the lower left corner of the page as it is read, to the
    /// page's own user space.
    QPDFMatrix toUserSpace() const;
    /// The way back.
    QPDFMatrix fromUserSpace() const;

    /// The page's resources, its own or inherited, as an indirect object; made when there are none,
    /// which changes the page or the node that they are inherited from.
    QPDFObjectHandle resources() const;

    /// The streams that its contents are made of, read one after another; what is no stream counts
    /// as nothing. Empty for a blank page.
    std::vector<QPDFObjectHandle> contents() const;

private:
    /// The lower left corner of the page as it is read, in user space.
    double cornerX() const { return _rotation == 90 || _rotation == 180 ? _box.urx : _box.llx; }
    double cornerY() const { return _rotation == 180 || _rotation == 270 ? _box.ury : _box.lly; }

    QPDFObjectHandle _page;
    QPDFObjectHandle::Rectangle _box;
    int _rotation;
    double _unit; ///< points in a unit of user space
};

/// Page contents as form XObjects: whatever state such contents leave behind, ends with them.
///
/// The contents' bytes are not touched. Pages with the same contents share a form, unless a tagged
/// document's structure tells them apart.
class PDFPageForms {
public:
    /// @param document  stays the caller's and outlives this object
    explicit PDFPageForms(QPDF &document) : _document(document) {}

    /// A form that draws the page in the page's own user space.
    /// @param bounds  what of it shows, in user space
    /// @return nullopt for a page without contents
    /// Contents in several parts are put together when the document is written; where that cannot
    /// be done, writing fails.
    std::optional<QPDFObjectHandle> formOf(const PDFPage &page,
                                           const QPDFObjectHandle::Rectangle &bounds);

private:
    QPDFObjectHandle boxOf(const QPDFObjectHandle::Rectangle &bounds);

    QPDF &_document;
    std::map<std::string, QPDFObjectHandle> _forms;
    std::map<std::array<double, 4>, QPDFObjectHandle> _boxes;
};
