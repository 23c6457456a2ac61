#include "DirectorySettings.h"

#include "ProtectedFile.h"
#include "RootsFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <unistd.h>

using Platform::DirectorySettings;
using Platform::DirectorySettingsError;
using Platform::DirectorySource;
using Platform::LDAPSignIn;
using Platform::parseDirectorySettings;
using Platform::readDirectorySettings;
using testing::ElementsAre;

namespace {

class DirectorySettingsFileTest : public Support::RootsFilesTest {
protected:
    /// Why the file cannot be used; "" when it can.
    static std::string objection(const std::string &path)
    {
        try {
            readDirectorySettings(path);
        } catch (const std::exception &error) {
            return error.what();
        }
        return {};
    }
};

/// Why the text is refused; "" when it is not.
std::string objectionTo(std::string_view text)
{
    try {
        parseDirectorySettings(text);
    } catch (const DirectorySettingsError &error) {
        return error.what();
    }
    return {};
}

LDAPSignIn signInOf(std::string_view text)
{
    return parseDirectorySettings(text).signIn;
}

} // namespace

TEST(DirectorySettingsTest, WithoutLinesAllSourcesAreAskedAnonymously)
{
    const DirectorySettings settings = parseDirectorySettings("");
    EXPECT_THAT(settings.sources, ElementsAre(DirectorySource::SSSD, DirectorySource::Winbind,
                                              DirectorySource::LDAP));
    EXPECT_EQ(LDAPSignIn{}, settings.signIn);
    EXPECT_EQ(LDAPSignIn::Method::Anonymous, settings.signIn.method);
    EXPECT_FALSE(settings.signIn.startTLS);
}

TEST(DirectorySettingsTest, SourcesAreThoseNamedInTheirOrder)
{
    EXPECT_THAT(parseDirectorySettings("DirectorySources ldap sssd\n").sources,
                ElementsAre(DirectorySource::LDAP, DirectorySource::SSSD));
    EXPECT_THAT(parseDirectorySettings("DirectorySources winbind").sources,
                ElementsAre(DirectorySource::Winbind));
}

TEST(DirectorySettingsTest, SimpleSignInHasNameAndPasswordFile)
{
    EXPECT_EQ((LDAPSignIn{.method = LDAPSignIn::Method::Simple,
                          .bindDN = "cn=print queue, dc=example",
                          .passwordFile = "/etc/cups/a file",
                          .keytab = {},
                          .startTLS = true}),
              signInOf("LDAPBind simple\nLDAPBindDN cn=print queue, dc=example\n"
                       "LDAPPasswordFile /etc/cups/a file\nLDAPStartTLS yes\n"));
}

TEST(DirectorySettingsTest, KerberosSignInMayHaveAKeytab)
{
    EXPECT_EQ(LDAPSignIn::Method::GSSAPI, signInOf("LDAPBind gssapi").method);
    EXPECT_EQ("/etc/cups/k", signInOf("LDAPBind gssapi\nLDAPKeytab /etc/cups/k").keytab);
}

TEST(DirectorySettingsTest, BlanksCommentsAndEmptyLinesDoNotCount)
{
    const DirectorySettings settings = parseDirectorySettings(
        "# a comment\n\n \t\r\n\t# another\n \tDirectorySources\t ldap \t winbind \r\n"
        "LDAPStartTLS no");
    EXPECT_THAT(settings.sources, ElementsAre(DirectorySource::LDAP, DirectorySource::Winbind));
}

TEST(DirectorySettingsTest, UnknownWordsAreRefusedByTheirLines)
{
    EXPECT_EQ("line 2: unknown word \"Sources\"", objectionTo("\nSources ldap"));
    EXPECT_EQ("line 1: unknown word \"nis\"", objectionTo("DirectorySources ldap nis"));
    EXPECT_EQ("line 1: unknown word \"LDAP\"", objectionTo("DirectorySources LDAP"));
    EXPECT_EQ("line 1: unknown word \"ldapbind\"", objectionTo("ldapbind simple"));
    EXPECT_EQ("line 1: unknown word \"none\"", objectionTo("LDAPBind none"));
    EXPECT_EQ("line 1: unknown word \"gssapi simple\"", objectionTo("LDAPBind gssapi simple"));
    EXPECT_EQ("line 3: unknown word \"true\"", objectionTo("#\n#\nLDAPStartTLS true"));
    EXPECT_EQ("line 1: unknown word \"#\"", objectionTo("DirectorySources ldap # sssd"));
}

