#include "KLPJLHandler.h"

#include "MemoryStreams.h"
#include "NSInternalInconsistencyException.h"
#include "Streams.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const std::string kMarker = "\x1b%-12345X";
const std::string kPrefix = "@PJL COMMENT DSSC PRINT ";
const std::string kEnterLanguage = "@PJL ENTER LANGUAGE = POSTSCRIPT\r\n";

void leaveAlone(KLPJLHandler &, const std::string &) {}

} // namespace

/// A header walked through a handler, and what came of it.
class KLPJLHandlerTest : public testing::Test {
protected:
    /// Walks the bytes with the action, with a handler of the class.
    /// @return every byte written
    template <class Handler = KLPJLHandler>
    std::string walk(const std::string &input, const KLPJLHandler::Action &action)
    {
        return walk<Handler>(Support::openInput(input), action);
    }

    /// The same over a stream, which is closed with the test.
    template <class Handler = KLPJLHandler>
    std::string walk(FILE *input, const KLPJLHandler::Action &action)
    {
        const Support::MemoryOutput output;
        _job = std::make_shared<KLPrintJob>(input, true, output.stream(), false);
        KLPJLHandler::enumeratePJLFromPrintJobUsingBlock<Handler>(_job, action);
        return output.bytes();
    }

    /// An action that does what the edit says with the lines that begin with the text.
    static KLPJLHandler::Action on(const std::string &beginning,
                                   const std::function<void(KLPJLHandler &)> &edit)
    {
        return [=](KLPJLHandler &handler, const std::string &line) {
            if (line.starts_with(beginning))
                edit(handler);
        };
    }

    /// An action that leaves all lines alone and keeps them in `lines`.
    KLPJLHandler::Action noting()
    {
        return [this](KLPJLHandler &, const std::string &line) { lines.push_back(line); };
    }

    /// What the last walk left unread.
    std::string unread()
    {
        std::string bytes;
        while (const auto line = _job->readLine())
            bytes += *line;
        return bytes;
    }

    std::vector<std::string> lines;

private:
    std::shared_ptr<KLPrintJob> _job;
};

// The walk.

TEST_F(KLPJLHandlerTest, WalksTheLinesFromTheMarkerToTheLanguage)
{
    const std::string header =
        "noise\n" + kMarker + "@PJL JOB\r\n" + kPrefix + "COLLATE=ON\r\n" + kEnterLanguage;
    std::vector<bool> areDSSC;
    const std::string output =
        walk(header + "%!PS\n%%EOF\n", [&](KLPJLHandler &handler, const std::string &line) {
            lines.push_back(line);
            areDSSC.push_back(handler.currentLineIsDSSC());
        });
    EXPECT_THAT(lines, ElementsAre("@PJL JOB\r\n", kPrefix + "COLLATE=ON\r\n", kEnterLanguage));
    EXPECT_THAT(areDSSC, ElementsAre(false, true, false));
    EXPECT_EQ(header, output);
    EXPECT_EQ("%!PS\n%%EOF\n", unread());
}

TEST_F(KLPJLHandlerTest, EverythingUpToTheMarkerIsCopiedFirst)
{
    const Support::MemoryOutput output;
    const auto job = std::make_shared<KLPrintJob>(Support::openInput("before" + kMarker + "behind"),
                                                  true, output.stream(), false);
    KLPJLHandler handler(job);
    EXPECT_EQ("", output.bytes());
    handler.moveToFirstPJLLine();
    EXPECT_EQ("before" + kMarker, output.bytes());
    EXPECT_FALSE(handler.currentLineIsDSSC());
    EXPECT_EQ(std::nullopt, handler.DSSCCommand());
}

TEST_F(KLPJLHandlerTest, HeaderLeftAloneComesOutByteForByte)
{
    const std::string header = kMarker + "@PJL\r\n@PJL SET X=\"1\"\n\n  @PJL\t\n@PJL A\rB\n" +
                               kPrefix + "\r\n" + kEnterLanguage;
    EXPECT_EQ(header, walk(header, leaveAlone));
}

