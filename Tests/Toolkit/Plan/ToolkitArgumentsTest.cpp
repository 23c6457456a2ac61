#include "Arguments.h"

#include "ToolkitError.h"
#include "Values.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::Optional;

using Words = std::vector<std::string>;

/// The words of a watermark as the filter writes them.
Words watermarkWords()
{
    return {"watermark", "--above", "--font",     "Helvetica",  "--angle", "-45.000000",
            "--colour",  "0,0,0",   "--position", "50.5,60.25", "--size",  "36",
            "--text",    "DRAFT",   "in",         "out"};
}

Words bookletWords()
{
    return {
        "booklet", "--pagesize", "A4", "--centremargin", "10mm", "--outermargin", "0", "--ordering",
        "LTR",     "in",         "out"};
}

Words coverPagesWords()
{
    return {"coverpages", "--back-style",  "none",       "--back-media",
            "None",       "--back-source", "AutoSelect", "--front-style",
            "print1",     "--front-media", "Thick",      "--front-source",
            "Bypass",     "--source",      "Tray2",      "--media",
            "Plain",      "--duplex",      "tumble",     "in",
            "out"};
}

/// The words with the value of one option replaced.
Words withValue(Words words, const std::string &option, const std::string &value)
{
    *std::next(std::ranges::find(words, option)) = value;
    return words;
}

/// The words with an option in front of the others.
Words with(Words words, const Words &option)
{
    words.insert(std::next(words.begin()), option.begin(), option.end());
    return words;
}

/// The words without an option and, if it has one, its value.
Words without(Words words, const std::string &option, int count)
{
    const auto first = std::ranges::find(words, option);
    words.erase(first, first + count);
    return words;
}

/// The words of a watermark whose place is told by the page.
Words placedWords(const std::string &place)
{
    Words words = without(watermarkWords(), "--position", 2);
    words.insert(words.end() - 2, {"--place", place});
    return words;
}

template <class Kind>
Kind understood(const Words &words)
{
    return std::get<Kind>(commandFromArguments(splitArguments(words)));
}

std::string splitProblem(const Words &words)
{
    try {
        splitArguments(words);
    } catch (const ToolkitError &error) {
        return error.what();
    }
    return "none";
}

/// Why words that can be told apart are refused.
std::string problem(const Words &words)
{
    const Arguments arguments = splitArguments(words);
    try {
        commandFromArguments(arguments);
    } catch (const ToolkitError &error) {
        return error.what();
    }
    return "none";
}

TEST(ToolkitArgumentsTest, UnderstandsTheWatermarkOfTheFilter)
{
    const auto watermark = understood<Watermark>(watermarkWords());
    EXPECT_TRUE(watermark.above);
    EXPECT_EQ("Helvetica", watermark.font);
    EXPECT_EQ(-45, watermark.angle);
    EXPECT_THAT(watermark.colour, ElementsAre(0, 0, 0));
    EXPECT_EQ(50.5, watermark.position.x);
    EXPECT_EQ(60.25, watermark.position.y);
    EXPECT_EQ(36, watermark.size);
    EXPECT_EQ("DRAFT", watermark.text);
}

TEST(ToolkitArgumentsTest, UnderstandsTheBookletOfTheFilter)
{
    const auto booklet = understood<Booklet>(bookletWords());
    EXPECT_EQ("A4", booklet.pageSize);
    EXPECT_DOUBLE_EQ(720 / 25.4, booklet.centreMargin);
    EXPECT_EQ(0, booklet.outerMargin);
    EXPECT_EQ(Ordering::LeftToRight, booklet.ordering);
}

TEST(ToolkitArgumentsTest, UnderstandsTheCoverPagesOfTheFilter)
{
    const auto coverPages = understood<CoverPages>(coverPagesWords());
    EXPECT_EQ(CoverStyle::None, coverPages.back.style);
    EXPECT_EQ("None", coverPages.back.media);
    EXPECT_EQ("AutoSelect", coverPages.back.source);
    EXPECT_EQ(CoverStyle::Print1, coverPages.front.style);
    EXPECT_EQ("Thick", coverPages.front.media);
    EXPECT_EQ("Bypass", coverPages.front.source);
    EXPECT_EQ("Tray2", coverPages.source);
    EXPECT_EQ("Plain", coverPages.media);
    EXPECT_EQ("tumble", coverPages.duplex);
    EXPECT_FALSE(coverPages.inPDF);
}

