#include "KLToolkitProcessor.h"

#include "ChildProcess.h"
#include "Environment.h"
#include "KLFileUtilities.h"
#include "MinimalPPD.h"
#include "Module.h"
#include "TemporaryFolder.h"
#include "ppdLibrary.h"

#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <locale>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

namespace {

constexpr char kDomain[] = "KLToolkitProcessorErrorDomain";

/// The command lines that a toolkit was called with, program name left out.
using Calls = std::vector<std::vector<std::string>>;

/// A scripted toolkit with a job, a queue's PPD and a temporary directory of its own.
///
/// The toolkit notes how it is called and copies its input to its output with "+COMMAND" behind
/// it, unless it has been told to fail on that command.
class KLToolkitProcessorTest : public testing::Test {
protected:
    KLToolkitProcessorTest() { fs::create_directory(temporaries); }
    ~KLToolkitProcessorTest() override
    {
        fs::create_directory(temporaries); // where a test has removed it
        for (const std::string &name : temporaryNames())
            KLFileUtilities::keepFile(temporaries + "/" + name);
    }

    /// A toolkit that runs these lines once it has noted its call; "$D" is the test's folder, "$1"
    /// the command, "$input" and "$output" are the files.
    std::string writeToolkit(const std::string &lines) const
    {
        return folder.writeScript("toolkit", "D='" + folder.path() +
                                                 "'\n"
                                                 "printf '%s\\0' \"$#\" \"$@\" >> $D/calls\n"
                                                 "for a; do input=$output; output=$a; done\n" +
                                                 lines);
    }

    /// Tells the toolkit to fail whenever it is called with this command.
    void failOn(const std::string &command, int exitStatus = 1) const
    {
        folder.write("fail-" + command, std::to_string(exitStatus));
    }

    Calls calls() const
    {
        Calls calls;
        if (!fs::exists(folder.file("calls")))
            return calls;
        std::istringstream record(Support::readFile(folder.file("calls")));
        for (std::string word; std::getline(record, word, '\0');) {
            std::vector<std::string> call(std::stoul(word));
            for (std::string &argument : call)
                std::getline(record, argument, '\0');
            calls.push_back(call);
        }
        return calls;
    }

    /// A call's command and options: all but the two files.
    static std::vector<std::string> settingsOf(std::vector<std::string> call)
    {
        call.resize(call.size() - 2);
        return call;
    }

    /// The names in the temporary directory.
    std::vector<std::string> temporaryNames() const
    {
        std::vector<std::string> names;
        for (const auto &entry : fs::directory_iterator(temporaries))
            names.push_back(entry.path().filename());
        return names;
    }

    /// The option store of a job with this option string.
    KLPrintOptions options(const std::string &optionString = "") const
    {
        const Support::ScopedEnvironment ppd("PPD",
                                             folder.write("queue.ppd", Support::minimalPPD()));
        return KLPrintOptions(optionString);
    }

    /// Applies the toolkit to the job. The text box is 200 by 40 points whatever is measured.
    std::string apply(KLPrintOptions &settings)
    {
        return processor().applyToolkitToFileWithOptionsAndReturnErrors(jobPath, settings, &errors);
    }
    std::string apply(const std::string &optionString)
    {
        KLPrintOptions settings = options(optionString);
        return apply(settings);
    }

    KLToolkitProcessor processor() const
    {
        return KLToolkitProcessor(toolkit, [](auto &, auto &, double) {
            return Platform::TextSize{200, 40};
        });
    }

    /// Runs "command --flag" on the job by a toolkit that does as the lines say.
    std::optional<std::string> process(const std::string &lines)
    {
        return KLToolkitProcessor(writeToolkit(lines))
            .processWithArgumentsAndReturnError(jobPath, {"command", "--flag"}, &error);
    }

    /// The call for a watermark "x" with these further settings: "place=top".
    std::vector<std::string> watermarkCall(const std::vector<std::string> &settings)
    {
        std::string text = "com.kalmira.pde.watermark.text=x";
        for (const std::string &setting : settings)
            text += " com.kalmira.pde.watermark." + setting;
        fs::remove(folder.file("calls"));
        folder.write("job.ps", "page");
        return onlyCall(text);
    }

    /// The one command that a job with these options runs.
    std::vector<std::string> onlyCall(const std::string &optionString)
    {
        apply(optionString);
        const Calls all = calls();
        EXPECT_EQ(1U, all.size());
        return all.empty() ? std::vector<std::string>() : settingsOf(all.front());
    }

    Support::TemporaryFolder folder;
    std::string temporaries = folder.file("tmp");
    Support::ScopedEnvironment temporaryDirectory{"TMPDIR", temporaries};
    std::string jobPath = folder.write("job.ps", "page");
    std::string toolkit = writeToolkit("[ -f $D/fail-$1 ] && exit $(cat $D/fail-$1)\n"
                                       "{ cat \"$input\"; printf '+%s' $1; } > \"$output\"\n");
    std::optional<KLError> error;
    std::vector<KLError> errors;
};

constexpr char kCopy[] = "cat \"$input\" > \"$output\"";

} // namespace

// The runner

TEST_F(KLToolkitProcessorTest, KeepsACopyOfItsPath)
{
    std::string path = "/first";
    KLToolkitProcessor processor(path);
    path = "/other";
    EXPECT_EQ("/first", processor.toolkitPath());
    processor.setToolkitPath("/second");
    EXPECT_EQ("/second", processor.toolkitPath());
}

TEST_F(KLToolkitProcessorTest, RunsTheSetPath)
{
    KLToolkitProcessor processor("/missing");
    processor.setToolkitPath(toolkit);
    EXPECT_TRUE(processor.processWithArgumentsAndReturnError(jobPath, {"command"}));
}

