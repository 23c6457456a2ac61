#include "Values.h"

#include "Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace {

constexpr double kPointsPerInch = 72;
constexpr double kMillimetresPerInch = 25.4;
/// Far beyond any paper, and still a number that every PostScript and PDF reader takes.
constexpr double kLongest = 1'000'000;
/// Far beyond any job.
constexpr std::uint64_t kHighestCount = 1'000'000;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Takes the unit off the end.
/// @return how many points it has; 1 when there is none
double takeUnit(std::string_view &text)
{
    static constexpr std::array kUnits = {
        std::pair<std::string_view, double>{"pt", 1},
        std::pair<std::string_view, double>{"mm", kPointsPerInch / kMillimetresPerInch},
        std::pair<std::string_view, double>{"in", kPointsPerInch},
    };
    for (const auto &[name, points] : kUnits) {
        if (text.ends_with(name)) {
            text.remove_suffix(name.size());
            return points;
        }
    }
    return 1;
}

/// Takes blanks with at most one comma among them off the front.
/// @return false when there was none of them
bool takeSeparator(std::string_view &text)
{
    const auto skipBlanks = [&text] {
        text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    };
    const std::size_t before = text.size();
    skipBlanks();
    if (text.starts_with(',')) {
        text.remove_prefix(1);
        skipBlanks();
    }
    return text.size() < before;
}

} // namespace

std::optional<double> numberFromText(std::string_view text)
{
    const bool isSigned = text.starts_with('+') || text.starts_with('-');
    const std::string_view magnitude = text.substr(isSigned ? 1 : 0);
    const auto isPart = [](char c) { return isDigit(c) || c == '.'; };
    if (!std::ranges::any_of(magnitude, isDigit) || !std::ranges::all_of(magnitude, isPart))
        return std::nullopt;
    double number = 0;
    const char *const end = magnitude.data() + magnitude.size();
    const auto result = std::from_chars(magnitude.data(), end, number, std::chars_format::fixed);
    if (result.ec != std::errc() || result.ptr != end)
        return std::nullopt;
    return text.starts_with('-') ? -number : number;
}

std::optional<std::uint64_t> countFromText(std::string_view text)
{
    std::uint64_t count = 0;
    const char *const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, count);
    if (result.ec != std::errc() || result.ptr != end || count > kHighestCount)
        return std::nullopt;
    return count;
}

std::optional<double> lengthFromText(std::string_view text)
{
    const double unit = takeUnit(text);
    const auto number = numberFromText(text);
    if (!number || std::abs(*number * unit) > kLongest)
        return std::nullopt;
    return *number * unit;
}

std::optional<Point> positionFromText(std::string_view text)
{
    const auto comma = text.find(',');
    if (comma == std::string_view::npos)
        return std::nullopt;
    const auto x = lengthFromText(text.substr(0, comma));
    const auto y = lengthFromText(text.substr(comma + 1));
    return x && y ? std::optional(Point{*x, *y}) : std::nullopt;
}

std::optional<std::vector<double>> colourFromText(std::string_view text)
{
    std::vector<double> components;
    do {
        const std::string_view word = text.substr(0, text.find_first_of(", \t"));
        const auto component = numberFromText(word);
        if (!component || *component < 0 || *component > 1)
            return std::nullopt;
        components.push_back(*component);
        text.remove_prefix(word.size());
    } while (takeSeparator(text));
    if (components.size() != 1 && components.size() != 3 && components.size() != 4)
        return std::nullopt;
    return components;
}

std::optional<std::string> printableText(std::string_view text)
{
    if (!Platform::isValidUTF8(text))
        return std::nullopt;
    std::string printable;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        // U+0080 to U+009F are the two bytes C2 80 to C2 9F.
        const bool isC1 = byte == 0xC2 && static_cast<unsigned char>(text[i + 1]) <= 0x9F;
        if (isC1)
            ++i;
        else if (byte >= 0x20 && byte != 0x7F)
            printable += text[i];
    }
    return printable;
}
