#include "ProtectedFile.h"

#include "RootsFiles.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using Platform::ProtectedFileError;
using Platform::Readers;
using Platform::readProtectedFile;

namespace {

class ProtectedFileTest : public Support::RootsFilesTest {
protected:
    /// Why the file is refused; "" when it is not.
    static std::string objection(const std::string &path, Readers most)
    {
        try {
            readProtectedFile(path, most);
        } catch (const ProtectedFileError &error) {
            return std::string(error.what()).substr(path.size());
        }
        return {};
    }
};

constexpr char kWritable[] = ": others than root may write it";
constexpr char kReadable[] = ": everybody may read it";

} // namespace

TEST_F(ProtectedFileTest, FileThatIsNotThereIsNone)
{
    EXPECT_EQ(std::nullopt, readProtectedFile(_folder.file("none"), Readers::Everybody));
}

TEST_F(ProtectedFileTest, FileOfRootsIsReadWhole)
{
    const std::string text(65536, 'a');
    EXPECT_EQ(text, readProtectedFile(write("file", text, 0644), Readers::Everybody));
    EXPECT_EQ("", readProtectedFile(write("empty", "", 0600), Readers::ItsGroup));
}

TEST_F(ProtectedFileTest, LongerFileIsRefused)
{
    EXPECT_EQ(": too long", objection(write("file", std::string(65537, 'a'), 0644), //
                                      Readers::Everybody));
}

TEST_F(ProtectedFileTest, FileOfAnotherIsRefused)
{
    const std::string path = write("file", "a", 0600);
    ASSERT_EQ(0, chown(path.c_str(), 1, 0));
    EXPECT_EQ(": does not belong to root", objection(path, Readers::Everybody));
    EXPECT_EQ(": does not belong to root", objection(path, Readers::ItsGroup));
}

TEST_F(ProtectedFileTest, FileThatOthersMayWriteIsRefused)
{
    for (const mode_t mode : {0664U, 0646U, 0620U, 0602U})
        EXPECT_EQ(kWritable, objection(write("file", "a", mode), Readers::Everybody)) << mode;
}

TEST_F(ProtectedFileTest, SecretThatEverybodyMayReadIsRefused)
{
    for (const mode_t mode : {0644U, 0604U, 0601U})
        EXPECT_EQ(kReadable, objection(write("file", "a", mode), Readers::ItsGroup)) << mode;
    for (const mode_t mode : {0640U, 0600U, 0440U, 0400U})
        EXPECT_EQ("", objection(write("file", "a", mode), Readers::ItsGroup)) << mode;
}

TEST_F(ProtectedFileTest, OnlyRegularFilesAreRead)
{
    const std::string pipe = _folder.file("pipe");
    ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
    EXPECT_EQ(": not a regular file", objection(pipe, Readers::Everybody));
    EXPECT_EQ(": not a regular file", objection(_folder.path(), Readers::Everybody));
}

TEST_F(ProtectedFileTest, FileThatCannotBeOpenedIsRefused)
{
    const std::string path = write("file", "a", 0644);
    EXPECT_EQ(": Not a directory", objection(path + "/file", Readers::Everybody));
}
