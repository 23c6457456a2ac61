#include "KLPrintJob.h"

#include "Environment.h"
#include "KLPrintOptions.h"
#include "MemoryStreams.h"
#include "MinimalPPD.h"
#include "NSInternalInconsistencyException.h"
#include "StreamModel.h"
#include "StreamProcess.h"
#include "Streams.h"
#include "TemporaryFolder.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <stdexcept>
#include <type_traits>

using namespace std::string_literals;
using Platform::TextEncoding;
using Support::LineEdit;
using Support::LineRule;
using Support::modelOfPassingLine;
using Support::modelOfPassingMarker;
using Support::modelOfProcess;
using Support::PassedThrough;
using Support::process;
using Support::ProcessedStream;
using Support::SeenLine;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr char kCannotAdd[] = "Cannot add data while print job is not processing";
constexpr char kCannotFlush[] = "Unable to flush when not processing";

/// The message of the exception that the call raises; empty when it raises none of that type.
template <class Exception, class Call>
std::string messageOf(const Call &call)
{
    try {
        call();
    } catch (const Exception &exception) {
        return exception.what();
    }
    return {};
}

template <class Call>
std::string inconsistencyOf(const Call &call)
{
    return messageOf<NSInternalInconsistencyException>(call);
}

/// The rest of the job's input.
std::string restOf(KLPrintJob &job)
{
    std::string rest;
    while (const auto line = job.readLine())
        rest += *line;
    return rest;
}

PassedThrough passLine(const std::string &input)
{
    const Support::MemoryOutput output;
    KLPrintJob job(Support::openInput(input), true, output.stream(), false);
    const bool found = job.passDataThroughUntilEndOfLine();
    return {found, output.bytes(), restOf(job)};
}

PassedThrough passMarker(const std::string &input, const std::string &marker)
{
    const Support::MemoryOutput output;
    KLPrintJob job(Support::openInput(input), true, output.stream(), false);
    const bool found = job.passDataThroughUntilMarker(marker);
    return {found, output.bytes(), restOf(job)};
}

/// A stream that gives the bytes and fails from then on.
FILE *openFailingInput(const std::string &bytes)
{
    return Support::openStream(
        {.read = [bytes, done = false](char *buffer, std::size_t) mutable -> ssize_t {
            if (std::exchange(done, true)) {
                errno = EIO;
                return -1;
            }
            std::memcpy(buffer, bytes.data(), bytes.size());
            return static_cast<ssize_t>(bytes.size());
        }});
}

} // namespace

// The comparisons of whole results print what differs.
namespace Support {

void PrintTo(const PassedThrough &passed, std::ostream *stream)
{
    *stream << (passed.found ? "found" : "not found") << ", output "
            << testing::PrintToString(passed.output) << ", rest "
            << testing::PrintToString(passed.rest);
}

void PrintTo(const ProcessedStream &processed, std::ostream *stream)
{
    *stream << "output " << testing::PrintToString(processed.output) << ", current line "
            << testing::PrintToString(processed.currentLine) << ", seen";
    for (const SeenLine &seen : processed.seen)
        *stream << ' ' << testing::PrintToString(seen.prefix) << " in "
                << testing::PrintToString(seen.line);
}

} // namespace Support

/// A job over bytes in memory, and what it writes.
class KLPrintJobTest : public testing::Test {
protected:
    /// The job under test, over the bytes.
    KLPrintJob &over(std::string bytes) { return over(Support::openInput(std::move(bytes))); }

    /// The same over a stream, which becomes the job's.
    KLPrintJob &over(FILE *input)
    {
        _job.emplace(input, true, _output.stream(), false);
        return *_job;
    }

    KLPrintJob &job() { return *_job; }
    std::string output() const { return _output.bytes(); }

private:
    Support::MemoryOutput _output;
    std::optional<KLPrintJob> _job;
};

// Streams and their owner.

class KLPrintJobStreamsTest : public testing::Test {
protected:
    FILE *noting(const std::string &name)
    {
        return Support::openStream({.close = [this, name] { closed.push_back(name); }});
    }

    std::vector<std::string> closed;
};

TEST_F(KLPrintJobStreamsTest, ClosesBothStreamsTheInputFirst)
{
    {
        const KLPrintJob job(noting("input"), true, noting("output"), true);
        EXPECT_THAT(closed, IsEmpty());
    }
    EXPECT_THAT(closed, ElementsAre("input", "output"));
}

TEST_F(KLPrintJobStreamsTest, ClosesTheInputAlone)
{
    const Platform::Stream output(noting("output"));
    {
        const KLPrintJob job(noting("input"), true, output.get(), false);
    }
    EXPECT_THAT(closed, ElementsAre("input"));
}

TEST_F(KLPrintJobStreamsTest, ClosesTheOutputAlone)
{
    const Platform::Stream input(noting("input"));
    {
        const KLPrintJob job(input.get(), false, noting("output"), true);
    }
    EXPECT_THAT(closed, ElementsAre("output"));
}

TEST_F(KLPrintJobStreamsTest, ClosesNeitherUnlessTold)
{
    const Platform::Stream input(noting("input"));
    const Platform::Stream output(noting("output"));
    {
        const KLPrintJob job(input.get(), output.get());
    }
    KLPrintJob::printJobWithInputFileOutputFile(input.get(), output.get()).reset();
    EXPECT_THAT(closed, IsEmpty());
}

