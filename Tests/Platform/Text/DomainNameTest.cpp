#include "DomainName.h"

#include <gtest/gtest.h>

using Platform::domainName;
using Platform::domainOfDistinguishedName;

TEST(DomainNameTest, NameIsInLowerCase)
{
    EXPECT_EQ("corp.example.test", domainName("CORP.Example.test"));
    EXPECT_EQ("küche.example", domainName("KÜCHE.example"));
}

TEST(DomainNameTest, LongestNamesAreNames)
{
    const std::string label(63, 'a');
    EXPECT_EQ(label, domainName(label));
    EXPECT_EQ(std::nullopt, domainName(label + "a"));
    const std::string name = label + "." + label + "." + label + "." + std::string(61, 'b');
    EXPECT_EQ(name, domainName(name));
    EXPECT_EQ(std::nullopt, domainName(name + "b"));
}

TEST(DomainNameTest, OtherTextIsNoName)
{
    for (const std::string text :
         {"", ".", "a.", ".a", "a..b", "a b", "a/b", "a\nb", "a\x7f", "a\xff", "a,b", "*"})
        EXPECT_EQ(std::nullopt, domainName(text)) << text;
    EXPECT_EQ(std::nullopt, domainName(std::string("a\0b", 3)));
}

TEST(DomainNameTest, DistinguishedNameEndsInItsDomain)
{
    EXPECT_EQ("corp.example.test",
              domainOfDistinguishedName("CN=Anna,OU=Sales,DC=Corp,DC=Example,DC=TEST"));
    EXPECT_EQ("example.com", domainOfDistinguishedName("uid=anna,dc=example,dc=com"));
    EXPECT_EQ("example.com", domainOfDistinguishedName("dC=example,Dc=com"));
}

TEST(DomainNameTest, TypeMayBeANumber)
{
    EXPECT_EQ("com", domainOfDistinguishedName("cn=a,0.9.2342.19200300.100.1.25=com"));
}

TEST(DomainNameTest, BlanksAroundThePartsDoNotCount)
{
    EXPECT_EQ("example.com", domainOfDistinguishedName("cn=a, dc = example , DC= com"));
}

TEST(DomainNameTest, EscapedSignsSeparateNothing)
{
    EXPECT_EQ("example.com",
              domainOfDistinguishedName("CN=Sales\\, anna\\\\,OU=a\\,dc=b,dc=example,dc=com"));
    EXPECT_EQ("example.com", domainOfDistinguishedName("CN=O'Brien \\22J\\C3\\BC\\22,dc=example,"
                                                       "dc=com"));
}

TEST(DomainNameTest, ComponentsAboveOthersAreNotTheDomain)
{
    EXPECT_EQ("example.com", domainOfDistinguishedName("dc=host,ou=machines,dc=example,dc=com"));
}

TEST(DomainNameTest, NameThatEndsInNoneHasNoDomain)
{
    for (const char *name : {"", "cn=anna", "uid=anna,dc=example,dc=com,o=Company"})
        EXPECT_EQ(std::nullopt, domainOfDistinguishedName(name)) << name;
}

TEST(DomainNameTest, ComponentsThatMakeNoDomainGiveNone)
{
    for (const char *name : {"dc=", "dc=example,dc=", "dc=a b", "dc=a\\2Cb", "dc=a\\,b",
                             "dc=a+ou=b", "dc=#0403616263", "dc=a.b,dc=", "dc=a/b"})
        EXPECT_EQ(std::nullopt, domainOfDistinguishedName(name)) << name;
}

TEST(DomainNameTest, WhatIsNoDistinguishedNameHasNoDomain)
{
    for (const char *name : {"anna", ",dc=com", "cn=a,,dc=com", "cn=a,dc=com,", "cn=a,dc=com\\",
                             "cn=\"a,dc=b\",dc=com", "cn=a;dc=b,dc=com", "example,dc=com"})
        EXPECT_EQ(std::nullopt, domainOfDistinguishedName(name)) << name;
}
