#include "PreviewMaker.h"

#include "Environment.h"
#include "PDFBuilder.h"
#include "Program.h"
#include "Rendering.h"
#include "RunningProcesses.h"
#include "TemporaryFolder.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::Ge;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Le;
using testing::StartsWith;

constexpr QSize kA4(595, 842); // a pixel is a point then

/// A picture that has come.
struct Shown {
    int sheet;
    Side side;
    QImage picture;
};

/// All that a preview says.
struct Said {
    QList<Sheet> sheets;
    std::vector<Shown> pictures;
    std::vector<std::string> refusals;
    std::vector<std::string> notes;
    std::vector<std::string> failures;
    std::vector<std::string> work;
    std::vector<int> percents; ///< with each
    int stops = 0;
};

class PreviewMakerTest : public testing::Test {
protected:
    PreviewMakerTest()
    {
        if (QCoreApplication::instance() == nullptr)
            new QCoreApplication(_argumentCount, _arguments); // for all tests
        fs::create_directory(_runtime);
    }
    ~PreviewMakerTest() override
    {
        _maker.reset();
        EXPECT_THAT(filesLeft(), IsEmpty());
        EXPECT_TRUE(waitFor([this] { return processes().empty(); }));
    }

    PreviewMaker &maker()
    {
        if (!_maker) {
            _maker = std::make_unique<PreviewMaker>(_programs, _limits);
            listen();
        }
        return *_maker;
    }

    /// Runs the event loop until something is so. @return false when that takes too long
    static bool waitFor(const std::function<bool()> &condition, int milliseconds = 30'000)
    {
        QElapsedTimer clock;
        clock.start();
        while (!condition()) {
            if (clock.hasExpired(milliseconds))
                return false;
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents,
                                            10);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        return true;
    }

    PreviewJob job(const std::string &options, const std::string &document = {}) const
    {
        return {QString::fromStdString(_ppd), QString::fromStdString(options),
                QString::fromStdString(document)};
    }

    /// The sheets of a job; empty when there are none.
    QList<Sheet> sheetsOf(const PreviewJob &job)
    {
        maker().setJob(job);
        EXPECT_TRUE(waitFor([this] { return !said.sheets.isEmpty() || !said.failures.empty(); }));
        return said.sheets;
    }

    /// The picture of a side; none when it could not be had.
    QImage pictureOf(const PreviewJob &job, int sheet, Side side, QSize pixels = kA4)
    {
        maker().show(sheet, side, pixels);
        maker().setJob(job);
        EXPECT_TRUE(waitFor([this] { return !said.pictures.empty() || !said.failures.empty(); }));
        return said.pictures.empty() ? QImage() : said.pictures.back().picture;
    }

    /// What is said of a job that cannot be shown.
    std::string failureOf(const PreviewJob &job)
    {
        sheetsOf(job);
        EXPECT_TRUE(said.sheets.isEmpty());
        return said.failures.empty() ? "" : said.failures.back();
    }

    /// Runs the toolkit by hand. @return the document that it makes
    std::string byHand(std::vector<std::string> words, const std::string &document) const
    {
        const Support::ScopedEnvironment ppd("PPD", _ppd);
        words.insert(words.begin(), KL_TOOLKIT);
        words.insert(words.end(), {document, folder.file("by-hand.pdf")});
        Support::runOrThrow(words);
        return folder.file("by-hand.pdf");
    }

    std::vector<std::string> filesLeft() const
    {
        std::vector<std::string> names;
        for (const auto &entry : fs::recursive_directory_iterator(_runtime))
            names.push_back(entry.path());
        return names;
    }

    /// Those that work for the preview.
    std::vector<pid_t> processes() const { return Support::processesStartedWith(_runtime); }

    /// A toolkit that is a script.
    void useToolkit(const std::string &bundle, const std::string &script)
    {
        fs::create_directories(folder.file(bundle + "/Contents/Linux"));
        folder.writeScript(bundle + "/Contents/Linux/toolkit", script);
        _programs.toolkitBundle = QString::fromStdString(folder.file(bundle));
    }

    /// A toolkit that is never done.
    void useSleepingToolkit() { useToolkit("Sleeping.bundle", "exec sleep 100\n"); }

    /// Pages of a text processor, with fonts of its own, on A4 in whole points: at a pixel for a
    /// point they fill a box of whole pixels.
    std::string realDocument() const
    {
        std::string bytes = Support::readFile(KL_DOCUMENTS "/office-7.pdf");
        const std::string box = "[0 0 595.303937007874 841.889763779528]";
        const std::string whole = "[0 0 595 842]";
        for (std::size_t at = bytes.find(box); at != std::string::npos; at = bytes.find(box))
            bytes.replace(at, box.size(), whole + std::string(box.size() - whole.size(), ' '));
        return folder.write("real.pdf", bytes);
    }

    /// A document of so many A4 pages with a square on each.
    std::string documentOf(int pages)
    {
        Support::PDFBuilder builder;
        const std::string square = builder.addStream("100 100 200 200 re f");
        for (int page = 0; page < pages; ++page)
            builder.addPage("/MediaBox [0 0 595 842] /Contents " + square);
        return folder.write("document.pdf", builder.document());
    }

    Support::TemporaryFolder folder;
    Said said;

    std::string _ppd = KL_SAMPLE_PPD;
    PreviewPrograms _programs = {KL_PREVIEW, KL_TOOLKIT_BUNDLE};
    PreviewLimits _limits;
    std::string _runtime = folder.file("runtime");

private:
    void listen();

    static inline int _argumentCount = 1;
    static inline char _name[] = "PreviewMakerTest";
    static inline char *_arguments[] = {_name, nullptr};
    Support::ScopedEnvironment _place{"XDG_RUNTIME_DIR", _runtime};
    std::unique_ptr<PreviewMaker> _maker;
};

void PreviewMakerTest::listen()
{
    const auto into = [](std::vector<std::string> &texts) {
        return [&texts](const QString &words) { texts.push_back(words.toStdString()); };
    };
    PreviewMaker *maker = _maker.get();
    QObject::connect(maker, &PreviewMaker::refused, maker, into(said.refusals));
    QObject::connect(maker, &PreviewMaker::noted, maker, into(said.notes));
    QObject::connect(maker, &PreviewMaker::failed, maker, into(said.failures));
    QObject::connect(maker, &PreviewMaker::stopped, maker, [this] { ++said.stops; });
    QObject::connect(maker, &PreviewMaker::progress, maker,
                     [this](int percent, const QString &what) {
                         said.percents.push_back(percent);
                         said.work.push_back(what.toStdString());
                     });
    QObject::connect(maker, &PreviewMaker::sheetsKnown, maker,
                     [this](const QList<Sheet> &sheets) { said.sheets = sheets; });
    QObject::connect(maker, &PreviewMaker::sheetReady, maker,
                     [this](int sheet, Side side, const QImage &picture) {
                         said.pictures.push_back({sheet, side, picture});
                     });
}

/// Pixels per inch of tests that compare pixels.
constexpr double kResolution = 72;

/// Pixel for pixel.
Support::RenderedPage pixelsOf(const QImage &picture)
{
    std::string ppm = "P6\n" + std::to_string(picture.width()) + " " +
                      std::to_string(picture.height()) + "\n255\n";
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            for (const int component : {qRed(pixel), qGreen(pixel), qBlue(pixel)})
                ppm += static_cast<char>(component);
        }
    }
    return {ppm, kResolution};
}