TEST_F(KLToolkitProcessorTest, RunsTheFileThatWasLookedAtWhateverItsPathLeadsTo)
{
    fs::copy_file("/usr/bin/true", folder.file("program"));
    auto program = Platform::openTrustedProgram(folder.file("program"), geteuid());
    fs::rename(toolkit, program.path); // which would note its call
    KLToolkitProcessor processor(std::move(program));
    EXPECT_EQ(folder.file("program"), processor.toolkitPath());
    EXPECT_TRUE(processor.processWithArgumentsAndReturnError(jobPath, {"command"}));
    EXPECT_THAT(calls(), IsEmpty());

    processor.setToolkitPath(folder.file("program"));
    folder.write("job.ps", "page");
    EXPECT_TRUE(processor.processWithArgumentsAndReturnError(jobPath, {"command"}));
    EXPECT_THAT(calls(), testing::SizeIs(1));
}

TEST_F(KLToolkitProcessorTest, TheFilesFollowTheArguments)
{
    const auto output = process(kCopy);
    EXPECT_EQ((Calls{{"command", "--flag", jobPath, output.value()}}), calls());
}

TEST_F(KLToolkitProcessorTest, TwoCallsDifferOnlyInTheirFiles)
{
    const std::vector<std::string> arguments = {"command", "--a", "b"};
    KLToolkitProcessor processor(toolkit);
    const auto first = processor.processWithArgumentsAndReturnError(jobPath, arguments);
    processor.processWithArgumentsAndReturnError(first.value(), arguments);
    ASSERT_EQ(2U, calls().size());
    EXPECT_EQ(arguments, settingsOf(calls()[0]));
    EXPECT_EQ(arguments, settingsOf(calls()[1]));
}

TEST_F(KLToolkitProcessorTest, SuccessConsumesTheInputAndGivesTheOutput)
{
    const auto output = process(kCopy);
    EXPECT_FALSE(fs::exists(jobPath));
    EXPECT_THAT(output.value(), MatchesRegex(temporaries + "/toolkit-[A-Za-z0-9]{6}"));
    EXPECT_EQ("page", Support::readFile(*output));
    EXPECT_EQ(1U, temporaryNames().size());
    EXPECT_FALSE(error.has_value());
}

TEST_F(KLToolkitProcessorTest, TheOutputIsThereAndEmptyWhenTheToolkitStarts)
{
    EXPECT_TRUE(process("[ -f \"$output\" ] && [ ! -s \"$output\" ]"));
}

TEST_F(KLToolkitProcessorTest, FailureKeepsTheInputAndRemovesTheOutput)
{
    EXPECT_EQ(std::nullopt, process("sleep 0.2; echo half > \"$output\"\n"
                                    "printf 'bad page size' >&2; exit 3"));
    EXPECT_EQ(kDomain, error->domain());
    EXPECT_EQ(3, error->code());
    EXPECT_EQ("bad page size", error->description());
    EXPECT_EQ(nullptr, error->underlying());
    EXPECT_EQ("page", Support::readFile(jobPath));
    EXPECT_THAT(temporaryNames(), IsEmpty());
}

TEST_F(KLToolkitProcessorTest, AFailureWithoutTextHasAnEmptyDescription)
{
    process("sleep 0.2; exit 1");
    EXPECT_EQ(1, error->code());
    EXPECT_EQ("", error->description());
}

TEST_F(KLToolkitProcessorTest, ATextThatIsNotUTF8IsReplacedByAFixedOne)
{
    process("sleep 0.2; printf 'bad \\377 page' >&2; exit 2");
    EXPECT_EQ(2, error->code());
    EXPECT_EQ("An unknown error occurred and the error information could not be processed.",
              error->description());
}

TEST_F(KLToolkitProcessorTest, ATextOfSeveralLinesIsKeptWhole)
{
    process("sleep 0.2; printf '\\n\\303\\251t\\303\\251\\r\\n\\nPPD: x\\n' >&2; exit 2");
    EXPECT_EQ("\nété\r\n\nPPD: x\n", error->description());
}

TEST_F(KLToolkitProcessorTest, TenMegabytesOfTextAreKeptWhole)
{
    process("sleep 0.2; head -c 10485760 /dev/zero | tr '\\0' x >&2; exit 2");
    EXPECT_EQ(std::string(10485760, 'x'), error->description());
}

TEST_F(KLToolkitProcessorTest, TheExitStatusIsTheCode)
{
    for (const int status : {1, 2, 126, 127, 128, 254, 255}) {
        EXPECT_EQ(std::nullopt, process("exit " + std::to_string(status)));
        EXPECT_EQ(status, error->code());
    }
}

TEST_F(KLToolkitProcessorTest, ADeadlySignalIsAFailureWithItsNumber)
{
    for (const int signalNumber : {SIGTERM, SIGKILL}) {
        EXPECT_EQ(std::nullopt, process("kill -" + std::to_string(signalNumber) + " $$"));
        EXPECT_EQ(signalNumber, error->code());
        EXPECT_TRUE(fs::exists(jobPath));
        EXPECT_THAT(temporaryNames(), IsEmpty());
    }
}

TEST_F(KLToolkitProcessorTest, TextOfAToolkitThatWorkedIsNoError)
{
    EXPECT_TRUE(process("sleep 0.1; echo hello >&2"));
    EXPECT_FALSE(error.has_value());
}

TEST_F(KLToolkitProcessorTest, SuccessLeavesTheErrorAsItWas)
{
    error.emplace("EarlierErrorDomain", 7, "earlier");
    EXPECT_TRUE(process("exit 0"));
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ("EarlierErrorDomain", error->domain());
    EXPECT_EQ(7, error->code());
    EXPECT_EQ("earlier", error->description());
}

TEST_F(KLToolkitProcessorTest, AnErrorNeedsNoPlace)
{
    failOn("command");
    EXPECT_EQ(std::nullopt,
              KLToolkitProcessor(toolkit).processWithArgumentsAndReturnError(jobPath, {"command"}));
}

