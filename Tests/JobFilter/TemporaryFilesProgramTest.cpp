// What the built program does in a temporary folder that belongs to somebody else, who gives the
// names of its files to other files: none of these is written, printed or removed.

#include "MinimalPPD.h"
#include "Program.h"
#include "TemporaryFolder.h"
#include "Waiting.h"

#include <array>
#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ostream>
#include <poll.h>
#include <stdexcept>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr char kAnother[] = "the pages of another";
constexpr char kPages[] = "%!PS\nshowpage\n";
constexpr char kBooklet[] = "BookletPaperSize=A4";
constexpr char kBookletAndCovers[] = "BookletPaperSize=A4 UseFrontCover=True";
constexpr char kUnreadable[] = "CRIT: Unable to read from input\n";
constexpr uid_t kSomebody = 65534;

/// What a toolkit's script has its files in; "$D" is the test's folder.
constexpr char kItsFiles[] = "for a; do input=$output; output=$a; done\n";

class TemporaryFilesProgramTest : public testing::Test {
protected:
    TemporaryFilesProgramTest()
    {
        const std::string bundle = folder.file("Panel.bundle");
        fs::create_directories(bundle + "/Contents/Linux");
        Support::writeFile(ppdPath,
                           Support::minimalPPD("*APDialogExtension: \"" + bundle + "\"\n"));
    }

    /// A toolkit that does as the lines say: "$input" and "$output" are its files, "$D" is the
    /// test's folder. It notes its commands.
    void useToolkit(const std::string &lines) const
    {
        folder.writeScript("Panel.bundle/Contents/Linux/toolkit",
                           "D='" + folder.path() + "'\necho $1 >> $D/commands\n" + kItsFiles +
                               lines);
    }

    Support::ProgramCall call(const std::string &input, const std::string &options = "") const
    {
        Support::ProgramCall result;
        result.arguments = {JOBFILTER_PROGRAM, "7", "anna", "Report", "2", options};
        result.environment = {{"PPD", ppdPath}, {"TMPDIR", temporaries.path()}};
        result.input = input;
        return result;
    }

    /// Prints a job whose pages come on standard input, the last of them once `meanwhile` has done
    /// its work on the spool file that was made.
    /// @param ends  whether they come at all
    Support::ProgramResult
    printWhile(const std::function<void(const std::string &spoolFile, pid_t program)> &meanwhile,
               const std::string &options = "", bool ends = true) const
    {
        std::array<int, 2> slow = {};
        EXPECT_EQ(0, pipe2(slow.data(), O_CLOEXEC));
        Support::ProgramCall call = this->call("", options);
        call.inChild = [&] { dup2(slow[0], STDIN_FILENO); };
        call.afterStart = [&](pid_t program) {
            EXPECT_TRUE(Support::comesTrue([this] { return !temporaries.names().empty(); }));
            meanwhile(temporaries.file(temporaries.names().at(0)), program);
            if (ends) {
                EXPECT_EQ(std::ssize(std::string(kPages)),
                          write(slow[1], kPages, std::string(kPages).size()));
                close(slow[1]);
            }
        };
        auto result = runProgram(call);
        close(slow[0]);
        if (!ends)
            close(slow[1]);
        return result;
    }

    /// The other file as it was.
    void expectAnotherAsItWas() const
    {
        EXPECT_EQ(kAnother, Support::readFile(another));
        struct stat status = {};
        EXPECT_EQ(0, stat(another.c_str(), &status));
        EXPECT_EQ(0600U, status.st_mode & 07777U);
    }

    Support::TemporaryFolder folder;
    std::string ppdPath = folder.file("queue.ppd");
    std::string another = [this] {
        std::string path = folder.write("another", kAnother);
        chmod(path.c_str(), 0600);
        return path;
    }();
    Support::TemporaryFolder temporaries; ///< the program's temporary directory
};

} // namespace

// The spooled pages

TEST_F(TemporaryFilesProgramTest, ALinkInThePlaceOfTheSpoolFileIsNeitherPrintedNorRemoved)
{
    const auto result = printWhile([this](const std::string &spoolFile, pid_t) {
        fs::remove(spoolFile);
        fs::create_symlink(another, spoolFile);
    });
    EXPECT_EQ(0, result.exitStatus) << result.errors;
    EXPECT_THAT(result.output, HasSubstr(std::string("\n") + kPages + "\033"));
    EXPECT_THAT(result.output, Not(HasSubstr(kAnother)));
    ASSERT_EQ(1U, temporaries.names().size());
    EXPECT_EQ(another, fs::read_symlink(temporaries.file(temporaries.names()[0])));
    expectAnotherAsItWas();
}

