#include "markerSpelling.h"

#include "DSSC.h"
#include "headerMarkers.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <vector>

namespace {

constexpr std::size_t kMostWrongLetters = 2;

/// Upper-case, without blanks and control characters.
std::string condensed(std::string_view text)
{
    std::string letters;
    for (const char letter : text) {
        if (static_cast<unsigned char>(letter) > ' ')
            letters += static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    }
    return letters;
}

/// How many letters must be taken out, put in or exchanged to make one text of the other.
std::size_t distance(std::string_view from, std::string_view to)
{
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t exchanged = diagonal + (from[i] != to[j] ? 1 : 0);
            diagonal = row[j + 1];
            row[j + 1] = std::min({exchanged, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

/// A setting's name; with its value where the marker has one.
std::string_view comparable(std::string_view setting, std::string_view marker)
{
    return marker.ends_with('=') ? setting.substr(0, setting.find('=') + 1) : setting;
}

} // namespace

std::optional<std::string> intendedMarkerLine(std::string_view line)
{
    const std::string letters = condensed(line);
    const std::string prefix = condensed(kDSSCPrefix);
    const auto end = letters.find("PRINT");
    if (!letters.starts_with("@PJL") || end == std::string::npos ||
        distance(std::string_view(letters).substr(0, end + 5), prefix) > kMostWrongLetters)
        return std::nullopt;
    const std::string_view setting = std::string_view(letters).substr(end + 5);
    for (const std::string_view marker : kHeaderMarkers) {
        if (distance(comparable(setting, marker), marker) <= kMostWrongLetters)
            return isMarkerLine(line, marker)
                       ? std::nullopt
                       : std::optional(std::string(kDSSCPrefix).append(marker));
    }
    return std::nullopt;
}
