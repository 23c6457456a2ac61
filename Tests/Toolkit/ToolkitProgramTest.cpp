#include "MinimalPPD.h"
#include "Program.h"
#include "TemporaryFolder.h"
#include "Waiting.h"

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr char kNoToolkit[] =
    "INFO: A required component could not be found, some print settings may not be applied\n";
constexpr char kAllCommands[] =
    "com.kalmira.pde.watermark.text=Draft BookletPaperSize=A4 UseFrontCover=true";

/// The built program with a queue whose PPD names a bundle with a scripted toolkit.
class ToolkitProgramTest : public testing::Test {
protected:
    ToolkitProgramTest()
    {
        fs::create_directories(folder.file("Panel.bundle/Contents/Linux"));
        folder.write("queue.ppd", Support::minimalPPD("*APDialogExtension: \"" +
                                                      folder.file("Panel.bundle") + "\"\n"));
    }

    /// "$D" is the test's folder, "$1" the command, "$input" and "$output" are the files.
    void writeToolkit(const std::string &lines) const
    {
        folder.writeScript(kToolkit, "D='" + folder.path() +
                                         "'\n"
                                         "for a; do input=$output; output=$a; done\n" +
                                         lines);
    }

    /// The call for a job that comes on standard input.
    Support::ProgramCall call(const std::string &options = kAllCommands) const
    {
        Support::ProgramCall result;
        result.arguments = {JOBFILTER_PROGRAM, "7", "anna", "Report", "1", options};
        result.environment = {{"PPD", folder.file("queue.ppd")}, {"TMPDIR", temporaries.path()}};
        result.input = "page";
        return result;
    }

    /// The call for the job file.
    Support::ProgramCall callWithFile(const std::string &options = kAllCommands) const
    {
        Support::ProgramCall result = call(options);
        result.arguments.push_back(jobPath);
        return result;
    }

    void waitForFile(const std::string &name) const
    {
        ASSERT_TRUE(Support::comesTrue([&] { return fs::exists(folder.file(name)); }));
    }

    /// Whether the toolkit has begun to write its output.
    bool outputIsWritten() const
    {
        const auto names = temporaries.names();
        return names.size() == 1 && fs::file_size(temporaries.file(names.front())) > 0;
    }

    static constexpr char kToolkit[] = "Panel.bundle/Contents/Linux/toolkit";

    Support::TemporaryFolder folder;
    Support::TemporaryFolder temporaries;
    std::string jobPath = folder.write("job.ps", "page");
};

/// Stamps the page with the command's name.
constexpr char kStamp[] = "{ cat \"$input\"; printf '+%s' $1; } > \"$output\"\n";
/// Fails on every command. The moment is for the filter's look at whether it runs.
constexpr char kFail[] = "sleep 0.2; printf 'no %s today' $1 >&2; exit 9\n";

/// The job's pages in the program's output: what stands between header and job end.
std::string body(const std::string &output)
{
    const std::string begin = "LANGUAGE = POSTSCRIPT\r\n";
    const auto from = output.find(begin);
    const auto to = output.rfind("\033%-12345X");
    return from == std::string::npos || to < from
               ? "no body in: " + output
               : output.substr(from + begin.size(), to - from - begin.size());
}

/// A PostScript document that keeps our own toolkit busy.
std::string documentOfPages(int count)
{
    std::string text = "%!PS-Adobe-3.0\n%%EndComments\n";
    for (int page = 1; page <= count; ++page) {
        const std::string number = std::to_string(page);
        text += "%%Page: " + number + " " + number + "\n" + std::string(2000, '%') + "\nshowpage\n";
    }
    return text + "%%EOF\n";
}

/// Some PID that a script has written.
pid_t pidIn(const std::string &path)
{
    return std::stoi(Support::readFile(path));
}

std::vector<pid_t> childrenOf(pid_t process)
{
    const std::string number = std::to_string(process);
    std::istringstream list(Support::readFile("/proc/" + number + "/task/" + number + "/children"));
    return {std::istream_iterator<pid_t>(list), {}};
}

/// Waits for the toolkit's guard, which the filter starts behind the toolkit, to be there as well.
bool comesToBeGuarded(pid_t filter)
{
    return Support::comesTrue([filter] { return childrenOf(filter).size() == 2; });
}

/// Waits until a process is gone or only waits to be reaped.
bool ends(pid_t process)
{
    const std::string stat = "/proc/" + std::to_string(process) + "/stat";
    return Support::comesTrue([&stat] {
        try {
            return Support::readFile(stat).find(") Z ") != std::string::npos;
        } catch (const std::runtime_error &) {
            return true;
        }
    });
}

} // namespace