TEST_F(KLPrintJobStreamsTest, ClassOperationPassesTheCloseFlagsOn)
{
    const Platform::Stream input(noting("input"));
    KLPrintJob::printJobWithInputFileCloseWhenDoneOutputFileCloseWhenDone(input.get(), false,
                                                                          noting("output"), true)
        .reset();
    EXPECT_THAT(closed, ElementsAre("output"));
}

TEST_F(KLPrintJobStreamsTest, ClassOperationsMakeAJobOfADerivedClass)
{
    class DerivedJob : public KLPrintJob {
        using KLPrintJob::KLPrintJob;
    };
    const Platform::Stream input(noting("input"));
    const Platform::Stream output(noting("output"));
    const std::shared_ptr<DerivedJob> plain =
        KLPrintJob::printJobWithInputFileOutputFile<DerivedJob>(input.get(), output.get());
    const std::shared_ptr<DerivedJob> full =
        KLPrintJob::printJobWithInputFileCloseWhenDoneOutputFileCloseWhenDone<DerivedJob>(
            input.get(), false, output.get(), false);
    EXPECT_TRUE(plain && full);
}

TEST_F(KLPrintJobStreamsTest, NeitherReadsNorWritesByItself)
{
    bool touched = false;
    const auto touch = [&touched](const char *, std::size_t size) {
        touched = true;
        return static_cast<ssize_t>(size);
    };
    {
        const KLPrintJob job(Support::openStream({.read =
                                                      [touch](char *bytes, std::size_t size) {
                                                          return touch(bytes, size) > 0 ? 0 : -1;
                                                      }}),
                             true, Support::openStream({.write = touch}), true);
    }
    EXPECT_FALSE(touched);
}

TEST_F(KLPrintJobTest, CarriesTheOptionsItIsGiven)
{
    const Support::TemporaryFolder folder;
    const Support::ScopedEnvironment ppd("PPD", folder.write("printer.ppd", Support::minimalPPD()));
    const auto options = std::make_shared<KLPrintOptions>("");

    EXPECT_EQ(nullptr, over("").printOptions());
    job().setPrintOptions(options);
    EXPECT_EQ(options, job().printOptions());
    EXPECT_EQ(2, options.use_count());
}

// Reading lines.

TEST_F(KLPrintJobTest, ReadsALineWithItsLineFeed)
{
    over("one\ntwo\n");
    EXPECT_EQ("one\n", job().readLine());
    EXPECT_EQ("two\n", job().readLine());
    EXPECT_EQ(std::nullopt, job().readLine());
}

TEST_F(KLPrintJobTest, ReadsALastLineWithoutALineFeed)
{
    over("one\ntwo");
    EXPECT_EQ("one\n", job().readLine());
    EXPECT_EQ("two", job().readLine());
    EXPECT_EQ(std::nullopt, job().readLine());
    EXPECT_EQ(std::nullopt, job().readLine());
}

TEST_F(KLPrintJobTest, ReadsNoLineFromAnEmptyInput)
{
    EXPECT_EQ(std::nullopt, over("").readLine());
}

TEST_F(KLPrintJobTest, CarriageReturnIsAnOrdinaryByteInALine)
{
    over("one\r\ntwo\rthree\n\r");
    EXPECT_EQ("one\r\n", job().readLine());
    EXPECT_EQ("two\rthree\n", job().readLine());
    EXPECT_EQ("\r", job().readLine());
}

TEST_F(KLPrintJobTest, ReadsNULAndAllOtherBytes)
{
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    over(bytes);
    EXPECT_EQ(bytes.substr(0, 11), job().readLine());
    EXPECT_EQ(bytes.substr(11), job().readLine());
}

TEST_F(KLPrintJobTest, ReadsALineOfAnyLength)
{
    const std::string line = std::string(3'000'000, 'x') + '\n';
    over(line + "next");
    EXPECT_EQ(line, job().readLine());
    EXPECT_EQ("next", job().readLine());
}

TEST_F(KLPrintJobTest, ReadErrorEndsALineAndAllReading)
{
    over(openFailingInput("one\ntw"));
    EXPECT_EQ("one\n", job().readLine());
    EXPECT_EQ("tw", job().readLine());
    EXPECT_EQ(std::nullopt, job().readLine());
}

TEST_F(KLPrintJobTest, DoesNotReadOnBehindTheEndOfTheInput)
{
    // Like a terminal: more comes after the end.
    int reads = 0;
    over(Support::openStream({.read = [&reads](char *buffer, std::size_t) -> ssize_t {
        *buffer = ++reads == 1 ? 'x' : '\n';
        return reads == 2 ? 0 : 1;
    }}));
    EXPECT_EQ("x", job().readLine());
    EXPECT_EQ(std::nullopt, job().readLine());
    EXPECT_EQ(2, reads);
}

