#include "DSCDocument.h"

#include "Streams.h"
#include "TemporaryFolder.h"
#include "ToolkitError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

using testing::ElementsAre;

namespace {

/// A document in a file, and what it is made of.
class DSCDocumentTest : public testing::Test {
protected:
    const DSCDocument &read(const std::string &text)
    {
        _text = text;
        _stream = Platform::openForReading(_folder.write("document.ps", text));
        _document.emplace(_stream.get());
        return *_document;
    }

    void readTelling(const std::string &text, const DSCDocument::Progress &progress)
    {
        _stream = Platform::openForReading(_folder.write("document.ps", text));
        _document.emplace(_stream.get(), progress);
    }

    std::string part(DSCRange range) const
    {
        return _text.substr(range.begin, range.end - range.begin);
    }

    /// The bytes of all pages, from their comments to their ends.
    std::vector<std::string> pages(const std::string &text)
    {
        std::vector<std::string> result;
        for (const DSCPage &page : read(text).pages())
            result.push_back(part({page.begin, page.end}));
        return result;
    }

    /// What is behind the comments of the first page.
    std::string firstContent(const std::string &text)
    {
        const DSCPage page = read(text).pages().front();
        return part({page.content, page.end});
    }

    std::string trailer(const std::string &text) { return part(read(text).trailer()); }
    std::string header(const std::string &text) { return part(read(text).header()); }

    /// What comes ahead of the place for procedures.
    std::string aheadOfProcedures(const std::string &text)
    {
        return part({0, read(text).beginOfProcedures()});
    }

private:
    Support::TemporaryFolder _folder;
    std::string _text;
    Platform::Stream _stream;
    std::optional<DSCDocument> _document;
};

const std::string kHead = "%!PS-Adobe-3.0\n%%EndComments\n";

} // namespace

TEST_F(DSCDocumentTest, PagesReachToTheNextOneAndToTheTrailer)
{
    EXPECT_THAT(pages(kHead + "%%Page: 1 1\none\n%%Page: 2 2\ntwo\n%%Trailer\nend\n%%EOF\n"),
                ElementsAre("%%Page: 1 1\none\n", "%%Page: 2 2\ntwo\n"));
}

TEST_F(DSCDocumentTest, AnyLineEndWillDo)
{
    EXPECT_THAT(pages("%!PS-Adobe-3.0\r%%EndComments\r%%Page: 1 1\rone\r%%Page: 2 2\rtwo"),
                ElementsAre("%%Page: 1 1\rone\r", "%%Page: 2 2\rtwo"));
    EXPECT_THAT(pages("%!PS-Adobe-3.0\r\n%%EndComments\r\n%%Page: 1 1\r\none\r\n%%EOF\r\n"),
                ElementsAre("%%Page: 1 1\r\none\r\n"));
    EXPECT_EQ("one\r\n",
              firstContent("%!PS-Adobe-3.0\r\n%%EndComments\r\n%%Page: 1 1\r\none\r\n%%EOF\r\n"));
}

TEST_F(DSCDocumentTest, CommentsBeginAtTheBeginOfALineOnly)
{
    EXPECT_EQ(1U, pages(kHead + "%%Page: 1 1\nx %%Page: 2 2\n %%Page: 3 3\n%%%Page: 4 4\n").size());
}

TEST_F(DSCDocumentTest, PageCountsThatLieAreOfNoInterest)
{
    EXPECT_EQ(
        2U,
        pages("%!PS-Adobe-3.0\n%%Pages: 999\n%%EndComments\n%%Page: 1 1\n%%Page: 7 9\n").size());
}

TEST_F(DSCDocumentTest, TrailerCanBeMissing)
{
    EXPECT_EQ("%%EOF\n", trailer(kHead + "%%Page: 1 1\n%%EOF\n"));
    EXPECT_EQ("", trailer(kHead + "%%Page: 1 1\nshowpage\n"));
    EXPECT_FALSE(read(kHead + "%%Page: 1 1\nshowpage\n").isComplete());
    EXPECT_TRUE(read(kHead + "%%Page: 1 1\nshowpage\n%%EOF").isComplete());
}

TEST_F(DSCDocumentTest, TrailerIsTheLastOne)
{
    const std::string pagesWithTrailerBetween =
        kHead + "%%Page: 1 1\n%%Trailer\n%%EOF\n%%Page: 2 2\n%%Trailer\nlast\n";
    EXPECT_EQ("%%Trailer\nlast\n", trailer(pagesWithTrailerBetween));
    EXPECT_EQ(2U, pages(pagesWithTrailerBetween).size());
}

