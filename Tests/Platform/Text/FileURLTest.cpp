#include "FileURL.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>

using Platform::FileURL;

namespace {

/// The path that the text names; "none" when it is no usable file URL.
std::string pathOf(std::string_view text)
{
    const auto url = FileURL::withString(text);
    return url ? url->path() : "none";
}

struct Case {
    std::string_view text;
    std::string_view path;
};

void expectPaths(std::initializer_list<Case> cases)
{
    for (const Case &each : cases)
        EXPECT_EQ(each.path, pathOf(each.text)) << each.text;
}

void expectNone(std::initializer_list<std::string_view> texts)
{
    for (const std::string_view text : texts)
        EXPECT_EQ("none", pathOf(text)) << text;
}

} // namespace

TEST(FileURLTest, AbsoluteFileURLOfThisHostNamesItsPath)
{
    expectPaths({{"file:///usr/share/color/sRGB.icc", "/usr/share/color/sRGB.icc"},
                 {"file://localhost/a/b", "/a/b"},
                 {"file:/a/b", "/a/b"},
                 {"FILE:///a", "/a"},
                 {"File://LocalHost/a", "/a"},
                 {"file://%6Cocalhost/a", "/a"},
                 {"file:///", "/"},
                 {"file:/", "/"},
                 {"file://localhost/", "/"},
                 {"file:///a/", "/a/"},
                 {"file:////a//b", "//a//b"},
                 {"file:///a;v=1,2:@!$&'()*+-._~=", "/a;v=1,2:@!$&'()*+-._~="},
                 // Dots are for the file system: behind a link ".." is not the folder before.
                 {"file:///a/../b/./c", "/a/../b/./c"}});
}

TEST(FileURLTest, PercentEscapesAreDecodedOnce)
{
    expectPaths({{"file:///My%20Profile.icc", "/My Profile.icc"},
                 {"file:///%C3%A9t%c3%a9", "/\xC3\xA9t\xC3\xA9"},
                 {"file:///%FF", "/\xFF"}, // a file name is any bytes, UTF-8 or not
                 {"file:///a%2Fb%2fc", "/a/b/c"},
                 {"file:///100%25", "/100%"},
                 {"file:///%2541", "/%41"},
                 {"file:///a+b", "/a+b"},
                 {"file:///a%0D%0Ab", "/a\r\nb"},
                 {"file:///a%3Fb%23c", "/a?b#c"}});
}

TEST(FileURLTest, QueryAndFragmentAreNoPartOfThePath)
{
    expectPaths({{"file:///a?b", "/a"}, {"file:///a#b", "/a"}, {"file:///a/b?c/d#e/f", "/a/b"}});
}

TEST(FileURLTest, TextThatNamesNoAbsolutePathOfAFileIsNone)
{
    expectNone({"", "/usr/share/color/sRGB.icc", "sRGB.icc", "file", "file:", "file://", "file:a/b",
                "file://localhost", "file://?/a", "//localhost/a", "files:///a", "fil:///a",
                "http://localhost/a", "http:///a", "://localhost/a"});
}

TEST(FileURLTest, OtherAuthorityIsNone)
{
    expectNone({"file://server/a", "file://127.0.0.1/a", "file://[::1]/a",
                "file://localhost.example/a", "file://user@localhost/a", "file://@/a",
                "file://localhost:80/a", "file://localhost:/a"});
}

TEST(FileURLTest, TextThatIsNoURLIsNone)
{
    using namespace std::string_view_literals;
    expectNone({"file:///My Profile.icc",
                " file:///a",
                "file:///a ",
                "file:///a\n",
                "file:///a\t",
                "file:///\xC3\xA9",
                "file:///\xFF",
                "file:///a%",
                "file:///a%4",
                "file:///a%zz",
                "file:///a\\b",
                "file:///a|b",
                "file:///a<b>",
                "file:///a\"b",
                "file:///a^b",
                "file:///a{b}",
                "file:///a[b]",
                "file:///a`b",
                "file:///a#b#c",
                "file:///a\0b"sv,
                "\0"sv});
}

TEST(FileURLTest, EscapedNULIsNone)
{
    expectNone({"file:///a%00b", "file:///%00", "file:///a/b%00"});
}

TEST(FileURLTest, LongTextIsReadWhole)
{
    for (const std::size_t length : {4095u, 4096u, 4097u, 1'000'000u}) {
        const std::string oneName = "/" + std::string(length - 1, 'x');
        EXPECT_EQ(oneName, pathOf("file://" + oneName)) << length;

        std::string manyNames;
        while (manyNames.size() < length)
            manyNames += "/x";
        EXPECT_EQ(manyNames, pathOf("file://" + manyNames)) << length;
    }
}

TEST(FileURLTest, LongHostIsAnotherHost)
{
    EXPECT_EQ("none", pathOf("file://" + std::string(1'000'000, 'h') + "/a"));
}

TEST(FileURLTest, PathIsTakenByteForByte)
{
    const auto url = FileURL::withPath("/My Profile%20\xFF?#");
    ASSERT_TRUE(url);
    EXPECT_EQ("/My Profile%20\xFF?#", url->path());
}

TEST(FileURLTest, TextIsAURLOfTheSamePath)
{
    EXPECT_EQ("file:///My%20Profile%2520%FF%3F%23",
              FileURL::withPath("/My Profile%20\xFF?#")->text());
    std::string all = "/";
    for (int byte = 1; byte < 256; ++byte)
        all += static_cast<char>(byte);
    EXPECT_EQ(all, FileURL::withString(FileURL::withPath(all)->text())->path());
}

TEST(FileURLTest, OnlyAnAbsolutePathMakesAURL)
{
    EXPECT_FALSE(FileURL::withPath(""));
    EXPECT_FALSE(FileURL::withPath("a/b"));
    EXPECT_FALSE(FileURL::withPath(std::string("/a\0b", 4)));
}