Support::RenderedPage pageByHand(const std::string &path, std::size_t page)
{
    return Support::renderFileWithPoppler(path, {.resolution = kResolution, .smooth = true})
        .pages.at(page);
}

/// Kind, front page and back page.
using Row = std::tuple<Sheet::Kind, int, int>;

std::vector<Row> rowsOf(const QList<Sheet> &sheets)
{
    std::vector<Row> rows;
    for (const Sheet &sheet : sheets)
        rows.emplace_back(sheet.kind, sheet.frontPage, sheet.backPage);
    return rows;
}

constexpr auto kJob = Sheet::Kind::Job;
constexpr auto kFront = Sheet::Kind::FrontCover;
constexpr auto kBack = Sheet::Kind::BackCover;

// --- pictures ---

TEST_F(PreviewMakerTest, ShowsADocumentAsPopplerDrawsIt)
{
    const std::string document = realDocument();
    const QImage picture = pictureOf(job("", document), 2, Side::Front);
    EXPECT_TRUE(pageByHand(document, 2) == pixelsOf(picture));
}

TEST_F(PreviewMakerTest, ShowsTheWatermarkThatTheToolkitMakes)
{
    const std::string document = realDocument();
    const QImage picture =
        pictureOf(job("com.kalmira.pde.watermark.text=DRAFT com.kalmira.pde.watermark.size=60 "
                      "com.kalmira.pde.watermark.color=1,0,0 "
                      "com.kalmira.pde.watermark.place=top-left",
                      document),
                  1, Side::Front);
    const std::string expected =
        byHand({"watermark", "--above", "--font", "Helvetica", "--angle", "0", "--colour", "1,0,0",
                "--place", "top-left", "--size", "60", "--text", "DRAFT"},
               document);
    EXPECT_TRUE(pageByHand(expected, 1) == pixelsOf(picture));
    EXPECT_FALSE(pageByHand(document, 1) == pixelsOf(picture));
}

