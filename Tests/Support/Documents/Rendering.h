#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Support {

/// A pixel, each component from 0 to 255.
struct Colour {
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;
    bool operator==(const Colour &) const = default;
};

inline constexpr Colour kWhite = {255, 255, 255};
inline constexpr Colour kBlack = {0, 0, 0};
inline constexpr Colour kRed = {255, 0, 0};
inline constexpr Colour kGreen = {0, 255, 0};
inline constexpr Colour kBlue = {0, 0, 255};

/// A place on a page: points from its left and from its lower edge.
struct Point {
    double x;
    double y;
};

/// The edges of an upright box, in points from the page's left and lower edge.
struct Box {
    double left;
    double bottom;
    double right;
    double top;
};

/// A page as it comes out of a printer. Sizes and places are in points, exact to one pixel.
class RenderedPage {
public:
    /// @param ppm         the bytes of a binary pixmap (PPM, "P6") with 255 as its largest value
    /// @param resolution  its pixels per inch
    /// @throws std::runtime_error when the bytes are no such pixmap
    RenderedPage(std::string_view ppm, double resolution);

    double width() const { return static_cast<double>(_columns) * _pixel; }
    double height() const { return static_cast<double>(_rows) * _pixel; }

    /// The pixel that holds the place.
    /// @throws std::out_of_range for a place beside the page
    Colour colourAt(Point place) const;

    /// The smallest box around all pixels of exactly that colour; nullopt when there are none.
    std::optional<Box> boxOf(Colour colour) const;
    /// The smallest box around all that is not white; nullopt on a blank page.
    std::optional<Box> inkBox() const;

    /// The centre of gravity of all pixels of exactly that colour; nullopt when there are none.
    std::optional<Point> centreOf(Colour colour) const;
    /// The centre of gravity of all ink, dark pixels weighing more; nullopt on a blank page.
    std::optional<Point> inkCentre() const;

    /// How much of the page is inked: 0 for a blank page, 1 for one that is black all over.
    double coverage() const;
    /// How much of the page has exactly that colour, from 0 to 1.
    double shareOf(Colour colour) const;

    /// How many pixels a condition holds for, told what each of them was on another page and what
    /// it is here. It may depend on nothing else.
    /// @throws std::invalid_argument when the two pages differ in size
    std::size_t countChanges(const RenderedPage &before,
                             const std::function<bool(Colour was, Colour is)> &condition) const;

    /// Whether size and every pixel are the same.
    bool operator==(const RenderedPage &) const = default;

private:
    template <class Weight>
    std::optional<Box> boxWhere(const Weight &weightOf) const;
    template <class Weight>
    std::optional<Point> centreWhere(const Weight &weightOf) const;
    template <class Weight>
    double shareWhere(const Weight &weightOf) const;

    std::size_t _columns = 0;
    std::size_t _rows = 0; ///< the first one is the page's upper edge
    double _pixel;         ///< its side in points
    std::vector<Colour> _pixels;
};

struct Rendering {
    std::vector<RenderedPage> pages; ///< perhaps none
    /// All that the document printed (with "print", "=" and the like), and Ghostscript's warnings.
    std::string log;
};

struct RenderingOptions {
    /// Pixels per inch. At 72 a pixel is a point.
    double resolution = 72;
    /// Whether edges are smoothed; without, a page holds only the colours that it names.
    bool smooth = false;
    /// Further arguments for Ghostscript, before the file.
    std::vector<std::string> arguments = {};
    std::chrono::seconds timeLimit = std::chrono::seconds(60);
};

/// Renders a PostScript or PDF file with Ghostscript, in its safe mode.
///
/// Colours are converted by arithmetic, not through profiles: "0 0 0 1 setcmykcolor" is kBlack.
/// @throws std::runtime_error, with all that Ghostscript said, when it ends with an error; also
///         past the time limit
Rendering renderFile(const std::string &path, const RenderingOptions &options = {});

/// Renders a PDF file with Poppler, which leaves `arguments` out and takes the pages' CropBoxes.
/// The log has its complaints.
/// @throws std::runtime_error as above; a complaint alone is no error
Rendering renderFileWithPoppler(const std::string &path, const RenderingOptions &options = {});

/// The same as renderFile() for a document in memory.
Rendering renderText(std::string_view document, const RenderingOptions &options = {});

/// The same for many PostScript documents in one run of Ghostscript: each in a saved state of its
/// own, so that none sees what another one has defined. What an error in one of them has been is in
/// its log.
/// @return one for each document, in their order
std::vector<Rendering> renderEach(const std::vector<std::string> &documents,
                                  const RenderingOptions &options = {});

} // namespace Support
