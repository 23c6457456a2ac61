#include "DistinguishedName.h"

#include <gtest/gtest.h>

using Platform::DistinguishedName;

namespace {

/// Whether the first entry is the second or below it; both must be names.
bool within(const std::string &entry, const std::string &other)
{
    return DistinguishedName::parse(entry).value().isWithin(
        DistinguishedName::parse(other).value());
}

} // namespace

TEST(DistinguishedNameTest, EntryIsBelowItsAncestors)
{
    EXPECT_TRUE(within("uid=anna,ou=people,dc=example,dc=com", "ou=people,dc=example,dc=com"));
    EXPECT_TRUE(within("uid=anna,ou=people,dc=example,dc=com", "dc=com"));
}

TEST(DistinguishedNameTest, EntryIsWithinItself)
{
    EXPECT_TRUE(within("dc=example,dc=com", "dc=example,dc=com"));
}

TEST(DistinguishedNameTest, AncestorIsNotBelowTheEntry)
{
    EXPECT_FALSE(within("dc=com", "dc=example,dc=com"));
}

TEST(DistinguishedNameTest, EverythingIsBelowTheRoot)
{
    EXPECT_TRUE(within("dc=com", ""));
    EXPECT_TRUE(within("", ""));
}

TEST(DistinguishedNameTest, ComponentsAreComparedWholeNotAsText)
{
    EXPECT_FALSE(within("uid=anna,xdc=com", "dc=com"));
    EXPECT_FALSE(within("cn=a\\,dc\\=com", "dc=com"));
}

TEST(DistinguishedNameTest, OtherBranchIsNotWithin)
{
    EXPECT_FALSE(within("uid=anna,dc=example,dc=org", "dc=example,dc=com"));
}

TEST(DistinguishedNameTest, LetterCaseOfTypesAndValuesIsIgnored)
{
    EXPECT_TRUE(within("uid=anna,DC=EXAMPLE,DC=com", "dc=example,dc=COM"));
    EXPECT_TRUE(within("uid=anna,o=ÄRZTE", "o=ärzte"));
}

TEST(DistinguishedNameTest, BlanksBetweenComponentsAreIgnored)
{
    EXPECT_TRUE(within("uid=anna, dc=example , dc=com", "dc=example,dc=com"));
}

TEST(DistinguishedNameTest, EscapesAreIgnored)
{
    EXPECT_TRUE(within("uid=anna,o=a\\2cb", "o=a\\,b"));
    EXPECT_TRUE(within("uid=anna,o=\\61", "o=a"));
}

TEST(DistinguishedNameTest, OrderWithinAComponentIsIgnored)
{
    EXPECT_TRUE(within("uid=anna,o=a+ou=b", "ou=b+o=a"));
}

TEST(DistinguishedNameTest, DepthCountsComponents)
{
    EXPECT_EQ(0U, DistinguishedName::parse("")->depth());
    EXPECT_EQ(2U, DistinguishedName::parse("o=a+ou=b,dc=com")->depth());
}

TEST(DistinguishedNameTest, OtherTextIsNoName)
{
    EXPECT_FALSE(DistinguishedName::parse("anna"));
    EXPECT_FALSE(DistinguishedName::parse("dc=example,"));
    EXPECT_FALSE(DistinguishedName::parse("dc=a\\"));
}