TEST_F(PreviewMakerTest, ShowsBothSidesOfABooklet)
{
    const std::string document = realDocument();
    const std::string expected = byHand({"booklet", "--pagesize", "A4", "--centremargin", "0",
                                         "--outermargin", "0", "--ordering", "LTR"},
                                        document);
    const QImage front =
        pictureOf(job("BookletPaperSize=A4", document), 1, Side::Front, {842, 595});
    EXPECT_TRUE(pageByHand(expected, 2) == pixelsOf(front));
    maker().show(1, Side::Back, {842, 595});
    ASSERT_TRUE(waitFor([this] { return said.pictures.size() == 2; }));
    EXPECT_EQ(Side::Back, said.pictures[1].side);
    EXPECT_TRUE(pageByHand(expected, 3) == pixelsOf(said.pictures[1].picture));
}

TEST_F(PreviewMakerTest, PlaceholdersStandForTheUserAndTheTitle)
{
    const std::string document = realDocument();
    PreviewJob named = job("com.kalmira.pde.watermark.text=[user]/[title]/[pages] "
                           "com.kalmira.pde.watermark.placeholders=True",
                           document);
    named.userName = "anna";
    named.title = "Report";
    const QImage picture = pictureOf(named, 0, Side::Front);
    const std::string expected =
        byHand({"watermark", "--above", "--font", "Helvetica", "--angle", "0", "--colour", "0,0,0",
                "--place", "centre", "--size", "36", "--text", "anna/Report/7"},
               document);
    EXPECT_TRUE(pageByHand(expected, 0) == pixelsOf(picture));
}

TEST_F(PreviewMakerTest, APictureFitsTheBoxAndHasThePixelsOfTheScreen)
{
    maker().show(0, Side::Front, {300, 300}, 2);
    sheetsOf(job(""));
    ASSERT_TRUE(waitFor([this] { return !said.pictures.empty(); }));
    const QImage picture = said.pictures[0].picture;
    EXPECT_EQ(QSize(424, 600), picture.size()); // 600 / 842 * 595 is 423.99
    EXPECT_EQ(2, picture.devicePixelRatio());
}