TEST_F(TemporaryFilesProgramTest, AnotherFileInThePlaceOfTheSpoolFileIsNeitherPrintedNorRemoved)
{
    const auto result = printWhile([this](const std::string &spoolFile, pid_t) {
        fs::copy_file(another, spoolFile + "-new");
        fs::rename(spoolFile + "-new", spoolFile);
    });
    EXPECT_EQ(0, result.exitStatus) << result.errors;
    EXPECT_THAT(result.output, HasSubstr(kPages));
    EXPECT_THAT(result.output, Not(HasSubstr(kAnother)));
    ASSERT_EQ(1U, temporaries.names().size());
    EXPECT_EQ(kAnother, Support::readFile(temporaries.file(temporaries.names()[0])));
}

TEST_F(TemporaryFilesProgramTest, ASpoolFileThatHasLostItsNameIsPrinted)
{
    const auto result =
        printWhile([](const std::string &spoolFile, pid_t) { fs::remove(spoolFile); });
    EXPECT_EQ(0, result.exitStatus) << result.errors;
    EXPECT_THAT(result.output, HasSubstr(kPages));
    EXPECT_THAT(temporaries.names(), IsEmpty());
}

TEST_F(TemporaryFilesProgramTest, ACancelledJobRemovesNothingButItsSpoolFile)
{
    const auto result = printWhile(
        [this](const std::string &spoolFile, pid_t program) {
            fs::rename(another, spoolFile);
            kill(program, SIGTERM);
        },
        "", false);
    EXPECT_EQ(SIGTERM, result.signal);
    ASSERT_EQ(1U, temporaries.names().size());
    EXPECT_EQ(kAnother, Support::readFile(temporaries.file(temporaries.names()[0])));
}

TEST_F(TemporaryFilesProgramTest, AJobWithoutAPPDRemovesNothingButItsSpoolFile)
{
    const auto result = printWhile([this](const std::string &spoolFile, pid_t) {
        fs::rename(another, spoolFile);
        fs::remove(ppdPath);
    });
    EXPECT_EQ(1, result.exitStatus);
    ASSERT_EQ(1U, temporaries.names().size());
    EXPECT_EQ(kAnother, Support::readFile(temporaries.file(temporaries.names()[0])));
}

TEST_F(TemporaryFilesProgramTest, TheToolkitIsNotGivenWhatHasTheNameOfTheSpoolFile)
{
    useToolkit("cat \"$input\" > \"$output\"\n");
    const auto result = printWhile(
        [this](const std::string &spoolFile, pid_t) {
            fs::remove(spoolFile);
            fs::create_symlink(another, spoolFile);
        },
        kBooklet);
    EXPECT_EQ("ERROR: Unable to apply booklet mode\n"
              "DEBUG: Unable to apply booklet mode: The job's file has been replaced by another.\n",
              result.errors);
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_THAT(result.output, HasSubstr(kPages));
    EXPECT_FALSE(fs::exists(folder.file("commands")));
    expectAnotherAsItWas();
}

namespace {

/// Puts a link to a file in the place of each spool file, the moment that it is made.
class Watcher {
public:
    Watcher(const Support::TemporaryFolder &watched, std::string target)
        : _folder(watched), _target(std::move(target))
    {
        if (inotify_add_watch(_watch, watched.path().c_str(), IN_CREATE) < 0)
            throw std::runtime_error("cannot watch a folder");
        _thread = std::thread([this] {
            while (!_over)
                lookAtNews();
        });
    }
    ~Watcher()
    {
        _over = true;
        _thread.join();
        close(_watch);
    }
    Watcher(const Watcher &) = delete;
    Watcher &operator=(const Watcher &) = delete;

private:
    void lookAtNews() const
    {
        alignas(inotify_event) std::array<char, 4096> news = {};
        pollfd wait = {_watch, POLLIN, 0};
        if (poll(&wait, 1, 20) != 1)
            return;
        const ssize_t size = read(_watch, news.data(), news.size());
        for (ssize_t place = 0; place < size;) {
            const auto *event = reinterpret_cast<const inotify_event *>(news.data() + place);
            replace(event->name);
            place += static_cast<ssize_t>(sizeof *event + event->len);
        }
    }