TEST(ToolkitArgumentsTest, CoversOfAPDFDocumentAreAskedForByAFlag)
{
    Words words = coverPagesWords();
    words.insert(words.end() - 2, "--in-pdf");
    EXPECT_TRUE(understood<CoverPages>(words).inPDF);
}

TEST(ToolkitArgumentsTest, InputAndOutputStandLast)
{
    const Arguments arguments = splitArguments(bookletWords());
    EXPECT_EQ("in", arguments.input);
    EXPECT_EQ("out", arguments.output);
}

TEST(ToolkitArgumentsTest, TheOrderOfTheOptionsIsFree)
{
    const Words words = {"booklet", "--ordering", "RTL", "--outermargin",
                         "1",       "--pagesize", "A5",  "--centremargin",
                         "2",       "in",         "out"};
    EXPECT_EQ("A5", understood<Booklet>(words).pageSize);
    EXPECT_EQ(Ordering::RightToLeft, understood<Booklet>(words).ordering);
}

TEST(ToolkitArgumentsTest, AValueIsAValueWhateverItLooksLike)
{
    EXPECT_EQ("--below",
              understood<Watermark>(withValue(watermarkWords(), "--text", "--below")).text);
    EXPECT_EQ("--help",
              understood<Watermark>(withValue(watermarkWords(), "--text", "--help")).text);
    EXPECT_EQ("", understood<Watermark>(withValue(watermarkWords(), "--text", "")).text);
    EXPECT_EQ("--text",
              understood<Watermark>(withValue(watermarkWords(), "--font", "--text")).font);
}

TEST(ToolkitArgumentsTest, UnknownCommandsAreRefused)
{
    for (const Words &words : {Words{}, Words{"stamp", "in", "out"}, Words{"Booklet", "in", "out"},
                               Words{"--above", "in", "out"}, Words{"", "in", "out"}})
        EXPECT_THAT(splitProblem(words), HasSubstr("must be watermark, booklet or coverpages"));
}

TEST(ToolkitArgumentsTest, UnknownOptionsAreRefused)
{
    for (const char *option : {"--shadow", "--Above", "--", "--text=x", "--pagesize"}) {
        Words words = watermarkWords();
        words.insert(std::next(words.begin()), option);
        EXPECT_THAT(splitProblem(words), HasSubstr("an option that the command does not know"))
            << option;
    }
}

TEST(ToolkitArgumentsTest, AnOptionIsRequiredUnlessItIsOptional)
{
    for (const char *option : {"--font", "--angle", "--colour", "--position", "--size", "--text"})
        EXPECT_EQ("The option " + std::string(option) + " is missing.",
                  problem(without(watermarkWords(), option, 2)));
    EXPECT_THAT(problem(without(watermarkWords(), "--above", 1)), HasSubstr("is needed"));
    for (const char *option : {"--pagesize", "--centremargin", "--outermargin", "--ordering"})
        EXPECT_EQ("The option " + std::string(option) + " is missing.",
                  problem(without(bookletWords(), option, 2)));
    for (const char *option :
         {"--back-style", "--back-media", "--back-source", "--front-style", "--front-media",
          "--front-source", "--source", "--media", "--duplex"})
        EXPECT_EQ("The option " + std::string(option) + " is missing.",
                  problem(without(coverPagesWords(), option, 2)));
}

TEST(ToolkitArgumentsTest, OptionalOptionsAreTakenOnceToo)
{
    EXPECT_EQ("The option --pages is given twice.",
              problem(with(watermarkWords(), {"--pages", "odd", "--pages", "odd"})));
    EXPECT_EQ("The option --pages lacks its value.", splitProblem({"watermark", "--pages"}));
    EXPECT_THAT(splitProblem(with(bookletWords(), {"--pages", "odd"})),
                HasSubstr("an option that the command does not know"));
}

TEST(ToolkitArgumentsTest, AWatermarkIsOnAllPagesUnlessTheyAreNamed)
{
    const auto isOnPage = [](const Words &words, std::uint64_t page) {
        return understood<Watermark>(words).pages.contains(page);
    };
    EXPECT_TRUE(isOnPage(watermarkWords(), 1));
    EXPECT_TRUE(isOnPage(watermarkWords(), 1'000'000));
    EXPECT_FALSE(isOnPage(with(watermarkWords(), {"--pages", "2-"}), 1));
    EXPECT_TRUE(isOnPage(with(watermarkWords(), {"--pages", "2-"}), 2));
}