TEST_F(KLPJLHandlerTest, HeaderWithoutTheLanguageIsWalkedToItsLastLine)
{
    EXPECT_EQ(kMarker + "@PJL A\n@PJL B", walk(kMarker + "@PJL A\n@PJL B", noting()));
    EXPECT_THAT(lines, ElementsAre("@PJL A\n", "@PJL B"));
}

TEST_F(KLPJLHandlerTest, LastLineWithoutALineEndIsEditedLikeAnyOther)
{
    EXPECT_EQ(kMarker + "before\n@PJL Bafter\n",
              walk(kMarker + "@PJL B", on("@PJL B", [](KLPJLHandler &handler) {
                       handler.insertLineBeforeCurrentLine("before\n");
                       handler.addLineAfterCurrentLine("after\n");
                   })));
}

TEST_F(KLPJLHandlerTest, InputWithoutAMarkerIsCopiedAndNotWalked)
{
    EXPECT_EQ("@PJL A\n" + kEnterLanguage, walk("@PJL A\n" + kEnterLanguage, noting()));
    EXPECT_THAT(lines, IsEmpty());
}

TEST_F(KLPJLHandlerTest, EmptyInputIsNotWalked)
{
    EXPECT_EQ("", walk("", noting()));
    EXPECT_THAT(lines, IsEmpty());
}

TEST_F(KLPJLHandlerTest, MarkerAtTheVeryEndIsCopied)
{
    EXPECT_EQ("before" + kMarker, walk("before" + kMarker, noting()));
    EXPECT_THAT(lines, IsEmpty());
}

TEST_F(KLPJLHandlerTest, SecondMarkerIsPartOfALine)
{
    const std::string input = kMarker + "@PJL A\n" + kMarker + "@PJL B\n" + kEnterLanguage;
    EXPECT_EQ(input, walk(input, noting()));
    EXPECT_THAT(lines, ElementsAre("@PJL A\n", kMarker + "@PJL B\n", kEnterLanguage));
}

TEST_F(KLPJLHandlerTest, EscapeBeforeTheMarkerHidesIt)
{
    const std::string input = "\x1b" + kMarker + "@PJL A\n";
    EXPECT_EQ(input, walk(input, noting()));
    EXPECT_THAT(lines, IsEmpty());
}

TEST_F(KLPJLHandlerTest, LinesMayHoldNULBytes)
{
    const std::string input = kMarker + "@PJL \0A\n\0\n"s + kEnterLanguage;
    EXPECT_EQ(input, walk(input, noting()));
    EXPECT_THAT(lines, ElementsAre("@PJL \0A\n"s, "\0\n"s, kEnterLanguage));
}

TEST_F(KLPJLHandlerTest, UTF8LinesComeOutByteForByte)
{
    const std::string input = kMarker + "@PJL JOB NAME=\"\xC3\xA9 e\xCC\x81 \xF0\x9F\x96\xA8\"\n";
    EXPECT_EQ(input, walk(input, leaveAlone));
}

TEST_F(KLPJLHandlerTest, LineThatIsNotUTF8IsLostAndEndsTheWalk)
{
    EXPECT_EQ(kMarker + "@PJL A\n",
              walk(kMarker + "@PJL A\n@PJL \xFF\n@PJL B\n" + kEnterLanguage, noting()));
    EXPECT_THAT(lines, ElementsAre("@PJL A\n"));
    EXPECT_EQ("@PJL B\n" + kEnterLanguage, unread());
}