// What is printed

TEST_F(ToolkitProgramTest, PrintsWhatTheToolkitMadeOfTheJob)
{
    writeToolkit(kStamp);
    const auto result = runProgram(call());
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_EQ("", result.errors);
    EXPECT_EQ("page+watermark+booklet+coverpages", body(result.output));
}

TEST_F(ToolkitProgramTest, AToolkitWithoutWorkIsNotRun)
{
    writeToolkit("echo run > $D/run\n");
    const auto result = runProgram(call(""));
    EXPECT_EQ("", result.errors);
    EXPECT_EQ("page", body(result.output));
    EXPECT_FALSE(fs::exists(folder.file("run")));
}

TEST_F(ToolkitProgramTest, TheHeaderSeesTheDuplexOfABooklet)
{
    // The PPD's Duplex option as job control: its marked choice shows in the header.
    std::string ppd = Support::readFile(folder.file("queue.ppd"));
    const auto replace = [&ppd](const std::string &from, const std::string &to) {
        ppd.replace(ppd.find(from), from.size(), to);
    };
    replace("*OrderDependency: 20 AnySetup *Duplex", "*OrderDependency: 20 JCLSetup *Duplex");
    replace("<</Duplex true/Tumble true>>setpagedevice", "@PJL SET BINDING=SHORTEDGE<0A>");
    folder.write("queue.ppd", ppd);

    writeToolkit(kStamp);
    EXPECT_THAT(runProgram(call("BookletPaperSize=A4")).output,
                HasSubstr("@PJL SET BINDING=SHORTEDGE"));
    writeToolkit(kFail);
    EXPECT_THAT(runProgram(call("BookletPaperSize=A4")).output,
                Not(HasSubstr("@PJL SET BINDING=SHORTEDGE")));
}

TEST_F(ToolkitProgramTest, WhatOurOwnToolkitRefusesIsPrintedAsItWas)
{
    fs::create_symlink(KL_TOOLKIT, folder.file(kToolkit));
    const std::string begin = "%!PS-Adobe-3.0\n%%EndComments\n";
    for (const std::string &document :
         {begin + "showpage\n", begin + "%%Page: 1 1\n%%BeginDocument: cut off\nshowpage\n"}) {
        auto job = call("com.kalmira.pde.watermark.text=Draft BookletPaperSize=A4");
        job.input = document;
        const auto result = runProgram(job);
        EXPECT_EQ(0, result.exitStatus);
        EXPECT_EQ(document, body(result.output));
        EXPECT_THAT(result.errors, HasSubstr("ERROR: Unable to apply watermark\n"
                                             "DEBUG: Unable to apply watermark"));
        EXPECT_THAT(result.errors, HasSubstr("ERROR: Unable to apply booklet mode\n"
                                             "DEBUG: Unable to apply booklet mode"));
        EXPECT_THAT(temporaries.names(), IsEmpty());
    }
}

TEST_F(ToolkitProgramTest, JobControlInTheJobIsGoneOnceOurOwnToolkitHasBeenAtWork)
{
    fs::create_symlink(KL_TOOLKIT, folder.file(kToolkit));
    const std::string document =
        "%!PS-Adobe-3.0\n%%EndComments\n%%Page: 1 1\nshowpage\n%%Trailer\n%%EOF\n";
    const std::string marker = "\033%-12345X";
    for (const char *option : {"com.kalmira.pde.watermark.text=Draft", "BookletPaperSize=A4",
                               "UseFrontCover=True FrontCoverPrintStyle=NoPrint"}) {
        auto job = call(option);
        job.input = document;
        const auto plain = runProgram(job);
        job.input = "\004" + marker + "@PJL JOB\n@PJL ENTER LANGUAGE=POSTSCRIPT\n" + document +
                    "\004" + marker + "@PJL EOJ\n" + marker;
        const auto framed = runProgram(job);
        EXPECT_EQ("", framed.errors);
        EXPECT_NE(document, body(framed.output));
        EXPECT_EQ(plain.output, framed.output);
    }
}

// What is logged

TEST_F(ToolkitProgramTest, EveryErrorIsAnErrorLineAndADebugLine)
{
    writeToolkit(std::string("if [ $1 = booklet ]; then") + "\n" + kStamp + "else\n" + kFail +
                 "fi\n");
    const auto result = runProgram(call());
    EXPECT_EQ("ERROR: Unable to apply watermark\n"
              "DEBUG: Unable to apply watermark: no watermark today\n"
              "ERROR: Unable to apply cover pages\n"
              "DEBUG: Unable to apply cover pages: no coverpages today\n",
              result.errors);
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_EQ("page+booklet", body(result.output));
}