TEST_F(DSCDocumentTest, HeaderEndsWithItsEndOrBeforeOtherLines)
{
    EXPECT_EQ(kHead, header(kHead + "%%Page: 1 1\n"));
    EXPECT_EQ("%!PS\n%%Title: x\n%other\n", header("%!PS\n%%Title: x\n%other\n\n%%Page: 1 1\n"));
    EXPECT_EQ("%!PS\n", header("%!PS\n% other\n%%Page: 1 1\n"));
    EXPECT_EQ("%!PS\n", header("%!PS\n%%BeginProlog\n%%EndProlog\n%%Page: 1 1\n"));
    EXPECT_EQ("%!PS\n", header("%!PS\n%%Page: 1 1\n"));
}

TEST_F(DSCDocumentTest, ProceduresGoAheadOfTheDocumentsOwn)
{
    const std::string defaults = "%%BeginDefaults\n%%PageMedia: A4\n%%EndDefaults\n";
    const std::string rest = "/x 1 def\n%%EndProlog\n%%Page: 1 1\n";
    EXPECT_EQ(kHead, aheadOfProcedures(kHead + rest));
    EXPECT_EQ(kHead + defaults, aheadOfProcedures(kHead + defaults + rest));
    EXPECT_EQ(kHead + defaults + "%%BeginProlog\n",
              aheadOfProcedures(kHead + defaults + "%%BeginProlog\n" + rest));
    const std::string preview = "%%BeginPreview: 8 1 1 1\n%ff\n%%BeginSetup\n%%EndPreview\n";
    EXPECT_EQ(kHead + preview, aheadOfProcedures(kHead + preview + rest));
    EXPECT_EQ(kHead + preview + defaults, aheadOfProcedures(kHead + preview + defaults + rest));
    EXPECT_EQ(kHead, aheadOfProcedures(kHead + "/y 1 def\n%%BeginProlog\n" + rest));
    EXPECT_EQ(kHead, aheadOfProcedures(kHead + "%%BeginSetup\n%%EndSetup\n%%Page: 1 1\n"));
}

TEST_F(DSCDocumentTest, SetupIsFound)
{
    const std::string text = kHead + "%%BeginProlog\n%%EndProlog\n%%BeginSetup\nx\n%%EndSetup\n";
    EXPECT_EQ(text.find("x\n"), read(text + "%%Page: 1 1\n").beginOfSetup());
    EXPECT_EQ(std::nullopt, read(kHead + "%%Page: 1 1\n").beginOfSetup());
}

TEST_F(DSCDocumentTest, ContentBeginsBehindTheCommentsAboutThePage)
{
    EXPECT_EQ("%%BeginPageSetup\nx\n",
              firstContent(kHead + "%%Page: 1 1\n%%PageMedia: A4\n%%PageBoundingBox: 0 0 1 1\n"
                                   "%%+ more\n%%BeginPageSetup\nx\n"));
    EXPECT_EQ("%%PageTrailer\n", firstContent(kHead + "%%Page: 1 1\n%%PageTrailer\n"));
    EXPECT_EQ("x\n%%PageMedia: A4\n", firstContent(kHead + "%%Page: 1 1\nx\n%%PageMedia: A4\n"));
}

TEST_F(DSCDocumentTest, LabelsAreOneWordOrInParentheses)
{
    const auto label = [this](const std::string &comment) {
        const DSCDocument &document = read(kHead + comment + "\n");
        return std::string(labelOfPage(document.pageComment(document.pages().front())));
    };
    EXPECT_EQ("iv", label("%%Page: iv 4"));
    EXPECT_EQ("(page 4)", label("%%Page: (page 4) 4"));
    EXPECT_EQ("?", label("%%Page:"));
    EXPECT_EQ("?", label("%%Page: (open"));
    EXPECT_EQ("x", label("%%Page:x"));
}

// --- What is content, whatever it looks like -----------------------------------------------------

TEST_F(DSCDocumentTest, EmbeddedDocumentsAreContent)
{
    const std::string inner = "%%BeginDocument: a.eps\n%!PS\n%%Page: 1 1\n%%Trailer\n%%EOF\n"
                              "%%BeginDocument: b.eps\n%%Page: 1 1\n%%EndDocument\n"
                              "%%EndDocument\n";
    EXPECT_EQ(2U, pages(kHead + "%%Page: 1 1\n" + inner + "%%Page: 2 2\n" + inner).size());
    EXPECT_EQ(1U, pages(kHead + "%%BeginProlog\n" + inner + "%%Page: 1 1\n").size());
}