TEST_F(KLPJLHandlerTest, ReadErrorEndsTheWalkAsTheEndDoes)
{
    const std::string bytes = kMarker + "@PJL A\n@PJ";
    FILE *input = Support::openStream(
        {.read = [&bytes, done = false](char *buffer, std::size_t) mutable -> ssize_t {
            if (std::exchange(done, true))
                return -1;
            bytes.copy(buffer, bytes.size());
            return static_cast<ssize_t>(bytes.size());
        }});
    EXPECT_EQ(bytes, walk(input, noting()));
    EXPECT_THAT(lines, ElementsAre("@PJL A\n", "@PJ"));
}

TEST_F(KLPJLHandlerTest, OutputThatRefusesWritesDoesNotStopTheWalk)
{
    const Platform::Stream full = Platform::openForWriting("/dev/full");
    ASSERT_TRUE(full);
    std::setbuf(full.get(), nullptr);
    const auto job = std::make_shared<KLPrintJob>(Support::openInput(kMarker + "@PJL A\n@PJL B\n"),
                                                  true, full.get(), false);
    KLPJLHandler::enumeratePJLFromPrintJobUsingBlock(job, noting());
    EXPECT_THAT(lines, ElementsAre("@PJL A\n", "@PJL B\n"));
    EXPECT_NE(0, std::ferror(full.get()));
}

// The end of the walk.

TEST_F(KLPJLHandlerTest, LanguageInOtherLettersOrBehindBlanksDoesNotEndTheWalk)
{
    for (const auto *line : {"@pjl enter language = POSTSCRIPT\r\n", " @PJL ENTER LANGUAGE = PCL\n",
                             "@PJL  ENTER LANGUAGE\n", "@PJL ENTER LANGUAG\n"}) {
        lines.clear();
        walk(kMarker + line + "@PJL B\n", noting());
        EXPECT_THAT(lines, ElementsAre(line, "@PJL B\n"));
    }
}

TEST_F(KLPJLHandlerTest, LanguageEndsTheWalkWhateverFollowsTheWords)
{
    for (const auto *line : {"@PJL ENTER LANGUAGE\n", "@PJL ENTER LANGUAGES\n"}) {
        lines.clear();
        walk(kMarker + line + "@PJL B\n", noting());
        EXPECT_THAT(lines, ElementsAre(line));
    }
}

TEST_F(KLPJLHandlerTest, RemovedEnterLanguageLineStillEndsTheWalk)
{
    EXPECT_EQ(kMarker, walk(kMarker + kEnterLanguage + "@PJL B\n",
                            [](auto &handler, auto &) { handler.removeCurrentLine(); }));
    EXPECT_EQ("@PJL B\n", unread());
}

TEST_F(KLPJLHandlerTest, ReplacedEnterLanguageLineDoesNotEndTheWalk)
{
    EXPECT_EQ(kMarker + "@PJL X\n@PJL B\n", walk(kMarker + kEnterLanguage + "@PJL B\n",
                                                 on(kEnterLanguage, [](KLPJLHandler &handler) {
                                                     handler.replaceCurrentLine("@PJL X\n");
                                                 })));
}

TEST_F(KLPJLHandlerTest, LineReplacedByEnterLanguageEndsTheWalk)
{
    EXPECT_EQ(kMarker + kEnterLanguage,
              walk(kMarker + "@PJL A\n@PJL B\n", on("@PJL A", [](KLPJLHandler &handler) {
                       handler.replaceCurrentLine(kEnterLanguage);
                   })));
    EXPECT_EQ("@PJL B\n", unread());
}

TEST_F(KLPJLHandlerTest, EnterLanguageAmongTheAddedLinesDoesNotEndTheWalk)
{
    EXPECT_EQ(kMarker + kEnterLanguage + "@PJL A\n" + kEnterLanguage + "@PJL B\n",
              walk(kMarker + "@PJL A\n@PJL B\n", on("@PJL A", [](KLPJLHandler &handler) {
                       handler.insertLineBeforeCurrentLine(kEnterLanguage);
                       handler.addLineAfterCurrentLine(kEnterLanguage);
                   })));
}

// Editing lines.