TEST_F(ToolkitProgramTest, TheToolkitsTextCannotStartALogLine)
{
    writeToolkit("sleep 0.2; printf 'bad\\r\\nPPD: x\\nATTR: y\\0z' >&2; exit 1\n");
    EXPECT_EQ("ERROR: Unable to apply booklet mode\n"
              "DEBUG: Unable to apply booklet mode: bad  PPD: x ATTR: y z\n",
              runProgram(call("BookletPaperSize=A4")).errors);
}

TEST_F(ToolkitProgramTest, ATextThatIsNotUTF8IsReplaced)
{
    writeToolkit("sleep 0.2; printf '\\377' >&2; exit 1\n");
    EXPECT_THAT(runProgram(call("BookletPaperSize=A4")).errors,
                EndsWith("booklet mode: An unknown error occurred and the error information could "
                         "not be processed.\n"));
}

TEST_F(ToolkitProgramTest, WithoutATextTheDebugLineEndsThere)
{
    writeToolkit("sleep 0.2; exit 1\n");
    EXPECT_EQ("ERROR: Unable to apply booklet mode\nDEBUG: Unable to apply booklet mode: \n",
              runProgram(call("BookletPaperSize=A4")).errors);
}

TEST_F(ToolkitProgramTest, TheToolkitsOutputGoesNowhere)
{
    writeToolkit(std::string("echo noise; cat\n") + kStamp);
    const auto result = runProgram(callWithFile("BookletPaperSize=A4"));
    EXPECT_EQ("page+booklet", body(result.output));
    EXPECT_THAT(result.output, Not(HasSubstr("noise")));
}

TEST_F(ToolkitProgramTest, TenMegabytesOfErrorsBlockNobody)
{
    writeToolkit("sleep 0.2; head -c 10485760 /dev/zero | tr '\\0' x >&2; exit 1\n");
    const auto result = runProgram(call("BookletPaperSize=A4"));
    EXPECT_EQ(0, result.exitStatus);
    // As much of it as fits into a line of 2046 bytes: 2046 - 37 - 3.
    EXPECT_EQ("ERROR: Unable to apply booklet mode\nDEBUG: Unable to apply booklet mode: " +
                  std::string(2006, 'x') + "...\n",
              result.errors);
}

// Which files remain

TEST_F(ToolkitProgramTest, NoFileOfASpooledJobRemains)
{
    for (const char *failing : {"none", "watermark", "booklet", "coverpages", "*"}) {
        writeToolkit("case $1 in " + std::string(failing) + ") exit 1;; esac\n" + kStamp);
        EXPECT_EQ(0, runProgram(call()).exitStatus) << failing;
        EXPECT_THAT(temporaries.names(), IsEmpty()) << failing;
    }
}

TEST_F(ToolkitProgramTest, AJobFileSurvivesCommandsThatFail)
{
    writeToolkit("exit 1\n");
    EXPECT_EQ("page", body(runProgram(callWithFile()).output));
    EXPECT_EQ("page", Support::readFile(jobPath));
    EXPECT_THAT(temporaries.names(), IsEmpty());
}

TEST_F(ToolkitProgramTest, ACommandThatWorksConsumesTheJobFileAndLeavesItsOutput)
{
    writeToolkit("[ $1 = watermark ] && exit 1\n" + std::string(kStamp));
    EXPECT_EQ("page+booklet+coverpages", body(runProgram(callWithFile()).output));
    EXPECT_FALSE(fs::exists(jobPath));
    ASSERT_EQ(1U, temporaries.names().size());
    EXPECT_THAT(temporaries.names().front(), StartsWith("toolkit-"));
    EXPECT_EQ("page+booklet+coverpages",
              Support::readFile(temporaries.file(temporaries.names().front())));
}

TEST_F(ToolkitProgramTest, AnOutputThatTheToolkitRemovedCannotBeRead)
{
    writeToolkit("rm \"$output\"\n");
    const auto result = runProgram(call("BookletPaperSize=A4"));
    EXPECT_EQ("CRIT: Unable to read from input\n", result.errors);
    EXPECT_EQ(1, result.exitStatus);
    EXPECT_EQ("", result.output);
}