TEST_F(DSCDocumentTest, TrailerIsTheOneBehindDocumentsEmbeddedWithoutAWord)
{
    const std::string outer = "showpage\n%%Trailer\n%%Pages: 1\n%%EOF\n";
    for (const std::string end : {"%%Trailer\nend\n%%EOF\n", "%%EOF\n"}) {
        const std::string inner = "%!PS-Adobe-3.0 EPSF-3.0\n" + end;
        const std::string page = "%%Page: 1 1\n" + inner + inner;
        EXPECT_EQ(outer.substr(9), trailer(kHead + page + outer));
        EXPECT_EQ(1U, pages(kHead + page + outer).size());
    }
    // Without an end in between they are one.
    EXPECT_EQ("%%Trailer\n%%Trailer\n%%EOF\n",
              trailer(kHead + "%%Page: 1 1\n%%Trailer\n%%Trailer\n%%EOF\n"));
}

TEST_F(DSCDocumentTest, EndOfAnEmbeddedDocumentThatNeverBeganIsPassedOver)
{
    EXPECT_EQ(2U, pages(kHead + "%%EndDocument\n%%Page: 1 1\n%%EndDocument\n%%Page: 2 2\n").size());
}

TEST_F(DSCDocumentTest, CountedDataAreContent)
{
    const std::string data = "%%Page: 9 9\n\n%%EndData\nx\n"; // 26 bytes, 4 lines
    EXPECT_EQ(1U,
              pages(kHead + "%%Page: 1 1\n%%BeginBinary: 26\n" + data + "%%EndBinary\n").size());
    EXPECT_EQ(1U, pages(kHead + "%%Page: 1 1\n%%BeginData: 26\n" + data + "%%EndData\n").size());
    EXPECT_EQ(1U,
              pages(kHead + "%%Page: 1 1\n%%BeginData: 26 Binary Bytes\n" + data + "\n%%EndData\n")
                  .size());
    EXPECT_EQ(2U, pages(kHead + "%%Page: 1 1\n%%BeginData: 4 Hex Lines\n" + data +
                        "%%EndData\n%%Page: 2 2\n")
                      .size());
}

TEST_F(DSCDocumentTest, LineFeedBehindACarriageReturnBelongsToTheDataWhereLinesEndWithOne)
{
    EXPECT_EQ(2U, pages("%!PS\r%%EndComments\r%%Page: 1 1\r%%BeginBinary: 14\r\n%%Page: 9 9\rx"
                        "%%EndBinary\r%%Page: 2 2\r")
                      .size());
}

TEST_F(DSCDocumentTest, CountThatIsWrongIsMendedByTheEndComment)
{
    const std::string data = "%%Page: 9 9\nxx\n%%EndBinary\n";
    for (const char *count : {"3", "99", "99999999999999999999", "-1", "x", ""}) {
        EXPECT_EQ(2U, pages(kHead + "%%Page: 1 1\n%%BeginBinary: " + count + "\n" + data +
                            "%%Page: 2 2\n")
                          .size())
            << count;
    }
}

/// Would take hours if each of them led through the rest of the document.
TEST_F(DSCDocumentTest, ManyWrongCountsDoNotAddUp)
{
    std::string text = kHead + "%%Page: 1 1\n";
    for (int section = 0; section < 200000; ++section)
        text += "%%BeginData: 9999999 Hex Lines\nx\n%%EndData\n";
    EXPECT_EQ(2U, pages(text + "%%Page: 2 2\n").size());
}

TEST_F(DSCDocumentTest, DataThatTheEndCutsOffReachToTheEnd)
{
    EXPECT_EQ(1U, pages(kHead + "%%Page: 1 1\n%%BeginBinary: 999\n%%Page: 9 9\n").size());
    EXPECT_EQ(1U, pages(kHead + "%%Page: 1 1\n%%BeginData: 9 Hex Lines\n%%Page: 9 9\n").size());
}

TEST_F(DSCDocumentTest, DataWhoseEndCommentTheEndCutsOffAreContent)
{
    const std::string text = kHead + "%%Page: 1 1\n%%BeginBinary: 12\n%%Page: 9 9\n%%EndBinary\n";
    for (std::size_t size = text.find("%%EndBinary"); size <= text.size(); ++size)
        EXPECT_EQ(1U, pages(text.substr(0, size)).size()) << size;
}

TEST_F(DSCDocumentTest, DataWithoutEndReachNowhereInADocumentThatHasItsOwn)
{
    for (const auto *begin : {"%%BeginBinary: 999", "%%BeginData: 9 Hex Lines"}) {
        const std::string text = kHead + "%%Page: 1 1\n" + begin + "\n%%Page: 2 2\n%%Trailer\n";
        const DSCDocument &document = read(text + "%%EOF\n\n");
        EXPECT_EQ(2U, document.pages().size());
        EXPECT_TRUE(document.isComplete());
        EXPECT_EQ("", document.missingEndOfData());
    }
}