TEST_F(KLPJLHandlerTest, LinesStandAroundTheCurrentOneInTheOrderOfTheCalls)
{
    EXPECT_EQ(kMarker + "1\n" + kPrefix + "2\r\n3no end@PJL A\n4" + kPrefix + "5\r\n6\n@PJL B\n",
              walk(kMarker + "@PJL A\n@PJL B\n", on("@PJL A", [](KLPJLHandler &handler) {
                       handler.insertLineBeforeCurrentLine("1\n");
                       handler.addLineAfterCurrentLine("4");
                       handler.insertDSSCLineBeforeCurrentLineWithFormat("%d", 2);
                       handler.addDSSCLineAfterCurrentLineWithFormat("%d", 5);
                       handler.insertLineBeforeCurrentLine("3no end");
                       handler.addLineAfterCurrentLine("6\n");
                   })));
}

TEST_F(KLPJLHandlerTest, EveryLineMayGetLinesAroundIt)
{
    EXPECT_EQ(kMarker + "<A\n><B\n>",
              walk(kMarker + "A\nB\n", [](KLPJLHandler &handler, const std::string &) {
                  handler.insertLineBeforeCurrentLine("<");
                  handler.addLineAfterCurrentLine(">");
              }));
}

TEST_F(KLPJLHandlerTest, LinesAroundOneLineAreNotCarriedOverToTheNext)
{
    EXPECT_EQ(kMarker + "before\n@PJL A\nafter\n@PJL B\n",
              walk(kMarker + "@PJL A\n@PJL B\n", on("@PJL A", [](KLPJLHandler &handler) {
                       handler.insertLineBeforeCurrentLine("before\n");
                       handler.addLineAfterCurrentLine("after\n");
                   })));
}

TEST_F(KLPJLHandlerTest, RemovalAndReplacementAreNotCarriedOverToTheNextLine)
{
    EXPECT_EQ(kMarker + "@PJL C\n",
              walk(kMarker + "@PJL A\n@PJL C\n", on("@PJL A", [](KLPJLHandler &handler) {
                       handler.replaceCurrentLine("@PJL X\n");
                       handler.removeCurrentLine();
                   })));
}

TEST_F(KLPJLHandlerTest, RemovedLineWithADSSCLineAddedLeavesOnlyThat)
{
    EXPECT_EQ(kMarker + kPrefix + "COLLATE=ON\r\n@PJL B\n",
              walk(kMarker + "@PJL A\n@PJL B\n", on("@PJL A", [](KLPJLHandler &handler) {
                       handler.removeCurrentLine();
                       handler.addDSSCLineAfterCurrentLineWithFormat("COLLATE=%@", "ON");
                   })));
}

TEST_F(KLPJLHandlerTest, ReplacementStandsAsItIs)
{
    EXPECT_EQ(kMarker + "no end@PJL B\n",
              walk(kMarker + "@PJL A\r\n@PJL B\n", on("@PJL A", [](KLPJLHandler &handler) {
                       handler.replaceCurrentLine("no end");
                   })));
    EXPECT_EQ(kMarker + kPrefix + "ACCESSCODE=42\r\n",
              walk(kMarker + kPrefix + "ACCESSCODE=\n", on(kPrefix, [](KLPJLHandler &handler) {
                       handler.replaceCurrentLineWithDSSCLineWithFormat("ACCESSCODE=%@", "42");
                   })));
}

TEST_F(KLPJLHandlerTest, ReplacingDoesNotBringARemovedLineBack)
{
    EXPECT_EQ(kMarker, walk(kMarker + "@PJL A\n", [](KLPJLHandler &handler, const std::string &) {
                  handler.removeCurrentLine();
                  handler.replaceCurrentLine("@PJL X\n");
              }));
}

TEST_F(KLPJLHandlerTest, LaterReplacementWins)
{
    EXPECT_EQ(kMarker + "2\n",
              walk(kMarker + "@PJL A\n", [](KLPJLHandler &handler, const std::string &) {
                  handler.replaceCurrentLine("1\n");
                  handler.replaceCurrentLine("2\n");
              }));
}