    void replace(const std::string &name) const
    {
        const std::string link = _folder.file("link");
        if (name != "link" && symlink(_target.c_str(), link.c_str()) == 0)
            rename(link.c_str(), _folder.file(name).c_str());
    }

    const Support::TemporaryFolder &_folder;
    std::string _target;
    int _watch = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
    std::atomic<bool> _over = false;
    std::thread _thread;
};

} // namespace

TEST_F(TemporaryFilesProgramTest, AWatcherWhoIsQuickOverwritesNothing)
{
    const Watcher watcher(temporaries, another);
    for (int job = 0; job < 40; ++job) {
        const auto result = runProgram(call(kPages));
        EXPECT_EQ(0, result.exitStatus);
        EXPECT_THAT(result.output, HasSubstr(kPages));
        expectAnotherAsItWas();
    }
}

// What the toolkit has made

namespace {

/// Something that a toolkit, or whoever owns the folder, leaves in the place of its output.
struct Leftover {
    const char *name;
    const char *lines; ///< of the toolkit's script
    bool byRootOnly = false;
};

void PrintTo(const Leftover &leftover, std::ostream *stream)
{
    *stream << leftover.name;
}

class ToolkitsLeftoversTest : public TemporaryFilesProgramTest,
                              public testing::WithParamInterface<Leftover> {
protected:
    void SetUp() override
    {
        if (GetParam().byRootOnly && geteuid() != 0)
            GTEST_SKIP() << "only root can give a file to another user";
    }
};

} // namespace

TEST_P(ToolkitsLeftoversTest, IsNotTakenForTheJob)
{
    useToolkit(GetParam().lines);
    const auto result = runProgram(call(kPages, kBooklet));
    EXPECT_EQ(kUnreadable, result.errors);
    EXPECT_EQ("", result.output);
    EXPECT_EQ(1, result.exitStatus);
    EXPECT_EQ(GetParam().name == std::string("Nothing") ? 0U : 1U, temporaries.names().size());
    expectAnotherAsItWas();
}

TEST_P(ToolkitsLeftoversTest, IsNotTakenForTheJobOfANamedFile)
{
    useToolkit(GetParam().lines);
    auto named = call("", kBooklet);
    named.arguments.push_back(folder.write("job.ps", kPages));
    const auto result = runProgram(named);
    EXPECT_EQ(kUnreadable, result.errors);
    EXPECT_EQ("", result.output);
    EXPECT_EQ(1, result.exitStatus);
    expectAnotherAsItWas();
}

TEST_P(ToolkitsLeftoversTest, StaysWhereTheCommandFails)
{
    useToolkit(std::string(GetParam().lines) + "exit 3\n");
    const auto result = runProgram(call(kPages, kBooklet));
    EXPECT_THAT(result.errors, StartsWith("ERROR: Unable to apply booklet mode\n"));
    EXPECT_THAT(result.output, HasSubstr(kPages));
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_EQ(GetParam().name == std::string("Nothing") ? 0U : 1U, temporaries.names().size());
    expectAnotherAsItWas();
}

TEST_P(ToolkitsLeftoversTest, StaysWhenTheJobIsCancelled)
{
    useToolkit(std::string(GetParam().lines) + "kill -TERM $PPID; sleep 60\n");
    const auto result = runProgram(call(kPages, kBooklet));
    EXPECT_EQ(SIGTERM, result.signal);
    EXPECT_EQ(GetParam().name == std::string("Nothing") ? 0U : 1U, temporaries.names().size());
    expectAnotherAsItWas();
}

INSTANTIATE_TEST_SUITE_P(
    TemporaryFiles, ToolkitsLeftoversTest,
    testing::Values(
        Leftover{"Nothing", "rm \"$output\"\n"},
        Leftover{"Link", "rm \"$output\"; ln -s $D/another \"$output\"\n"},
        Leftover{"LinkToNothing", "rm \"$output\"; ln -s $D/missing \"$output\"\n"},
        Leftover{"Folder", "rm \"$output\"; mkdir \"$output\"\n"},
        Leftover{"FIFO", "rm \"$output\"; mkfifo \"$output\"\n"},
        Leftover{"LinkToAFIFO", "rm \"$output\"; mkfifo $D/fifo; ln -s $D/fifo \"$output\"\n"},
        Leftover{"FileOfAnother", "cat $D/another > \"$output\"; chown 65534 \"$output\"\n", true}),
    [](const auto &parameter) { return parameter.param.name; });