TEST_F(KLPrintJobTest, DoesNotReadOnBehindAReadError)
{
    int reads = 0;
    over(Support::openStream({.read = [&reads](char *buffer, std::size_t) -> ssize_t {
        *buffer = ++reads == 1 ? 'x' : '\n';
        errno = EIO;
        return reads == 2 ? -1 : 1;
    }}));
    EXPECT_EQ("x", job().readLine());
    EXPECT_EQ(std::nullopt, job().readLine());
    EXPECT_EQ(2, reads);
}

TEST_F(KLPrintJobTest, DecodesALine)
{
    EXPECT_EQ("Gr\xC3\xBC\xC3\x9F"
              "e\n",
              over("Gr\xFC\xDF"
                   "e\n")
                  .readLineWithEncoding(TextEncoding::ISOLatin1));
}

TEST_F(KLPrintJobTest, LineThatDoesNotDecodeIsConsumed)
{
    over("\xFF\ntwo\n");
    EXPECT_EQ(std::nullopt, job().readLineWithEncoding(TextEncoding::UTF8));
    EXPECT_EQ("two\n", job().readLineWithEncoding(TextEncoding::UTF8));
    EXPECT_EQ(std::nullopt, job().readLineWithEncoding(TextEncoding::UTF8));
}

TEST_F(KLPrintJobTest, CurrentLineDecodes)
{
    over("caf\xE9\n");
    EXPECT_EQ(nullptr, job().currentLine());
    EXPECT_EQ(std::nullopt, job().currentLineInEncoding(TextEncoding::UTF8));
    int runs = 0;
    job().whenLineStartsWithStringDo("caf", [&] {
        ++runs;
        EXPECT_EQ("caf\xC3\xA9\n", job().currentLineInEncoding(TextEncoding::ISOLatin1));
        EXPECT_EQ(std::nullopt, job().currentLineInEncoding(TextEncoding::UTF8));
    });
    job().process();
    EXPECT_EQ(1, runs);
}

// Writing.

TEST_F(KLPrintJobTest, WritesAtOnce)
{
    over("").writeData("one\0two"s);
    EXPECT_EQ("one\0two"s, output());
    job().writeString(" Gr\xC3\xBC\xC3\x9F");
    job().writeStringWithEncoding("\xC3\xBC", TextEncoding::ISOLatin1);
    job().writeStringWithEncoding("\xC3\xBC", TextEncoding::UTF16BigEndian);
    EXPECT_EQ("one\0two Gr\xC3\xBC\xC3\x9F\xFC\0\xFC"s, output());
}

TEST_F(KLPrintJobTest, TextThatIsNotUTF8IsWrittenAsItIs)
{
    over("").writeString("\xFF\xFE");
    EXPECT_EQ("\xFF\xFE", output());
}

TEST_F(KLPrintJobTest, NoBytesWriteNothing)
{
    bool written = false;
    FILE *stream = Support::openStream({.write = [&written](const char *, std::size_t size) {
        written = true;
        return static_cast<ssize_t>(size);
    }});
    std::setbuf(stream, nullptr);
    const Platform::Stream input(Support::openInput(""));
    KLPrintJob job(input.get(), false, stream, true);
    job.writeData("");
    EXPECT_FALSE(written);
    job.writeData("x");
    EXPECT_TRUE(written);
}

TEST_F(KLPrintJobTest, TextThatDoesNotFitItsEncodingIsRefusedWhole)
{
    over("line\nrest");
    const auto refusal = [](const auto &call) { return messageOf<std::invalid_argument>(call); };
    const std::string message = "Cannot convert text to the requested encoding";
    const char text[] = "price: 5 \xE2\x82\xAC";
    EXPECT_EQ(message,
              refusal([&] { job().writeStringWithEncoding(text, TextEncoding::ISOLatin1); }));
    EXPECT_EQ(message, refusal([&] {
                  job().passDataThroughUntilMarkerStringWithEncoding(text, TextEncoding::ASCII);
              }));
    job().whenLineStartsWithStringDo("line", [&] {
        EXPECT_EQ(message, refusal([&] {
                      job().insertStringBeforeWithEncoding(text, TextEncoding::ASCII);
                  }));
        EXPECT_EQ(message, refusal([&] {
                      job().addStringAfterWithEncoding(text, TextEncoding::ISOLatin1);
                  }));
    });
    job().process();
    EXPECT_EQ("line\nrest", output());
}