TEST_F(KLToolkitProcessorTest, WithoutATemporaryFileNothingIsRun)
{
    fs::remove(temporaries);
    EXPECT_EQ(std::nullopt, process(kCopy));
    EXPECT_EQ("NSCocoaErrorDomain", error->domain());
    EXPECT_EQ(4, error->code());
    EXPECT_EQ("A temporary filename could not be generated.", error->description());
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_TRUE(fs::exists(jobPath));
}

TEST_F(KLToolkitProcessorTest, AToolkitThatDoesNotStartThrowsAndLeavesTheJobAlone)
{
    KLToolkitProcessor processor(folder.file("missing"));
    EXPECT_THROW(processor.processWithArgumentsAndReturnError(jobPath, {"command"}, &error),
                 Platform::ChildProcessError);
    EXPECT_FALSE(error.has_value());
    EXPECT_EQ("page", Support::readFile(jobPath));
    EXPECT_THAT(temporaryNames(), IsEmpty());
}

TEST_F(KLToolkitProcessorTest, AnOutputThatTheToolkitRemovedIsNotMissed)
{
    const auto output = process("rm \"$output\"");
    EXPECT_TRUE(output.has_value());
    EXPECT_FALSE(fs::exists(*output));
    EXPECT_FALSE(fs::exists(jobPath));
}

TEST_F(KLToolkitProcessorTest, AnOutputThatTheToolkitReplacedIsTheOutput)
{
    const auto output = process("echo new > $D/new; mv $D/new \"$output\"");
    EXPECT_EQ("new\n", Support::readFile(output.value()));
}

TEST_F(KLToolkitProcessorTest, AnInputThatIsAlreadyGoneIsNoFailure)
{
    EXPECT_TRUE(process("mv \"$input\" \"$output\""));
}

TEST_F(KLToolkitProcessorTest, AFileThatHasTheNameOfAnEarlierOutputIsNotHandedOn)
{
    const auto first = process(kCopy);
    folder.write("another", "mine");
    fs::rename(folder.file("another"), first.value());
    fs::remove(folder.file("calls"));
    EXPECT_EQ(std::nullopt, KLToolkitProcessor(toolkit).processWithArgumentsAndReturnError(
                                *first, {"command"}, &error));
    EXPECT_EQ("NSCocoaErrorDomain", error->domain());
    EXPECT_EQ(4, error->code());
    EXPECT_EQ("The job's file has been replaced by another.", error->description());
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_EQ("mine", Support::readFile(*first));
    EXPECT_EQ(1U, temporaryNames().size());
}

TEST_F(KLToolkitProcessorTest, AnInputThatIsReplacedWhileTheToolkitWorksStays)
{
    const auto first = process(kCopy);
    const auto second = KLToolkitProcessor(writeToolkit("cat \"$input\" > \"$output\"\n"
                                                        "echo mine > $D/new; mv $D/new \"$input\""))
                            .processWithArgumentsAndReturnError(first.value(), {"command"});
    EXPECT_EQ("page", Support::readFile(second.value()));
    EXPECT_EQ("mine\n", Support::readFile(*first));
}

// Which commands run

TEST_F(KLToolkitProcessorTest, WithoutSettingsNothingRuns)
{
    EXPECT_EQ(jobPath, apply("BookletPaperSize=None UseFrontCover=False UseBackCover=False "
                             "com.kalmira.pde.watermark.text="));
    EXPECT_EQ(jobPath, apply(""));
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_THAT(errors, IsEmpty());
    EXPECT_EQ("page", Support::readFile(jobPath));
    EXPECT_THAT(temporaryNames(), IsEmpty());
}

TEST_F(KLToolkitProcessorTest, TheListOfErrorsIsEmptiedWhenThereIsNone)
{
    errors.emplace_back("old", 1, "old");
    apply("");
    EXPECT_THAT(errors, IsEmpty());
}

TEST_F(KLToolkitProcessorTest, TheListOfErrorsNeedsNoPlace)
{
    failOn("booklet");
    KLPrintOptions settings = options("BookletPaperSize=A4");
    EXPECT_EQ(jobPath,
              processor().applyToolkitToFileWithOptionsAndReturnErrors(jobPath, settings, nullptr));
}

constexpr char kAllCommands[] =
    "com.kalmira.pde.watermark.text=Draft BookletPaperSize=A4 UseFrontCover=true";

TEST_F(KLToolkitProcessorTest, CommandsRunInOrderEachOnTheLastOnesOutput)
{
    const std::string path = apply(kAllCommands);
    EXPECT_EQ("page+watermark+booklet+coverpages", Support::readFile(path));
    ASSERT_EQ(3U, calls().size());
    EXPECT_EQ(jobPath, *(calls()[0].end() - 2));
    EXPECT_EQ(calls()[0].back(), *(calls()[1].end() - 2));
    EXPECT_EQ(calls()[1].back(), *(calls()[2].end() - 2));
    EXPECT_EQ(calls()[2].back(), path);
}

/// Which of the three commands fail.
class KLToolkitProcessorFailureTest : public KLToolkitProcessorTest,
                                      public testing::WithParamInterface<int> {
protected:
    bool fails(int command) const { return (GetParam() & (1 << command)) != 0; }

    static constexpr const char *kCommands[] = {"watermark", "booklet", "coverpages"};
    static constexpr const char *kFailures[] = {
        "Unable to apply watermark", "Unable to apply booklet mode", "Unable to apply cover pages"};
};

