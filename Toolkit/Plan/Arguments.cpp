#include "Arguments.h"

#include "Text.h"
#include "TextPlace.h"
#include "ToolkitError.h"
#include "Values.h"
#include "textOnPage.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

namespace {

struct OptionDescription {
    std::string_view name;
    std::string_view value; ///< what the help calls the value; empty for a flag
    std::string_view help;
    bool isOptional = false;
};

constexpr bool kOptional = true;
/// What a text is set in that is scaled for each page.
constexpr double kSizeToBeFitted = 100;

struct CommandDescription {
    std::string_view name;
    std::string_view help;
    std::span<const OptionDescription> options;
    Command (*understand)(const Arguments &arguments);
};

constexpr std::array kWatermarkOptions = {
    OptionDescription{"--above", "", "draw the text on top of the page's own marks,"},
    OptionDescription{"--below", "", "or draw it beneath them (one of the two is needed)"},
    OptionDescription{"--font", "NAME", "PostScript name of the font"},
    OptionDescription{"--angle", "DEGREES", "how far the text is turned, counter-clockwise"},
    OptionDescription{"--colour", "COLOUR", "1, 3 or 4 numbers from 0 to 1: grey, RGB or CMYK"},
    OptionDescription{"--position", "X,Y", "lower left corner of the text (or --place)"},
    OptionDescription{"--size", "LENGTH", "size of the font"},
    OptionDescription{"--text", "TEXT", "the text, in UTF-8"},
    OptionDescription{"--overprint", "", "let what is on the page show through, always on top",
                      kOptional},
    OptionDescription{"--place", "PLACE", "in place of --position: centre, top-left, 50%,20% ...",
                      kOptional},
    OptionDescription{"--distance", "LENGTH", "from the page's edges, with --place", kOptional},
    OptionDescription{"--fit", "width", "text as wide as the page, with --place", kOptional},
    OptionDescription{"--placeholders", "", "[page] and [pages] in the text are numbers",
                      kOptional},
    OptionDescription{"--pages", "PAGES", "first, not-first, odd, even, 2-5,8,10-: only these",
                      kOptional},
};
constexpr std::array kBookletOptions = {
    OptionDescription{"--pagesize", "NAME", "page size of the sheets"},
    OptionDescription{"--centremargin", "LENGTH", "width of the clear strip along the fold"},
    OptionDescription{"--outermargin", "LENGTH", "width of the clear strip at the other edges"},
    OptionDescription{"--ordering", "LTR|RTL", "which way the booklet is read"},
    OptionDescription{"--signature", "SHEETS", "how many are folded one in the other, 0 for all",
                      kOptional},
    OptionDescription{"--creep", "LENGTH", "how far a sheet sticks out of the one around it",
                      kOptional},
    OptionDescription{"--turn-landscape", "", "turn landscape pages to fill their halves",
                      kOptional},
};
constexpr std::array kCoverPagesOptions = {
    OptionDescription{"--back-style", "STYLE", "back cover: none, noprint, print1 or print"},
    OptionDescription{"--back-media", "MEDIA", "its media type, None for no request"},
    OptionDescription{"--back-source", "SOURCE", "its paper source"},
    OptionDescription{"--front-style", "STYLE", "front cover: none, noprint, print1 or print"},
    OptionDescription{"--front-media", "MEDIA", "its media type, None for no request"},
    OptionDescription{"--front-source", "SOURCE", "its paper source"},
    OptionDescription{"--source", "SOURCE", "paper source of the job itself"},
    OptionDescription{"--media", "MEDIA", "media type of the job itself"},
    OptionDescription{"--duplex", "DUPLEX", "none, tumble or notumble: the job's sides"},
    OptionDescription{"--in-pdf", "", "give PDF covers, too, from the job's own source", kOptional},
};

/// The value of an option that must be there once.
const std::string &valueOf(const Arguments &arguments, std::string_view name)
{
    const auto found = std::ranges::find(arguments.options, name, &Option::name);
    if (found == arguments.options.end())
        throw ToolkitError("The option " + std::string(name) + " is missing.");
    return found->value;
}

bool isGiven(const Arguments &arguments, std::string_view name)
{
    return std::ranges::count(arguments.options, name, &Option::name) > 0;
}

/// Whether the text goes on top; exactly one of the two flags says so.
bool isAbove(const Arguments &arguments)
{
    const bool above = isGiven(arguments, "--above");
    if (above == isGiven(arguments, "--below"))
        throw ToolkitError("One of the options --above and --below is needed.");
    return above;
}

/// The value of an option as `read` understands it.
/// @param problem  what the user is told when it cannot be understood
template <typename Read>
auto readValue(const Arguments &arguments, std::string_view name, Read read, const char *problem)
{
    const auto value = read(valueOf(arguments, name));
    if (!value)
        throw ToolkitError(problem);
    return *value;
}

/// The same of an option that may be missing.
/// @return nullopt when it is
template <typename Read>
auto readValueIfGiven(const Arguments &arguments, std::string_view name, Read read,
                      const char *problem)
{
    return isGiven(arguments, name) ? std::optional(readValue(arguments, name, read, problem))
                                    : std::nullopt;
}

std::optional<double> sizeFromText(std::string_view text)
{
    const auto size = lengthFromText(text);
    return size && *size > 0 ? size : std::nullopt;
}

std::optional<double> marginFromText(std::string_view text)
{
    const auto margin = lengthFromText(text);
    return margin && *margin >= 0 ? margin : std::nullopt;
}

std::optional<Ordering> orderingFromText(std::string_view text)
{
    if (text == "LTR")
        return Ordering::LeftToRight;
    return text == "RTL" ? std::optional(Ordering::RightToLeft) : std::nullopt;
}

/// An unknown word is no cover.
CoverStyle coverStyleFromText(std::string_view text)
{
    if (text == "noprint")
        return CoverStyle::NoPrint;
    if (text == "print1")
        return CoverStyle::Print1;
    return text == "print" ? CoverStyle::Print : CoverStyle::None;
}

/// @return nullopt when the text has a position instead
std::optional<TextPlace> understandPlace(const Arguments &arguments)
{
    const bool fitted = isGiven(arguments, "--fit");
    if (!isGiven(arguments, "--place")) {
        if (fitted || isGiven(arguments, "--distance"))
            throw ToolkitError("The options --distance and --fit need the option --place.");
        return std::nullopt;
    }
    if (isGiven(arguments, "--position"))
        throw ToolkitError("Only one of the options --position and --place can be given.");
    if (fitted && valueOf(arguments, "--fit") != "width")
        throw ToolkitError("The watermark can be fitted to the width only.");
    TextPlace place = readValue(arguments, "--place", textPlaceFromText,
                                "The watermark's place is neither a name nor two percentages.");
    place.fitted |= fitted;
    place.distance = readValueIfGiven(arguments, "--distance", marginFromText,
                                      "The watermark's distance is not a length.")
                         .value_or(place.distance);
    return place;
}

Watermark understandTextAndPlace(const Arguments &arguments)
{
    const auto place = understandPlace(arguments);
    const bool above = isAbove(arguments);
    const bool overprint = isGiven(arguments, "--overprint");
    return Watermark{
        .above = above || overprint,
        .font = valueOf(arguments, "--font"),
        .angle = readValue(arguments, "--angle", numberFromText,
                           "The watermark's angle is not a number."),
        .colour = readValue(arguments, "--colour", colourFromText,
                            "The watermark's colour is not 1, 3 or 4 numbers from 0 to 1."),
        .position = place ? Point{}
                          : readValue(arguments, "--position", positionFromText,
                                      "The watermark's position is not two lengths with a "
                                      "comma between."),
        .size = readValue(arguments, "--size", sizeFromText,
                          "The watermark's size is not a length above 0."),
        .text = readValue(arguments, "--text", printableText,
                          "The watermark's text is not encoded in UTF-8."),
        .pages = readValueIfGiven(arguments, "--pages", pageSelectionFromText,
                                  "The watermark's pages are not a list of pages.")
                     .value_or(PageSelection()),
        .overprint = overprint,
        .place = place,
        .hasPlaceholders = isGiven(arguments, "--placeholders"),
    };
}

Command understandWatermark(const Arguments &arguments)
{
    Watermark watermark = understandTextAndPlace(arguments);
    textOnPage(watermark, 1, 1); // its placeholders are known
    if (watermark.place && watermark.place->fitted)
        watermark.size = kSizeToBeFitted;
    return watermark;
}

Command understandBooklet(const Arguments &arguments)
{
    return Booklet{
        .pageSize = valueOf(arguments, "--pagesize"),
        .centreMargin = readValue(arguments, "--centremargin", marginFromText,
                                  "The booklet's centre margin is not a length."),
        .outerMargin = readValue(arguments, "--outermargin", marginFromText,
                                 "The booklet's outer margin is not a length."),
        .ordering = readValue(arguments, "--ordering", orderingFromText,
                              "The booklet's ordering is neither LTR nor RTL."),
        .signatureSheets = readValueIfGiven(arguments, "--signature", countFromText,
                                            "The booklet's signature is not a number of sheets.")
                               .value_or(0),
        .creep = readValueIfGiven(arguments, "--creep", marginFromText,
                                  "The booklet's creep is not a length.")
                     .value_or(0),
        .turnLandscape = isGiven(arguments, "--turn-landscape"),
    };
}

Command understandCoverPages(const Arguments &arguments)
{
    return CoverPages{
        .back = {.style = coverStyleFromText(valueOf(arguments, "--back-style")),
                 .media = valueOf(arguments, "--back-media"),
                 .source = valueOf(arguments, "--back-source")},
        .front = {.style = coverStyleFromText(valueOf(arguments, "--front-style")),
                  .media = valueOf(arguments, "--front-media"),
                  .source = valueOf(arguments, "--front-source")},
        .source = valueOf(arguments, "--source"),
        .media = valueOf(arguments, "--media"),
        .duplex = valueOf(arguments, "--duplex"),
        .inPDF = isGiven(arguments, "--in-pdf"),
    };
}

constexpr std::array kCommands = {
    CommandDescription{"watermark", "Draws a text on every page, or on some.", kWatermarkOptions,
                       &understandWatermark},
    CommandDescription{"booklet", "Puts the pages two on a side, in the order for folding.",
                       kBookletOptions, &understandBooklet},
    CommandDescription{"coverpages", "Feeds cover sheets before and behind the job.",
                       kCoverPagesOptions, &understandCoverPages},
};

/// @return null for an unknown word
const CommandDescription *findCommand(std::string_view word)
{
    const auto found = std::ranges::find(kCommands, word, &CommandDescription::name);
    return found == kCommands.end() ? nullptr : &*found;
}

const CommandDescription &commandNamed(std::string_view word)
{
    const CommandDescription *command = findCommand(word);
    if (command == nullptr)
        throw ToolkitError("The command must be watermark, booklet or coverpages.");
    return *command;
}

const OptionDescription &optionNamed(const CommandDescription &command, std::string_view word)
{
    const auto found = std::ranges::find(command.options, word, &OptionDescription::name);
    if (found == command.options.end())
        throw ToolkitError("There is an option that the command does not know.");
    return *found;
}

bool looksLikeOption(std::string_view word)
{
    return word.starts_with("--");
}

void refuseRepeatedOptions(const Arguments &arguments)
{
    for (const Option &option : arguments.options) {
        if (std::ranges::count(arguments.options, option.name, &Option::name) > 1)
            throw ToolkitError("The option " + option.name + " is given twice.");
    }
}

std::string overview()
{
    std::string text = "Usage: jobfilter-toolkit COMMAND OPTIONS INPUT OUTPUT\n"
                       "       jobfilter-toolkit COMMAND --help\n"
                       "       jobfilter-toolkit --help | --version\n\n"
                       "Rewrites a PostScript or PDF document. Commands:\n\n";
    for (const CommandDescription &command : kCommands) {
        std::string name(command.name);
        name.resize(12, ' ');
        text += "  " + name + std::string(command.help) + "\n";
    }
    return text + "\nSee jobfilter-toolkit(1).\n";
}

/// The lines on the options that may be missing, or on those that may not.
std::string helpOfOptions(const CommandDescription &command, bool optional)
{
    std::string text;
    for (const OptionDescription &option : command.options) {
        if (option.isOptional != optional)
            continue;
        std::string column = "  " + std::string(option.name) + " " + std::string(option.value);
        column.resize(25, ' ');
        text += column + std::string(option.help) + "\n";
    }
    return text;
}

std::string helpOfCommand(const CommandDescription &command)
{
    return "Usage: jobfilter-toolkit " + std::string(command.name) + " OPTIONS INPUT OUTPUT\n\n" +
           std::string(command.help) + " These options are needed:\n\n" +
           helpOfOptions(command, false) + "\nThese are optional:\n\n" +
           helpOfOptions(command, true) +
           "\nA length is a decimal number with pt, mm or in directly behind it, points "
           "without.\nSee jobfilter-toolkit(1).\n";
}

} // namespace

