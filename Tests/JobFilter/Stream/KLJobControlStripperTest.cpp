#include "KLJobControlStripper.h"

#include "JobControlModel.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
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
    EXPECT_EQ("", strip(kMarker + "@PJL\x04 ENTER LANGUAGE=PCL\npages"));
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

// What was dropped joins what it stood between.

TEST(KLJobControlStripperTest, RestOfAMarkerBehindJobControlThatSplitItBeginsJobControl)
{
    EXPECT_EQ("%!PS\n\033%-123", strip("%!PS\n\033%-123" + kHeader + "45X@PJL SET INJ=1\r\n"));
    EXPECT_EQ("\033", strip("\033" + kHeader + "%-12345X@PJL SET INJ=1\r\n"));
    EXPECT_EQ("\033%-12345", strip("\033%-12345" + kHeader + "X@PJL SET INJ=1\r\n"));
}

TEST(KLJobControlStripperTest, JobControlBehindAJoinedMarkerEndsLikeAnyOther)
{
    EXPECT_EQ("\033%-123" + kPages,
              strip("\033%-123" + kHeader + "45X@PJL\n@PJL ENTER LANGUAGE=PS\r\n" + kPages));
    EXPECT_EQ("\033%-123" + kPages, strip("\033%-123" + kHeader + "45X" + kPages));
    EXPECT_EQ("\033%-123" + kPages, strip("\033%-123" + kHeader + "45X@PJL " + kHeader + kPages));
}

TEST(KLJobControlStripperTest, WhatWasKeptMayBeginMoreThanOneMarker)
{
    EXPECT_EQ("\033%-123",
              strip("\033%-123" + kHeader + "45X@PJL\n" + kHeader + "45X@PJL\n" + kTrailer));
    EXPECT_EQ("\033%-123",
              strip("\033%-123" + kHeader + "45X@PJL ENTER LANGUAGE=PS\n45X@PJL SET A=B\n"));
}

TEST(KLJobControlStripperTest, ControlDThatIsDroppedSplitsNoMarker)
{
    EXPECT_EQ("\033%-123", strip("\033%-123\x04" + kHeader + "45X@PJL SET A=B\n"));
    EXPECT_EQ("\033%-123", strip("\033%-123" + kHeader + "\x04" + kHeader + "45X@PJL SET A=B\n"));
}

TEST(KLJobControlStripperTest, ControlDThatIsKeptSplitsAMarker)
{
    const std::string stream = "\033%-123" + kHeader + "\x04" + "45X";
    const std::string kept = std::string("\033%-123\x04") + "45X";
    EXPECT_EQ(kept, strip(stream));
    EXPECT_EQ(kept, strip(stream, {stream.size() - 3}));
}

TEST(KLJobControlStripperTest, BrokenMarkerInJobControlBeginsNoMarkerOfThePageData)
{
    EXPECT_EQ("345X", strip(kMarker + "\033%-12\n@PJL ENTER LANGUAGE\n345X"));
}

TEST(KLJobControlStripperTest, BytesThatOnlyGoOnWithAMarkerAreKept)
{
    EXPECT_EQ("\033%-12345Y", strip("\033%-123" + kHeader + "45Y"));
    EXPECT_EQ("\033%-12345", strip("\033%-123" + kHeader + "45"));
    EXPECT_EQ("\033%-123\033%-12", strip("\033%-123" + kHeader + "\033%-12" + kHeader));
    EXPECT_EQ("\033%-123\n45X", strip("\033%-123" + kHeader + "\n45X"));
    EXPECT_EQ("\033%!\n-12345X", strip("\033" + kMarker + "%!\n-12345X"));
}

TEST(KLJobControlStripperTest, MarkerInTwoPiecesThatNothingDroppedPartsIsNone)
{
    EXPECT_EQ("\033%-123\n45X", strip("\033%-123\n45X"));
    EXPECT_EQ("a\033%-12345Y\n45X", strip("a\033%-123" + kHeader + "45Y\n45X"));
}

// Which bytes are dropped depends on those of a marker that went before, in pieces large and small.
TEST(KLJobControlStripperTest, JoinedMarkersAreSeenThroughManySplits)
{
    EXPECT_EQ("\033%\033%-1\033%-123" + kPages,
              strip("\033%" + kHeader + "\033%-1" + kHeader + "\033%-123" + kHeader + "45X" +
                    kHeader + "45X" + kPages));
    EXPECT_EQ("\033%-12345", strip("\033" + kHeader + "%-" + kHeader + "12" + kHeader + "345" +
                                   kHeader + "X@PJL"));
}

/// Every way to cut a stream into three blocks.
void expectEveryCutKeeps(const std::string &kept, const std::string &stream)
{
    for (std::size_t first = 0; first <= stream.size(); first++)
        for (std::size_t second = first; second <= stream.size(); second++)
            ASSERT_EQ(kept, strip(stream, {first, second})) << first << " " << second;
}

TEST(KLJobControlStripperTest, CutsBetweenBlocksChangeNothing)
{
    expectEveryCutKeeps("%!PS\n\033%-1\x04x%!\n",
                        kMarker + "@PJL JOB\r\n@PJL ENTER LANGUAGE=PS\r\n%!PS\n\033%-1\x04x\x04" +
                            kMarker + "@PJL\n%!\n\x04" + kMarker);
    expectEveryCutKeeps("%!\n\033%-123\033%\n\033%-1",
                        "%!\n\033%-123\x04" + kMarker + "@PJL ENTER LANGUAGE\r\n45X@PJL\r\n" +
                            kMarker + "\n@PJL ENTER LANGUAGE\n\033%\n\033%-1" + kMarker +
                            "@PJL ENTER LANGUAGE\r2345X@PJL\n\x04");
}