TEST_P(KLToolkitProcessorFailureTest, AFailedCommandIsSkippedAndReported)
{
    std::string expectedPages = "page";
    std::vector<int> failed;
    for (const int command : {0, 1, 2}) {
        if (fails(command)) {
            failOn(kCommands[command], 40 + command);
            failed.push_back(command);
        } else {
            expectedPages += std::string("+") + kCommands[command];
        }
    }
    const std::string path = apply(kAllCommands);

    EXPECT_EQ(expectedPages, Support::readFile(path));
    EXPECT_EQ(3U, calls().size());
    ASSERT_EQ(failed.size(), errors.size());
    for (std::size_t i = 0; i < failed.size(); ++i) {
        EXPECT_EQ(kDomain, errors[i].domain());
        EXPECT_EQ(127, errors[i].code());
        EXPECT_EQ(kFailures[failed[i]], errors[i].description());
        ASSERT_NE(nullptr, errors[i].underlying());
        EXPECT_EQ(kDomain, errors[i].underlying()->domain());
        EXPECT_EQ(40 + failed[i], errors[i].underlying()->code());
    }
}

TEST_P(KLToolkitProcessorFailureTest, OnlyTheReturnedFileRemains)
{
    for (const int command : {0, 1, 2}) {
        if (fails(command))
            failOn(kCommands[command]);
    }
    const std::string path = apply(kAllCommands);

    const bool allFailed = GetParam() == 7;
    EXPECT_EQ(allFailed, path == jobPath);
    EXPECT_EQ(allFailed, fs::exists(jobPath));
    if (allFailed)
        EXPECT_THAT(temporaryNames(), IsEmpty());
    else
        EXPECT_THAT(temporaryNames(), ElementsAre(fs::path(path).filename()));
}

INSTANTIATE_TEST_SUITE_P(AllCombinations, KLToolkitProcessorFailureTest, testing::Range(0, 8));

TEST_F(KLToolkitProcessorTest, WithoutATemporaryFileEveryCommandIsReported)
{
    fs::remove(temporaries);
    EXPECT_EQ(jobPath, apply(kAllCommands));
    ASSERT_EQ(3U, errors.size());
    EXPECT_EQ("NSCocoaErrorDomain", errors[0].underlying()->domain());
    EXPECT_EQ("A temporary filename could not be generated.", errors[2].underlyingDescription());
}

// Watermark

TEST_F(KLToolkitProcessorTest, WatermarkDefaults)
{
    // On a page of 595 by 842 points: 297.5 - 200 / 2 and 421 - 40 / 2.
    EXPECT_THAT(onlyCall("com.kalmira.pde.watermark.text=CONFIDENTIAL"),
                ElementsAre("watermark", "--above", "--font", "Helvetica", "--angle", "-0.000000",
                            "--colour", "0,0,0", "--position", "197.500000,401.000000", "--size",
                            "36", "--text", "CONFIDENTIAL"));
}

TEST_F(KLToolkitProcessorTest, WatermarkSettingsGoAlongAsTheyStand)
{
    EXPECT_THAT(onlyCall("com.kalmira.pde.watermark.text='Top secret' "
                         "com.kalmira.pde.watermark.angle=45 "
                         "com.kalmira.pde.watermark.font=Times-Bold "
                         "com.kalmira.pde.watermark.color=1,0.5,0 "
                         "com.kalmira.pde.watermark.size=72pt "
                         "com.kalmira.pde.watermark.x=25 com.kalmira.pde.watermark.y=100 "
                         "com.kalmira.pde.watermark.ordering=1 PageSize=Letter"),
                // 612 * 25 % - 84.852814 and 792 + 56.568542
                ElementsAre("watermark", "--below", "--font", "Times-Bold", "--angle", "-45.000000",
                            "--colour", "1,0.5,0", "--position", "68.147186,848.568542", "--size",
                            "72pt", "--text", "Top secret"));
}

TEST_F(KLToolkitProcessorTest, OnlyTheOrderingZeroIsAbove)
{
    EXPECT_EQ("--above",
              onlyCall("com.kalmira.pde.watermark.text=x com.kalmira.pde.watermark.ordering=0")[1]);
    for (const char *ordering : {"1", "00", "0.0", "''", "above"}) {
        fs::remove(folder.file("calls"));
        folder.write("job.ps", "page");
        EXPECT_EQ("--below",
                  onlyCall("com.kalmira.pde.watermark.text=x com.kalmira.pde.watermark.ordering=" +
                           std::string(ordering))[1]);
    }
}

TEST_F(KLToolkitProcessorTest, WhatOnlySomeWatermarksHaveStandsBehindTheOthers)
{
    const std::string text = "com.kalmira.pde.watermark.text=x ";
    const auto further = [&](const std::string &settings) {
        fs::remove(folder.file("calls"));
        folder.write("job.ps", "page");
        const auto call = onlyCall(text + settings);
        return std::vector<std::string>(call.begin() + 14, call.end());
    };
    EXPECT_THAT(further("com.kalmira.pde.watermark.overprint=true "
                        "com.kalmira.pde.watermark.pages=2-5,8,10-"),
                ElementsAre("--overprint", "--pages", "2-5,8,10-"));
    EXPECT_THAT(further("com.kalmira.pde.watermark.pages='odd or even'"),
                ElementsAre("--pages", "odd or even"));
    for (const char *none :
         {"com.kalmira.pde.watermark.overprint=False", "com.kalmira.pde.watermark.overprint=1",
          "com.kalmira.pde.watermark.overprint=''", "com.kalmira.pde.watermark.pages=''"})
        EXPECT_THAT(further(none), testing::IsEmpty()) << none;
}

TEST_F(KLToolkitProcessorTest, AnglesAreNegated)
{
    const std::pair<const char *, const char *> kAngles[] = {
        {"0", "-0.000000"},      {"45", "-45.000000"},         {"-30", "30.000000"},
        {"-0", "0.000000"},      {"12.3456789", "-12.345679"}, {"1e2", "-100.000000"},
        {"45deg", "-45.000000"}, {"deg", "-0.000000"}};
    for (const auto &[angle, expected] : kAngles) {
        fs::remove(folder.file("calls"));
        folder.write("job.ps", "page");
        EXPECT_EQ(expected, onlyCall("com.kalmira.pde.watermark.text=x "
                                     "com.kalmira.pde.watermark.angle=" +
                                     std::string(angle))[5])
            << angle;
    }
}