TEST_F(TemporaryFilesProgramTest, TheNextCommandIsNotGivenALinkInThePlaceOfTheOutput)
{
    useToolkit("cat \"$input\" > $D/seen-by-$1; rm \"$output\"; ln -s $D/another \"$output\"\n");
    const auto result = runProgram(call(kPages, kBookletAndCovers));
    EXPECT_EQ("ERROR: Unable to apply cover pages\n"
              "DEBUG: Unable to apply cover pages: The job's file has been replaced by another.\n" +
                  std::string(kUnreadable),
              result.errors);
    EXPECT_EQ("booklet\n", Support::readFile(folder.file("commands")));
    EXPECT_EQ("", result.output);
    expectAnotherAsItWas();
}

TEST_F(TemporaryFilesProgramTest, AFileThatTheToolkitHasPutInThePlaceOfItsOutputIsPrinted)
{
    useToolkit("echo +$1 | cat \"$input\" - > \"$output.new\"; mv \"$output.new\" \"$output\"\n");
    const auto result = runProgram(call(kPages, kBookletAndCovers));
    EXPECT_EQ("", result.errors);
    EXPECT_THAT(result.output, HasSubstr(std::string(kPages) + "+booklet\n+coverpages\n\033"));
    EXPECT_THAT(temporaries.names(), IsEmpty());
}

// It may hold half of the job's pages.
TEST_F(TemporaryFilesProgramTest, AFileThatTheToolkitHasPutInThePlaceOfItsOutputIsRemoved)
{
    const std::string replace =
        "cat \"$input\" > \"$output.new\"; mv \"$output.new\" \"$output\"\n";
    useToolkit(replace + "exit 3\n");
    EXPECT_EQ(0, runProgram(call(kPages, kBooklet)).exitStatus);
    EXPECT_THAT(temporaries.names(), IsEmpty());

    useToolkit(replace + "kill -TERM $PPID; sleep 60\n");
    EXPECT_EQ(SIGTERM, runProgram(call(kPages, kBooklet)).signal);
    EXPECT_THAT(temporaries.names(), IsEmpty());
}

// Between the making of the output and the toolkit's own opening of it. Not at once: a toolkit that
// has ended at the first look keeps its text to itself.
TEST_F(TemporaryFilesProgramTest, OurToolkitWritesThroughNoLink)
{
    useToolkit("sleep 0.2; rm \"$output\"; ln -s $D/another \"$output\"; exec " KL_TOOLKIT
               " \"$@\"\n");
    const std::string document = "%!PS-Adobe-3.0\n%%Pages: 1\n%%EndComments\n%%Page: 1 1\n"
                                 "10 10 50 50 rectfill showpage\n%%EOF\n";
    const auto result = runProgram(call(document, kBooklet));
    EXPECT_THAT(result.errors, HasSubstr("booklet mode: The output is a symbolic link.\n"));
    EXPECT_THAT(result.output, HasSubstr(document));
    EXPECT_EQ(0, result.exitStatus);
    expectAnotherAsItWas();
}

// The folder's owner, the running user and the owner of what is put there are three.
TEST_F(TemporaryFilesProgramTest, AJobOfAnOrdinaryUserPrintsInAFolderOfSomebodyElse)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can give a folder to another user and become a third";
    constexpr uid_t kThird = kSomebody - 1;
    ASSERT_EQ(0, chmod(folder.path().c_str(), 0755));
    ASSERT_EQ(0, chown(temporaries.path().c_str(), kThird, kThird));
    ASSERT_EQ(0, chmod(temporaries.path().c_str(), 0777));
    useToolkit("echo +$1 | cat \"$input\" - > \"$output\"\n");
    fs::permissions(folder.path(), fs::perms(0777)); // it notes its commands there
    auto job = call(kPages, kBookletAndCovers);
    job.inChild = [] {
        if (setgid(kSomebody) != 0 || setuid(kSomebody) != 0)
            _exit(99);
    };
    const auto result = runProgram(job);
    EXPECT_EQ(0, result.exitStatus) << result.errors;
    EXPECT_THAT(temporaries.names(), IsEmpty());
}