TEST(ToolkitArgumentsTest, AnOverprintIsOnTopWhateverTheOrderingSays)
{
    EXPECT_FALSE(understood<Watermark>(watermarkWords()).overprint);
    Words words = with(watermarkWords(), {"--overprint"});
    EXPECT_TRUE(understood<Watermark>(words).overprint);
    EXPECT_TRUE(understood<Watermark>(words).above);
    *std::ranges::find(words, "--above") = "--below";
    EXPECT_TRUE(understood<Watermark>(words).overprint);
    EXPECT_TRUE(understood<Watermark>(words).above);
    EXPECT_THAT(problem(without(words, "--below", 1)), HasSubstr("is needed"));
}

TEST(ToolkitArgumentsTest, PagesThatAreNoneAreRefused)
{
    EXPECT_EQ("The watermark's pages are not a list of pages.",
              problem(with(watermarkWords(), {"--pages", "last"})));
}

TEST(ToolkitArgumentsTest, ABookletIsOneSignatureWithoutCreepUnlessTheyAreNamed)
{
    const auto plain = understood<Booklet>(bookletWords());
    EXPECT_EQ(0U, plain.signatureSheets);
    EXPECT_EQ(0, plain.creep);
    EXPECT_FALSE(plain.turnLandscape);

    const auto booklet = understood<Booklet>(
        with(bookletWords(), {"--signature", "4", "--creep", "0.2mm", "--turn-landscape"}));
    EXPECT_EQ(4U, booklet.signatureSheets);
    EXPECT_DOUBLE_EQ(0.2 * 72 / 25.4, booklet.creep);
    EXPECT_TRUE(booklet.turnLandscape);
    EXPECT_EQ(0U, understood<Booklet>(with(bookletWords(), {"--signature", "0"})).signatureSheets);
}

TEST(ToolkitArgumentsTest, SignaturesAndCreepThatAreNoneAreRefused)
{
    for (const char *sheets : {"", "-1", "+1", "1.5", "4 ", "four", "1000001", "0x4"}) {
        EXPECT_EQ("The booklet's signature is not a number of sheets.",
                  problem(with(bookletWords(), {"--signature", sheets})));
    }
    for (const char *creep : {"", "-1", "thin", "1cm", "Off"}) {
        EXPECT_EQ("The booklet's creep is not a length.",
                  problem(with(bookletWords(), {"--creep", creep})));
    }
}

TEST(ToolkitArgumentsTest, AWatermarkWithAPositionHasNoPlaceAndNoPlaceholders)
{
    EXPECT_FALSE(understood<Watermark>(watermarkWords()).place);
    EXPECT_FALSE(understood<Watermark>(watermarkWords()).hasPlaceholders);
}

TEST(ToolkitArgumentsTest, APlaceStandsInThePlaceOfThePosition)
{
    const auto place = understood<Watermark>(placedWords("top-right")).place.value();
    EXPECT_EQ(1, place.spot.x);
    EXPECT_EQ(1, place.spot.y);
    EXPECT_EQ(-1, place.inwards.x);
    EXPECT_EQ(-1, place.inwards.y);
    EXPECT_EQ(36, place.distance);
    EXPECT_FALSE(place.fitted || place.tiled || place.alongDiagonal);
    EXPECT_EQ(0.25, understood<Watermark>(placedWords("25%,75%")).place->spot.x);
    EXPECT_EQ(0.75, understood<Watermark>(placedWords("25%,75%")).place->spot.y);
    EXPECT_TRUE(understood<Watermark>(placedWords("tiled")).place->tiled);
    EXPECT_EQ(36, understood<Watermark>(placedWords("centre")).size);
}

TEST(ToolkitArgumentsTest, TheDistanceIsALength)
{
    const auto words = with(placedWords("top"), {"--distance", "1in"});
    EXPECT_EQ(72, understood<Watermark>(words).place->distance);
    EXPECT_EQ(0, understood<Watermark>(withValue(words, "--distance", "0")).place->distance);
}

