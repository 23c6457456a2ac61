// What a watermark's place, pages and placeholders are called: a line each, the text follows.

#include "Fuzzing.h"
#include "PageSelection.h"
#include "Text.h"
#include "TextPlace.h"
#include "ToolkitError.h"
#include "textOnPage.h"
#include "watermarkPlaceholders.h"

#include <cmath>
#include <stdexcept>
#include <string>

namespace {

constexpr std::uint64_t kPages = 3;

Watermark watermarkWith(const std::optional<TextPlace> &place, const std::string &text)
{
    return {.above = true,
            .font = "Helvetica",
            .angle = 30,
            .colour = {0},
            .position = {0, 0},
            .size = 12,
            .text = text,
            .place = place,
            .hasPlaceholders = true};
}

void tryPlace(std::string_view name)
{
    const auto place = textPlaceFromText(name);
    if (!place)
        return;
    const auto texts = placedTexts(watermarkWith(place, ""), {100, 12}, {595, 842});
    Fuzz::require(texts.size() >= 1 && texts.size() <= 101 * 101,
                  "a place has texts, not too many");
    for (const PlacedText &text : texts)
        Fuzz::require(std::isfinite(text.corner.x) && std::isfinite(text.corner.y) &&
                          text.scale > 0,
                      "a text is somewhere");
}

void tryPages(std::string_view list)
{
    const auto pages = pageSelectionFromText(list);
    if (!pages)
        return;
    Fuzz::require(list.find_first_not_of("0123456789-,abcdefghijklmnopqrstuvwxyz") ==
                      std::string_view::npos,
                  "a list of pages has no blanks and no capital letters");
    Fuzz::require(!pages->contains(0), "pages are counted from 1");
}

/// The text as it comes out on a page; nullopt when it is refused.
std::optional<std::string> onPage(const std::string &text, const JobValues &job, std::uint64_t page)
{
    try {
        return textOnPage(watermarkWith({}, withJobValues(text, job)), page, kPages);
    } catch (const ToolkitError &) {
        return std::nullopt;
    } catch (const std::length_error &) {
        return std::nullopt;
    }
}

void tryText(const std::string &text)
{
    // Whatever a job says of itself is no placeholder.
    const JobValues job = {.user = text, .title = "[page]", .jobId = "7", .printed = 0};
    if (Platform::isValidUTF8(text) && text.size() < 1000)
        Fuzz::requireEqual(text, onPage("[user]", job, 1).value_or("refused"),
                           "a value comes out as it is");
    const auto first = onPage(text, job, 1);
    const auto last = onPage(text, job, kPages);
    Fuzz::require(first.has_value() == last.has_value(), "a text is refused on all pages");
    if (text.find_first_of("[]") == std::string::npos && Platform::isValidUTF8(text))
        Fuzz::requireEqual(text, first.value_or("refused"), "a text without brackets is itself");
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    tryPlace(takeLine(input));
    tryPages(takeLine(input));
    tryText(std::string(input.substr(0, 2000)));
}
