#pragma once

#include "Rendering.h"

#include <bitset>
#include <cstddef>
#include <string>
#include <vector>

/// Pages are told by their looks, from afar: they have their numbers on them, large.
inline constexpr double kAfar = 18; ///< pixels per inch

/// What is dark of an A4 page; a red mark is not.
using PageLook = std::bitset<std::size_t{148} * 210>;

/// Renders a document to be looked at from afar, with the device's log.
Support::Rendering renderedFromAfar(const std::string &document);

/// One side of an A3 sheet with two A4 pages.
class BookletSide {
public:
    /// Upright as PostScript has it, its halves turned by a quarter to the left; or landscape.
    enum Stand { Turned, Landscape };

    /// @param page  outlives this object
    BookletSide(const Support::RenderedPage &page, Stand stand) : _page(page), _stand(stand) {}

    PageLook look(bool right) const;

    /// Whether there is red where redWatermark() belongs.
    bool isMarked(bool right) const;

private:
    Support::Colour colourAt(bool right, Support::Point place) const;

    const Support::RenderedPage &_page;
    Stand _stand;
};

/// The pages of a document as somebody knows them who has seen them from afar.
class PageFinder {
public:
    explicit PageFinder(const std::string &document);

    /// Of the file; made once.
    static const PageFinder &of(const std::string &path);

    std::size_t pages() const { return _looks.size(); }

    /// The number of the page that looks most like it; 0 for a blank.
    std::size_t numberOf(const PageLook &look) const;

    /// The side of a booklet, counted from 0, has the pages that belong there, each with a
    /// watermark.
    void expectSideOfBooklet(std::size_t at, const BookletSide &side) const;

private:
    std::vector<PageLook> _looks;
};

/// Options of a red watermark in the middle of each page, a quarter of it up, where the documents
/// have nothing: "DRAFT" in Helvetica-Bold of 96 points.
std::vector<std::string> redWatermark();