TEST(ToolkitArgumentsTest, AFittedTextIsSetInASizeThatIsScaled)
{
    const auto words = withValue(placedWords("top"), "--size", "0.001");
    const auto fitted = understood<Watermark>(with(words, {"--fit", "width"}));
    EXPECT_TRUE(fitted.place->fitted);
    EXPECT_EQ(100, fitted.size);
    const auto diagonal = understood<Watermark>(withValue(words, "--place", "diagonal"));
    EXPECT_TRUE(diagonal.place->fitted && diagonal.place->alongDiagonal);
    EXPECT_EQ(100, diagonal.size);
}

TEST(ToolkitArgumentsTest, PlacesThatAreNoneAreRefused)
{
    EXPECT_EQ("The watermark's place is neither a name nor two percentages.",
              problem(placedWords("middle")));
    EXPECT_EQ("The watermark's distance is not a length.",
              problem(with(placedWords("top"), {"--distance", "-1"})));
    EXPECT_EQ("The watermark can be fitted to the width only.",
              problem(with(placedWords("top"), {"--fit", "height"})));
    EXPECT_EQ("Only one of the options --position and --place can be given.",
              problem(with(watermarkWords(), {"--place", "top"})));
    constexpr char kAlone[] = "The options --distance and --fit need the option --place.";
    EXPECT_EQ(kAlone, problem(with(watermarkWords(), {"--distance", "1"})));
    EXPECT_EQ(kAlone, problem(with(watermarkWords(), {"--fit", "width"})));
    EXPECT_EQ("The option --position is missing.",
              problem(without(watermarkWords(), "--position", 2)));
}

TEST(ToolkitArgumentsTest, PlaceholdersAreLookedAtWhenTheyAreAskedFor)
{
    const auto words = withValue(watermarkWords(), "--text", "[page] [x]");
    EXPECT_EQ("[page] [x]", understood<Watermark>(words).text);
    EXPECT_EQ("The watermark's text has a placeholder that is not known.",
              problem(with(words, {"--placeholders"})));
    const auto known = withValue(with(words, {"--placeholders"}), "--text", "[page]/[pages]");
    EXPECT_TRUE(understood<Watermark>(known).hasPlaceholders);
    EXPECT_EQ("[page]/[pages]", understood<Watermark>(known).text);
}

TEST(ToolkitArgumentsTest, HelpTellsWhichOptionsAreNeeded)
{
    struct Example {
        const char *command;
        const char *needed;
        const char *optional;
    };
    for (const auto &[command, neededOption, optionalOption] :
         {Example{"watermark", "  --text ", "  --pages "},
          Example{"booklet", "  --ordering ", "  --creep "},
          Example{"coverpages", "  --duplex ", "  --in-pdf "}}) {
        const std::string help = requestedHelp({command, "--help"}).value_or("");
        const auto needed = help.find("These options are needed:");
        const auto optional = help.find("These are optional:");
        ASSERT_NE(std::string::npos, needed);
        ASSERT_NE(std::string::npos, optional);
        EXPECT_LT(needed, help.find(neededOption));
        EXPECT_LT(help.find(neededOption), optional);
        EXPECT_LT(optional, help.find(optionalOption));
    }
}

TEST(ToolkitArgumentsTest, RepeatedOptionsAreRefused)
{
    Words words = watermarkWords();
    words.insert(std::next(words.begin()), {"--size", "36"});
    EXPECT_EQ("The option --size is given twice.", problem(words));
    words = watermarkWords();
    words.insert(std::next(words.begin()), "--above");
    EXPECT_EQ("The option --above is given twice.", problem(words));
    words[1] = "--below";
    EXPECT_THAT(problem(words), HasSubstr("One of the options --above and --below"));
}

TEST(ToolkitArgumentsTest, AnOptionWithoutItsValueIsRefused)
{
    EXPECT_EQ("The option --text lacks its value.", splitProblem({"watermark", "--text"}));
    // The value takes a file's place, so a file is missing.
    EXPECT_THAT(splitProblem({"watermark", "--above", "--text", "in", "out"}),
                HasSubstr("one input file and one output file"));
}

TEST(ToolkitArgumentsTest, MoreOrFewerThanTwoFilesAreRefused)
{
    Words words = bookletWords();
    words.emplace_back("another");
    EXPECT_THAT(splitProblem(words), HasSubstr("one input file and one output file"));
    words.resize(words.size() - 2);
    EXPECT_THAT(splitProblem(words), HasSubstr("one input file and one output file"));
    words.pop_back();
    EXPECT_THAT(splitProblem(words), HasSubstr("one input file and one output file"));
}