TEST_F(KLToolkitProcessorTest, WhatIsNoNumberCountsAsZero)
{
    const auto call = onlyCall("com.kalmira.pde.watermark.text=x com.kalmira.pde.watermark.x=left "
                               "com.kalmira.pde.watermark.y=nan");
    EXPECT_EQ("-100.000000,-20.000000", call[9]);
}

TEST_F(KLToolkitProcessorTest, NumbersOfTheStoreAreSettingsToo)
{
    const auto call = onlyCall("com.kalmira.pde.watermark.text..n.=7 "
                               "com.kalmira.pde.watermark.angle..n.=90");
    EXPECT_EQ("-90.000000", call[5]);
    EXPECT_EQ("7", call[13]);
}

TEST_F(KLToolkitProcessorTest, NumbersDoNotFollowTheLocale)
{
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\1"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale(), new Comma));
    const auto call = onlyCall("com.kalmira.pde.watermark.text=x "
                               "com.kalmira.pde.watermark.x=12.5");
    std::locale::global(before);
    EXPECT_EQ("-25.625000,401.000000", call[9]); // 595 * 12.5 % - 100
}

TEST_F(KLToolkitProcessorTest, TheTextIsMeasuredInItsFontAndSize)
{
    std::vector<std::string> measured;
    KLToolkitProcessor measuring(toolkit, [&](auto &text, auto &font, double size) {
        measured = {text, font, std::to_string(size)};
        return Platform::TextSize{};
    });
    KLPrintOptions settings = options("com.kalmira.pde.watermark.text=Draft "
                                      "com.kalmira.pde.watermark.font=Courier "
                                      "com.kalmira.pde.watermark.size=12.5pt");
    measuring.applyToolkitToFileWithOptionsAndReturnErrors(jobPath, settings, &errors);
    EXPECT_THAT(measured, ElementsAre("Draft", "Courier", "12.500000"));
}

TEST_F(KLToolkitProcessorTest, NothingIsMeasuredWithoutAWatermark)
{
    KLToolkitProcessor measuring(toolkit, [](auto &, auto &, double) -> Platform::TextSize {
        throw std::logic_error("measured");
    });
    KLPrintOptions settings = options("BookletPaperSize=A4 UseFrontCover=true");
    measuring.applyToolkitToFileWithOptionsAndReturnErrors(jobPath, settings, &errors);
    EXPECT_EQ(2U, calls().size());
}

TEST_F(KLToolkitProcessorTest, AWatermarkThatCannotBeMeasuredFailsAndTheOthersRun)
{
    KLToolkitProcessor measuring(toolkit, [](auto &, auto &, double) -> Platform::TextSize {
        throw Platform::ModuleError("no module");
    });
    KLPrintOptions settings = options(kAllCommands);
    const std::string path =
        measuring.applyToolkitToFileWithOptionsAndReturnErrors(jobPath, settings, &errors);
    EXPECT_EQ("page+booklet+coverpages", Support::readFile(path));
    ASSERT_EQ(1U, errors.size());
    EXPECT_EQ(127, errors[0].code());
    EXPECT_EQ("Unable to apply watermark", errors[0].description());
    EXPECT_EQ("no module", errors[0].underlyingDescription());
}

/// What a watermark "x" has behind its colour.
MATCHER_P(EndsIn, words, "")
{
    const std::vector<std::string> expected = words;
    return std::vector<std::string>(arg.begin() + 8, arg.end()) == expected;
}

TEST_F(KLToolkitProcessorTest, APlaceIsHandedOnInThePlaceOfThePosition)
{
    using Words = std::vector<std::string>;
    EXPECT_THAT(watermarkCall({"place=top-left"}),
                EndsIn(Words{"--place", "top-left", "--size", "36", "--text", "x"}));
    EXPECT_THAT(
        watermarkCall({"place=tiled", "distance=10mm"}),
        EndsIn(Words{"--place", "tiled", "--size", "36", "--text", "x", "--distance", "10mm"}));
    EXPECT_THAT(
        watermarkCall({"place=bottom", "fit=width", "x=10"}),
        EndsIn(Words{"--place", "bottom", "--size", "36", "--text", "x", "--fit", "width"}));
}

TEST_F(KLToolkitProcessorTest, WithoutAPlaceTheSpotIsThatOfTheJob)
{
    using Words = std::vector<std::string>;
    EXPECT_THAT(watermarkCall({"fit=width"}),
                EndsIn(Words{"--place", "50.000000%,50.000000%", "--size", "36", "--text", "x",
                             "--fit", "width"}));
    EXPECT_THAT(watermarkCall({"distance=1in", "x=25", "y=-12.5"}),
                EndsIn(Words{"--place", "25.000000%,-12.500000%", "--size", "36", "--text", "x",
                             "--distance", "1in"}));
    EXPECT_THAT(watermarkCall({"placeholders=true", "x=25", "y=75"}),
                EndsIn(Words{"--place", "25.000000%,75.000000%", "--size", "36", "--text", "x",
                             "--placeholders"}));
}

TEST_F(KLToolkitProcessorTest, EmptyPlacesAndOtherPlaceholdersAskForNothing)
{
    const auto plain = watermarkCall({});
    EXPECT_EQ("--position", plain[8]);
    EXPECT_EQ(plain, watermarkCall({"place=''", "distance=''", "fit=''"}));
    EXPECT_EQ(plain, watermarkCall({"placeholders=false"}));
    EXPECT_EQ(plain, watermarkCall({"placeholders=yes"}));
}