TEST_F(KLPJLHandlerTest, ActionKeepsTheLineAsReadWhenItReplacesIt)
{
    walk(kMarker + "@PJL A\n", [this](KLPJLHandler &handler, const std::string &line) {
        handler.replaceCurrentLine("@PJL " + std::string(1000, 'X'));
        lines.push_back(line);
    });
    EXPECT_THAT(lines, ElementsAre("@PJL A\n"));
}

TEST_F(KLPJLHandlerTest, ExceptionFromTheActionEndsTheWalkBeforeItsLineIsWritten)
{
    EXPECT_THROW(walk(kMarker + "@PJL A\n@PJL B\n",
                      [](KLPJLHandler &, const std::string &) { throw std::runtime_error("no"); }),
                 std::runtime_error);
    EXPECT_EQ("@PJL B\n", unread());
}

TEST_F(KLPJLHandlerTest, EmptyActionThrowsAtTheFirstLine)
{
    EXPECT_THROW(walk(kMarker + "@PJL A\n@PJL B\n", nullptr), std::bad_function_call);
    EXPECT_EQ("@PJL B\n", unread());
    EXPECT_EQ(kMarker, walk(kMarker, nullptr)) << "no line, no call";
}

// DSSC lines.

TEST_F(KLPJLHandlerTest, FormatsADSSCLine)
{
    EXPECT_EQ(kPrefix + "USERLOGIN=user1\r\n",
              KLPJLHandler::formatDSSCLine("USERLOGIN=%@", "user1"));
    EXPECT_EQ(kPrefix + "FORCE_DEVICECOLOR=0 x\r\n",
              KLPJLHandler::formatDSSCLineArguments("FORCE_DEVICECOLOR=%d %s", {0, "x"}));
    EXPECT_EQ(kPrefix + "\r\n", KLPJLHandler::formatDSSCLine(""));
}

TEST_F(KLPJLHandlerTest, PercentSignsInTheSettingAreNotInterpretedAgain)
{
    EXPECT_EQ(kPrefix + "USERLOGIN=50%@ %d %s%\r\n",
              KLPJLHandler::formatDSSCLine("USERLOGIN=%@", "50%@ %d %s%"));
    EXPECT_EQ(kPrefix + "100%@\r\n", KLPJLHandler::formatDSSCLine("100%%@"));
}

TEST_F(KLPJLHandlerTest, MalformedFormatIsRefusedAndLeavesTheLineAlone)
{
    EXPECT_EQ(kMarker + "@PJL A\n",
              walk(kMarker + "@PJL A\n", [](KLPJLHandler &handler, const std::string &) {
                  EXPECT_THROW(handler.replaceCurrentLineWithDSSCLineWithFormat("X=%@"),
                               std::invalid_argument);
                  EXPECT_THROW(handler.insertDSSCLineBeforeCurrentLineWithFormat("X=%d", "text"),
                               std::invalid_argument);
                  EXPECT_THROW(handler.addDSSCLineAfterCurrentLineWithFormat("X=%"),
                               std::invalid_argument);
              }));
}

namespace {

/// A handler that speaks another dialect.
class OtherHandler : public KLPJLHandler {
public:
    using KLPJLHandler::KLPJLHandler;

protected:
    std::string DSSCLine(std::string_view format, Arguments arguments) const override
    {
        return "@OTHER " + Platform::objectFormatWithArguments(format, arguments) + "\n";
    }
};

} // namespace