TEST_F(DSCDocumentTest, DataWithoutEndAndWithoutUsableCountAreNone)
{
    EXPECT_EQ(2U, pages(kHead + "%%Page: 1 1\n%%BeginBinary: 2\n%%Page: 2 2\n").size());
}

TEST_F(DSCDocumentTest, CommentDirectlyBehindDataThatAreNoneCounts)
{
    EXPECT_EQ(2U, pages(kHead + "%%Page: 1 1\n%%BeginBinary: 2\n%%Page: 2 2\nshowpage\n").size());
}

TEST_F(DSCDocumentTest, WhereOneSectionHasNoEndNoCountIsBelieved)
{
    EXPECT_EQ(3U, pages(kHead + "%%Page: 1 1\n%%BeginBinary: 2\n%%Page: 2 2\n"
                                "%%BeginBinary: 999\n%%Page: 3 3\n")
                      .size());
}

TEST_F(DSCDocumentTest, SaysWhatShouldEndTheDataThatAreCutOff)
{
    EXPECT_EQ("%%EndBinary",
              read(kHead + "%%Page: 1 1\n%%BeginBinary: 999\nxx\n").missingEndOfData());
    EXPECT_EQ("%%EndData",
              read(kHead + "%%Page: 1 1\n%%BeginData: 9 Hex Lines\nxx\n").missingEndOfData());
    EXPECT_EQ("ary",
              read(kHead + "%%Page: 1 1\n%%BeginBinary: 3\nxx\n%%EndBin").missingEndOfData());
    EXPECT_EQ("", read(kHead + "%%Page: 1 1\n%%BeginBinary: 2\nxx\n").missingEndOfData());
    EXPECT_EQ(
        "",
        read(kHead + "%%Page: 1 1\n%%BeginBinary: 9\nxx\n%%EndBinary\nshowp").missingEndOfData());
}

// --- Media ---------------------------------------------------------------------------------------

namespace {

testing::Matcher<std::optional<PageSize>> isSize(double width, double height)
{
    return testing::Optional(testing::AllOf(testing::Field(&PageSize::width, width),
                                            testing::Field(&PageSize::height, height)));
}

} // namespace

TEST_F(DSCDocumentTest, MediaOfAPage)
{
    const DSCDocument &document =
        read("%!PS\n%%DocumentMedia: Plain 100 200 0 () ()\n%%+ (Big one) 300.5 400 75 white ( )\n"
             "%%EndComments\n%%Page: 1 1\n%%Page: 2 2\n%%PageMedia: (Big one)\n"
             "%%Page: 3 3\n%%BeginPageSetup\n%%PageMedia: Letter\n%%EndPageSetup\n"
             "%%Page: 4 4\n%%PageMedia: Nothing\n");
    EXPECT_THAT(document.mediaOf(document.pages()[0]), isSize(100, 200));
    EXPECT_THAT(document.mediaOf(document.pages()[1]), isSize(300.5, 400));
    EXPECT_THAT(document.mediaOf(document.pages()[2]), isSize(612, 792));
    EXPECT_EQ(std::nullopt, document.mediaOf(document.pages()[3]));
}

TEST_F(DSCDocumentTest, DefaultMedia)
{
    const std::string header = "%!PS\n%%DocumentMedia: Plain 100 200 0 () ()\n%%+ Big 300 400 0 () "
                               "()\n%%EndComments\n";
    const DSCDocument &document =
        read(header + "%%BeginDefaults\n%%PageMedia: Big\n%%EndDefaults\n%%Page: 1 1\n");
    EXPECT_THAT(document.mediaOf(document.pages()[0]), isSize(300, 400));
    const DSCDocument &without = read(kHead + "%%Page: 1 1\n");
    EXPECT_EQ(std::nullopt, without.mediaOf(without.pages()[0]));
}

TEST_F(DSCDocumentTest, MediaAtTheEnd)
{
    const DSCDocument &document =
        read("%!PS\n%%DocumentMedia: (atend)\n%%EndComments\n%%Page: 1 1\n%%Trailer\n"
             "%%DocumentMedia: Plain 100 200 0 () ()\n%%EOF\n");
    EXPECT_THAT(document.mediaOf(document.pages()[0]), isSize(100, 200));
}

