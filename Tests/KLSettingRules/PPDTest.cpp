#include "openPPD.h"

#include "MinimalPPD.h"
#include "Program.h"
#include "TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

class OpenPPDTest : public testing::Test {
protected:
    /// What is said about a file that is no PPD; "opened" for one that is.
    static std::string whyNot(const std::string &path)
    {
        std::string reason = "untouched";
        return openPPD(path, &reason) ? "opened" : reason;
    }

    Support::TemporaryFolder folder;
};

} // namespace

TEST_F(OpenPPDTest, OpensAPPDWithoutMarkingAnything)
{
    std::string reason;
    const PPD ppd = openPPD(folder.write("ppd", Support::minimalPPD()), &reason);
    ASSERT_TRUE(ppd);
    EXPECT_STREQ("A4", ppdFindOption(ppd.get(), "PageSize")->defchoice);
    EXPECT_EQ(nullptr, ppdFindMarkedChoice(ppd.get(), "PageSize"));
}

TEST_F(OpenPPDTest, ReadsWhatIsLongerThanItsBuffersToTheEnd)
{
    std::string comments;
    while (comments.size() < 100000)
        comments += "*% " + std::string(70, '-') + "\n";
    EXPECT_EQ("opened", whyNot(folder.write("ppd", Support::minimalPPD(comments))));
}

TEST_F(OpenPPDTest, OpensACompressedPPD)
{
    const std::string path = folder.write("queue.ppd", Support::minimalPPD());
    ASSERT_EQ(0, Support::runProgram({.arguments = {"gzip", path}}).exitStatus);
    EXPECT_EQ("opened", whyNot(path + ".gz"));
}

TEST_F(OpenPPDTest, SaysWhyNot)
{
    EXPECT_EQ("No such file or directory", whyNot(folder.file("missing")));
    EXPECT_EQ("No such file or directory", whyNot(""));
    EXPECT_EQ("not a regular file", whyNot(folder.path()));
    EXPECT_EQ("not a regular file", whyNot("/dev/zero"));
    ASSERT_EQ(0, mkfifo(folder.file("fifo").c_str(), 0600));
    EXPECT_EQ("not a regular file", whyNot(folder.file("fifo")));
    EXPECT_THAT(whyNot(folder.write("text", "no PPD\n")), testing::HasSubstr(" on line "));
    const std::string large = folder.write("large", Support::minimalPPD());
    fs::resize_file(large, (16U << 20) + 1);
    EXPECT_EQ("larger than 16 MiB", whyNot(large));
}