TEST_F(KLPJLHandlerTest, DerivedClassChangesEveryDSSCLine)
{
    EXPECT_EQ(kMarker + "@OTHER B=1\n@OTHER C=2\n@OTHER A=3\n",
              walk<OtherHandler>(kMarker + "@PJL A\n", on("@PJL A", [](KLPJLHandler &handler) {
                                     handler.insertDSSCLineBeforeCurrentLineWithFormat("B=%d", 1);
                                     handler.replaceCurrentLineWithDSSCLineWithFormat("C=%d", 2);
                                     handler.addDSSCLineAfterCurrentLineWithFormat("A=%d", 3);
                                 })));
}

TEST_F(KLPJLHandlerTest, StaticFunctionsDoNotFollowADerivedClass)
{
    EXPECT_EQ(kPrefix + "A=1\r\n", OtherHandler::formatDSSCLine("A=%d", 1));
    EXPECT_EQ(kPrefix + "A=1\r\n", OtherHandler::formatDSSCLineArguments("A=%d", {1}));
}

TEST_F(KLPJLHandlerTest, LineIsDSSCOnlyWithTheWholePrefix)
{
    struct Case {
        std::string line;
        bool isDSSC;
    };
    const std::vector<Case> cases = {
        {kPrefix + "X\n", true},
        {kPrefix + "\n", true},
        {kPrefix, true},
        {"@PJL COMMENT DSSC PRINT\n", false},
        {"@PJL COMMENT DSSC BOX BOX=1\r\n", false},
        {"@PJL COMMENT dssc PRINT X\n", false},
        {" " + kPrefix + "X\n", false},
        {"@PJL COMMENT DSSC  PRINT X\n", false},
    };
    for (const Case &expected : cases) {
        int runs = 0;
        walk(kMarker + expected.line, [&](KLPJLHandler &handler, const std::string &) {
            ++runs;
            EXPECT_EQ(expected.isDSSC, handler.currentLineIsDSSC()) << expected.line;
            EXPECT_EQ(expected.isDSSC, handler.DSSCCommand().has_value()) << expected.line;
        });
        EXPECT_EQ(1, runs);
    }
}

TEST_F(KLPJLHandlerTest, CommandIsTheRestOfTheLineWithItsEnd)
{
    const auto noteCommand = [this](KLPJLHandler &handler, const std::string &) {
        lines.push_back(handler.DSSCCommand().value_or("none"));
    };
    walk(kMarker + kPrefix + "COLLATE=ON\r\n" + kPrefix + "\n@PJL\n" + kPrefix, noteCommand);
    EXPECT_THAT(lines, ElementsAre("COLLATE=ON\r\n", "\n", "none", ""));
}

TEST_F(KLPJLHandlerTest, CommandIsCutFromTheReplacementWhileTheFlagDescribesTheLineAsRead)
{
    walk(kMarker + kPrefix + "COLLATE=ON\r\n", [](KLPJLHandler &handler, const std::string &) {
        handler.replaceCurrentLine("123456789012345678901234REST\n");
        EXPECT_TRUE(handler.currentLineIsDSSC());
        EXPECT_EQ("REST\n", handler.DSSCCommand());

        handler.replaceCurrentLine("123456789012345678901234");
        EXPECT_EQ("", handler.DSSCCommand());
    });
    walk(kMarker + "@PJL A\n", [](KLPJLHandler &handler, const std::string &) {
        handler.replaceCurrentLineWithDSSCLineWithFormat("COLLATE=ON");
        EXPECT_FALSE(handler.currentLineIsDSSC());
        EXPECT_EQ(std::nullopt, handler.DSSCCommand());
    });
}

TEST_F(KLPJLHandlerTest, CommandIsCutByCharactersNotBytes)
{
    walk(kMarker + kPrefix + "X\n", [](KLPJLHandler &handler, const std::string &) {
        // 23 letters and one of two bytes make 24 characters.
        handler.replaceCurrentLine("12345678901234567890123\xC3\xA9REST\n");
        EXPECT_EQ("REST\n", handler.DSSCCommand());
    });
}