TEST_F(DSCDocumentTest, OnlyTheFirstMediaAreToldApart)
{
    std::string text = "%!PS\n%%DocumentMedia: m1 1 500 0 () ()\n";
    for (int media = 2; media <= 257; ++media) {
        const std::string number = std::to_string(media);
        text += "%%+ m" + number + " " + number + " 500 0 () ()\n";
    }
    const DSCDocument &document =
        read(text + "%%EndComments\n%%Page: 1 1\n%%PageMedia: m256\n%%Page: 2 2\n"
                    "%%PageMedia: m257\n");
    EXPECT_THAT(document.mediaOf(document.pages()[0]), isSize(256, 500));
    EXPECT_THAT(document.mediaOf(document.pages()[1]), isSize(1, 500)); // the document's default
}

// --- Orientation ---------------------------------------------------------------------------------

namespace {

std::vector<DSCOrientation> orientations(const DSCDocument &document)
{
    std::vector<DSCOrientation> result;
    for (const DSCPage &page : document.pages())
        result.push_back(document.orientationOf(page));
    return result;
}

} // namespace

TEST_F(DSCDocumentTest, PagesHaveTheirOwnOrientationOrTheDocuments)
{
    using enum DSCOrientation;
    const std::string page = "%%Page: 1 1\n";
    const std::string body =
        page + page + "%%PageOrientation: Portrait\n" + page +
        "x\n%%PageOrientation: Landscape\n%%BeginDocument: a\n%%PageOrientation: Portrait\n"
        "%%EndDocument\n%%PageTrailer\n%%PageOrientation: Portrait\n" +
        page + "%%PageOrientation: (atend)\nx\n%%PageTrailer\n%%PageOrientation: Landscape\n";
    EXPECT_THAT(orientations(read("%!PS\n%%Orientation: Landscape\n" + body)),
                ElementsAre(Landscape, Portrait, Landscape, Landscape));
    EXPECT_THAT(orientations(read("%!PS\n" + body)),
                ElementsAre(Unsaid, Portrait, Landscape, Landscape));
}

TEST_F(DSCDocumentTest, OrientationOfTheDocumentStandsInHeaderDefaultsOrTrailer)
{
    using enum DSCOrientation;
    const std::string page = "%%Page: 1 1\nx\n";
    const std::string atEnd = "%!PS\n%%Orientation: (atend)\n%%EndComments\n";
    EXPECT_THAT(orientations(read(atEnd + page + "%%Trailer\n%%Orientation: Landscape\n%%EOF\n")),
                ElementsAre(Landscape));
    EXPECT_THAT(orientations(read("%!PS\n%%EndComments\n%%BeginDefaults\n"
                                  "%%PageOrientation: Landscape\n%%EndDefaults\n" +
                                  page)),
                ElementsAre(Landscape));
    EXPECT_THAT(orientations(read("%!PS\n%%PageOrientation: Landscape\n%%EndComments\n" + page +
                                  page + "%%PageOrientation: Portrait\n")),
                ElementsAre(Landscape, Portrait));
    EXPECT_THAT(orientations(read(atEnd + "%%BeginProlog\n%%Orientation: Landscape\n" + page)),
                ElementsAre(Unsaid));
    EXPECT_THAT(orientations(read("%!PS\n%%Orientation: Sideways\n%%EndComments\n" + page)),
                ElementsAre(Unsaid));
}

// --- Refused -------------------------------------------------------------------------------------

TEST_F(DSCDocumentTest, WithoutPageCommentsThereIsNothingToDo)
{
    EXPECT_THROW(read(kHead + "showpage\n%%Trailer\n%%EOF\n"), ToolkitError);
    EXPECT_THROW(read("%!"), ToolkitError);
    EXPECT_THROW(read(""), ToolkitError);
}

TEST_F(DSCDocumentTest, EmbeddedDocumentWithoutEndIsRefused)
{
    EXPECT_THROW(read(kHead + "%%Page: 1 1\n%%BeginDocument: a\n%%Page: 2 2\n"), ToolkitError);
}

// --- The dictionary of the operators -------------------------------------------------------------

TEST_F(DSCDocumentTest, DictionaryOfTheOperatorsIsFoundWhereverItIsNamed)
{
    const std::string page = "%%Page: 1 1\n";
    EXPECT_FALSE(read(kHead + page + "system dict systemdic").namesOperatorDictionary());
    EXPECT_TRUE(read(kHead + "systemdict pop\n" + page).namesOperatorDictionary());
    EXPECT_TRUE(read(kHead + page + "{systemdict}\n").namesOperatorDictionary());
    EXPECT_TRUE(read(kHead + page + "%%Trailer\nsystemdict").namesOperatorDictionary());
    for (std::size_t filling = FileWindow::kSize - 70; filling < FileWindow::kSize; ++filling) {
        ASSERT_TRUE(read(kHead + page + std::string(filling, 'x') + "systemdict" +
                         std::string(FileWindow::kSize, 'x'))
                        .namesOperatorDictionary())
            << filling;
    }
}