/// What holds for every stream, whatever it holds.
void expectTheRulesFor(const std::string &stream, const std::string &kept)
{
    const std::string whole = Support::pageDataBetweenWholeMarkers(stream);
    EXPECT_EQ(Support::pageDataOf(stream), kept) << testing::PrintToString(stream);
    EXPECT_TRUE(kept == whole || Support::hasMarker(whole)) << testing::PrintToString(stream);
    EXPECT_FALSE(Support::hasMarker(kept)) << testing::PrintToString(stream);
    EXPECT_EQ(kept, strip(kept));
}

TEST(KLJobControlStripperTest, RandomStreamsInRandomBlocksFollowTheRules)
{
    const std::vector<std::string> pieces = {kMarker,
                                             "\033",
                                             "\033%-123",
                                             "%-12345X",
                                             "45X",
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
                                             kHeader,
                                             "x",
                                             "\0\xff"s};
    std::mt19937 random(20260101);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    for (int round = 0; round < 20000 && !HasFailure(); round++) {
        std::string stream;
        for (auto count = below(14); count > 0; count--)
            stream += pieces[below(pieces.size())];
        std::vector<std::size_t> cuts;
        for (std::size_t cut = 0; cut + 1 < stream.size();)
            cuts.push_back(cut = std::min(stream.size(), cut + 1 + below(9)));
        expectTheRulesFor(stream, strip(stream, cuts));
    }
}

/// Calls the action with every stream of up to so many pieces that begins like this one.
void forEveryStreamBehind(const std::string &beginning, const std::vector<std::string> &pieces,
                          int count, const std::function<void(const std::string &)> &action)
{
    action(beginning);
    if (count > 0 && !testing::Test::HasFailure())
        for (const std::string &piece : pieces)
            forEveryStreamBehind(beginning + piece, pieces, count - 1, action);
}

#ifdef NDEBUG
constexpr int kFewerPieces = 0;
#else
constexpr int kFewerPieces = 1; // a slow build, with all that it looks at besides
#endif

TEST(KLJobControlStripperTest, EveryStreamOfLargePiecesInOneBlockFollowsTheRules)
{
    forEveryStreamBehind("",
                         {kMarker, "\033%-123", "45X", "\033", "@PJL ENTER LANGUAGE\r\n",
                          "@PJL ENTER LANGUAGE\r", "%!", "\x04", "\n"},
                         6 - kFewerPieces,
                         [](const auto &stream) { expectTheRulesFor(stream, strip(stream)); });
}

/// Every stream of up to so many pieces, each stripped in blocks of one piece. What streams have
/// in common at their beginnings is stripped once.
class EveryStream {
public:
    explicit EveryStream(std::vector<std::string> pieces) : _pieces(std::move(pieces)) {}

    /// Counts the streams, the empty one not among them. Ends at the first that breaks a rule.
    void tryUpTo(int pieces)
    {
        tryBehind(KLJobControlStripper([this](std::string_view bytes) { _kept += bytes; }), pieces);
    }

    std::size_t tried() const { return _tried; }

    /// The stream that came out with a marker, or was without job control and did not come out
    /// byte for byte.
    const std::optional<std::string> &offender() const { return _offender; }

private:
    /// Tries the streams that begin with `_stream`; of that `_kept` has been handed over until now.
    void tryBehind(const KLJobControlStripper &beginning, int pieces)
    {
        const std::size_t length = _stream.size();
        const std::size_t keptLength = _kept.size();
        for (const std::string &piece : _pieces) {
            KLJobControlStripper stripper = beginning;
            _stream += piece;
            stripper.strip(piece);
            if (pieces > 1)
                tryBehind(stripper, pieces - 1);
            stripper.finish();
            judge();
            if (_offender)
                return;
            _stream.resize(length);
            _kept.resize(keptLength);
        }
    }

    void judge()
    {
        _tried++;
        const bool keptAll = _kept == Support::withoutEnds(_stream);
        if (Support::hasMarker(_kept) || (!keptAll && !Support::hasMarker(_stream)))
            _offender = _stream;
    }

    const std::vector<std::string> _pieces;
    std::string _stream;
    std::string _kept;
    std::size_t _tried = 0;
    std::optional<std::string> _offender;
};

// ESC, the marker in halves and in quarters, and what begins, ends and surrounds job control.
TEST(KLJobControlStripperTest, EveryStreamOfSmallPiecesKeepsNoMarkerAndIsElseKept)
{
    constexpr int kPieces = 7 - kFewerPieces;
    EveryStream streams({"\033", "\033%-12", "345X", "\033%-", "12", "34", "5X",
                         "@PJL ENTER LANGUAGE", "%!", "\x04", "x", "\r", "\n"});
    streams.tryUpTo(kPieces);
    EXPECT_EQ(std::nullopt, streams.offender());
    std::size_t expected = 0;
    for (int pieces = 1, count = 13; pieces <= kPieces; pieces++, count *= 13)
        expected += static_cast<std::size_t>(count);
    EXPECT_EQ(expected, streams.tried());
}

} // namespace