TEST_F(KLToolkitProcessorTest, ATextThatTheToolkitPlacesIsNotMeasured)
{
    KLToolkitProcessor measuring(toolkit, [](auto &, auto &, double) -> Platform::TextSize {
        throw Platform::ModuleError("measured");
    });
    KLPrintOptions settings =
        options("com.kalmira.pde.watermark.text=x com.kalmira.pde.watermark.place=centre");
    measuring.applyToolkitToFileWithOptionsAndReturnErrors(jobPath, settings, &errors);
    EXPECT_THAT(errors, IsEmpty());
}

namespace {

const JobValues kJob = {.user = "anna", .title = "Budget [1]", .jobId = "42"};
constexpr char kSpeaking[] = "com.kalmira.pde.watermark.text='[user] [title] [job-id] [page]' "
                             "com.kalmira.pde.watermark.placeholders=true";

} // namespace

TEST_F(KLToolkitProcessorTest, PlaceholdersStandForTheJobsOwnValues)
{
    KLToolkitProcessor speaking = processor();
    speaking.setJobValues(kJob);
    KLPrintOptions settings = options(kSpeaking);
    speaking.applyToolkitToFileWithOptionsAndReturnErrors(jobPath, settings, &errors);
    EXPECT_EQ("anna Budget [[1]] 42 [page]", calls().at(0).at(13));
    EXPECT_EQ("--placeholders", calls().at(0).at(14));
}

TEST_F(KLToolkitProcessorTest, TheUserIsTheOneThatThePrinterIsTold)
{
    KLToolkitProcessor speaking = processor();
    speaking.setJobValues(kJob);
    KLPrintOptions settings = options(kSpeaking);
    settings.setValueForKey("berta", "com.kalmira.username");
    speaking.applyToolkitToFileWithOptionsAndReturnErrors(jobPath, settings, &errors);
    EXPECT_EQ("berta Budget [[1]] 42 [page]", calls().at(0).at(13));
}

TEST_F(KLToolkitProcessorTest, ATextWithoutTheKeyKeepsItsBrackets)
{
    KLToolkitProcessor silent = processor();
    silent.setJobValues(kJob);
    KLPrintOptions settings = options("com.kalmira.pde.watermark.text='[user] [[ [page]'");
    silent.applyToolkitToFileWithOptionsAndReturnErrors(jobPath, settings, &errors);
    EXPECT_EQ("[user] [[ [page]", calls().at(0).at(13));
}

