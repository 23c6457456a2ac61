#include "Rendering.h"

#include "Program.h"
#include "TemporaryFolder.h"

#include <algorithm>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <type_traits>

namespace Support {
namespace {

/// One line or word of a pixmap's header, comments left out.
std::string headerWord(std::istream &header)
{
    std::string word;
    while (header >> word && word.starts_with('#'))
        std::getline(header, word);
    return word;
}

double inkOf(Colour pixel)
{
    return 1.0 - (pixel.red + pixel.green + pixel.blue) / (3.0 * 255);
}

auto isColour(Colour colour)
{
    return [colour](Colour pixel) { return pixel == colour ? 1.0 : 0.0; };
}

std::vector<std::string> ghostscriptArguments(const std::string &path, const std::string &pages,
                                              const RenderingOptions &options)
{
    std::vector<std::string> arguments = {"gs",
                                          "-q",
                                          "-dSAFER",
                                          "-dBATCH",
                                          "-dNOPAUSE",
                                          "-sDEVICE=ppmraw",
                                          "-dUseFastColor",
                                          "-r" + std::to_string(options.resolution),
                                          "-sOutputFile=" + pages};
    if (options.smooth)
        arguments.insert(arguments.end(), {"-dTextAlphaBits=4", "-dGraphicsAlphaBits=4"});
    arguments.insert(arguments.end(), options.arguments.begin(), options.arguments.end());
    arguments.push_back(path);
    return arguments;
}

std::vector<std::string> popplerArguments(const std::string &path, const std::string &pages,
                                          const RenderingOptions &options)
{
    const std::string smooth = options.smooth ? "yes" : "no";
    return {"pdftoppm", "-cropbox", "-r",        std::to_string(options.resolution),
            "-aa",      smooth,     "-aaVector", smooth,
            path,       pages};
}

/// Renderers give memory back and ask for it again all the time, which takes the system a third of
/// what they take themselves.
const std::map<std::string, std::optional<std::string>> kMemoryThatIsKept = {
    {"MALLOC_TRIM_THRESHOLD_", "1000000000"}, {"MALLOC_TOP_PAD_", "16000000"}};

ProgramResult runRenderer(const std::vector<std::string> &arguments,
                          const RenderingOptions &options)
{
    ProgramResult result = runProgram(
        {.arguments = arguments, .environment = kMemoryThatIsKept, .timeLimit = options.timeLimit});
    if (result.exitStatus != 0)
        throw std::runtime_error(arguments.front() + " failed: " + result.output + result.errors);
    return result;
}

/// @param arguments  of a renderer that leaves a pixmap of each page in the folder, in order
Rendering renderInto(const TemporaryFolder &folder, const std::vector<std::string> &arguments,
                     const RenderingOptions &options)
{
    const ProgramResult result = runRenderer(arguments, options);
    Rendering rendering = {{}, result.output + result.errors};
    for (const std::string &page : folder.names())
        rendering.pages.emplace_back(readFile(folder.file(page)), options.resolution);
    return rendering;
}

} // namespace

RenderedPage::RenderedPage(std::string_view ppm, double resolution) : _pixel(72 / resolution)
{
    std::istringstream header{std::string(ppm.substr(0, 256))};
    const std::string magic = headerWord(header);
    _columns = std::stoul(headerWord(header));
    _rows = std::stoul(headerWord(header));
    const std::string largest = headerWord(header);
    const auto begin = static_cast<std::size_t>(header.tellg()) + 1; // one white space ends it
    if (magic != "P6" || largest != "255" || ppm.size() - begin != 3 * _columns * _rows)
        throw std::runtime_error("not a pixmap of the expected form");
    static_assert(sizeof(Colour) == 3 && std::is_trivially_copyable_v<Colour>); // as in the pixmap
    const auto *first = reinterpret_cast<const Colour *>(ppm.data() + begin);
    _pixels.assign(first, first + _columns * _rows);
}

Colour RenderedPage::colourAt(Point place) const
{
    if (place.x < 0 || place.y < 0 || place.x >= width() || place.y >= height())
        throw std::out_of_range("no such place on the page");
    const auto column = static_cast<std::size_t>(place.x / _pixel);
    const auto rowFromBelow = static_cast<std::size_t>(place.y / _pixel);
    return _pixels.at((_rows - 1 - rowFromBelow) * _columns + column);
}

std::optional<Box> RenderedPage::boxOf(Colour colour) const
{
    return boxWhere(isColour(colour));
}

std::optional<Box> RenderedPage::inkBox() const
{
    return boxWhere(inkOf);
}

std::optional<Point> RenderedPage::centreOf(Colour colour) const
{
    return centreWhere(isColour(colour));
}

std::optional<Point> RenderedPage::inkCentre() const
{
    return centreWhere(inkOf);
}

double RenderedPage::coverage() const
{
    return shareWhere(inkOf);
}

double RenderedPage::shareOf(Colour colour) const
{
    return shareWhere(isColour(colour));
}

std::size_t
RenderedPage::countChanges(const RenderedPage &before,
                           const std::function<bool(Colour was, Colour is)> &condition) const
{
    if (before._columns != _columns || before._rows != _rows)
        throw std::invalid_argument("the pages differ in size");
    if (_pixels.empty())
        return 0;
    std::size_t count = 0;
    Colour was = before._pixels[0];
    Colour is = _pixels[0];
    bool holds = condition(was, is);
    for (std::size_t pixel = 0; pixel < _pixels.size(); ++pixel) {
        // Most pixels are what the one beside them is: the condition is not asked again.
        if (was != before._pixels[pixel] || is != _pixels[pixel]) {
            was = before._pixels[pixel];
            is = _pixels[pixel];
            holds = condition(was, is);
        }
        count += holds ? 1U : 0U;
    }
    return count;
}

template <class Weight>
std::optional<Box> RenderedPage::boxWhere(const Weight &weightOf) const
{
    std::size_t left = _columns, right = 0, top = _rows, bottom = 0;
    for (std::size_t row = 0; row < _rows; ++row) {
        for (std::size_t column = 0; column < _columns; ++column) {
            if (!(weightOf(_pixels[row * _columns + column]) > 0))
                continue;
            left = std::min(left, column);
            right = std::max(right, column + 1);
            top = std::min(top, row);
            bottom = std::max(bottom, row + 1);
        }
    }
    if (right == 0)
        return std::nullopt;
    const auto points = [this](std::size_t pixels) { return static_cast<double>(pixels) * _pixel; };
    return Box{points(left), points(_rows - bottom), points(right), points(_rows - top)};
}

template <class Weight>
std::optional<Point> RenderedPage::centreWhere(const Weight &weightOf) const
{
    double sum = 0, x = 0, y = 0;
    for (std::size_t row = 0; row < _rows; ++row) {
        for (std::size_t column = 0; column < _columns; ++column) {
            const double weight = weightOf(_pixels[row * _columns + column]);
            sum += weight;
            x += weight * (static_cast<double>(column) + 0.5);
            y += weight * (static_cast<double>(_rows - row) - 0.5);
        }
    }
    if (!(sum > 0))
        return std::nullopt;
    return Point{x / sum * _pixel, y / sum * _pixel};
}

template <class Weight>
double RenderedPage::shareWhere(const Weight &weightOf) const
{
    double sum = 0;
    for (const Colour pixel : _pixels)
        sum += weightOf(pixel);
    return _pixels.empty() ? 0 : sum / static_cast<double>(_pixels.size());
}

Rendering renderFile(const std::string &path, const RenderingOptions &options)
{
    const TemporaryFolder folder;
    return renderInto(folder, ghostscriptArguments(path, folder.file("%06d.ppm"), options),
                      options);
}

Rendering renderFileWithPoppler(const std::string &path, const RenderingOptions &options)
{
    const TemporaryFolder folder;
    return renderInto(folder, popplerArguments(path, folder.file("page"), options), options);
}

Rendering renderText(std::string_view document, const RenderingOptions &options)
{
    const TemporaryFolder folder;
    return renderFile(folder.write("document", document), options);
}

namespace {

/// Runs a file and tells how many pages have been shown by its end. Each request to the device
/// would look for the screen, of which this one has no need, in all folders.
constexpr char kRunner[] = "/Default << /HalftoneType 1 /Frequency 60 /Angle 45\n"
                           "/SpotFunction { pop } >> /Halftone defineresource pop\n"
                           "/Support.run { save /Support.level exch def\n"
                           "{ run } stopped { (error: ) print $error /errorname get = } if\n"
                           "clear cleardictstack Support.level restore\n"
                           "(Support.pages ) print currentpagedevice /PageCount get = } bind def\n";

/// The log of one document and the count of the pages so far; both are taken off the text.
std::pair<std::string, std::size_t> takeLog(std::string_view &text)
{
    constexpr std::string_view kCount = "Support.pages ";
    const auto count = text.find(kCount);
    if (count == std::string_view::npos)
        throw std::runtime_error("Ghostscript did not come to a document's end");
    std::pair log{std::string(text.substr(0, count)),
                  std::stoul(std::string(text.substr(count + kCount.size(), 12)))};
    text.remove_prefix(text.find('\n', count) + 1);
    return log;
}

/// The first of some pixmaps that stand one behind the other; it is taken off them.
std::string_view takePixmap(std::string_view &pixmaps)
{
    std::istringstream header{std::string(pixmaps.substr(0, 256))};
    headerWord(header); // the kind
    const std::size_t columns = std::stoul(headerWord(header));
    const std::size_t rows = std::stoul(headerWord(header));
    headerWord(header); // the largest value
    const std::string_view pixmap =
        pixmaps.substr(0, static_cast<std::size_t>(header.tellg()) + 1 + 3 * columns * rows);
    pixmaps.remove_prefix(pixmap.size());
    return pixmap;
}

} // namespace

std::vector<Rendering> renderEach(const std::vector<std::string> &documents,
                                  const RenderingOptions &options)
{
    const TemporaryFolder folder;
    std::string runs = kRunner;
    for (std::size_t index = 0; index < documents.size(); ++index) {
        const std::string path = folder.write(std::to_string(index), documents[index]);
        runs += "(" + path + ") Support.run\n";
    }
    RenderingOptions reading = options;
    reading.arguments.insert(reading.arguments.end(),
                             {"--permit-file-read=" + folder.path() + "/*", "-sstdout=%stderr"});
    // All pages come through one pipe: a file for each takes longer than what is on it.
    const ProgramResult result =
        runRenderer(ghostscriptArguments(folder.write("runs", runs), "-", reading), options);

    std::vector<Rendering> renderings;
    std::string_view text = result.errors;
    std::string_view pixmaps = result.output;
    std::size_t shown = 0;
    for (std::size_t index = 0; index < documents.size(); ++index) {
        const auto [log, count] = takeLog(text);
        std::vector<RenderedPage> pages;
        for (; shown < count; ++shown)
            pages.emplace_back(takePixmap(pixmaps), options.resolution);
        renderings.push_back({std::move(pages), log});
    }
    return renderings;
}

} // namespace Support