TEST_F(DSCDocumentTest, DictionaryOfTheOperatorsIsFoundAtTheBeginOfData)
{
    const std::string data = "systemdict begin\n" + std::string(2 * FileWindow::kSize, 'x') + "\n";
    EXPECT_TRUE(read(kHead + "%%Page: 1 1\n%%BeginData: " + std::to_string(data.size()) + "\n" +
                     data + "%%EndData\n")
                    .namesOperatorDictionary());
}

// --- Large ---------------------------------------------------------------------------------------

TEST_F(DSCDocumentTest, CommentsAreFoundAcrossTheBuffersEdges)
{
    for (std::size_t filling = FileWindow::kSize - 60; filling < FileWindow::kSize; ++filling) {
        std::string text = kHead + "%%Page: 1 1\n" + std::string(filling, 'x') + "\n%%Page: 2 2\n";
        ASSERT_EQ(2U, pages(text).size()) << filling;
    }
}

/// What has been passed is held until it has been told, so that it need not be read again.
TEST_F(DSCDocumentTest, ALargeDocumentIsToldOfWhileItIsRead)
{
    const std::string content(FileWindow::kSize * 3 / 2, 'x');
    const std::string text = kHead + "%%Page: 1 1\n" + content + "\n%%Page: 2 2\n" + content +
                             "\n%%Trailer\n" + content + "\n%%EOF\n";
    std::string held;
    std::size_t pagesSoFar = 0;
    readTelling(text, [&](const DSCDocument &soFar, const DSCScanner &scanner) {
        pagesSoFar = soFar.pages().size();
        const std::string_view bytes = scanner.held(held.size());
        ASSERT_LE(scanner.passed(), held.size() + bytes.size());
        held += bytes.substr(0, static_cast<std::size_t>(scanner.passed()) - held.size());
    });
    EXPECT_EQ(text.substr(0, held.size()), held);
    EXPECT_LT(text.find("%%Page: 2 2"), held.size());
    EXPECT_GE(text.find("%%Trailer"), held.size());
    EXPECT_EQ(2U, pagesSoFar);
}

TEST_F(DSCDocumentTest, ASmallDocumentIsNotToldOf)
{
    readTelling(kHead + "%%Page: 1 1\nshowpage\n%%EOF\n",
                [](const DSCDocument &, const DSCScanner &) { FAIL(); });
}

TEST_F(DSCDocumentTest, EveryTruncationIsReadOrRefused)
{
    const std::string text = kHead + "%%BeginProlog\n%%EndProlog\n%%BeginSetup\n%%EndSetup\n"
                                     "%%Page: 1 1\n%%BeginDocument: a\n%%BeginBinary: 5\n12345\n"
                                     "%%EndBinary\n%%EndDocument\n%%BeginData: 2 Hex Lines\n1\n2\n"
                                     "%%EndData\n%%Page: 2 2\r\nx\n%%Trailer\n%%EOF\n";
    const std::size_t firstPage = text.find("%%Page: 1") + std::string("%%Page").size();
    for (std::size_t size = 0; size <= text.size(); ++size) {
        try {
            EXPECT_GE(2U, pages(text.substr(0, size)).size());
            EXPECT_GE(size, firstPage);
        } catch (const ToolkitError &) {
            const bool inDocument =
                size > text.find("%%BeginDocument") + 14 && size < text.find("%%EndDocument") + 13;
            EXPECT_TRUE(size < firstPage || inDocument) << size;
        }
    }
}

// --- Pages that would be lost --------------------------------------------------------------------

TEST_F(DSCDocumentTest, DocumentThatLeavesItsJobIsRefused)
{
    const std::string page = "%%Page: 1 1\nshowpage\n%%EOF\n";
    const std::string leaving = "%%BeginExitServer: 0\nserverdict begin 0 exitserver\n"
                                "%%EndExitServer\n";
    EXPECT_THROW(read("%!PS-Adobe-3.0\n%%EndComments\n" + leaving + page), ToolkitError);
    EXPECT_NO_THROW(read("%!PS-Adobe-3.0\n%%EndComments\n" + page));
    EXPECT_NO_THROW(read("%!PS-Adobe-3.0\n%%EndComments\n%%BeginDocument: inner\n" + leaving +
                         "%%EndDocument\n" + page));
}