Arguments splitArguments(const std::vector<std::string> &words)
{
    const CommandDescription &command = commandNamed(words.empty() ? "" : words.front());
    Arguments arguments{.command = words.front(), .options = {}, .input = {}, .output = {}};
    auto word = std::next(words.begin());
    for (; word != words.end() && looksLikeOption(*word); ++word) {
        const OptionDescription &option = optionNamed(command, *word);
        std::string value;
        if (!option.value.empty()) {
            if (++word == words.end())
                throw ToolkitError("The option " + std::string(option.name) + " lacks its value.");
            value = *word;
        }
        arguments.options.push_back({std::string(option.name), std::move(value)});
    }
    if (std::any_of(word, words.end(), looksLikeOption))
        throw ToolkitError("The options must stand before the two files.");
    if (words.end() - word != 2)
        throw ToolkitError("There must be one input file and one output file.");
    arguments.input = *word++;
    arguments.output = *word;
    return arguments;
}

Command commandFromArguments(const Arguments &arguments)
{
    refuseRepeatedOptions(arguments);
    return commandNamed(arguments.command).understand(arguments);
}

std::optional<std::string> requestedHelp(const std::vector<std::string> &words)
{
    if (words.empty())
        return std::nullopt;
    const CommandDescription *command = findCommand(words.front());
    if (command != nullptr && words.size() < 2)
        return std::nullopt;
    const std::string &word = command == nullptr ? words.front() : words[1];
    if (word == "--version")
        return "jobfilter-toolkit " KL_VERSION "\n";
    if (word == "--help")
        return command == nullptr ? overview() : helpOfCommand(*command);
    return std::nullopt;
}