TEST(ToolkitArgumentsTest, OptionsBehindTheFilesAreRefused)
{
    Words words = watermarkWords();
    words.emplace_back("--below");
    EXPECT_THAT(splitProblem(words), HasSubstr("before the two files"));
    EXPECT_THAT(splitProblem({"booklet", "in", "--pagesize"}), HasSubstr("before the two files"));
}

TEST(ToolkitArgumentsTest, RefusedValuesAreSaidButNotQuoted)
{
    const auto refused = [](const char *option, const char *value) {
        const std::string text = problem(withValue(watermarkWords(), option, value));
        EXPECT_THAT(text, Not(HasSubstr("SECRET")));
        return text;
    };
    EXPECT_THAT(refused("--angle", "SECRET"), HasSubstr("angle"));
    EXPECT_THAT(refused("--colour", "SECRET"), HasSubstr("colour"));
    EXPECT_THAT(refused("--position", "SECRET"), HasSubstr("position"));
    EXPECT_THAT(refused("--size", "SECRET"), HasSubstr("size"));
    EXPECT_THAT(refused("--size", "0"), HasSubstr("size"));
    EXPECT_THAT(refused("--size", "-36"), HasSubstr("size"));
    EXPECT_THAT(refused("--text", "SECRET\xFF"), HasSubstr("UTF-8"));
    EXPECT_THAT(problem(withValue(bookletWords(), "--centremargin", "SECRET")),
                HasSubstr("centre margin"));
    EXPECT_THAT(problem(withValue(bookletWords(), "--outermargin", "-1mm")),
                HasSubstr("outer margin"));
    EXPECT_THAT(problem(withValue(bookletWords(), "--ordering", "ltr")), HasSubstr("ordering"));
}

TEST(ToolkitArgumentsTest, AnUnknownCoverStyleIsNoCover)
{
    const auto styleOf = [](const char *word) {
        return understood<CoverPages>(withValue(coverPagesWords(), "--front-style", word))
            .front.style;
    };
    EXPECT_EQ(CoverStyle::NoPrint, styleOf("noprint"));
    EXPECT_EQ(CoverStyle::Print1, styleOf("print1"));
    EXPECT_EQ(CoverStyle::Print, styleOf("print"));
    for (const char *word : {"none", "print2", "Print", ""})
        EXPECT_EQ(CoverStyle::None, styleOf(word)) << word;
}

TEST(ToolkitArgumentsTest, HelpNamesAllOptionsOfTheCommand)
{
    EXPECT_THAT(requestedHelp({"--help"}),
                Optional(testing::AllOf(HasSubstr("watermark"), HasSubstr("booklet"),
                                        HasSubstr("coverpages"))));
    const auto help = requestedHelp({"watermark", "--help"});
    ASSERT_TRUE(help);
    for (const std::string &word : watermarkWords()) {
        if (word.starts_with("--")) {
            EXPECT_THAT(*help, HasSubstr("  " + word + " "));
        }
    }
    EXPECT_THAT(requestedHelp({"booklet", "--help"}), Optional(HasSubstr("--centremargin")));
    EXPECT_THAT(requestedHelp({"coverpages", "--help"}), Optional(HasSubstr("--back-media")));
}

TEST(ToolkitArgumentsTest, OnlyTheFirstOptionAsksForHelp)
{
    EXPECT_EQ(std::nullopt, requestedHelp({}));
    EXPECT_EQ(std::nullopt, requestedHelp({"watermark"}));
    EXPECT_EQ(std::nullopt, requestedHelp({"stamp", "--help"}));
    EXPECT_EQ(std::nullopt, requestedHelp(watermarkWords()));
    EXPECT_EQ(std::nullopt, requestedHelp({"watermark", "--text", "--help"}));
}

TEST(ToolkitArgumentsTest, VersionIsOneLine)
{
    const auto version = requestedHelp({"--version"});
    EXPECT_THAT(version,
                Optional(testing::MatchesRegex("jobfilter-toolkit [0-9]+\\.[0-9]+\\.[0-9]+\n")));
    EXPECT_EQ(version, requestedHelp({"booklet", "--version"}));
}

