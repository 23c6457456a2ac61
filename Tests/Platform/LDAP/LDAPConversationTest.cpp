#include "LDAPConversation.h"

#include <gtest/gtest.h>

using Platform::entryOfURL;
using Platform::escapedForFilter;
using Platform::urlOfEntry;

TEST(LDAPConversationTest, OrdinaryNameStaysAsItIs)
{
    EXPECT_EQ("anna.b-c_d@example.com", escapedForFilter("anna.b-c_d@example.com"));
}

TEST(LDAPConversationTest, WhatMeansSomethingInAFilterIsEscaped)
{
    EXPECT_EQ("\\2A", escapedForFilter("*"));
    EXPECT_EQ("\\29\\28uid=\\2A", escapedForFilter(")(uid=*"));
    EXPECT_EQ("\\5C2a", escapedForFilter("\\2a"));
}

TEST(LDAPConversationTest, NULIsEscaped)
{
    EXPECT_EQ("a\\00b", escapedForFilter(std::string("a\0b", 3)));
}

TEST(LDAPConversationTest, BytesBeyondASCIIAreEscaped)
{
    EXPECT_EQ("J\\C3\\BCrgen", escapedForFilter("J\xc3\xbcrgen"));
}

TEST(LDAPConversationTest, EmptyTextStaysEmpty)
{
    EXPECT_EQ("", escapedForFilter(""));
}

TEST(LDAPConversationTest, URLNamesServerPortAndEntry)
{
    EXPECT_EQ("ldap://server.example:389/dc=example,dc=com",
              urlOfEntry("ldap://server.example", "dc=example,dc=com"));
    EXPECT_EQ("ldaps://server.example:6360/dc=example,dc=com",
              urlOfEntry("ldaps://server.example:6360/", "dc=example,dc=com"));
    EXPECT_EQ("ldap://[::1]:389/o=a", urlOfEntry("ldap://[::1]", "o=a"));
    EXPECT_EQ("ldapi://%2Frun%2Fldapi/o=a", urlOfEntry("ldapi://%2Frun%2Fldapi", "o=a"));
}

TEST(LDAPConversationTest, WhatFollowsTheServerInAURIIsLeftOut)
{
    EXPECT_EQ("ldap://server.example:389/o=a", urlOfEntry("ldap://server.example/o=b??sub", "o=a"));
}

TEST(LDAPConversationTest, EntryComesBackOutOfItsURL)
{
    for (const char *dn : {"", "dc=example,dc=com", "o=a b?c#d%e/f", "o=J\xc3\xbcrgen, dc=com",
                           "o=a\\,b+ou=c", "o=line\nbreak"})
        EXPECT_EQ(dn, entryOfURL(urlOfEntry("ldap://server.example", dn)));
}

TEST(LDAPConversationTest, OtherTextIsNoURL)
{
    for (const char *text : {"", "dc=example", "http://server.example/", "ldap:server"})
        EXPECT_THROW(entryOfURL(text), Platform::LDAPFailure) << text;
}

TEST(LDAPConversationTest, ConversationNeedsAURL)
{
    EXPECT_THROW(Platform::LDAPConversation("server.example"), Platform::LDAPFailure);
}
