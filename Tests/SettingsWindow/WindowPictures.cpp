// Takes pictures of the settings window, page by page, as it is with the sample driver on a
// scheduler of its own. Not a test: somebody looks at them. take-window-pictures calls it.
//
//   WindowPictures FOLDER NAME LANGUAGE light|dark [PAGE...]
//
// makes FOLDER/NAME-1.png and so on, of all pages or of those that are named by their numbers.

#include "FieldEditor.h"
#include "MainWindow.h"
#include "PrivateScheduler.h"
#include "Program.h"
#include "SettingsPages.h"
#include "TemporaryFolder.h"
#include "language.h"

#include <QApplication>
#include <QLineEdit>
#include <QLocale>
#include <QSignalSpy>
#include <QStyleFactory>
#include <QTest>

#include <cstdlib>
#include <stdexcept>

namespace {

constexpr int kPatience = 20'000; // milliseconds

/// The colours that the style takes by itself on a dark desktop, of which this screen has none.
QPalette darkColors()
{
    const QColor window(50, 50, 50);
    const QColor base = window.darker(140);
    const QColor words(240, 240, 240);
    const QColor faint(130, 130, 130);
    QPalette palette(words, window, window.lighter(150), window.darker(150), window.darker(130),
                     words, words, base, window);
    palette.setColor(QPalette::Midlight, window.darker(130).lighter(110));
    palette.setColor(QPalette::Shadow, window.darker(150).darker(135));
    palette.setColor(QPalette::Highlight, QColor(48, 140, 198));
    palette.setColor(QPalette::HighlightedText, words);
    palette.setColor(QPalette::PlaceholderText, faint);
    palette.setColor(QPalette::ToolTipBase, base);
    palette.setColor(QPalette::ToolTipText, words);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, faint);
    palette.setColor(QPalette::Disabled, QPalette::Base, window);
    return palette;
}

void wear(const QString &theme)
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    if (theme == u"dark")
        QApplication::setPalette(darkColors());
}

/// What a person would set who prints a report for the board.
const std::pair<const char *, const char *> kSettings[] = {
    {"KLDepartmentCode", "Custom.0815"}, {"KLPrivatePIN", "Custom.0471"},
    {"KLWatermarkText", "Confidential"}, {"KLWatermarkAngle", "Rising"},
    {"KLWatermarkColor", "LightGray"},   {"KLWatermarkSize", "72"},
    {"BookletPaperSize", "A3"}};

void takePictures(const QString &folder, const QString &name, const QStringList &pages)
{
    const Support::TemporaryFolder files;
    const Support::PrivateScheduler scheduler({KL_JOBFILTER, KL_NOJCL, KL_CHAIN});
    scheduler.addQueue("office", KL_SAMPLE_PDF_PPD, "file:///dev/null",
                       {"-D", "Kalmira Office MFP", "-L", "2nd floor"});
    MainWindow window({{KL_PREVIEW, KL_TOOLKIT_BUNDLE},
                       {{"127.0.0.1", scheduler.port(), true, true}},
                       Model::KeptSettings(files.file("lpoptions")),
                       QStringLiteral("office"),
                       {},
                       QStringLiteral(KL_DOCUMENTS "/office-7.pdf")});
    auto *maker = window.findChild<PreviewMaker *>();
    window.resize(1100, 720);
    window.show();
    const auto isThere = [&] { return window.findChild<FieldEditor *>() != nullptr; };
    if (!QTest::qWaitFor(isThere, kPatience))
        throw std::runtime_error("the window has no settings");
    auto *settings = window.findChild<SettingsPages *>();
    for (const auto &[field, value] : kSettings)
        emit settings->edited(field, value);

    const QSignalSpy known(maker, &PreviewMaker::sheetsKnown);
    if (!QTest::qWaitFor([&] { return !known.isEmpty() && !maker->isBusy(); }, kPatience))
        throw std::runtime_error("the window has no preview");
    QTest::qWait(200);
    for (const QString &page : pages) {
        settings->setCurrentPage(page.toInt() - 1);
        QTest::qWait(50);
        if (!window.grab().save(QStringLiteral("%1/%2-%3.png").arg(folder, name, page)))
            throw std::runtime_error("a picture cannot be written");
    }
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication program(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 5) {
        std::fputs("Usage: WindowPictures FOLDER NAME LANGUAGE light|dark [PAGE...]\n", stderr);
        return EXIT_FAILURE;
    }
    QLocale::setDefault(QLocale(arguments[3]));
    speakLanguage(program, QLocale(arguments[3]));
    wear(arguments[4]);
    const QStringList pages =
        arguments.size() > 5 ? arguments.sliced(5) : QString("1 2 3 4 5 6 7").split(' ');
    try {
        takePictures(arguments[1], arguments[2], pages);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "WindowPictures: %s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