TEST(ToolkitValuesTest, NumbersAreDecimal)
{
    EXPECT_THAT(numberFromText("0"), Optional(0));
    EXPECT_THAT(numberFromText("-0.000000"), Optional(0));
    EXPECT_THAT(numberFromText("+12.5"), Optional(12.5));
    EXPECT_THAT(numberFromText(".5"), Optional(0.5));
    EXPECT_THAT(numberFromText("7."), Optional(7));
    for (const char *text : {"", " 1", "1 ", "1e3", "0x10", "inf", "nan", "-", "+", ".", "1.2.3",
                             "--1", "1,5", "\xD9\xA1", "ten"})
        EXPECT_EQ(std::nullopt, numberFromText(text)) << text;
    EXPECT_EQ(std::nullopt, numberFromText(std::string(400, '9')));
}

TEST(ToolkitValuesTest, CountsAreDigits)
{
    EXPECT_EQ(0U, countFromText("0"));
    EXPECT_EQ(16U, countFromText("016"));
    EXPECT_EQ(1'000'000U, countFromText("1000000"));
    for (const char *text :
         {"", " 1", "1 ", "-1", "+1", "1.0", "1e3", "x", "1000001", "99999999999999999999999"})
        EXPECT_EQ(std::nullopt, countFromText(text)) << text;
}

TEST(ToolkitValuesTest, LengthsCarryTheirUnit)
{
    EXPECT_THAT(lengthFromText("36"), Optional(36));
    EXPECT_THAT(lengthFromText("36pt"), Optional(36));
    EXPECT_THAT(lengthFromText("-0.5in"), Optional(-36));
    EXPECT_THAT(lengthFromText("25.4mm"), Optional(testing::DoubleEq(72)));
    for (const char *text : {"", "pt", "mm", "36 pt", "36cm", "36PT", "36ptpt", "36\"", "1000001",
                             "-1000001", "13889in"})
        EXPECT_EQ(std::nullopt, lengthFromText(text)) << text;
}

TEST(ToolkitValuesTest, APositionIsTwoLengths)
{
    const auto position = positionFromText("-12.5,1in");
    ASSERT_TRUE(position);
    EXPECT_EQ(-12.5, position->x);
    EXPECT_EQ(72, position->y);
    for (const char *text : {"", "1", "1,", ",1", "1 2", "1, 2", "1,2,3", "inf,0"})
        EXPECT_EQ(std::nullopt, positionFromText(text)) << text;
}

TEST(ToolkitValuesTest, AColourHasOneThreeOrFourComponents)
{
    EXPECT_THAT(colourFromText("0.5"), Optional(ElementsAre(0.5)));
    EXPECT_THAT(colourFromText("0,0.25,1"), Optional(ElementsAre(0, 0.25, 1)));
    EXPECT_THAT(colourFromText("0 0 0 1"), Optional(ElementsAre(0, 0, 0, 1)));
    EXPECT_THAT(colourFromText("1, 0  0\t,0"), Optional(ElementsAre(1, 0, 0, 0)));
    for (const char *text : {"", ",", "0,0", "0,0,0,0,0", "0,,0,0", "0,0,1.01", "-0.1", "0,0,0,",
                             ",0,0,0", " 0", "0 ", "red", "0;0;0", "0 0 nan"})
        EXPECT_EQ(std::nullopt, colourFromText(text)) << text;
}

TEST(ToolkitValuesTest, ControlCharactersAreDropped)
{
    EXPECT_THAT(printableText("a\tb\x1B[1m\r\nc\x7F"), Optional(std::string("ab[1mc")));
    EXPECT_THAT(printableText("\xC2\x80x\xC2\x9F\xC2\xA0"), Optional(std::string("x\xC2\xA0")));
    EXPECT_THAT(printableText("\xCE\x91\xE4\xB8\xAD"),
                Optional(std::string("\xCE\x91\xE4\xB8\xAD")));
    EXPECT_THAT(printableText("\n"), Optional(std::string()));
}

TEST(ToolkitValuesTest, TextThatIsNotUTF8IsNone)
{
    for (const char *text : {"\xFF", "a\xC2", "\xED\xA0\x80", "\xC0\xAF", "\xF5\x80\x80\x80"})
        EXPECT_EQ(std::nullopt, printableText(text));
}

} // namespace
