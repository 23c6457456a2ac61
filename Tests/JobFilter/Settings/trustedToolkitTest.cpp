#include "trustedToolkit.h"

#include "Environment.h"
#include "KLPrintOptions.h"
#include "MinimalPPD.h"
#include "TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

class trustedToolkitTest : public testing::Test {
protected:
    trustedToolkitTest() { fs::create_directories(bundle + "/Contents/Linux"); }

    /// Looks for the toolkit of a PPD with these lines. @return its path
    std::optional<std::string> find(const std::string &ppdLines)
    {
        const std::string ppd = folder.write("queue.ppd", Support::minimalPPD(ppdLines));
        const Support::ScopedEnvironment environment("PPD", ppd);
        objection.reset();
        const auto toolkit = trustedToolkit(KLPrintOptions(""), &objection);
        return toolkit ? std::optional(toolkit->path) : std::nullopt;
    }

    std::optional<std::string> findInBundle()
    {
        return find("*APDialogExtension: \"" + bundle + "\"\n");
    }

    std::string writeToolkit() const
    {
        return folder.writeScript("Panel.bundle/Contents/Linux/toolkit", "");
    }

    Support::TemporaryFolder folder;
    std::string bundle = folder.file("Panel.bundle");
    std::string programFolder = bundle + "/Contents/Linux";
    std::optional<std::string> objection;
};

} // namespace

TEST_F(trustedToolkitTest, IsTheAuxiliaryExecutableOfTheBundle)
{
    const std::string toolkit = writeToolkit();
    EXPECT_EQ(toolkit, findInBundle());
    EXPECT_EQ(std::nullopt, objection);
}

TEST_F(trustedToolkitTest, IsNothingWithoutTheAttribute)
{
    writeToolkit();
    EXPECT_EQ(std::nullopt, find(""));
    EXPECT_EQ(std::nullopt, objection);
}

TEST_F(trustedToolkitTest, IsNothingWithoutTheBundle)
{
    EXPECT_EQ(std::nullopt, find("*APDialogExtension: \"" + folder.file("missing") + "\"\n"));
    EXPECT_EQ(std::nullopt, objection);
}

TEST_F(trustedToolkitTest, IsNothingWithoutTheExecutable)
{
    EXPECT_EQ(std::nullopt, findInBundle());
    folder.write("Panel.bundle/Contents/Linux/toolkit", "not executable");
    EXPECT_EQ(std::nullopt, findInBundle());
    EXPECT_EQ(std::nullopt, objection);
}

TEST_F(trustedToolkitTest, IsNothingWhenThereIsAnObjection)
{
    const std::string toolkit = writeToolkit();
    ASSERT_EQ(0, chmod(toolkit.c_str(), 0757));
    EXPECT_EQ(std::nullopt, findInBundle());
    EXPECT_EQ(toolkit + " is writable by everyone", objection);
}

TEST_F(trustedToolkitTest, ObjectionNeedsNoPlace)
{
    ASSERT_EQ(0, chmod(writeToolkit().c_str(), 0757));
    folder.write("queue.ppd", Support::minimalPPD("*APDialogExtension: \"" + bundle + "\"\n"));
    const Support::ScopedEnvironment environment("PPD", folder.file("queue.ppd"));
    EXPECT_FALSE(trustedToolkit(KLPrintOptions("")));
}