TEST_F(KLPJLHandlerTest, CommandOfATooShortReplacementRaises)
{
    int runs = 0;
    walk(kMarker + kPrefix + "X\n", [&runs](KLPJLHandler &handler, const std::string &) {
        ++runs;
        handler.replaceCurrentLine("12345678901234567890123");
        EXPECT_THROW(handler.DSSCCommand(), std::out_of_range);
        // 23 characters, 24 bytes
        handler.replaceCurrentLine("1234567890123456789012\xC3\xA9");
        EXPECT_THROW(handler.DSSCCommand(), std::out_of_range);
        handler.replaceCurrentLine("");
        EXPECT_THROW(handler.DSSCCommand(), std::out_of_range);
    });
    EXPECT_EQ(1, runs);
}

TEST_F(KLPJLHandlerTest, ThereIsNoCommandOnceTheLinesAreOver)
{
    const auto job =
        std::make_shared<KLPrintJob>(Support::openInput(kPrefix + "X\n"), true, stdout, false);
    KLPJLHandler handler(job);
    handler.enumeratePJLUsingBlock(
        [](KLPJLHandler &current, const std::string &) { current.removeCurrentLine(); });
    EXPECT_EQ(std::nullopt, handler.DSSCCommand());
}

// Lines that are being written.

TEST_F(KLPJLHandlerTest, LinesCannotBeChangedWhileTheyAreBeingWritten)
{
    KLPJLHandler *handler = nullptr;
    std::string written;
    std::vector<std::string> refused;
    const auto tryTo = [&](const auto &change) {
        try {
            change();
        } catch (const NSInternalInconsistencyException &exception) {
            refused.push_back(written + ": " + exception.what());
        }
    };
    FILE *output = Support::openStream({.write = [&](const char *bytes, std::size_t size) {
        written.append(bytes, size);
        if (written == "before") {
            tryTo([&] { handler->insertLineBeforeCurrentLine("new "); });
            tryTo([&] { handler->insertDSSCLineBeforeCurrentLineWithFormat("new"); });
        }
        if (written == "before@PJL A\nafter") {
            tryTo([&] { handler->addLineAfterCurrentLine("new "); });
            tryTo([&] { handler->addDSSCLineAfterCurrentLineWithFormat("new"); });
        }
        return static_cast<ssize_t>(size);
    }});
    std::setbuf(output, nullptr); // each text is written as it comes
    const auto job =
        std::make_shared<KLPrintJob>(Support::openInput("@PJL A\n@PJL B\n"), true, output, true);
    KLPJLHandler walking(job);
    handler = &walking;
    walking.enumeratePJLUsingBlock(on("@PJL A", [](KLPJLHandler &current) {
        current.insertLineBeforeCurrentLine("before");
        current.addLineAfterCurrentLine("after");
    }));

    const std::string message = ": Cannot change lines while they are being written";
    EXPECT_THAT(refused,
                ElementsAre("before" + message, "before" + message, "before@PJL A\nafter" + message,
                            "before@PJL A\nafter" + message));
    EXPECT_EQ("before@PJL A\nafter@PJL B\n", written) << "refused lines must not appear";
}

TEST_F(KLPJLHandlerTest, LinesBehindMayBeAddedWhileThoseBeforeAreBeingWritten)
{
    KLPJLHandler *handler = nullptr;
    std::string written;
    FILE *output = Support::openStream({.write = [&](const char *bytes, std::size_t size) {
        written.append(bytes, size);
        if (written == "before")
            handler->addLineAfterCurrentLine("after");
        return static_cast<ssize_t>(size);
    }});
    std::setbuf(output, nullptr);
    const auto job =
        std::make_shared<KLPrintJob>(Support::openInput("@PJL A\n"), true, output, true);
    KLPJLHandler walking(job);
    handler = &walking;
    walking.enumeratePJLUsingBlock(
        on("@PJL A", [](KLPJLHandler &current) { current.insertLineBeforeCurrentLine("before"); }));
    EXPECT_EQ("before@PJL A\nafter", written);
}