TEST_F(ToolkitProgramTest, AnOutputThatTheToolkitReplacedIsPrinted)
{
    writeToolkit("printf new > $D/new; mv $D/new \"$output\"\n");
    EXPECT_EQ("new", body(runProgram(call("BookletPaperSize=A4")).output));
    EXPECT_THAT(temporaries.names(), IsEmpty());
}

// Toolkits that do not run

TEST_F(ToolkitProgramTest, AToolkitThatDoesNotStartFailsTheJobAndKeepsIt)
{
    Support::writeFile(folder.file(kToolkit), "#!/no/such/interpreter\n");
    fs::permissions(folder.file(kToolkit), fs::perms::owner_all);
    const auto result = runProgram(callWithFile("BookletPaperSize=A4"));
    EXPECT_EQ("CRIT: Unable to start " + folder.file(kToolkit) + ": No such file or directory\n",
              result.errors);
    EXPECT_EQ(1, result.exitStatus);
    EXPECT_EQ("", result.output);
    EXPECT_EQ("page", Support::readFile(jobPath));
    EXPECT_THAT(temporaries.names(), IsEmpty());
}

TEST_F(ToolkitProgramTest, AToolkitThatIsNotToBeTrustedCountsAsMissing)
{
    writeToolkit(kStamp);
    ASSERT_EQ(0, chmod(folder.file(kToolkit).c_str(), 0777));
    const auto result = runProgram(call());
    EXPECT_EQ(std::string(kNoToolkit) + "DEBUG: The toolkit is not used: " + folder.file(kToolkit) +
                  " is writable by everyone\n",
              result.errors);
    EXPECT_EQ("page", body(result.output));
    EXPECT_EQ(0, result.exitStatus);
}

TEST_F(ToolkitProgramTest, AFolderOnTheWayThatIsNotToBeTrustedIsNamed)
{
    writeToolkit(kStamp);
    const std::string bundle = folder.file("Panel.bundle");
    ASSERT_EQ(0, chmod(bundle.c_str(), 0775));
    const auto result = runProgram(call());
    EXPECT_EQ(std::string(kNoToolkit) + "DEBUG: The toolkit is not used: " + bundle +
                  " is writable by its group\n",
              result.errors);
    EXPECT_EQ("page", body(result.output));
}

namespace {

/// Exchanges two files for one another as somebody else, again and again.
class Swapper {
public:
    Swapper(const std::string &one, const std::string &other) : _process(fork())
    {
        if (_process != 0)
            return;
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (setgid(kSomebody) != 0 || setuid(kSomebody) != 0)
            _exit(99);
        while (renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) == 0)
            usleep(100);
        _exit(98);
    }
    ~Swapper()
    {
        kill(_process, SIGKILL);
        waitpid(_process, nullptr, 0);
    }
    Swapper(const Swapper &) = delete;
    Swapper &operator=(const Swapper &) = delete;

    bool isAtWork() const { return waitpid(_process, nullptr, WNOHANG) == 0; }

    static constexpr uid_t kSomebody = 65534;

private:
    pid_t _process;
};

#ifdef NDEBUG
constexpr int kJobsMeanwhile = 250;
#else
constexpr int kJobsMeanwhile = 50; // of slow programs: the optimised ones are as quick as a thief
#endif

/// A toolkit of root's, and a foreign one that somebody else may put in its place.
class SwappedToolkitTest : public ToolkitProgramTest {
protected:
    void SetUp() override
    {
        if (geteuid() != 0)
            GTEST_SKIP() << "only root can become a second user";
        fs::permissions(folder.path(), fs::perms(0755));
        writeToolkit(kStamp);
        fs::create_directories(folder.file("foreign.bundle/Contents/Linux"));
        folder.writeScript("foreign.bundle/Contents/Linux/toolkit",
                           "echo ran >> " + folder.file("foreign-runs"));
    }

    /// Prints jobs meanwhile. @return how many of them ran the foreign toolkit
    std::size_t foreignRuns() const
    {
        const Swapper swapper(folder.file("Panel.bundle"), folder.file("foreign.bundle"));
        for (int job = 0; job < kJobsMeanwhile; ++job)
            EXPECT_EQ(0, runProgram(call("BookletPaperSize=A4")).exitStatus);
        EXPECT_TRUE(swapper.isAtWork());
        const std::string runs = folder.file("foreign-runs");
        return fs::exists(runs) ? Support::readFile(runs).size() / std::string_view("ran\n").size()
                                : 0;
    }
};

} // namespace

