#include "LoginName.h"

#include <gtest/gtest.h>

using Platform::nameBehindItsDomain;
using Platform::qualifiedName;
using Platform::QualifiedName;

TEST(LoginNameTest, DomainStandsInFrontOfABackslash)
{
    EXPECT_EQ((QualifiedName{"CORP", "anna"}), qualifiedName("CORP\\anna"));
}

TEST(LoginNameTest, DomainStandsBehindAnAt)
{
    EXPECT_EQ((QualifiedName{"corp.example.test", "anna"}),
              qualifiedName("anna@corp.example.test"));
}

TEST(LoginNameTest, BackslashComesBeforeAt)
{
    EXPECT_EQ((QualifiedName{"CORP", "anna@example.com"}), qualifiedName("CORP\\anna@example.com"));
}

TEST(LoginNameTest, FirstBackslashAndLastAtSeparate)
{
    EXPECT_EQ((QualifiedName{"A", "b\\c"}), qualifiedName("A\\b\\c"));
    EXPECT_EQ((QualifiedName{"c", "a@b"}), qualifiedName("a@b@c"));
}

TEST(LoginNameTest, NameWithoutBothSidesCarriesNoDomain)
{
    for (const char *name : {"", "anna", "\\", "@", "\\anna", "CORP\\", "@corp", "anna@"})
        EXPECT_EQ(std::nullopt, qualifiedName(name)) << name;
}

TEST(LoginNameTest, SeparatorMayBeAnother)
{
    EXPECT_EQ((QualifiedName{"CORP", "anna"}), nameBehindItsDomain("CORP+anna", '+'));
    EXPECT_EQ(std::nullopt, nameBehindItsDomain("CORP\\anna", '+'));
    EXPECT_EQ(std::nullopt, nameBehindItsDomain("anna@corp", '+'));
}
