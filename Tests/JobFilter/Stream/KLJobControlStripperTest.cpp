#include "KLJobControlStripper.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

using namespace std::string_literals;

namespace {

const std::string kMarker = "\033%-12345X";
const std::string kPages = "%!PS-Adobe-3.0\nshowpage\n%%EOF\n";
const std::string kHeader = kMarker + "@PJL JOB NAME = \"x\"\r\n"
                                      "@PJL ENTER LANGUAGE = POSTSCRIPT\r\n";
const std::string kTrailer = kMarker + "@PJL EOJ\r\n" + kMarker;

/// What is kept of the stream when it arrives in blocks that end at these offsets, ascending.
std::string strip(const std::string &stream, const std::vector<std::size_t> &cuts = {})
{
    std::string kept;
    KLJobControlStripper stripper([&](std::string_view bytes) {
        EXPECT_FALSE(bytes.empty());
        kept += bytes;
    });
    std::size_t start = 0;
    for (const std::size_t cut : cuts) {
        stripper.strip(std::string_view(stream).substr(start, cut - start));
        start = cut;
    }
    stripper.strip(std::string_view(stream).substr(start));
    stripper.finish();
    EXPECT_EQ(!kept.empty(), stripper.hasKept());
    EXPECT_EQ(kept.size() < stream.size(), stripper.hasDropped());
    return kept;
}

std::string everyByte()
{
    std::string bytes;
    for (int byte = 0; byte < 256; byte++)
        bytes += static_cast<char>(byte);
    return bytes;
}

TEST(KLJobControlStripperTest, PageDataWithoutJobControlIsKept)
{
    EXPECT_EQ(kPages, strip(kPages));
}

TEST(KLJobControlStripperTest, EmptyStreamStaysEmpty)
{
    EXPECT_EQ("", strip(""));
}

TEST(KLJobControlStripperTest, HeaderAndTrailerAreDropped)
{
    EXPECT_EQ(kPages, strip(kHeader + kPages + kTrailer));
}

TEST(KLJobControlStripperTest, BinaryDataIsKept)
{
    const std::string binary = everyByte() + everyByte() + "end";
    EXPECT_EQ(binary, strip(kHeader + binary + kTrailer));
}

TEST(KLJobControlStripperTest, JobControlInFrontOfTheMarkerIsPageData)
{
    EXPECT_EQ("@PJL SET A=B\n", strip("@PJL SET A=B\n" + kMarker));
}

TEST(KLJobControlStripperTest, WhatFollowsTheLanguageLineIsKeptWhateverItIs)
{
    EXPECT_EQ("no comment\n", strip(kHeader + "no comment\n"));
}

TEST(KLJobControlStripperTest, PageDataDirectlyBehindTheMarkerIsKept)
{
    EXPECT_EQ(kPages, strip(kMarker + kPages));
}

TEST(KLJobControlStripperTest, HeaderWithoutLanguageLineEndsWherePageDataBegin)
{
    EXPECT_EQ(kPages, strip(kMarker + "@PJL JOB\r\n@PJL SET A=B\r\n" + kPages));
}

TEST(KLJobControlStripperTest, PercentAndExclamationMarkInsideALineStartNothing)
{
    EXPECT_EQ(kPages, strip(kMarker + "@PJL COMMENT %!PS\n %!PS\n" + kPages));
}

TEST(KLJobControlStripperTest, LinesMayEndInCarriageReturnsAlone)
{
    EXPECT_EQ("%!PS\rshowpage\r",
              strip(kMarker + "@PJL JOB\r@PJL ENTER LANGUAGE=POSTSCRIPT\r%!PS\rshowpage\r"));
    EXPECT_EQ("%!PS\r", strip(kMarker + "@PJL JOB\r%!PS\r"));
}

TEST(KLJobControlStripperTest, OnlyTheLineFeedOfTheLanguageLineBelongsToIt)
{
    EXPECT_EQ("\n%!PS\n", strip(kMarker + "@PJL ENTER LANGUAGE=POSTSCRIPT\r\n\n%!PS\n"));
    EXPECT_EQ("\n%!PS\n", strip(kMarker + "@PJL ENTER LANGUAGE=POSTSCRIPT\n\n%!PS\n"));
}

TEST(KLJobControlStripperTest, LanguageLineIsKnownInAnyLetterCaseAndSpacing)
{
    EXPECT_EQ("pages", strip(kMarker + "@pjl \t enter  Language=pcl\npages"));
    EXPECT_EQ("pages", strip(kMarker + "@PJL ENTER LANGUAGE\npages"));
}

TEST(KLJobControlStripperTest, LinesThatOnlyLookLikeTheLanguageLineAreNone)
{
    EXPECT_EQ("", strip(kMarker + "@PJL ENTER LANGUAGES=PCL\npages"));
    EXPECT_EQ("", strip(kMarker + " @PJL ENTER LANGUAGE=PCL\npages"));
    EXPECT_EQ("", strip(kMarker + "@PJLENTER LANGUAGE=PCL\npages"));
    EXPECT_EQ("", strip(kMarker + "@PJL COMMENT @PJL ENTER LANGUAGE=PCL\npages"));
}

TEST(KLJobControlStripperTest, EveryMarkerOfTheStreamBeginsJobControl)
{
    EXPECT_EQ(kPages + kPages + kPages,
              strip(kHeader + kPages + kTrailer + kHeader + kPages + kMarker + kPages));
}

TEST(KLJobControlStripperTest, JobControlAtTheVeryEndMayLackItsLineEnd)
{
    EXPECT_EQ(kPages, strip(kPages + kMarker + "@PJL ENTER LANGUAGE=POSTSCRIPT"));
}

TEST(KLJobControlStripperTest, NothingIsKeptOfJobControlAlone)
{
    EXPECT_EQ("", strip(kHeader + kTrailer));
    EXPECT_EQ("", strip(kMarker));
    EXPECT_EQ("", strip(kMarker + kMarker + kMarker));
}

TEST(KLJobControlStripperTest, MarkerInsideBinaryDataEndsThePageDataLikeInThePrinter)
{
    EXPECT_EQ("%!PS\n" + everyByte() + "%!PS\nnext",
              strip("%!PS\n" + everyByte() + kMarker + everyByte() + "\n%!PS\nnext"));
}

TEST(KLJobControlStripperTest, StreamThatEndsInsideAMarkerKeepsItsBeginning)
{
    EXPECT_EQ(kPages + "\033%-1234", strip(kPages + "\033%-1234"));
    EXPECT_EQ("\033", strip("\033"));
}

TEST(KLJobControlStripperTest, BrokenMarkerIsPageData)
{
    EXPECT_EQ("a\033%-12345Yb", strip("a\033%-12345Yb"));
}

TEST(KLJobControlStripperTest, MarkerIsSeenDirectlyBehindABrokenOne)
{
    EXPECT_EQ("\033\033%-1", strip("\033\033%-1" + kMarker));
}

TEST(KLJobControlStripperTest, BrokenMarkerInJobControlBelongsToItsLine)
{
    EXPECT_EQ("pages", strip(kMarker + "\033%!PS\n@PJL ENTER LANGUAGE=\033%-1\npages"));
}

TEST(KLJobControlStripperTest, ControlDThatEndsThePageDataIsDropped)
{
    EXPECT_EQ(kPages, strip(kPages + "\x04"));
    EXPECT_EQ(kPages, strip(kPages + "\x04" + kTrailer));
    EXPECT_EQ(kPages + kPages, strip(kHeader + kPages + "\x04\x04" + kHeader + kPages));
}

TEST(KLJobControlStripperTest, OtherControlDsAreKept)
{
    EXPECT_EQ("\x04%!PS\n\x04\x04\n", strip("\x04%!PS\n\x04\x04\n"));
    EXPECT_EQ("a\x04\033%b", strip("a\x04\033%b"));
}

TEST(KLJobControlStripperTest, ControlDInFrontOfPageDataBehindAMarkerIsNoPartOfItsLine)
{
    EXPECT_EQ(kPages, strip(kMarker + "\x04" + kPages));
}

TEST(KLJobControlStripperTest, ManyControlDsAreKeptWhenMoreFollows)
{
    const std::string ends(100000, '\x04');
    EXPECT_EQ(ends + "a", strip(ends + "a" + ends));
}

/// Every way to cut this stream into three blocks.
TEST(KLJobControlStripperTest, CutsBetweenBlocksChangeNothing)
{
    const std::string stream = kMarker +
                               "@PJL JOB\r\n@PJL ENTER LANGUAGE=PS\r\n%!PS\n\033%-1\x04x\x04" +
                               kMarker + "@PJL\n%!\n\x04" + kMarker;
    const std::string kept = "%!PS\n\033%-1\x04x%!\n";
    for (std::size_t first = 0; first <= stream.size(); first++)
        for (std::size_t second = first; second <= stream.size(); second++)
            ASSERT_EQ(kept, strip(stream, {first, second})) << first << " " << second;
}

/// The same rules told another way: on the whole stream, cut at its markers.
std::string stripWhole(const std::string &stream)
{
    const auto pageData = [](std::string text) {
        return text.substr(0, text.find_last_not_of('\x04') + 1);
    };
    const auto behindJobControl = [&](const std::string &text) -> std::string {
        for (std::size_t start = 0; start < text.size();) {
            start = std::min(text.find_first_not_of('\x04', start), text.size());
            if (text.compare(start, 2, "%!") == 0)
                return pageData(text.substr(start));
            const auto end = text.find_first_of("\r\n", start);
            if (end == std::string::npos)
                return "";
            const auto next = text.compare(end, 2, "\r\n") == 0 ? end + 2 : end + 1;
            if (text.compare(start, 20, "@PJL ENTER LANGUAGE=") == 0)
                return pageData(text.substr(next));
            start = next;
        }
        return "";
    };
    std::size_t marker = stream.find(kMarker);
    std::string kept = pageData(stream.substr(0, marker));
    while (marker != std::string::npos) {
        const auto start = marker + kMarker.size();
        marker = stream.find(kMarker, start);
        kept += behindJobControl(
            stream.substr(start, marker == std::string::npos ? marker : marker - start));
    }
    return kept;
}

TEST(KLJobControlStripperTest, RandomStreamsInRandomBlocksFollowTheRules)
{
    const std::vector<std::string> pieces = {kMarker,
                                             "\033",
                                             "\033%-123",
                                             "\x04",
                                             "\r",
                                             "\n",
                                             "\r\n",
                                             "%!",
                                             "%!PS\n",
                                             "@PJL JOB\r\n",
                                             "@PJL ",
                                             "@PJL ENTER LANGUAGE=",
                                             "@PJL ENTER LANGUAGE=PS\r\n",
                                             "x",
                                             "\0\xff"s};
    std::mt19937 random(20260101);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    for (int round = 0; round < 20000; round++) {
        std::string stream;
        for (auto count = below(14); count > 0; count--)
            stream += pieces[below(pieces.size())];
        std::vector<std::size_t> cuts;
        for (std::size_t cut = 0; cut + 1 < stream.size();)
            cuts.push_back(cut = std::min(stream.size(), cut + 1 + below(9)));
        ASSERT_EQ(stripWhole(stream), strip(stream, cuts)) << testing::PrintToString(stream);
    }
}

} // namespace