TEST_F(PreviewMakerTest, APictureHasNoMorePixelsThanItMay)
{
    _limits.picture = 10'000;
    const QImage picture = pictureOf(job(""), 0, Side::Front, {100'000, 100'000});
    EXPECT_LE(picture.width() * picture.height(), 10'000);
    EXPECT_EQ(100, picture.height());
}

TEST_F(PreviewMakerTest, APageOfTwoHundredInchesIsAPictureLikeAnyOther)
{
    Support::PDFBuilder builder;
    builder.addPage("/MediaBox [0 0 14400 14400]", "0 0 7200 14400 re f");
    const std::string path = folder.write("large.pdf", builder.document());
    const QImage picture = pictureOf(job("", path), 0, Side::Front, {100, 100});
    ASSERT_EQ(QSize(100, 100), picture.size());
    EXPECT_EQ(QColor(Qt::black), picture.pixelColor(10, 50));
    EXPECT_EQ(QColor(Qt::white), picture.pixelColor(90, 50));
}

TEST_F(PreviewMakerTest, APageOfNoSizeThatThereIsCannotBeDrawnAndTheOthersCan)
{
    Support::PDFBuilder builder;
    builder.addPage("/MediaBox [0 0 594000000 842]", "0 0 100 100 re f");
    builder.addPage("/MediaBox [0 0 100 100]", "0 0 50 100 re f");
    const std::string path = folder.write("endless.pdf", builder.document());
    EXPECT_EQ(2, sheetsOf(job("Duplex=None", path)).size());
    maker().show(0, Side::Front, {100, 100});
    ASSERT_TRUE(waitFor([this] { return !said.failures.empty(); }));
    EXPECT_THAT(said.failures, ElementsAre("The page cannot be drawn."));
    maker().show(1, Side::Front, {100, 100});
    ASSERT_TRUE(waitFor([this] { return !said.pictures.empty(); }));
}

TEST_F(PreviewMakerTest, TheOldPictureIsForgottenWithItsJob)
{
    const QImage sample = pictureOf(job(""), 0, Side::Front);
    said.pictures.clear();
    maker().setJob(job("com.kalmira.pde.watermark.text=DRAFT"));
    ASSERT_TRUE(waitFor([this] { return !said.pictures.empty(); })); // without being asked again
    EXPECT_EQ(0, said.pictures[0].sheet);
    EXPECT_NE(sample, said.pictures[0].picture);
}

TEST_F(PreviewMakerTest, APictureThatIsStillThereComesAtOnce)
{
    const QImage picture = pictureOf(job(""), 0, Side::Front);
    said.pictures.clear();
    maker().show(0, Side::Front, kA4);
    ASSERT_EQ(1U, said.pictures.size());
    EXPECT_EQ(picture, said.pictures[0].picture);
}

TEST_F(PreviewMakerTest, PicturesThatAreKeptAreBounded)
{
    _limits.cache = 3 * kA4.width() * kA4.height() * 4 / 2; // one and a half
    pictureOf(job(""), 0, Side::Front);
    maker().show(1, Side::Front, kA4);
    ASSERT_TRUE(waitFor([this] { return said.pictures.size() == 2; }));
    maker().show(0, Side::Front, kA4);
    EXPECT_EQ(2U, said.pictures.size()); // the first one is drawn again
    ASSERT_TRUE(waitFor([this] { return said.pictures.size() == 3; }));
    EXPECT_EQ(said.pictures[0].picture, said.pictures[2].picture);
}

TEST_F(PreviewMakerTest, OnlyTheSideThatWasAskedForLastIsDrawn)
{
    maker().show(5, Side::Front, kA4);
    maker().show(6, Side::Front, kA4);
    sheetsOf(job(""));
    ASSERT_TRUE(waitFor([this] { return !said.pictures.empty() && !maker().isBusy(); }));
    ASSERT_EQ(1U, said.pictures.size());
    EXPECT_EQ(6, said.pictures[0].sheet);
}

TEST_F(PreviewMakerTest, NothingFollowsForASideThatThereIsNot)
{
    sheetsOf(job("Duplex=None"));
    maker().show(0, Side::Back, kA4);
    maker().show(99, Side::Front, kA4);
    maker().show(-1, Side::Front, kA4);
    EXPECT_FALSE(maker().isBusy());
    EXPECT_THAT(said.failures, IsEmpty());
}

// --- sheets ---

TEST_F(PreviewMakerTest, TheSampleHasEightPagesOfThePaperThatIsChosen)
{
    const auto sheets = sheetsOf(job("Duplex=None PageSize=A5"));
    ASSERT_EQ(8, sheets.size());
    EXPECT_EQ(QSizeF(420, 595), sheets[7].front);
    EXPECT_EQ(7, sheets[7].frontPage);
    EXPECT_FALSE(sheets[7].hasBack());
}

TEST_F(PreviewMakerTest, TwoSidedSheetsAreTurnedOverTheEdgeThatIsChosen)
{
    const auto sheets = sheetsOf(job("Duplex=DuplexNoTumble", documentOf(3)));
    EXPECT_THAT(rowsOf(sheets), ElementsAre(Row{kJob, 0, 1}, Row{kJob, 2, -1}));
    EXPECT_EQ(Sheet::Edge::Long, sheets[0].turnedOver);
    said.sheets.clear();
    EXPECT_EQ(Sheet::Edge::Short, sheetsOf(job("Duplex=DuplexTumble"))[0].turnedOver);
}

TEST_F(PreviewMakerTest, TheStandardsWordsForSidesCountToo)
{
    const auto sheets = sheetsOf(job("sides=two-sided-short-edge", documentOf(2)));
    EXPECT_THAT(rowsOf(sheets), ElementsAre(Row{kJob, 0, 1}));
    EXPECT_EQ(Sheet::Edge::Short, sheets[0].turnedOver);
}

TEST_F(PreviewMakerTest, ABookletHasTwoSidesTurnedOverTheShortEdge)
{
    const auto sheets = sheetsOf(job("Duplex=None BookletPaperSize=A4", documentOf(5)));
    // Five pages need two sheets of four.
    EXPECT_THAT(rowsOf(sheets), ElementsAre(Row{kJob, 0, 1}, Row{kJob, 2, 3}));
    EXPECT_EQ(Sheet::Edge::Short, sheets[0].turnedOver);
    EXPECT_EQ(QSizeF(842, 595), sheets[0].front);
}

TEST_F(PreviewMakerTest, BlankCoversComeFromTheirTrays)
{
    const auto sheets = sheetsOf(
        job("Duplex=DuplexNoTumble InputSlot=Tray1 UseFrontCover=True FrontCoverPrintStyle=NoPrint "
            "FrontCoverSource=Tray2 UseBackCover=True BackCoverPrintStyle=NoPrint "
            "BackCoverSource=Tray3",
            documentOf(3)));
    // Front cover: both sides blank. Pages 1 and 2; page 3 and a blank side; the back cover.
    EXPECT_THAT(rowsOf(sheets), ElementsAre(Row{kFront, 0, 1}, Row{kJob, 2, 3}, Row{kJob, 4, 5},
                                            Row{kBack, 6, -1}));
    EXPECT_EQ("Tray2", sheets[0].tray);
    EXPECT_EQ("Tray1", sheets[1].tray);
    EXPECT_EQ("Tray3", sheets[3].tray);
    EXPECT_THAT(said.refusals, IsEmpty());
    EXPECT_THAT(said.notes, IsEmpty());
}

TEST_F(PreviewMakerTest, CoversOfAOneSidedJobAreItsFirstAndItsLastPage)
{
    const auto sheets =
        sheetsOf(job("Duplex=None UseFrontCover=True FrontCoverPrintStyle=Print1 UseBackCover=True "
                     "BackCoverPrintStyle=Print1",
                     documentOf(3)));
    EXPECT_THAT(rowsOf(sheets),
                ElementsAre(Row{kFront, 0, -1}, Row{kJob, 1, -1}, Row{kBack, 2, -1}));
}

TEST_F(PreviewMakerTest, ABackCoverForWhichThereIsNoPageIsNone)
{
    const auto sheets =
        sheetsOf(job("Duplex=None UseBackCover=True BackCoverPrintStyle=Print1", documentOf(1)));
    EXPECT_THAT(rowsOf(sheets), ElementsAre(Row{kJob, 0, -1}));
}

TEST_F(PreviewMakerTest, TheCoverOfABookletIsItsOuterSheet)
{
    const auto sheets =
        sheetsOf(job("BookletPaperSize=A4 UseFrontCover=True FrontCoverPrintStyle=Print "
                     "FrontCoverSource=SheetFeedBypass",
                     documentOf(8)));
    EXPECT_THAT(rowsOf(sheets), ElementsAre(Row{kFront, 0, 1}, Row{kJob, 2, 3}));
    EXPECT_EQ("SheetFeedBypass", sheets[0].tray);
}

TEST_F(PreviewMakerTest, TheBackCoverOfABookletIsItsLastSide)
{
    // One page makes a booklet of two sides: enough for a cover, where the page alone is not.
    const auto sheets = sheetsOf(
        job("BookletPaperSize=A4 UseBackCover=True BackCoverPrintStyle=Print1", documentOf(1)));
    EXPECT_THAT(rowsOf(sheets), ElementsAre(Row{kJob, 0, 1}, Row{kBack, 2, -1}));
}

TEST_F(PreviewMakerTest, CoversOfAPDFQueueAreOfTheJobsPaper)
{
    _ppd = KL_SAMPLE_PDF_PPD;
    const auto sheets = sheetsOf(
        job("CoverPagesInPDF=True InputSlot=Tray1 UseFrontCover=True FrontCoverPrintStyle=Print1 "
            "FrontCoverSource=Tray2",
            documentOf(2)));
    ASSERT_EQ(kFront, sheets[0].kind);
    EXPECT_EQ("Tray1", sheets[0].tray);
    EXPECT_THAT(said.notes, ElementsAre("The covers are printed on the paper of the job: a PDF "
                                        "cannot choose trays."));
}

TEST_F(PreviewMakerTest, AQueueWithoutAToolkitPrintsThePagesAsTheyAre)
{
    std::string ppd = Support::readFile(KL_SAMPLE_PPD);
    const std::size_t line = ppd.find("*APDialogExtension");
    ppd.erase(line, ppd.find('\n', line) + 1 - line);
    _ppd = folder.write("without.ppd", ppd);
    const auto sheets = sheetsOf(
        job("Duplex=None BookletPaperSize=A4 UseFrontCover=True FrontCoverPrintStyle=Print",
            documentOf(2)));
    EXPECT_THAT(rowsOf(sheets), ElementsAre(Row{kJob, 0, -1}, Row{kJob, 1, -1}));
    EXPECT_THAT(said.notes, ElementsAre(StartsWith("This queue names no toolkit")));
}

TEST_F(PreviewMakerTest, TenThousandPagesHaveTheirSheets)
{
    EXPECT_EQ(5000, sheetsOf(job("Duplex=DuplexNoTumble", documentOf(10'000))).size());
}

// --- refusals ---

TEST_F(PreviewMakerTest, TheToolkitRefusesInItsOwnWordsAndTheRestIsShown)
{
    _ppd = KL_SAMPLE_PDF_PPD;
    const auto sheets =
        sheetsOf(job("Duplex=None UseFrontCover=True FrontCoverPrintStyle=Print1", documentOf(2)));
    EXPECT_THAT(said.refusals, ElementsAre("Unable to apply cover pages: Cover pages need a "
                                           "PostScript document: PDF cannot choose trays."));
    EXPECT_THAT(rowsOf(sheets), ElementsAre(Row{kJob, 0, -1}, Row{kJob, 1, -1}));
}

TEST_F(PreviewMakerTest, TheWordsOfAToolkitThatEndsAtOnceAreHeard)
{
    useToolkit("Quick.bundle", "echo No. >&2; exit 1\n");
    sheetsOf(job("com.kalmira.pde.watermark.text=DRAFT BookletPaperSize=A4"));
    EXPECT_THAT(said.refusals,
                ElementsAre("Unable to apply watermark: No.", "Unable to apply booklet mode: No."));
}

TEST_F(PreviewMakerTest, ARefusedBookletIsShownAsPages)
{
    const auto sheets =
        sheetsOf(job("Duplex=None BookletPaperSize=A4 BookletCenterMargin=290mm", documentOf(2)));
    EXPECT_THAT(said.refusals, ElementsAre(StartsWith("Unable to apply booklet mode: ")));
    EXPECT_THAT(rowsOf(sheets), ElementsAre(Row{kJob, 0, -1}, Row{kJob, 1, -1}));
}

TEST_F(PreviewMakerTest, AFullDiskIsToldInTheToolkitsWords)
{
    _limits.writing = 1000;
    sheetsOf(job("com.kalmira.pde.watermark.text=DRAFT", KL_DOCUMENTS "/office-7.pdf"));
    EXPECT_THAT(said.refusals, ElementsAre(AllOf(StartsWith("Unable to apply watermark: "),
                                                 HasSubstr("File too large"))));
    EXPECT_EQ(7, said.sheets.back().frontPage + (said.sheets.back().hasBack() ? 2 : 1));
}

// --- failures ---

TEST_F(PreviewMakerTest, ADocumentThatIsNotThereIsTold)
{
    EXPECT_EQ("The document cannot be read: No such file or directory",
              failureOf(job("", folder.file("none.pdf"))));
}

TEST_F(PreviewMakerTest, AFolderIsNoDocument)
{
    EXPECT_EQ("The document cannot be read: Is a directory", failureOf(job("", folder.path())));
}

TEST_F(PreviewMakerTest, ADeviceIsNoDocument)
{
    EXPECT_EQ("The document is not a PDF.", failureOf(job("", "/dev/zero")));
}

TEST_F(PreviewMakerTest, AnEmptyFileIsTold)
{
    EXPECT_EQ("The document is empty.", failureOf(job("", folder.write("empty.pdf", ""))));
}

TEST_F(PreviewMakerTest, ATextIsNoPDF)
{
    EXPECT_EQ("The document is not a PDF.",
              failureOf(job("", folder.write("text.pdf", "Dear Sir or Madam"))));
}

TEST_F(PreviewMakerTest, ADocumentWithoutPagesIsEmptyAndNotDamaged)
{
    const std::string pdf = "%PDF-1.4\n1 0 obj\n<< /Type /Catalog /Pages 2 0 R >>\nendobj\n"
                            "2 0 obj\n<< /Type /Pages /Count 0 /Kids [] >>\nendobj\n"
                            "trailer\n<< /Size 3 /Root 1 0 R >>\n%%EOF\n";
    EXPECT_EQ("The document is empty.", failureOf(job("", folder.write("none.pdf", pdf))));
}

TEST_F(PreviewMakerTest, ADamagedDocumentIsTold)
{
    EXPECT_EQ("The document is damaged.",
              failureOf(job("", folder.write("damaged.pdf", "%PDF-1.7\nnothing else"))));
}

TEST_F(PreviewMakerTest, ADocumentWithAPasswordIsTold)
{
    Support::runOrThrow({"qpdf", "--encrypt", "user", "owner", "256", "--", documentOf(1),
                         folder.file("locked.pdf")});
    EXPECT_EQ("The document can only be opened with its password.",
              failureOf(job("", folder.file("locked.pdf"))));
}

TEST_F(PreviewMakerTest, ADocumentWithMorePagesThanItMayHaveIsTold)
{
    _limits.pages = 7;
    EXPECT_EQ("The document has too many pages for a preview.", failureOf(job("")));
}

TEST_F(PreviewMakerTest, APPDThatHasVanishedIsNamed)
{
    _ppd = folder.file("gone.ppd");
    EXPECT_THAT(failureOf(job("")), HasSubstr("gone.ppd: No such file or directory"));
}

TEST_F(PreviewMakerTest, AToolkitThatIsNotInstalledIsNamed)
{
    _programs.toolkitBundle = "/none/Toolkit.bundle";
    EXPECT_EQ("The toolkit is not installed as it should be: /none/Toolkit.bundle",
              failureOf(job("")));
}

TEST_F(PreviewMakerTest, AProgramThatCannotBeStartedIsTold)
{
    _programs.worker = "/none/jobfilter-preview";
    EXPECT_THAT(failureOf(job("")), StartsWith("The preview's program cannot be started: "));
    EXPECT_FALSE(maker().isBusy());
}

TEST_F(PreviewMakerTest, AProgramThatSaysSomethingElseIsTold)
{
    _programs.worker = QString::fromStdString(folder.writeScript("worker", "echo Hello World\n"));
    EXPECT_EQ("The preview's program has ended unexpectedly (Protocol error).", failureOf(job("")));
}

TEST_F(PreviewMakerTest, NoRoomForTemporaryFilesIsTold)
{
    const Support::ScopedEnvironment place("XDG_RUNTIME_DIR", std::nullopt);
    const Support::ScopedEnvironment other("TMPDIR", "/proc");
    EXPECT_EQ("There is no place for temporary files: No such file or directory",
              failureOf(job("")));
}

TEST_F(PreviewMakerTest, AProgramThatIsKilledIsToldAndTheNextPictureBeginsAnew)
{
    pictureOf(job("", documentOf(3)), 0, Side::Front);
    ASSERT_EQ(1U, processes().size());
    kill(processes()[0], SIGKILL);
    ASSERT_TRUE(waitFor([this] { return !said.failures.empty(); }));
    EXPECT_THAT(said.failures, ElementsAre("The preview's program has ended unexpectedly "
                                           "(Killed)."));
    EXPECT_THAT(filesLeft(), IsEmpty());
    maker().show(1, Side::Front, kA4);
    ASSERT_TRUE(waitFor([this] { return said.pictures.size() == 2; }));
    EXPECT_EQ(1U, said.failures.size());
}

TEST_F(PreviewMakerTest, AProgramThatIsKilledAtWorkTakesTheToolkitWithIt)
{
    useSleepingToolkit();
    maker().setJob(job("com.kalmira.pde.watermark.text=DRAFT"));
    ASSERT_TRUE(waitFor([this] { return processes().size() == 3; })); // with toolkit and guard
    const std::string self = std::to_string(getpid());
    const std::string children = "/proc/" + self + "/task/" + self + "/children";
    kill(std::stoi(Support::readFile(children)), SIGKILL);
    ASSERT_TRUE(waitFor([this] { return !said.failures.empty(); }));
    EXPECT_TRUE(waitFor([this] { return processes().empty(); }));
    EXPECT_TRUE(waitFor([this] { return filesLeft().empty(); }));
}

TEST_F(PreviewMakerTest, WhatTakesTooLongIsEnded)
{
    useSleepingToolkit();
    _limits.preparing = std::chrono::milliseconds(300);
    EXPECT_EQ("The document takes too long for a preview.",
              failureOf(job("com.kalmira.pde.watermark.text=DRAFT")));
    EXPECT_TRUE(waitFor([this] { return processes().empty(); }));
    EXPECT_TRUE(waitFor([this] { return filesLeft().empty(); }));
}

TEST_F(PreviewMakerTest, APageThatTakesTooLongIsEnded)
{
    Support::PDFBuilder builder;
    std::string fills = "/Half gs\n";
    for (int count = 0; count < 20'000; ++count)
        fills += "0 0 595 842 re f\n";
    builder.addPage("/MediaBox [0 0 595 842] /Resources << /ExtGState << /Half << /ca 0.5 >> >> >>",
                    fills);
    _limits.drawing = std::chrono::milliseconds(300);
    maker().show(0, Side::Front, {3000, 3000});
    sheetsOf(job("", folder.write("slow.pdf", builder.document())));
    ASSERT_TRUE(waitFor([this] { return !said.failures.empty(); }));
    EXPECT_THAT(said.failures, ElementsAre("The document takes too long for a preview."));
    EXPECT_TRUE(waitFor([this] { return processes().empty(); }));
}

#ifndef KL_SANITIZED // the sanitizers take address space as they please
TEST_F(PreviewMakerTest, WhatTakesTooMuchMemoryIsEnded)
{
    _limits.memory = qint64{1} << 20;
    EXPECT_EQ("The document takes too much memory for a preview.", failureOf(job("")));
}
#endif

TEST_F(PreviewMakerTest, ProgramsAreFoundFromTheFolderOfTheWindow)
{
    maker(); // there is a program then, in whose folder there is no jobfilter-preview
    const PreviewPrograms programs = PreviewPrograms::ofThisProgram();
    const std::string window = QCoreApplication::applicationDirPath().toStdString();
    EXPECT_THAT(programs.worker.toStdString(),
                AllOf(StartsWith(window + "/../lib"), EndsWith("/jobfilter/jobfilter-preview")));
    EXPECT_THAT(programs.toolkitBundle.toStdString(),
                AllOf(StartsWith(window + "/../lib"), EndsWith("/jobfilter/Toolkit.bundle")));
}

// --- cancelling ---

TEST_F(PreviewMakerTest, ANewerJobEndsTheOlderOne)
{
    useSleepingToolkit();
    maker().setJob(job("com.kalmira.pde.watermark.text=DRAFT"));
    ASSERT_TRUE(waitFor([this] { return processes().size() >= 2; }));
    EXPECT_EQ(3, sheetsOf(job("Duplex=None", documentOf(3))).size());
    EXPECT_TRUE(waitFor([this] { return processes().size() == 1; }));
    EXPECT_THAT(said.failures, IsEmpty());
}

TEST_F(PreviewMakerTest, ManyJobsInARowLeaveOneProcess)
{
    maker().show(0, Side::Front, kA4);
    for (int number = 0; number < 10; ++number)
        maker().setJob(job("com.kalmira.pde.watermark.text=" + std::to_string(number)));
    ASSERT_TRUE(waitFor([this] { return !said.pictures.empty(); }));
    EXPECT_TRUE(waitFor([this] { return processes().size() == 1; }));
    EXPECT_EQ(1U, said.pictures.size());
    EXPECT_TRUE(waitFor([this] { return filesLeft().size() == 1; })); // an empty folder
    EXPECT_THAT(said.failures, IsEmpty());
}

TEST_F(PreviewMakerTest, StoppedWorkLeavesNothingAndBeginsAnewWhenItIsAskedFor)
{
    useSleepingToolkit();
    maker().setJob(job("com.kalmira.pde.watermark.text=DRAFT"));
    ASSERT_TRUE(waitFor([this] { return processes().size() >= 2; }));
    EXPECT_TRUE(maker().isBusy());
    maker().stop();
    EXPECT_EQ(1, said.stops);
    EXPECT_FALSE(maker().isBusy());
    EXPECT_TRUE(waitFor([this] { return processes().empty(); }));
    EXPECT_TRUE(waitFor([this] { return filesLeft().empty(); }));
    maker().show(0, Side::Front, kA4);
    EXPECT_TRUE(maker().isBusy());
}

TEST_F(PreviewMakerTest, NothingIsStoppedWhereNothingIsUnderWay)
{
    pictureOf(job("", documentOf(1)), 0, Side::Front);
    maker().stop();
    EXPECT_EQ(0, said.stops);
}

TEST_F(PreviewMakerTest, HowFarACommandHasComeIsToldInPercent)
{
    useToolkit("Half.bundle", "for last; do input=$output; output=$last; done\n"
                              "head -c $(($(wc -c <\"$input\") / 2)) \"$input\" >\"$output\"\n"
                              "exec sleep 100\n");
    maker().setJob(job("com.kalmira.pde.watermark.text=DRAFT", documentOf(9)));
    ASSERT_TRUE(waitFor([this] { return said.work.size() >= 2; }));
    EXPECT_EQ(-1, said.percents.front()) << "nobody knows yet";
    EXPECT_EQ("Preparing the pages, step 1", said.work.back());
    ASSERT_TRUE(waitFor([this] { return said.percents.back() > 0; }));
    EXPECT_THAT(said.percents.back(), AllOf(Ge(48), Le(50)));
}

TEST_F(PreviewMakerTest, WorkIsToldFromItsBeginningToItsEnd)
{
    pictureOf(job("", documentOf(1)), 0, Side::Front);
    ASSERT_FALSE(said.work.empty());
    EXPECT_EQ("Preparing the pages", said.work.front());
    EXPECT_EQ("", said.work.back());
}

TEST_F(PreviewMakerTest, TheDocumentItselfStaysAsItIs)
{
    const std::string document = documentOf(4);
    const std::string bytes = Support::readFile(document);
    sheetsOf(job("com.kalmira.pde.watermark.text=DRAFT BookletPaperSize=A4", document));
    EXPECT_EQ(bytes, Support::readFile(document));
}

TEST_F(PreviewMakerTest, PasswordsAreInNoCommandLineAndNoEnvironment)
{
    useSleepingToolkit();
    maker().setJob(job("com.kalmira.pde.watermark.text=DRAFT "
                       "com.kalmira.pde.docstore.boxPassword=tulip"));
    ASSERT_TRUE(waitFor([this] { return processes().size() >= 2; }));
    for (const pid_t process : processes()) {
        const std::string place = "/proc/" + std::to_string(process);
        for (const char *file : {"/cmdline", "/environ"})
            EXPECT_THAT(Support::readFile(place + file), testing::Not(HasSubstr("tulip")));
    }
}

TEST_F(PreviewMakerTest, FoldersOfWindowsThatWereKilledAreRemoved)
{
    const pid_t ended = [] {
        const pid_t child = fork();
        if (child == 0)
            _exit(0);
        waitpid(child, nullptr, 0);
        return child;
    }();
    const std::string left = _runtime + "/jobfilter-preview-" + std::to_string(ended) + "-a1b2c3";
    const std::string inUse =
        _runtime + "/jobfilter-preview-" + std::to_string(getpid()) + "-a1b2c3";
    fs::create_directories(left + "/deeper");
    fs::create_directory(inUse);
    maker();
    EXPECT_THAT(filesLeft(), ElementsAre(inUse));
    fs::remove(inUse);
}

} // namespace