TEST_F(KLToolkitProcessorTest, AWatermarkThatGetsTooLongFailsAndTheOthersRun)
{
    KLToolkitProcessor speaking = processor();
    speaking.setJobValues({.title = std::string(100'000, 'x')});
    KLPrintOptions settings = options("com.kalmira.pde.watermark.text='[title]!' "
                                      "com.kalmira.pde.watermark.placeholders=true "
                                      "BookletPaperSize=A4");
    const std::string path =
        speaking.applyToolkitToFileWithOptionsAndReturnErrors(jobPath, settings, &errors);
    EXPECT_EQ("page+booklet", Support::readFile(path));
    ASSERT_EQ(1U, errors.size());
    EXPECT_EQ("Unable to apply watermark", errors[0].description());
    EXPECT_EQ("The watermark's text is too long.", errors[0].underlyingDescription());
}

/// A turn of the text and where the lower left corner of its box of 200 by 40 points then lies,
/// from the spot: (-100, -20), turned by minus that angle.
struct Turn {
    double angle, dx, dy;
};

class WatermarkPositionTest : public testing::TestWithParam<Turn> {};

TEST_P(WatermarkPositionTest, CentresTheTurnedTextOnTheSpot)
{
    struct Spot {
        KLPageSize page;
        double percentX, percentY, x, y;
    };
    constexpr Spot kSpots[] = {
        {{595, 842}, 50, 50, 297.5, 421},
        {{612, 792}, 25, 75, 153, 594},
        {{842, 596}, 0, 110, 0, 655.6},
    };
    for (const Spot &spot : kSpots) {
        const auto [x, y] =
            watermarkPosition({200, 40}, spot.page, GetParam().angle, spot.percentX, spot.percentY);
        EXPECT_NEAR(spot.x + GetParam().dx, x, 1e-6);
        EXPECT_NEAR(spot.y + GetParam().dy, y, 1e-6);
    }
}

// cos and sin of 45 degrees are 0.70710678, of 30 degrees 0.86602540 and 0.5.
INSTANTIATE_TEST_SUITE_P(Angles, WatermarkPositionTest,
                         testing::Values(Turn{0, -100, -20},                //
                                         Turn{45, -84.8528137, 56.5685425}, //
                                         Turn{90, -20, 100},                //
                                         Turn{-30, -76.6025404, -67.3205081}, Turn{180, 100, 20}));

// Booklet

TEST_F(KLToolkitProcessorTest, BookletArguments)
{
    EXPECT_THAT(onlyCall("BookletPaperSize=A4 BookletPageLayout=False"),
                ElementsAre("booklet", "--pagesize", "A4", "--centremargin", "0", "--outermargin",
                            "0", "--ordering", "RTL"));
}

TEST_F(KLToolkitProcessorTest, BookletMarginsAndDefaultOrdering)
{
    EXPECT_THAT(onlyCall("BookletPaperSize=A3 BookletCenterMargin=12 BookletOuterMargin..n.=5"),
                ElementsAre("booklet", "--pagesize", "A3", "--centremargin", "12", "--outermargin",
                            "5", "--ordering", "LTR"));
}

TEST_F(KLToolkitProcessorTest, OnlyOffIsNoMargin)
{
    const auto call =
        onlyCall("BookletPaperSize=A3 BookletCenterMargin=off BookletOuterMargin=Off");
    EXPECT_EQ("off", call[4]);
    EXPECT_EQ("0", call[6]);
}

TEST_F(KLToolkitProcessorTest, OnlyTrueIsLeftToRight)
{
    KLPrintOptions settings = options("BookletPaperSize=A3");
    settings.setValueForKey("true", "BookletPageLayout");
    apply(settings);
    EXPECT_EQ("RTL", calls().front()[8]);
}

TEST_F(KLToolkitProcessorTest, SignaturesCreepAndTurnedPagesGoAlongWhereTheyAreAskedFor)
{
    EXPECT_THAT(onlyCall("BookletPaperSize=A3 BookletSignatureSheets=4 BookletCreep=0.2mm "
                         "BookletTurnLandscape=true"),
                ElementsAre("booklet", "--pagesize", "A3", "--centremargin", "0", "--outermargin",
                            "0", "--ordering", "LTR", "--signature", "4", "--creep", "0.2mm",
                            "--turn-landscape"));
}

TEST_F(KLToolkitProcessorTest, SignaturesCreepAndTurnedPagesThatAreOffDoNotGoAlong)
{
    EXPECT_EQ(9U, onlyCall("BookletPaperSize=A3 BookletSignatureSheets=Off BookletCreep=Off "
                           "BookletTurnLandscape=false")
                      .size());
}

TEST_F(KLToolkitProcessorTest, OnlyOffIsNoSignatureAndOnlyTrueTurns)
{
    EXPECT_THAT(onlyCall("BookletPaperSize=A3 BookletSignatureSheets..n.=0 BookletCreep= "
                         "BookletTurnLandscape=yes"),
                ElementsAre("booklet", "--pagesize", "A3", "--centremargin", "0", "--outermargin",
                            "0", "--ordering", "LTR", "--signature", "0", "--creep", ""));
}

TEST_F(KLToolkitProcessorTest, AnEmptyPaperSizeIsASizeToo)
{
    EXPECT_EQ("", onlyCall("BookletPaperSize=")[2]);
}

TEST_F(KLToolkitProcessorTest, ABookletThatWorkedPrintsDuplexWithTumble)
{
    KLPrintOptions settings = options("BookletPaperSize=A4 Duplex=DuplexNoTumble");
    apply(settings);
    EXPECT_TRUE(settings.valueForKeyIsEqualToString("Duplex", "DuplexTumble"));
    EXPECT_STREQ("DuplexTumble", ppdFindMarkedChoice(settings.ppd().file(), "Duplex")->choice);
}

TEST_F(KLToolkitProcessorTest, ABookletThatFailedChangesNoDuplex)
{
    failOn("booklet");
    KLPrintOptions settings = options("BookletPaperSize=A4 Duplex=DuplexNoTumble");
    apply(settings);
    EXPECT_TRUE(settings.valueForKeyIsEqualToString("Duplex", "DuplexNoTumble"));
    EXPECT_STREQ("DuplexNoTumble", ppdFindMarkedChoice(settings.ppd().file(), "Duplex")->choice);
}

TEST_F(KLToolkitProcessorTest, ThePPDIsMarkedAlsoWhereItHasNoDuplex)
{
    KLPrintOptions settings = options("BookletPaperSize=A4");
    settings.setValueForKey(std::nullopt, "Duplex");
    apply(settings);
    EXPECT_TRUE(settings.valueForKeyIsEqualToString("Duplex", "DuplexTumble"));
}

// Cover pages

TEST_F(KLToolkitProcessorTest, FrontCoverArguments)
{
    EXPECT_THAT(onlyCall("UseFrontCover=true"),
                ElementsAre("coverpages", "--back-style", "none", "--back-media", "None",
                            "--back-source", "AutoSelect", "--front-style", "none", "--front-media",
                            "None", "--front-source", "AutoSelect", "--source", "AutoSelect",
                            "--media", "None", "--duplex", "none"));
}

TEST_F(KLToolkitProcessorTest, CoverSettingsGoAlong)
{
    EXPECT_THAT(
        onlyCall("UseFrontCover=true UseBackCover=true FrontCoverPrintStyle=PrintInside "
                 "BackCoverPrintStyle=BLANK FrontCoverMediaType=Thick BackCoverMediaType=Thin "
                 "FrontCoverSource=SheetFeedBypass BackCoverSource=AdditionalExternalLCF "
                 "InputSlot=Tray2 MediaType=Plain Duplex=DuplexNoTumble"),
        ElementsAre("coverpages", "--back-style", "blank", "--back-media", "Thin", "--back-source",
                    "ExternalLCF2", "--front-style", "printinside", "--front-media", "Thick",
                    "--front-source", "Bypass", "--source", "Tray2", "--media", "Plain", "--duplex",
                    "notumble"));
}

TEST_F(KLToolkitProcessorTest, ASideThatIsOffLosesOnlyItsStyle)
{
    const auto call = onlyCall("UseBackCover=true FrontCoverPrintStyle=Blank "
                               "FrontCoverMediaType=Thick FrontCoverSource=Tray1");
    EXPECT_EQ("none", call[8]);
    EXPECT_EQ("Thick", call[10]);
    EXPECT_EQ("Tray1", call[12]);
}

TEST_F(KLToolkitProcessorTest, ASideIsOnOnlyByTheTextTrue)
{
    KLPrintOptions settings = options("UseBackCover..b.=true");
    settings.setValueForKey("true", "UseFrontCover");
    EXPECT_EQ(jobPath, apply(settings));
    EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(KLToolkitProcessorTest, DuplexWords)
{
    const std::pair<const char *, const char *> kWords[] = {{"None", "none"},
                                                            {"DuplexTumble", "tumble"},
                                                            {"DuplexNoTumble", "notumble"},
                                                            {"duplextumble", "duplextumble"},
                                                            {"Other", "Other"},
                                                            {"", ""}};
    for (const auto &[duplex, word] : kWords) {
        fs::remove(folder.file("calls"));
        folder.write("job.ps", "page");
        KLPrintOptions settings = options("UseFrontCover=true");
        settings.setValueForKey(duplex, "Duplex");
        apply(settings);
        EXPECT_EQ(word, calls().front()[18]);
    }
}

TEST_F(KLToolkitProcessorTest, CoversInPDFAreAskedForBehindAllElse)
{
    const auto call = onlyCall("UseFrontCover=true CoverPagesInPDF=true");
    ASSERT_EQ(20U, call.size());
    EXPECT_EQ("none", call[18]);
    EXPECT_EQ("--in-pdf", call[19]);
}

TEST_F(KLToolkitProcessorTest, OnlyTrueAsksForCoversInPDF)
{
    KLPrintOptions settings = options("UseFrontCover=true");
    settings.setValueForKey("true", "CoverPagesInPDF");
    apply(settings);
    EXPECT_EQ(19U + 2, calls().front().size());
}

TEST_F(KLToolkitProcessorTest, CoversOfAPDFThatAreOfTheJobsPaperAreToldApart)
{
    const auto told = [&](const std::string &start, const std::string &settings) {
        folder.write("job.ps", start);
        KLPrintOptions store = options(settings);
        bool coversOfJobsPaper = true;
        processor().applyToolkitToFileWithOptionsAndReturnErrors(jobPath, store, nullptr,
                                                                 &coversOfJobsPaper);
        return coversOfJobsPaper;
    };
    const std::string front = "CoverPagesInPDF=true UseFrontCover=true FrontCoverPrintStyle=Print ";
    const std::string back = "CoverPagesInPDF=true UseBackCover=true BackCoverPrintStyle=NoPrint ";
    EXPECT_TRUE(told("%PDF-1.7", front + "FrontCoverSource=Tray2"));
    EXPECT_TRUE(told("%PDF-1.7", back + "BackCoverMediaType=Thick"));
    EXPECT_TRUE(told("%PDF-1.7", back + "InputSlot=Tray2"));
    EXPECT_FALSE(told("%!PS-Adobe", front + "FrontCoverSource=Tray2"));
    EXPECT_FALSE(told("%PDF-1.7", front));
    EXPECT_FALSE(told("%PDF-1.7", front + "FrontCoverSource=Tray2 InputSlot=Tray2"));
    EXPECT_FALSE(told("%PDF-1.7", front + "FrontCoverMediaType=Thick MediaType=Thick"));
    EXPECT_FALSE(told("%PDF-1.7", front + "BackCoverSource=Tray2 BackCoverPrintStyle=Print"));
    EXPECT_FALSE(
        told("%PDF-1.7", "CoverPagesInPDF=true UseFrontCover=true FrontCoverSource=Tray2"));
    EXPECT_FALSE(told("%PDF-1.7", "UseFrontCover=true FrontCoverPrintStyle=Print "
                                  "FrontCoverSource=Tray2"));
    failOn("coverpages");
    EXPECT_FALSE(told("%PDF-1.7", front + "FrontCoverSource=Tray2"));
}

TEST_F(KLToolkitProcessorTest, CoverPagesOfABookletTumble)
{
    apply("BookletPaperSize=A4 UseBackCover=true");
    ASSERT_EQ(2U, calls().size());
    EXPECT_EQ("none", calls()[1][8]);
    EXPECT_EQ("tumble", calls()[1][18]);
}

TEST_F(KLToolkitProcessorTest, CoverPagesOfABookletThatFailedDoNotTumble)
{
    failOn("booklet");
    apply("BookletPaperSize=A4 UseBackCover=true");
    ASSERT_EQ(2U, calls().size());
    EXPECT_EQ("none", calls()[1][18]);
}

TEST_F(KLToolkitProcessorTest, PaperSourcesHaveNamesOfTheToolkits)
{
    EXPECT_EQ("AutoSelect", adjustPaperSourceForToolkit("Auto"));
    EXPECT_EQ("Bypass", adjustPaperSourceForToolkit("SheetFeedBypass"));
    EXPECT_EQ("ExternalLCF2", adjustPaperSourceForToolkit("AdditionalExternalLCF"));
    for (const char *other : {"Tray2", "auto", "AutoSelect", ""})
        EXPECT_EQ(other, adjustPaperSourceForToolkit(other));
}

// Settings cannot add, drop or move arguments

TEST_F(KLToolkitProcessorTest, ArgumentsKeepTheirNumberAndOrderWhateverTheSettingsHold)
{
    for (const std::string nasty :
         {"--text", "a\nb", "$(touch x)", "", "'; rm -rf /", "%s%n%@", "\xff\xfe", "a\tb  c"}) {
        fs::remove(folder.file("calls"));
        folder.write("job.ps", "page");
        KLPrintOptions settings = options("UseFrontCover=true UseBackCover=true");
        for (const char *key : {"font", "color", "size", "angle", "x", "y", "ordering"})
            settings.setValueForKey(nasty, "com.kalmira.pde.watermark." + std::string(key));
        settings.setValueForKey("x" + nasty, "com.kalmira.pde.watermark.text");
        for (const char *key : {"BookletPaperSize", "BookletCenterMargin", "BookletOuterMargin",
                                "BookletPageLayout", "BackCoverPrintStyle", "BackCoverMediaType",
                                "BackCoverSource", "FrontCoverPrintStyle", "FrontCoverMediaType",
                                "FrontCoverSource", "InputSlot", "MediaType"})
            settings.setValueForKey(nasty, key);
        apply(settings);

        ASSERT_EQ(3U, calls().size()) << nasty;
        ASSERT_EQ(14U + 2, calls()[0].size()) << nasty;
        ASSERT_EQ(9U + 2, calls()[1].size()) << nasty;
        ASSERT_EQ(19U + 2, calls()[2].size()) << nasty;
        EXPECT_EQ("--text", calls()[0][12]);
        EXPECT_EQ("x" + nasty, calls()[0][13]);
        EXPECT_EQ("--ordering", calls()[1][7]);
        EXPECT_EQ(nasty, calls()[1][2]);
        EXPECT_EQ("--media", calls()[2][15]);
        EXPECT_EQ(nasty, calls()[2][16]);
    }
}
