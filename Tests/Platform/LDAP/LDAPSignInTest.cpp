#include "LDAPSignIn.h"

#include "ProtectedFile.h"
#include "RootsFiles.h"

#include <gtest/gtest.h>

using Platform::ProtectedFileError;
using Platform::readPassword;

class LDAPSignInTest : public Support::RootsFilesTest {};

TEST_F(LDAPSignInTest, PasswordIsTheFileWithoutTheLinesEnd)
{
    for (const char *text : {" se\tcret ", " se\tcret \n", " se\tcret \r\n"})
        EXPECT_EQ(" se\tcret ", readPassword(write("password", text, 0640))) << text;
    EXPECT_EQ("a\n", readPassword(write("password", "a\n\n", 0640)));
}

TEST_F(LDAPSignInTest, EmptyPasswordIsNone)
{
    for (const char *text : {"", "\n", "\r\n"})
        EXPECT_THROW(readPassword(write("password", text, 0640)), ProtectedFileError) << text;
}

TEST_F(LDAPSignInTest, MissingFileIsAnError)
{
    EXPECT_THROW(readPassword(_folder.file("none")), ProtectedFileError);
}

TEST_F(LDAPSignInTest, FileThatEverybodyMayReadIsRefused)
{
    EXPECT_THROW(readPassword(write("password", "secret\n", 0644)), ProtectedFileError);
}

TEST_F(LDAPSignInTest, NoErrorTellsThePassword)
{
    try {
        readPassword(write("password", "secret\n", 0644));
        FAIL();
    } catch (const ProtectedFileError &error) {
        EXPECT_EQ(_folder.file("password") + ": everybody may read it", error.what());
    }
}