TEST_F(KLPrintJobTest, OutputThatRefusesWritesIsNotReported)
{
    const Platform::Stream full = Platform::openForWriting("/dev/full");
    ASSERT_TRUE(full);
    KLPrintJob job(Support::openInput(std::string(100'000, 'x') + "\nyes\nmore"), true, full.get(),
                   false);
    int runs = 0;
    job.whenLineStartsWithStringDo("yes", [&runs] { ++runs; });
    job.process();
    EXPECT_EQ(1, runs);
    std::fflush(full.get());
    EXPECT_NE(0, std::ferror(full.get()));
}

// Queuing.

TEST_F(KLPrintJobTest, QueuingOutsideProcessingIsRefused)
{
    over("x\n");
    const auto expectRefusals = [this] {
        EXPECT_EQ(kCannotAdd, inconsistencyOf([this] { job().insertDataBefore("1"); }));
        EXPECT_EQ(kCannotAdd, inconsistencyOf([this] { job().insertStringBefore("2"); }));
        EXPECT_EQ(kCannotAdd, inconsistencyOf([this] {
                      job().insertStringBeforeWithEncoding("3", TextEncoding::ASCII);
                  }));
        EXPECT_EQ(kCannotAdd, inconsistencyOf([this] { job().addDataAfter("4"); }));
        EXPECT_EQ(kCannotAdd, inconsistencyOf([this] { job().addStringAfter("5"); }));
        EXPECT_EQ(kCannotAdd, inconsistencyOf([this] {
                      job().addStringAfterWithEncoding("6", TextEncoding::ASCII);
                  }));
    };
    expectRefusals();
    int runs = 0;
    job().whenLineStartsWithStringDo("x", [&runs] { ++runs; });
    job().process();
    expectRefusals();

    EXPECT_EQ(1, runs);
    EXPECT_EQ("x\n", output()) << "what was refused must not have been queued";
}

TEST_F(KLPrintJobTest, QueuedBytesSurroundTheLineInTheOrderOfTheCalls)
{
    over("x\ny\n");
    job().whenLineStartsWithStringDo("x", [this] {
        job().insertDataBefore("1");
        job().addDataAfter("4");
        job().insertStringBefore("2");
        job().addStringAfter("5");
        job().insertStringBeforeWithEncoding("\xC3\xBC", TextEncoding::ISOLatin1);
        job().addStringAfterWithEncoding("6", TextEncoding::UTF16BigEndian);
    });
    job().process();
    EXPECT_EQ("12\xFCx\n45\0006y\n"s, output());
}

TEST_F(KLPrintJobTest, BytesWrittenAtOncePrecedeTheQueuedOnes)
{
    over("x\n");
    job().whenLineStartsWithStringDo("x", [this] {
        job().insertDataBefore("queued ");
        job().writeData("at once ");
    });
    job().process();
    EXPECT_EQ("at once queued x\n", output());
}

TEST_F(KLPrintJobTest, ActionRewritesTheLineInPlace)
{
    EXPECT_EQ("<new>y\n", process("x\ny\n", {{"x", {.replacement = "<new>"}}}).output);
    EXPECT_EQ("y\n", process("x\ny\n", {{"x", {.replacement = ""}}}).output);
}

// Passing through.

TEST_F(KLPrintJobTest, PassesTheRestOfTheInputThrough)
{
    std::string bytes(10'000, 'x'); // more than two blocks
    bytes[5'000] = '\0';
    over("line\n" + bytes);
    EXPECT_EQ("line\n", job().readLine());
    job().passDataThroughUntilEndOfFile();
    EXPECT_EQ(bytes, output());
    EXPECT_EQ(std::nullopt, job().readLine());
}

TEST_F(KLPrintJobTest, PassingThroughEndsAtAReadError)
{
    over(openFailingInput("one\ntw")).passDataThroughUntilEndOfFile();
    EXPECT_EQ("one\ntw", output());

    over(openFailingInput("tw"));
    EXPECT_FALSE(job().passDataThroughUntilEndOfLine());
    over(openFailingInput("tw"));
    EXPECT_FALSE(job().passDataThroughUntilMarker("two"));
    over(openFailingInput("tw"));
    job().whenLineStartsWithStringDo("x", [] {});
    job().process();
    EXPECT_EQ("one\ntwtwtwtw", output());
}

TEST_F(KLPrintJobTest, PassesALineThroughWithItsEnd)
{
    EXPECT_EQ((PassedThrough{true, "one\n", "two"}), passLine("one\ntwo"));
    EXPECT_EQ((PassedThrough{true, "one\r\n", "two"}), passLine("one\r\ntwo"));
    EXPECT_EQ((PassedThrough{true, "\n", "\n"}), passLine("\n\n"));
    EXPECT_EQ((PassedThrough{true, "one\r", ""}), passLine("one\r"));
    EXPECT_EQ((PassedThrough{false, "one", ""}), passLine("one"));
    EXPECT_EQ((PassedThrough{false, "", ""}), passLine(""));
}

TEST_F(KLPrintJobTest, ByteAfterLoneCarriageReturnIsWrittenTwice)
{
    EXPECT_EQ((PassedThrough{true, "A\rB", "B"}), passLine("A\rB"));
    EXPECT_EQ((PassedThrough{true, "\r\r", "\r\n"}), passLine("\r\r\n"));

    over("A\rB");
    EXPECT_TRUE(job().passDataThroughUntilEndOfLine());
    EXPECT_FALSE(job().passDataThroughUntilEndOfLine());
    EXPECT_EQ("A\rBB", output());
}

TEST_F(KLPrintJobTest, PassesAMarkerThrough)
{
    EXPECT_EQ((PassedThrough{true, "xxab", "yy"}), passMarker("xxabyy", "ab"));
    EXPECT_EQ((PassedThrough{true, "ab", ""}), passMarker("ab", "ab"));
    EXPECT_EQ((PassedThrough{true, "x\0\xFF"s, "\0"s}), passMarker("x\0\xFF\0"s, "\0\xFF"s));
    over("Gr\xFC\xDF"
         "e");
    EXPECT_TRUE(
        job().passDataThroughUntilMarkerStringWithEncoding("\xC3\xBC", TextEncoding::ISOLatin1));
    EXPECT_EQ("Gr\xFC", output());
    EXPECT_TRUE(job().passDataThroughUntilMarkerString("e"));
    EXPECT_EQ("Gr\xFC\xDF"
              "e",
              output());
}

TEST_F(KLPrintJobTest, FirstOfTwoMarkersCounts)
{
    EXPECT_EQ((PassedThrough{true, "ab", "ab"}), passMarker("abab", "ab"));
}

TEST_F(KLPrintJobTest, PassesAllThroughWithoutAMarker)
{
    EXPECT_EQ((PassedThrough{false, "xxaxb", ""}), passMarker("xxaxb", "ab"));
    EXPECT_EQ((PassedThrough{false, "xxa", ""}), passMarker("xxa", "ab"));
    EXPECT_EQ((PassedThrough{false, "", ""}), passMarker("", "ab"));
}

TEST_F(KLPrintJobTest, MarkerOverlappingPartialMatchIsMissed)
{
    EXPECT_EQ((PassedThrough{false, "aab", ""}), passMarker("aab", "ab"));
    EXPECT_EQ((PassedThrough{true, "aabab", ""}), passMarker("aabab", "ab"));
    EXPECT_EQ((PassedThrough{false, "\x1b\x1b%-12345X@PJL", ""}),
              passMarker("\x1b\x1b%-12345X@PJL", "\x1b%-12345X"));
}

TEST_F(KLPrintJobTest, EmptyMarkerIsRefused)
{
    over("input");
    const char message[] = "Cannot look for an empty marker";
    EXPECT_EQ(message,
              messageOf<std::invalid_argument>([this] { job().passDataThroughUntilMarker(""); }));
    EXPECT_EQ(message, messageOf<std::invalid_argument>(
                           [this] { job().passDataThroughUntilMarkerString(""); }));
    EXPECT_EQ("", output());
    EXPECT_EQ("input", job().readLine());
}

// Pushing.

TEST_F(KLPrintJobTest, WithoutLineActionsTheInputIsCopiedThenTheEndActionRuns)
{
    over("one\rtwo\n\nthree");
    int runs = 0;
    job().whenJobEndsDo([&] {
        ++runs;
        EXPECT_EQ(kCannotAdd, inconsistencyOf([this] { job().insertDataBefore("x"); }));
        EXPECT_EQ(kCannotAdd, inconsistencyOf([this] { job().addDataAfter("x"); }));
        EXPECT_EQ(nullptr, job().currentLine());
        job().writeData(" end");
    });
    job().process();
    EXPECT_EQ(1, runs);
    EXPECT_EQ("one\rtwo\n\nthree end", output());
}

TEST_F(KLPrintJobTest, WithoutAnyActionTheInputIsCopied)
{
    over("one\rtwo\n").process();
    EXPECT_EQ("one\rtwo\n", output());
}

TEST_F(KLPrintJobTest, EmptyInputRunsOnlyTheEndAction)
{
    over("");
    std::vector<std::string> runs;
    job().whenLineStartsWithStringDo("x", [&] { runs.push_back("line"); });
    job().whenJobEndsDo([&] { runs.push_back("end"); });
    job().process();
    EXPECT_THAT(runs, ElementsAre("end"));
    EXPECT_EQ("", output());
}

TEST_F(KLPrintJobTest, EndActionIsOptional)
{
    over("x\n");
    job().whenLineStartsWithStringDo("x", [] {});
    job().whenJobEndsDo([] { FAIL() << "was taken away"; });
    job().whenJobEndsDo({});
    job().process();
    EXPECT_EQ("x\n", output());
}

TEST_F(KLPrintJobTest, LinesOfOtherBeginningsPassUnchanged)
{
    EXPECT_EQ("one\ntwo\r\nthree", process("one\ntwo\r\nthree", {{"x", {}}}).output);
}

TEST_F(KLPrintJobTest, ByteAfterLoneCarriageReturnIsWrittenTwiceByProcess)
{
    // The doubled byte is not part of the next line, which is tested without it.
    const ProcessedStream result = process("one\rxyz\n", {{"xy", {.before = "<", .after = ">"}}});
    EXPECT_EQ("one\rx<xyz\n>", result.output);
    EXPECT_THAT(result.seen, ElementsAre(SeenLine{"xy", "xyz\n"}));
}

TEST_F(KLPrintJobTest, MatchingLineWithALoneCarriageReturnRunsOnToTheLineFeed)
{
    const ProcessedStream result = process("x one\rtwo\nthree\n", {{"x", {}}});
    EXPECT_THAT(result.seen, ElementsAre(SeenLine{"x", "x one\rtwo\n"}));
    EXPECT_EQ("x one\rtwo\nthree\n", result.output);
}

TEST_F(KLPrintJobTest, EmptyLineCarriesTheNextLineWithItUntested)
{
    const ProcessedStream result = process("\nx1\nx2\n", {{"x", {}}});
    EXPECT_THAT(result.seen, ElementsAre(SeenLine{"x", "x2\n"}));
    EXPECT_EQ("\nx1\nx2\n", result.output);
}

TEST_F(KLPrintJobTest, LineThatEndsWithinAPrefixCarriesTheNextLineWithItUntested)
{
    const ProcessedStream result = process("%\n%%X\n%%Y\n", {{"%%", {}}});
    EXPECT_THAT(result.seen, ElementsAre(SeenLine{"%%", "%%Y\n"}));
    EXPECT_EQ("%\n%%X\n%%Y\n", result.output);
}

TEST_F(KLPrintJobTest, ShorterOfTwoPrefixesCompletesFirst)
{
    const ProcessedStream result = process("abc\n", {{"abc", {}}, {"ab", {}}});
    EXPECT_THAT(result.seen, ElementsAre(SeenLine{"ab", "abc\n"}));
}

TEST_F(KLPrintJobTest, FailedPrefixKeepsComparing)
{
    // "ab" fails at once, yet is found at the third byte while "xbab" is still in the race; both
    // are complete at the same byte, and "ab" sorts first.
    const ProcessedStream result = process("xbab\n", {{"ab", {}}, {"xbab", {}}});
    EXPECT_THAT(result.seen, ElementsAre(SeenLine{"ab", "xbab\n"}));

    // Once all have failed, none is looked for any more.
    EXPECT_THAT(process("xcab\n", {{"ab", {}}, {"xbab", {}}}).seen, IsEmpty());
}

TEST_F(KLPrintJobTest, FailedPrefixStartsAgainFromItsBeginningWithoutTheFailingByte)
{
    // "ab" fails at the second "a" without trying it as a first byte; "aac" keeps the line alive.
    EXPECT_THAT(process("aabx\n", {{"aabxy", {}}, {"ab", {}}}).seen, IsEmpty());
}

TEST_F(KLPrintJobTest, LineAfterAMatchIsMatchedFromScratch)
{
    const ProcessedStream result = process("ab\nb\nab\n", {{"aab", {}}, {"ab", {}}});
    EXPECT_THAT(result.seen, ElementsAre(SeenLine{"ab", "ab\n"}, SeenLine{"ab", "ab\n"}));
}

TEST_F(KLPrintJobTest, LastLineThatOnlyBeginsAPrefixIsDropped)
{
    const ProcessedStream result = process("one\n@PJ", {{"@PJL", {}}});
    EXPECT_EQ("one\n", result.output);
    EXPECT_EQ("@PJ", result.currentLine);
}

TEST_F(KLPrintJobTest, LastLineThatMatchesNeedsNoLineFeed)
{
    const ProcessedStream result = process("one\n@PJL", {{"@PJL", {.after = "!"}}});
    EXPECT_EQ("one\n@PJL!", result.output);
    EXPECT_EQ("", result.currentLine);
}

TEST_F(KLPrintJobTest, BytesQueuedByTheEndActionAreNotWritten)
{
    const LineEdit end = {.before = "before", .after = "after", .atOnce = "at once"};
    EXPECT_EQ("x\nat once", process("x\n", {{"x", {}}}, end).output);
}

TEST_F(KLPrintJobTest, PrefixWithALineFeedTakesTheLineBehindItAlong)
{
    // The prefix is complete at the line feed, and the rest of "the line" is the next one.
    const ProcessedStream result = process("x\none\ntwo\n", {{"x\n", {}}});
    EXPECT_THAT(result.seen, ElementsAre(SeenLine{"x\n", "x\none\n"}));
    EXPECT_EQ("x\none\ntwo\n", result.output);
}

TEST_F(KLPrintJobTest, MatchesBytesOutsideASCII)
{
    const std::string prefix = "\0\xFF\xC3"s;
    const ProcessedStream result = process(prefix + "x\n", {{prefix, {.after = ">"}}});
    EXPECT_THAT(result.seen, ElementsAre(SeenLine{prefix, prefix + "x\n"}));
    EXPECT_EQ(prefix + "x\n>", result.output);
}

TEST_F(KLPrintJobTest, LaterActionForAPrefixReplacesTheEarlier)
{
    over("x\n");
    std::vector<std::string> runs;
    job().whenLineStartsWithStringDo("x", [&] { runs.push_back("earlier"); });
    job().whenLineStartsWithStringDo("x", [&] { runs.push_back("later"); });
    job().process();
    EXPECT_THAT(runs, ElementsAre("later"));
}

TEST_F(KLPrintJobTest, LaterEndActionReplacesTheEarlier)
{
    over("x\n");
    std::vector<std::string> runs;
    job().whenLineStartsWithStringDo(
        "x", [&] { job().whenJobEndsDo([&] { runs.push_back("later"); }); });
    job().whenJobEndsDo([&] { runs.push_back("earlier"); });
    job().process();
    EXPECT_THAT(runs, ElementsAre("later"));
}

TEST_F(KLPrintJobTest, EndActionMaySetAnother)
{
    over("");
    std::vector<std::string> runs;
    job().whenJobEndsDo([&runs, this] {
        const std::string name(100, 'x'); // captured: gone if the running action were
        job().whenJobEndsDo([&runs, name] { runs.push_back(name); });
        runs.push_back("first");
    });
    job().process();
    EXPECT_THAT(runs, ElementsAre("first"));
    job().process();
    EXPECT_THAT(runs, ElementsAre("first", std::string(100, 'x')));
}

TEST_F(KLPrintJobTest, ActionThatReplacesItselfWhileProcessingStaysToTheEnd)
{
    over("x\nx\n");
    std::vector<std::string> runs;
    job().whenLineStartsWithStringDo("x", [&] {
        runs.push_back("x");
        job().whenLineStartsWithStringDo("x", [&] { runs.push_back("other x"); });
    });
    job().process();
    EXPECT_THAT(runs, ElementsAre("x", "x"));
}

/// A stream that ends behind each of the texts; clearerr() lets it go on to the next.
FILE *openInputInPieces(std::vector<std::string> pieces)
{
    return Support::openStream(
        {.read = [pieces = std::move(pieces), at = std::size_t(0),
                  atEnd = true](char *buffer, std::size_t) mutable -> ssize_t {
            atEnd = !atEnd;
            if (atEnd || at == pieces.size())
                return 0;
            const std::string &piece = pieces[at++];
            std::memcpy(buffer, piece.data(), piece.size());
            return static_cast<ssize_t>(piece.size());
        }});
}

TEST_F(KLPrintJobTest, ProcessesAgainFromWhereItStoodWithoutWhatWasLeftOver)
{
    FILE *input = openInputInPieces({"x1\n@P", "x2\n"});
    over(input);
    std::vector<std::string> lines;
    job().whenLineStartsWithStringDo("x", [&] { lines.push_back(*job().currentLine()); });
    job().whenLineStartsWithStringDo("@PJL", [] {});
    job().whenJobEndsDo([&] {
        job().insertDataBefore("queued before");
        job().addDataAfter("queued after");
    });
    job().process();
    EXPECT_EQ("@P", *job().currentLine());
    EXPECT_EQ("x1\n", output());

    std::clearerr(input);
    job().process();
    EXPECT_THAT(lines, ElementsAre("x1\n", "x2\n"));
    EXPECT_EQ("x1\nx2\n", output());
    EXPECT_EQ("", *job().currentLine());
}

TEST_F(KLPrintJobTest, ActionRegisteredWhileProcessingRunsTheNextTime)
{
    FILE *input = openInputInPieces({"x\nnew\n", "new\n"});
    over(input);
    std::vector<std::string> runs;
    job().whenLineStartsWithStringDo("x", [&] {
        runs.push_back("x");
        job().whenLineStartsWithStringDo("new", [&] { runs.push_back("new"); });
    });
    job().process();
    EXPECT_THAT(runs, ElementsAre("x"));
    std::clearerr(input);
    job().process();
    EXPECT_THAT(runs, ElementsAre("x", "new"));
}

TEST_F(KLPrintJobTest, ActionMayReadAndPassThroughBehindItsLine)
{
    over("x\nread\npassed\nx\n");
    int runs = 0;
    job().whenLineStartsWithStringDo("x", [&] {
        if (++runs > 1)
            return;
        EXPECT_EQ("read\n", job().readLine());
        EXPECT_TRUE(job().passDataThroughUntilEndOfLine());
    });
    job().process();
    EXPECT_EQ("passed\nx\nx\n", output());
    EXPECT_EQ(2, runs);
}

TEST_F(KLPrintJobTest, ProcessingWithinAnActionLeavesNothingToFlush)
{
    over("x\nx\nx\n");
    int runs = 0;
    job().whenLineStartsWithStringDo("x", [&] {
        if (++runs > 1)
            return;
        job().insertDataBefore("lost");
        job().addDataAfter("lost");
        job().process();
        EXPECT_EQ(kCannotAdd, inconsistencyOf([this] { job().insertDataBefore("late"); }));
    });
    EXPECT_EQ(kCannotFlush, inconsistencyOf([this] { job().process(); }));
    EXPECT_EQ(3, runs);
    EXPECT_EQ("x\nx\n", output());
}

TEST_F(KLPrintJobTest, ExceptionFromAnActionEndsProcessing)
{
    over("x\nrest\n");
    job().whenLineStartsWithStringDo("x", [this] {
        job().insertDataBefore("lost");
        throw std::runtime_error("no");
    });
    EXPECT_EQ("no", messageOf<std::runtime_error>([this] { job().process(); }));
    EXPECT_EQ(kCannotAdd, inconsistencyOf([this] { job().addDataAfter("x"); }));
    EXPECT_EQ("rest\n", job().readLine());
    EXPECT_EQ("", output());
}

TEST_F(KLPrintJobTest, ActionsAreReleasedWithTheJob)
{
    const auto held = std::make_shared<int>(1);
    over("x\n");
    job().whenLineStartsWithStringDo("x", [held] {});
    job().whenJobEndsDo([held] {});
    EXPECT_EQ(3, held.use_count());
    job().process();
    EXPECT_EQ(3, held.use_count()) << "process() must not keep its own copies";
    over("");
    EXPECT_EQ(1, held.use_count());
}

TEST_F(KLPrintJobTest, EmptyPrefixIsRefused)
{
    over("one\n");
    EXPECT_EQ("Cannot wait for lines that start with an empty text",
              messageOf<std::invalid_argument>(
                  [this] { job().whenLineStartsWithStringDo("", [] { FAIL(); }); }));
    job().process();
    EXPECT_EQ("one\n", output());
}

TEST_F(KLPrintJobTest, MissingLineActionIsRefused)
{
    over("one\n");
    EXPECT_EQ("Cannot wait for lines without an action", messageOf<std::invalid_argument>([this] {
                  job().whenLineStartsWithStringDo("one", {});
              }));
    job().process();
    EXPECT_EQ("one\n", output());
}

static_assert(!std::is_copy_constructible_v<KLPrintJob> && !std::is_copy_assignable_v<KLPrintJob>);

// Against the model.

/// Random small texts over few letters, the same ones in every run.
class RandomText {
public:
    explicit RandomText(std::uint_fast32_t seed) : _engine(seed) {}

    std::size_t numberBelow(std::size_t limit) { return _engine() % limit; }

    std::string text(std::string_view alphabet, std::size_t minLength, std::size_t maxLength)
    {
        std::string result(minLength + numberBelow(maxLength - minLength + 1), ' ');
        std::generate(result.begin(), result.end(),
                      [&] { return alphabet[numberBelow(alphabet.size())]; });
        return result;
    }

private:
    std::mt19937 _engine;
};

/// One to four rules with different prefixes, in their order.
std::vector<LineRule> randomRules(RandomText &random)
{
    std::vector<LineRule> rules;
    for (std::size_t count = 1 + random.numberBelow(4); count > 0; --count) {
        // Two letters and rarely a line feed: prefixes that begin and overlap each other.
        LineRule rule = {random.text("aaaabbbb\n", 1, 5), {}};
        if (random.numberBelow(2) == 0)
            rule.edit = {.before = random.text("<", 0, 1),
                         .after = random.text(">", 0, 1),
                         .atOnce = random.text("!", 0, 1)};
        if (random.numberBelow(4) == 0)
            rule.edit.replacement = random.text("ab\n", 0, 2);
        rules.push_back(rule);
    }
    std::sort(rules.begin(), rules.end(),
              [](const auto &left, const auto &right) { return left.prefix < right.prefix; });
    rules.erase(std::unique(rules.begin(), rules.end(),
                            [](const auto &left, const auto &right) {
                                return left.prefix == right.prefix;
                            }),
                rules.end());
    return rules;
}

TEST(KLPrintJobModelTest, ProcessAgreesOnRandomInput)
{
    RandomText random(20'001);
    const LineEdit end = {.before = "lost", .after = "lost", .atOnce = "."};
    std::size_t matches = 0;
    std::size_t remainders = 0;
    for (int round = 0; round < 40'000; ++round) {
        const std::vector<LineRule> rules = randomRules(random);
        const std::string input = random.text("aaabbb\n\r", 0, 24);
        const ProcessedStream expected = modelOfProcess(input, rules, end);
        ASSERT_EQ(expected, process(input, rules, end)) << testing::PrintToString(input);
        matches += expected.seen.size();
        remainders += expected.currentLine.empty() ? 0 : 1;
    }
    EXPECT_GT(matches, 20'000U) << "the inputs should exercise what they are for";
    EXPECT_GT(remainders, 2'000U);
}

TEST(KLPrintJobModelTest, PassingALineAgreesOnRandomInput)
{
    RandomText random(20'002);
    for (int round = 0; round < 20'000; ++round) {
        const std::string input = random.text("a\0\r\n"s, 0, 8);
        ASSERT_EQ(modelOfPassingLine(input), passLine(input)) << testing::PrintToString(input);
    }
}

TEST(KLPrintJobModelTest, PassingAMarkerAgreesOnRandomInput)
{
    RandomText random(20'003);
    std::size_t found = 0;
    for (int round = 0; round < 40'000; ++round) {
        const std::string input = random.text("ab", 0, 16);
        const std::string marker = random.text("ab", 1, 4);
        const PassedThrough expected = modelOfPassingMarker(input, marker);
        ASSERT_EQ(expected, passMarker(input, marker))
            << testing::PrintToString(marker) << " in " << testing::PrintToString(input);
        found += expected.found ? 1 : 0;
    }
    EXPECT_GT(found, 10'000U);
}

TEST(KLPrintJobModelTest, ModelKeepsTheHandWorkedCases)
{
    EXPECT_EQ((PassedThrough{true, "A\rB", "B"}), modelOfPassingLine("A\rB"));
    EXPECT_EQ((PassedThrough{false, "aab", ""}), modelOfPassingMarker("aab", "ab"));
    EXPECT_EQ((ProcessedStream{"%\n%%X\n%%Y\n", {{"%%", "%%Y\n"}}, ""}),
              modelOfProcess("%\n%%X\n%%Y\n", {{"%%", {}}}, {}));
    EXPECT_EQ((ProcessedStream{"xbab\n", {{"ab", "xbab\n"}}, ""}),
              modelOfProcess("xbab\n", {{"ab", {}}, {"xbab", {}}}, {}));
    EXPECT_EQ((ProcessedStream{"xbab\n", {{"xbab", "xbab\n"}}, ""}),
              modelOfProcess("xbab\n", {{"xbab", {}}, {"ab", {}}}, {}));
    EXPECT_EQ((ProcessedStream{"one\n.", {}, "@PJ"}),
              modelOfProcess("one\n@PJ", {{"@PJL", {}}}, {.before = "lost", .atOnce = "."}));
}
