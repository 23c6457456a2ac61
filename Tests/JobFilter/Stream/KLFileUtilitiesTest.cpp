#include "KLFileUtilities.h"

#include "Environment.h"
#include "TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace fs = std::filesystem;
using testing::MatchesRegex;

class KLFileUtilitiesTest : public testing::Test {
protected:
    Support::TemporaryFolder folder;
    Support::ScopedEnvironment temporaryDirectory{"TMPDIR", folder.path()};
};

TEST_F(KLFileUtilitiesTest, MakesTwoDifferentEmptyFiles)
{
    const auto first = KLFileUtilities::generateTemporaryFilename();
    const auto second = KLFileUtilities::generateTemporaryFilename();
    ASSERT_TRUE(first && second);
    EXPECT_NE(*first, *second);
    for (const std::string &path : {*first, *second}) {
        EXPECT_EQ(folder.path(), fs::path(path).parent_path());
        EXPECT_THAT(fs::path(path).filename(), MatchesRegex("jobfilter-[A-Za-z0-9]{6}"));
        EXPECT_EQ("", Support::readFile(path));
    }
}

TEST_F(KLFileUtilitiesTest, OnlyTheOwnerMayReadThem)
{
    struct stat status = {};
    ASSERT_EQ(0, stat(KLFileUtilities::generateTemporaryFilename()->c_str(), &status));
    EXPECT_EQ(0600U, status.st_mode & 07777U);
}

TEST_F(KLFileUtilitiesTest, TheFileIsClosed)
{
    const auto countDescriptors = [] {
        return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    };
    const auto before = countDescriptors();
    ASSERT_TRUE(KLFileUtilities::generateTemporaryFilename());
    EXPECT_EQ(before, countDescriptors());
}

TEST_F(KLFileUtilitiesTest, TheNameBeginsWithThePrefix)
{
    const auto path = KLFileUtilities::generateTemporaryFilenameWithPrefix("toolkit");
    ASSERT_TRUE(path);
    EXPECT_THAT(fs::path(*path).filename(), MatchesRegex("toolkit-[A-Za-z0-9]{6}"));
}

TEST_F(KLFileUtilitiesTest, ATrailingSlashOfTheTemporaryDirectoryMakesNoDifference)
{
    const Support::ScopedEnvironment slash("TMPDIR", folder.path() + "/");
    const auto path = KLFileUtilities::generateTemporaryFilename();
    ASSERT_TRUE(path);
    EXPECT_EQ(std::string::npos, path->find("//"));
}

TEST_F(KLFileUtilitiesTest, AMissingTemporaryDirectoryGivesNothing)
{
    const Support::ScopedEnvironment missing("TMPDIR", folder.file("missing"));
    EXPECT_EQ(std::nullopt, KLFileUtilities::generateTemporaryFilename());
}

TEST_F(KLFileUtilitiesTest, APathOfMoreThan1023BytesGivesNothingAndNoFile)
{
    // The name behind the folder takes "/jobfilter-XXXXXX", 17 bytes.
    std::string longest = folder.path();
    while (longest.size() < 1023 - 17 - 200)
        longest += "/" + std::string(150, 'd');
    longest += "/" + std::string(1023 - 17 - longest.size() - 1, 'e');
    fs::create_directories(longest);

    const Support::ScopedEnvironment fits("TMPDIR", longest);
    const auto path = KLFileUtilities::generateTemporaryFilename();
    ASSERT_TRUE(path);
    EXPECT_EQ(1023U, path->size());
    fs::remove(*path);

    fs::create_directories(longest + "f");
    const Support::ScopedEnvironment tooLong("TMPDIR", longest + "f");
    EXPECT_EQ(std::nullopt, KLFileUtilities::generateTemporaryFilename());
    EXPECT_TRUE(fs::is_empty(longest + "f"));
}
