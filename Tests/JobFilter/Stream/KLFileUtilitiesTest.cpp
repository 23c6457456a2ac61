#include "KLFileUtilities.h"

#include "Environment.h"
#include "TemporaryFolder.h"

#include <array>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;
using testing::MatchesRegex;

class KLFileUtilitiesTest : public testing::Test {
protected:
    ~KLFileUtilitiesTest() override
    {
        for (const std::string &name : folder.names())
            KLFileUtilities::keepFile(folder.file(name));
    }

    static std::string readAll(const std::string &path)
    {
        const Platform::Stream stream = KLFileUtilities::openForReading(path);
        std::array<char, 100> bytes = {};
        return {bytes.data(), std::fread(bytes.data(), 1, bytes.size(), stream.get())};
    }

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

// Files that stay open

TEST_F(KLFileUtilitiesTest, ATemporaryFileIsEmptyNewAndTheOwnersAlone)
{
    const auto file = KLFileUtilities::makeTemporaryFile();
    ASSERT_TRUE(file);
    EXPECT_EQ(folder.path(), fs::path(file->path).parent_path());
    EXPECT_THAT(fs::path(file->path).filename(), MatchesRegex("jobfilter-[A-Za-z0-9]{6}"));
    struct stat status = {};
    ASSERT_EQ(0, stat(file->path.c_str(), &status));
    EXPECT_EQ(0600U, status.st_mode & 07777U);
    EXPECT_EQ(0, status.st_size);
}

TEST_F(KLFileUtilitiesTest, WhereThereIsNoPlaceThereIsNoTemporaryFile)
{
    const Support::ScopedEnvironment missing("TMPDIR", folder.file("missing"));
    EXPECT_FALSE(KLFileUtilities::makeTemporaryFile());
}

TEST_F(KLFileUtilitiesTest, WithoutADescriptorToHoldItByNoFileIsLeft)
{
#if defined(__has_feature)
#if __has_feature(undefined_behavior_sanitizer)
    GTEST_SKIP() << "The sanitizers need a file of their own, and there is none to be had.";
#endif
#endif
    const int next = dup(0); // the lowest that is free
    close(next);
    rlimit usual = {};
    ASSERT_EQ(0, getrlimit(RLIMIT_NOFILE, &usual));
    const rlimit oneMore = {static_cast<rlim_t>(next) + 1, usual.rlim_max};
    setrlimit(RLIMIT_NOFILE, &oneMore);
    EXPECT_FALSE(KLFileUtilities::makeTemporaryFile());
    setrlimit(RLIMIT_NOFILE, &usual);
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(KLFileUtilitiesTest, ATemporaryFileIsReadAsItWasWrittenWhateverHasItsName)
{
    auto file = KLFileUtilities::makeTemporaryFile();
    ASSERT_TRUE(file);
    std::fputs("pages", file->stream.get());
    ASSERT_TRUE(Platform::closeStream(std::move(file->stream)));
    fs::rename(folder.write("another", "another's"), file->path);
    EXPECT_TRUE(KLFileUtilities::isReplaced(file->path));
    EXPECT_EQ("pages", readAll(file->path));
    KLFileUtilities::removeFile(file->path);
    EXPECT_EQ("another's", Support::readFile(file->path));
}

TEST_F(KLFileUtilitiesTest, WhatOthersHaveWrittenIsReadOnceItIsTakenBack)
{
    const auto path = KLFileUtilities::generateTemporaryFilename();
    ASSERT_TRUE(path);
    Support::writeFile(*path, "pages");
    EXPECT_FALSE(KLFileUtilities::openForReading(*path));
    KLFileUtilities::takeBack(*path);
    EXPECT_EQ("pages", readAll(*path));
    KLFileUtilities::removeFile(*path);
    EXPECT_TRUE(fs::is_empty(folder.path()));
}

TEST_F(KLFileUtilitiesTest, AnyOtherFileIsReadAndRemovedByItsName)
{
    const std::string path = folder.write("job", "pages");
    fs::create_symlink(path, folder.file("link"));
    EXPECT_EQ("pages", readAll(folder.file("link")));
    EXPECT_FALSE(KLFileUtilities::isReplaced(path));
    KLFileUtilities::removeFile(path);
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(KLFileUtilitiesTest, AFileThatIsKeptIsAFileLikeAnyOther)
{
    auto file = KLFileUtilities::makeTemporaryFile();
    ASSERT_TRUE(file);
    KLFileUtilities::keepFile(file->path);
    fs::rename(folder.write("another", "another's"), file->path);
    EXPECT_EQ("another's", readAll(file->path));
}