TEST_F(SwappedToolkitTest, InAFolderOfSomebodyElsesNoForeignToolkitRuns)
{
    ASSERT_EQ(0, chown(folder.path().c_str(), Swapper::kSomebody, Swapper::kSomebody));
    EXPECT_EQ(0U, foreignRuns());
}

TEST_F(SwappedToolkitTest, InAFolderForEveryoneNoForeignToolkitRuns)
{
    fs::permissions(folder.path(), fs::perms(0777));
    EXPECT_EQ(0U, foreignRuns());
}

// What a toolkit sees

namespace {

/// Has a shell save its own name and where its files lead, by number as text: the third is the
/// script. Another shell looks, for looking takes files of one's own.
constexpr char kSaveWhatIsSeen[] =
    "sh -c \"readlink /proc/$$/fd/* > '$D/files'\"\n"
    "{ tr '\\0' '\\n' < /proc/$$/cmdline; echo \"$0\"; cat \"$D/files\"; } > \"$D/seen\"\n";

std::string filesSeen(const std::string &script)
{
    return "/dev/null\n/dev/null\n" + script + "\npipe:.[0-9]+.\n";
}

} // namespace

TEST_F(ToolkitProgramTest, AScriptKnowsItsPathAndGetsNoFileOfTheFilters)
{
    writeToolkit(kSaveWhatIsSeen + std::string(kStamp));
    EXPECT_EQ("", runProgram(call("BookletPaperSize=A4")).errors);
    const std::string toolkit = folder.file(kToolkit);
    EXPECT_THAT(Support::readFile(folder.file("seen")),
                MatchesRegex("/bin/sh\n" + toolkit + "\nbooklet\n(.*\n)*" + toolkit + "\n" +
                             filesSeen(toolkit)));
}

TEST_F(ToolkitProgramTest, AProgramKnowsItsPathAndGetsNoFileOfTheFilters)
{
    // A shell in the toolkit's place, which takes the command's word for the name of a script.
    fs::copy_file(fs::canonical("/bin/sh"), folder.file(kToolkit));
    folder.write("booklet", "D=.\n" + std::string(kSaveWhatIsSeen));
    auto job = call("BookletPaperSize=A4");
    job.inChild = [this] { fs::current_path(folder.path()); };
    EXPECT_EQ("", runProgram(job).errors);
    EXPECT_THAT(Support::readFile(folder.file("seen")),
                MatchesRegex(folder.file(kToolkit) + "\nbooklet\n(.*\n)*booklet\n" +
                             filesSeen(folder.file("booklet"))));
}

// A filter that is killed

TEST_F(ToolkitProgramTest, AFilterThatIsKilledTakesAForeignToolkitAlong)
{
    writeToolkit("trap '' TERM; sleep 100 & echo $! > $D/grandchild\n"
                 "echo page > $output; echo $$ > $D/new; mv $D/new $D/child; wait\n");
    auto killed = callWithFile();
    killed.afterStart = [this](pid_t program) {
        waitForFile("child");
        EXPECT_TRUE(comesToBeGuarded(program));
        kill(program, SIGKILL);
    };
    EXPECT_EQ(SIGKILL, runProgram(killed).signal);
    EXPECT_TRUE(ends(pidIn(folder.file("child"))));
    EXPECT_TRUE(ends(pidIn(folder.file("grandchild"))));
    EXPECT_TRUE(Support::comesTrue([this] { return temporaries.names().empty(); }));
}

TEST_F(ToolkitProgramTest, AFilterThatIsKilledKeepsTheSpooledJob)
{
    writeToolkit("echo $$ > $D/new; mv $D/new $D/child; exec sleep 100\n");
    auto killed = call();
    killed.inChild = [this] { dup2(open(jobPath.c_str(), O_RDONLY), STDIN_FILENO); };
    killed.afterStart = [this](pid_t program) {
        waitForFile("child");
        EXPECT_TRUE(comesToBeGuarded(program));
        kill(program, SIGKILL);
    };
    EXPECT_EQ(SIGKILL, runProgram(killed).signal);
    EXPECT_TRUE(ends(pidIn(folder.file("child"))));
    EXPECT_TRUE(Support::comesTrue([this] { return temporaries.names().size() == 1; }));
    EXPECT_THAT(temporaries.names(), testing::ElementsAre(StartsWith("jobfilter-")));
}