TEST_F(DSCDocumentTest, EmptyPages)
{
    EXPECT_TRUE(read("%!\n%%Page: 1 1\n%%PageOrientation: Portrait\n \n%%Page: 2 2\n%%EOF\n")
                    .hasEmptyPagesOnly());
    EXPECT_FALSE(read("%!\n%%Page: 1 1\n%%Page: 2 2\nshowpage\n%%EOF\n").hasEmptyPagesOnly());
    EXPECT_FALSE(read("%!\n%%Page: 1 1\n").hasEmptyPagesOnly()); // its end is missing
}

// --- Comments in the wrong place -----------------------------------------------------------------

TEST_F(DSCDocumentTest, PageCommentInThePrologIsNone)
{
    EXPECT_THAT(pages("%!PS-Adobe-3.0\n%%EndComments\n/a 1 def\n%%Page: 9 9\n/b 2 def\n"
                      "%%EndProlog\n%%BeginSetup\na\n%%EndSetup\n%%Page: 1 1\nb\n%%Page: 2 2\n"),
                ElementsAre("%%Page: 1 1\nb\n", "%%Page: 2 2\n"));
}

TEST_F(DSCDocumentTest, SeveralPageCommentsInAPrologThatHasBegunAreNone)
{
    const std::string begin = "%!PS-Adobe-3.0\n%%EndComments\n";
    const std::string rest = "/a 1 def\n%%Page: 8 8\n/b 2 def\n%%Page: 9 9\n/c 3 def\n"
                             "%%EndProlog\n%%BeginSetup\na\n%%EndSetup\n%%Page: 1 1\nb\n";
    EXPECT_THAT(pages(begin + "%%BeginProlog\n" + rest), ElementsAre("%%Page: 1 1\nb\n"));
    EXPECT_EQ(3U, pages(begin + rest).size());
}

TEST_F(DSCDocumentTest, SetupWithinThePrologIsNone)
{
    const std::string prolog = "%!PS-Adobe-3.0\n%%EndComments\n%%BeginProlog\n/a {\n%%BeginSetup\n"
                               "} def\n%%EndProlog\n";
    EXPECT_FALSE(read(prolog + "%%Page: 1 1\nb\n").beginOfSetup());
    const std::string setup = prolog + "%%BeginSetup\n";
    EXPECT_EQ(setup.size(), read(setup + "%%EndSetup\n%%Page: 1 1\nb\n").beginOfSetup());
}

TEST_F(DSCDocumentTest, SetupBehindAPageCommentInThePrologIsTheDocuments)
{
    const std::string begin = "%!PS-Adobe-3.0\n%%EndComments\n%%Page: 9 9\n%%EndProlog\n"
                              "%%BeginSetup\n";
    EXPECT_EQ(begin.size(), read(begin + "a\n%%EndSetup\n%%Page: 1 1\nb\n").beginOfSetup());
}

TEST_F(DSCDocumentTest, PageCommentInTheSetupIsNone)
{
    EXPECT_THAT(pages("%!PS-Adobe-3.0\n%%EndComments\n%%BeginProlog\n%%EndProlog\n%%BeginSetup\n"
                      "%%Page: 9 9\na\n%%EndSetup\n%%Page: 1 1\nb\n"),
                ElementsAre("%%Page: 1 1\nb\n"));
}

TEST_F(DSCDocumentTest, PrologOfADocumentInTheFirstPageTellsNothing)
{
    const std::string inner = "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 9 9\n%%EndProlog\n";
    EXPECT_EQ(2U, pages("%!PS-Adobe-3.0\n%%EndComments\n%%Page: 1 1\n" + inner +
                        "showpage\n%%Page: 2 2\n")
                      .size());
    EXPECT_EQ(
        2U, pages(kHead + "%%EndProlog\n%%Page: 1 1\n%%EndProlog\nshowpage\n%%Page: 2 2\n").size());
}

TEST_F(DSCDocumentTest, OnlyPageIsOneWhereverItsCommentStands)
{
    EXPECT_THAT(pages("%!PS-Adobe-3.0\n%%EndComments\n%%Page: 1 1\n%%EndProlog\na\n%%Trailer\n"),
                ElementsAre("%%Page: 1 1\n%%EndProlog\na\n"));
}

TEST_F(DSCDocumentTest, LastPageGoesOnBehindATrailerThatIsNone)
{
    const std::string pagesBefore = kHead + "%%Page: 1 1\na ep\n%%Page: 2 2\nb\n";
    for (const std::string rest : {"%%Trailer\nc ep\n", "%%Trailer\nc (%) % c\nep\n",
                                   "%%EOF\nc\nep\n", "%%Trailer\nc showpage\n"}) {
        SCOPED_TRACE(rest);
        EXPECT_EQ("%%Trailer\nend\n%%EOF\n",
                  trailer(pagesBefore + rest + "%%Trailer\nend\n%%EOF\n"));
        EXPECT_TRUE(read(pagesBefore + rest + "%%EOF\n").isComplete());
        EXPECT_EQ("", trailer(pagesBefore + rest));
        EXPECT_FALSE(read(pagesBefore + rest).isComplete());
    }
}

