#include "Toolkit.h"

#include "Fuzzing.h"
#include "Job.h"
#include "Queue.h"
#include "Streams.h"
#include "TextMeasuring.h"
#include "TextPlace.h"
#include "ToolkitError.h"

#include <utility>

namespace Fuzz {
namespace {

CoverStyle styleOf(std::string_view letters, std::string_view names)
{
    for (const char letter : letters) {
        if (letter == names[0])
            return CoverStyle::NoPrint;
        if (letter == names[1])
            return CoverStyle::Print1;
        if (letter == names[2])
            return CoverStyle::Print;
    }
    return CoverStyle::None;
}

/// Where a watermark is that has no position.
std::optional<TextPlace> placeOf(std::string_view letters)
{
    static constexpr std::pair<char, const char *> kPlaces[] = {
        {'d', "diagonal"}, {'e', "bottom-right"}, {'i', "tiled"}, {'x', "20%,90%"}};
    for (const auto &[letter, name] : kPlaces) {
        if (letters.find(letter) == std::string_view::npos)
            continue;
        auto place = textPlaceFromText(name);
        place->fitted = place->fitted || letters.find('w') != std::string_view::npos;
        return place;
    }
    return std::nullopt;
}

} // namespace

ToolkitCommands::ToolkitCommands(std::string_view letters)
{
    const auto has = [&](char letter) { return letters.find(letter) != std::string_view::npos; };
    watermark = {.above = has('v') || !has('b'),
                 .font = "Helvetica",
                 .angle = 30,
                 .colour = {0.5},
                 .position = {100, 200},
                 .size = 50,
                 .text = has('#') ? "[page] [[i]] [pages]" : "A i",
                 .pages = has('2') ? *pageSelectionFromText("2-") : PageSelection(),
                 .overprint = has('v'),
                 .place = placeOf(letters),
                 .hasPlaceholders = has('#')};
    booklet = {.pageSize = "A4",
               .centreMargin = 20,
               .outerMargin = 10,
               .ordering = has('r') ? Ordering::RightToLeft : Ordering::LeftToRight,
               .signatureSheets = has('s') ? 1U : 0U,
               .creep = has('c') ? 1.0 : 0.0,
               .turnLandscape = has('t')};
    covers = {.back = {styleOf(letters, "NOP"), "Thick", "Tray2"},
              .front = {styleOf(letters, "nop"), "None", "Tray1"},
              .source = "AutoSelect",
              .media = "Plain",
              .duplex = has('1') ? "none" : "notumble"};
}

std::optional<std::string> outputOf(std::string_view document,
                                    const std::function<void(const Job &)> &command)
{
    static MemoryFile ppd;
    [[maybe_unused]] static const bool ready = [] {
        ppd.assign(queuePPD());
        return true;
    }();
    MemoryFile input;
    MemoryFile output;
    Platform::TextShaper texts;
    input.assign(document);
    const Platform::Stream inputStream = Platform::openForReading(input.path());
    Platform::Stream outputStream = Platform::openForWriting(output.path());
    try {
        command({.input = inputStream.get(),
                 .output = outputStream.get(),
                 .texts = texts,
                 .ppdPath = ppd.path()});
    } catch (const ToolkitError &) {
        return std::nullopt;
    }
    require(Platform::closeStream(std::move(outputStream)), "all of the output is written");
    return output.bytes();
}

} // namespace Fuzz