TEST_F(ToolkitProgramTest, AFilterThatIsKilledTakesOurToolkitAlongWhichRemovesItsOutput)
{
    // A script first, that says which process becomes our toolkit.
    writeToolkit("echo $$ > $D/new; mv $D/new $D/child; exec " KL_TOOLKIT " \"$@\"\n");
    auto killed = callWithFile("BookletPaperSize=A4");
    folder.write("job.ps", documentOfPages(20000));
    killed.afterStart = [this](pid_t program) {
        EXPECT_TRUE(Support::comesTrue([this] { return outputIsWritten(); }));
        // Also its guard, so that nobody else cleans up.
        for (const pid_t child : childrenOf(program)) {
            if (child != pidIn(folder.file("child")))
                kill(child, SIGKILL);
        }
        kill(program, SIGKILL);
    };
    EXPECT_EQ(SIGKILL, runProgram(killed).signal);
    EXPECT_TRUE(ends(pidIn(folder.file("child"))));
    EXPECT_THAT(temporaries.names(), IsEmpty());
}

// A cancelled job

TEST_F(ToolkitProgramTest, ACancelledJobEndsTheToolkitAndRemovesItsOutput)
{
    writeToolkit(
        "sleep 100 & echo $! > $D/grandchild; echo $$ > $D/new; mv $D/new $D/child; wait\n");
    for (const bool spooled : {true, false}) {
        fs::remove(folder.file("child"));
        Support::ProgramCall cancelled = spooled ? call() : callWithFile();
        cancelled.inChild = [this] { dup2(open(jobPath.c_str(), O_RDONLY), STDIN_FILENO); };
        cancelled.afterStart = [this](pid_t program) {
            waitForFile("child");
            EXPECT_THAT(temporaries.names(), Not(IsEmpty()));
            kill(program, SIGTERM);
        };
        const auto result = runProgram(cancelled);
        EXPECT_EQ(SIGTERM, result.signal);
        EXPECT_EQ("", result.output);
        EXPECT_THAT(temporaries.names(), IsEmpty());
        EXPECT_TRUE(ends(pidIn(folder.file("child"))));
        EXPECT_TRUE(ends(pidIn(folder.file("grandchild"))));
        EXPECT_EQ("page", Support::readFile(jobPath));
    }
}

TEST_F(ToolkitProgramTest, AJobCancelledInItsSecondCommandLeavesNothingOfTheFirst)
{
    writeToolkit("[ $1 = booklet ] && { : > $D/second; sleep 100; }\n" + std::string(kStamp));
    Support::ProgramCall cancelled = callWithFile();
    cancelled.afterStart = [this](pid_t program) {
        waitForFile("second");
        kill(program, SIGTERM);
    };
    EXPECT_EQ(SIGTERM, runProgram(cancelled).signal);
    EXPECT_THAT(temporaries.names(), IsEmpty());
}

// Fonts

TEST_F(ToolkitProgramTest, TheWatermarksPlaceIsMeasured)
{
    writeToolkit("printf '%s\\n' \"$@\" > $D/arguments\n" + std::string(kStamp));
    runProgram(call("com.kalmira.pde.watermark.text=HH com.kalmira.pde.watermark.size=100"));
    // Half of 595 less two letters of 72.2 points; half of 842 less a line of 120 points.
    EXPECT_THAT(Support::readFile(folder.file("arguments")),
                HasSubstr("--position\n225.300000,361.000000\n"));
}

TEST_F(ToolkitProgramTest, FontLibrariesAreLoadedForAWatermarkAlone)
{
    writeToolkit("cat /proc/$PPID/maps > $D/maps\n" + std::string(kStamp));
    const std::vector<std::string> libraries = {"libfontconfig", "libfreetype", "libharfbuzz",
                                                "libfribidi", "KLTextMeasuringModule"};
    runProgram(call("BookletPaperSize=A4"));
    for (const std::string &library : libraries)
        EXPECT_THAT(Support::readFile(folder.file("maps")), Not(HasSubstr(library)));
    runProgram(call("com.kalmira.pde.watermark.text=Draft"));
    for (const std::string &library : libraries)
        EXPECT_THAT(Support::readFile(folder.file("maps")), HasSubstr(library));
}

TEST_F(ToolkitProgramTest, TheProgramItselfNeedsNoFontLibrary)
{
    const auto result = Support::runProgram({.arguments = {"readelf", "-d", JOBFILTER_PROGRAM}});
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_THAT(result.output, HasSubstr("Shared library: [libcups"));
    for (const char *library : {"fontconfig", "freetype", "harfbuzz", "fribidi"})
        EXPECT_THAT(result.output, Not(HasSubstr(library)));
}