TEST(DirectorySettingsTest, KeywordNeedsAValue)
{
    for (const char *keyword : {"DirectorySources", "LDAPBind", "LDAPBindDN", "LDAPKeytab "})
        EXPECT_THAT(objectionTo(keyword), testing::EndsWith("\" without a value")) << keyword;
}

TEST(DirectorySettingsTest, NothingMayStandThereTwice)
{
    EXPECT_EQ("line 1: \"ldap\" stands there twice", objectionTo("DirectorySources ldap ldap"));
    EXPECT_EQ("line 2: \"LDAPStartTLS\" stands there twice",
              objectionTo("LDAPStartTLS yes\nLDAPStartTLS no"));
}

TEST(DirectorySettingsTest, PathsMustBeAbsolute)
{
    EXPECT_EQ("line 1: \"a\" is no absolute path", objectionTo("LDAPPasswordFile a"));
    EXPECT_EQ("line 1: \"FILE:/a\" is no absolute path", objectionTo("LDAPKeytab FILE:/a"));
}

TEST(DirectorySettingsTest, SimpleSignInNeedsBothItsLines)
{
    constexpr char kBoth[] = "LDAPBind simple needs LDAPBindDN and LDAPPasswordFile";
    EXPECT_EQ(kBoth, objectionTo("LDAPBind simple"));
    EXPECT_EQ(kBoth, objectionTo("LDAPBind simple\nLDAPBindDN cn=a"));
    EXPECT_EQ(kBoth, objectionTo("LDAPBind simple\nLDAPPasswordFile /a"));
}

TEST(DirectorySettingsTest, KerberosGoesWithoutStartTLS)
{
    EXPECT_NE("", objectionTo("LDAPBind gssapi\nLDAPStartTLS yes"));
    EXPECT_EQ("", objectionTo("LDAPBind gssapi\nLDAPStartTLS no"));
}

TEST(DirectorySettingsTest, TextWithANULIsNone)
{
    EXPECT_EQ("line 1: not a text", objectionTo(std::string_view("LDAPBindDN a\0b", 14)));
}

// The file.

TEST_F(DirectorySettingsFileTest, FileThatIsNotThereSettlesNothing)
{
    EXPECT_EQ(DirectorySettings{}, readDirectorySettings(_folder.file("none")));
}

TEST_F(DirectorySettingsFileTest, FileIsReadAsItsLines)
{
    EXPECT_THAT(readDirectorySettings(write("conf", "DirectorySources ldap\n", 0644)).sources,
                ElementsAre(DirectorySource::LDAP));
}

TEST_F(DirectorySettingsFileTest, FileWithAnUnknownWordIsNamed)
{
    const std::string path = write("conf", "a b\n", 0644);
    EXPECT_EQ(path + ": line 1: unknown word \"a\"", objection(path));
}

TEST_F(DirectorySettingsFileTest, FileThatOthersMayWriteIsRefused)
{
    const std::string path = write("conf", "DirectorySources ldap\n", 0664);
    EXPECT_EQ(path + ": others than root may write it", objection(path));
}

TEST_F(DirectorySettingsFileTest, FileOfAnotherIsRefused)
{
    const std::string path = write("conf", "DirectorySources ldap\n", 0644);
    ASSERT_EQ(0, chown(path.c_str(), 1, 1));
    EXPECT_EQ(path + ": does not belong to root", objection(path));
}

TEST_F(DirectorySettingsFileTest, PasswordFileThatEverybodyMayReadIsRefusedWhereItIsNeeded)
{
    const std::string password = write("password", "secret", 0644);
    const std::string lines =
        "LDAPBind simple\nLDAPBindDN cn=a\nLDAPPasswordFile " + password + "\n";
    EXPECT_EQ(password + ": everybody may read it", objection(write("conf", lines, 0644)));
    EXPECT_EQ("", objection(write("conf", lines + "DirectorySources sssd\n", 0644)));
    write("password", "secret", 0640);
    EXPECT_EQ("", objection(write("conf", lines, 0644)));
}