TEST_F(DSCDocumentTest, EmptyFirstPageSaysNothingOfHowPagesEnd)
{
    EXPECT_EQ("%%EOF\n", trailer(kHead + "%%Page: 1 1\n%%Page: 2 2\na ep\n%%Page: 3 3\nb\n"
                                         "%%Trailer\nc ep\n%%EOF\n"));
}

TEST_F(DSCDocumentTest, TrailerMayHaveTheWordsOfPages)
{
    const std::string begin = kHead + "%%Page: 1 1\na ep\n%%Page: 2 2\nb ep\n";
    for (const std::string end : {"%%Trailer\nc ep\n%%EOF\n", "%%Trailer\n/ep { } def\n%%EOF\n",
                                  "%%Trailer\n(ep) pop % showpage\n%%EOF\n"})
        EXPECT_EQ(end, trailer(begin + end));
    const std::string other = "%%Trailer\nend restore\n%%EOF\n";
    EXPECT_EQ(other, trailer(kHead + "%%Page: 1 1\na restore\n%%Page: 2 2\nb\n" + other));
}

// --- What is shown ahead of the pages ------------------------------------------------------------

class DSCDocumentAheadTest : public DSCDocumentTest {
protected:
    bool runs(const std::set<std::string> &operators, const std::string &prolog)
    {
        return read("%!PS-Adobe-3.0\n%%EndComments\n" + prolog +
                    "\n%%Page: 1 1\nglobaldict pop 0 0 9 9 rectfill showpage\n")
            .runsAheadOfPages(operators);
    }
    bool shows(const std::string &prolog) { return runs({"showpage", "copypage"}, prolog); }
};

TEST_F(DSCDocumentAheadTest, WordsThatShowAPage)
{
    for (const auto *prolog :
         {"showpage", "copypage", "/ep { gsave showpage grestore } bind def\nep",
          "/ep{showpage}def/eq{ep}def eq", "/ep /showpage load def/eq{ep}def eq",
          "/x where { pop } { showpage } ifelse", "/embed { /showpage { } def } def showpage",
          "/ep { x { { showpage } exec } if } def 3 { ep } bind repeat", "(\\)) <7d> showpage",
          "% {\n<< /a { } >> showpage", "currentfile eexec\n{(</cleartomark showpage",
          "%%BeginBinary: 3\n{(<\n%%EndBinary\nshowpage"})
        EXPECT_TRUE(shows(prolog)) << prolog;
}

TEST_F(DSCDocumentAheadTest, WordsThatShowNone)
{
    for (const auto *prolog :
         {"", "/ep { showpage } bind def", "/showpage { } def showpage", "/ep /showpage load def",
          "/ep { showpage } def /ep { } def ep", "(showpage) pop", "% showpage\n/x",
          "/x where { /ep { showpage } def } if", "/begin { /ep { showpage } def } def begin",
          "[ { showpage } ] pop", "3 gt { (no) show showpage quit } if",
          "currentfile eexec showpage cleartomark",
          "%%BeginData: 1 ASCII Lines\nshowpage\n%%EndData"})
        EXPECT_FALSE(shows(prolog)) << prolog;
}

TEST_F(DSCDocumentAheadTest, WordsForOtherOperators)
{
    const std::set<std::string> operators = {"fill", "stroke"};
    for (const auto *prolog : {"fill", "/S { stroke } bind def 0 0 moveto 9 9 lineto S",
                               "/F/fill load def 0 0 9 9 rectpath F"})
        EXPECT_TRUE(runs(operators, prolog)) << prolog;
    for (const auto *prolog :
         {"", "0.5 setgray", "/S { stroke } bind def showpage", "2 lt { fill showpage quit } if"})
        EXPECT_FALSE(runs(operators, prolog)) << prolog;
}

TEST_F(DSCDocumentAheadTest, WordAnywhere)
{
    const auto names = [this](const std::string &prolog) {
        return read("%!PS-Adobe-3.0\n" + prolog + "\n%%Page: 1 1\nglobaldict pop showpage\n")
            .namesAheadOfPages("globaldict");
    };
    EXPECT_FALSE(names(""));
    EXPECT_TRUE(names("/globaldict where { pop } if"));
    for (const std::size_t length : {131'000U, 131'050U, 300'000U}) // past what is held at a time
        EXPECT_TRUE(names(std::string(length, ' ') + "globaldict"));
}
