#include "Environment.h"
#include "FieldEditor.h"
#include "Loopback.h"
#include "MainWindow.h"
#include "PJLChecker.h"
#include "PrinterRow.h"
#include "PrivateScheduler.h"
#include "Program.h"
#include "RecordingPrinter.h"
#include "ScriptedServer.h"
#include "TemporaryFolder.h"
#include "Waiting.h"
#include "Widgets/OffscreenApplication.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDropEvent>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QProcess>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <filesystem>
#include <poll.h>
#include <set>
#include <stdexcept>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

using Support::PrivateScheduler;
using Support::RecordingPrinter;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace {

const auto *const application = testing::AddGlobalTestEnvironment(new OffscreenApplication);

constexpr std::chrono::milliseconds kPatience = std::chrono::seconds(30);
constexpr char kDocument[] = KL_DOCUMENTS "/office-1.pdf";

/// Scheduler and printer live as long as the program.
PrivateScheduler &scheduler()
{
    static PrivateScheduler instance({KL_JOBFILTER, KL_NOJCL, KL_CHAIN});
    return instance;
}

RecordingPrinter &printer()
{
    static RecordingPrinter instance;
    return instance;
}

/// A scheduler beside it, as that of this computer beside a server's.
class OtherScheduler {
public:
    Model::ServerAddress address() const { return {_folder.file("cups.sock"), 0, false, true}; }

    RecordingPrinter printer;

private:
    Support::TemporaryFolder _folder;

public:
    PrivateScheduler scheduler{
        {KL_JOBFILTER, KL_NOJCL, KL_CHAIN}, 1, "Listen " + address().host + "\n"};
};

/// Passes on what two ends say to each other, until one of them goes.
void passOn(int one, int other)
{
    pollfd ends[] = {{one, POLLIN, 0}, {other, POLLIN, 0}};
    while (poll(ends, std::size(ends), -1) > 0)
        for (const int index : {0, 1}) {
            if (ends[index].revents == 0)
                continue;
            char bytes[4096];
            const ssize_t count = read(ends[index].fd, bytes, sizeof bytes);
            if (count <= 0 ||
                !Support::sendAll(ends[1 - index].fd, {bytes, static_cast<std::size_t>(count)}))
                return;
        }
}

/// In a process that ends with it.
void passOnToPort(int client, int port)
{
    const int server = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(server, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0)
        passOn(client, server);
}

/// A server that asks for patience as long as the test holds it, however long that is, and is that
/// of a port from then on.
class HeldServer {
public:
    explicit HeldServer(int behind)
        : _server([behind, released = _folder.file("released")](int client, int) {
              char first = 0;
              recv(client, &first, sizeof first, MSG_PEEK); // it asks before it is answered
              while (!fs::exists(released)) {
                  if (!Support::sendAll(client, "HTTP/1.1 100 Continue\r\n\r\n"))
                      return;
                  std::this_thread::sleep_for(std::chrono::milliseconds(50));
              }
              passOnToPort(client, behind);
          })
    {
    }

    Model::ServerAddress address() const { return {"127.0.0.1", _server.port(), true}; }
    void release() const { _folder.write("released", ""); }

private:
    Support::TemporaryFolder _folder;
    Support::ScriptedServer _server;
};

/// A PPD of the sample driver, without questions to the printer's SNMP agent, of which ours has
/// none.
std::string quietPPD(const char *ppd = KL_SAMPLE_PDF_PPD)
{
    return Support::readFile(ppd) + "*cupsSNMPSupplies: False\n";
}

/// The window, on a scheduler, a printer and a home of the test's own.
class SettingsWindowTest : public testing::Test {
protected:
    SettingsWindowTest()
    {
        printer().forgetJobs();
        scheduler();
    }

    ~SettingsWindowTest() override
    {
        while (!_queues.empty())
            removeQueue(*_queues.begin());
    }

    /// A queue with a PPD of the sample driver, which lasts as long as the test.
    void addQueue(const std::string &name, const char *ppd = KL_SAMPLE_PDF_PPD)
    {
        const std::string copy = folder.write(name + ".ppd", quietPPD(ppd));
        scheduler().addQueue(name, copy, printer().deviceURI(), {"-D", "The test's printer"});
        _queues.insert(name);
    }

    void removeQueue(const std::string name)
    {
        scheduler().run({"lpadmin", "-x", name});
        _queues.erase(name);
    }

    Model::ServerAddress server() { return {"127.0.0.1", scheduler().port(), true}; }

    std::string keptFile() { return folder.file("home/lpoptions"); }

    MainWindow::Setup setup(const QString &printer = "office")
    {
        return {{KL_PREVIEW, KL_TOOLKIT_BUNDLE},
                {server()},
                Model::KeptSettings(keptFile()),
                printer,
                {},
                kDocument};
    }

    static bool comesTrue(const std::function<bool()> &condition)
    {
        return QTest::qWaitFor(condition, static_cast<int>(kPatience.count()));
    }

    /// Opens the window and waits until the printer's settings are there.
    std::unique_ptr<MainWindow> openWindow(const MainWindow::Setup &setup)
    {
        auto window = std::make_unique<MainWindow>(setup);
        window->resize(1100, 700);
        window->show();
        if (!comesTrue(
                [&] { return window->findChild<FieldEditor *>("KLDepartmentCode") != nullptr; }))
            throw std::runtime_error("no settings: " + wordsIn(*window).join("\n").toStdString());
        return window;
    }

    static void type(const MainWindow &window, const QString &field, const QString &text)
    {
        auto *line = window.findChild<FieldEditor *>(field)->findChild<QLineEdit *>();
        line->clear();
        QTest::keyClicks(line, text);
    }

    static QString typed(const MainWindow &window, const QString &field)
    {
        return window.findChild<FieldEditor *>(field)->findChild<QLineEdit *>()->text();
    }

    static QComboBox *printers(const MainWindow &window)
    {
        return window.findChild<PrinterRow *>()->findChildren<QComboBox *>().front();
    }

    static QComboBox *sets(const MainWindow &window)
    {
        return window.findChild<PrinterRow *>()->findChildren<QComboBox *>().back();
    }

    static QStringList entriesOf(const QComboBox &list)
    {
        QStringList labels;
        for (int index = 0; index < list.count(); ++index)
            labels << list.itemText(index);
        return labels;
    }

    static void choosePrinter(const MainWindow &window, int index)
    {
        printers(window)->setCurrentIndex(index);
        emit printers(window)->activated(index);
    }

    /// Waits for the settings of the printer that was just chosen.
    static bool hasSettings(const MainWindow &window)
    {
        return comesTrue(
            [&] { return window.findChild<FieldEditor *>("KLDepartmentCode")->isVisible(); });
    }

    static void choose(const MainWindow &window, const QString &field, const QString &choice)
    {
        auto *list = window.findChild<FieldEditor *>(field)->findChild<QComboBox *>();
        list->setCurrentIndex(list->findData(choice));
        emit list->activated(list->currentIndex());
    }

    static QAbstractButton *button(const QWidget &window, const QString &words)
    {
        for (auto *each : window.findChildren<QAbstractButton *>())
            if (each->text().remove('&') == words)
                return each;
        throw std::runtime_error("no button " + words.toStdString());
    }

    /// One that has a picture in the place of words.
    static QAbstractButton *buttonNamed(const QWidget &window, const QString &name)
    {
        for (auto *each : window.findChildren<QAbstractButton *>())
            if (each->accessibleName() == name)
                return each;
        throw std::runtime_error("no button " + name.toStdString());
    }

    /// What stands in the window, label by label.
    static QStringList wordsIn(const QWidget &window)
    {
        QStringList words;
        for (const QLabel *label : window.findChildren<QLabel *>())
            if (label->isVisible())
                words << label->text();
        return words;
    }

    static bool says(const QWidget &window, const QString &words)
    {
        return !wordsIn(window).filter(words).isEmpty();
    }

    /// Does what opens a dialog, then works the dialog.
    template <class Dialog>
    static void openAndAnswer(const std::function<void()> &open,
                              const std::function<void(Dialog &)> &answer)
    {
        QTimer::singleShot(0, [&] {
            auto *dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
            if (dialog == nullptr)
                FAIL() << "no dialog opened";
            answer(*dialog);
        });
        open();
    }

    template <class Dialog>
    static void pressAndAnswer(const QWidget &window, const QString &words,
                               const std::function<void(Dialog &)> &answer)
    {
        openAndAnswer<Dialog>([&] { button(window, words)->click(); }, answer);
    }

    /// What the menu "More" has.
    static QAction *entry(const MainWindow &window, const QString &words)
    {
        for (QAction *each : window.findChild<QMenu *>()->actions())
            if (each->text().remove('&') == words)
                return each;
        throw std::runtime_error("no entry " + words.toStdString());
    }

    static void renameSet(const MainWindow &window, const QString &name)
    {
        openAndAnswer<QInputDialog>([&] { entry(window, "Rename This Set…")->trigger(); },
                                    [&](QInputDialog &dialog) {
                                        dialog.findChild<QLineEdit *>()->clear();
                                        QTest::keyClicks(dialog.findChild<QLineEdit *>(), name);
                                        QTest::keyClick(&dialog, Qt::Key_Return);
                                    });
    }

    /// @return what is asked before
    static QString removeSet(const MainWindow &window, QMessageBox::StandardButton answer)
    {
        QString question;
        openAndAnswer<QMessageBox>([&] { entry(window, "Remove This Set…")->trigger(); },
                                   [&](QMessageBox &box) {
                                       question = box.text();
                                       box.button(answer)->click();
                                   });
        return question;
    }

    static void keepAs(const MainWindow &window, const QString &name)
    {
        pressAndAnswer<QDialog>(window, "Keep…", [&](QDialog &dialog) {
            dialog.findChildren<QRadioButton *>().back()->click();
            dialog.findChild<QComboBox *>()->setCurrentText(name);
            button(dialog, "Keep PIN and passwords, too")->click();
            button(dialog, "Keep")->click();
        });
        EXPECT_TRUE(comesTrue([&] { return says(window, "Kept as office/" + name); }));
    }

    /// Prints and waits until the printer has the job. @return what it got
    static std::string printFrom(const MainWindow &window)
    {
        button(window, "Print Now")->click();
        EXPECT_TRUE(comesTrue([&] { return says(window, "The printer has it"); }))
            << wordsIn(window).join("\n").toStdString();
        printer().finishJobs();
        const auto jobs = printer().jobs();
        EXPECT_EQ(jobs.size(), 1U);
        return jobs.empty() ? std::string() : jobs.front();
    }

    /// What the preview shows now of the first sheet's front.
    static QImage preview(const MainWindow &window)
    {
        auto *maker = window.findChild<PreviewMaker *>();
        QTest::qWait(300); // changes in a row are one, which begins a moment later
        if (!comesTrue([&] { return !maker->isBusy(); }))
            throw std::runtime_error("no end of the pictures before");
        QSignalSpy ready(maker, &PreviewMaker::sheetReady);
        maker->show(0, Side::Front, {300, 425});
        if (!comesTrue(
                [&] { return !ready.isEmpty() && ready.back()[2].value<QImage>().height() > 400; }))
            throw std::runtime_error("no picture");
        return ready.back()[2].value<QImage>().convertToFormat(QImage::Format_Grayscale8);
    }

    /// The first page of a PDF in the picture's size.
    QImage firstPage(const std::string &pdf, QSize size)
    {
        const std::string path = folder.write("printed.pdf", pdf);
        Support::runOrThrow({"pdftoppm", "-r", "72", "-f", "1", "-l", "1", "-singlefile", "-gray",
                             "-scale-to-x", std::to_string(size.width()), "-scale-to-y",
                             std::to_string(size.height()), path, folder.file("printed")});
        return QImage(QString::fromStdString(folder.file("printed.pgm")))
            .convertToFormat(QImage::Format_Grayscale8);
    }

    /// The share of the pixels that differ clearly, from 0 to 1; 1 for pictures of other sizes.
    static double difference(const QImage &one, const QImage &other)
    {
        if (one.size() != other.size())
            return 1;
        int differing = 0;
        for (int y = 0; y < one.height(); ++y)
            for (int x = 0; x < one.width(); ++x)
                differing +=
                    std::abs(qGray(one.pixel(x, y)) - qGray(other.pixel(x, y))) > 64 ? 1 : 0;
        return double(differing) / (one.width() * one.height());
    }

    Support::TemporaryFolder folder;

private:
    std::set<std::string> _queues;
};

std::string bodyOf(const std::string &job)
{
    const auto parts = Support::splitPJLJob(job);
    return parts ? parts->body : std::string();
}

TEST_F(SettingsWindowTest, WhatIsSetAndSeenReachesThePrinter)
{
    addQueue("office");
    const auto window = openWindow(setup());
    const QImage plain = preview(*window);
    type(*window, "KLDepartmentCode", "0815");
    type(*window, "KLPrivatePIN", "0471");
    choose(*window, "KLWatermarkText", "Confidential");
    choose(*window, "KLWatermarkSize", "72");
    const QImage seen = preview(*window);

    const std::string job = printFrom(*window);
    EXPECT_THAT(job, HasSubstr("@PJL COMMENT DSSC PRINT ACCESSCODE=0815\r\n"));
    EXPECT_THAT(job, HasSubstr("@PJL COMMENT DSSC PRINT PRIVPRINT=0471\r\n"));
    EXPECT_THAT(Support::problemsOfPJLJob(job), testing::IsEmpty());
    const QImage printed = firstPage(bodyOf(job), seen.size());
    // Edges differ: one keeps the page's proportions, the other fills the picture's pixels.
    EXPECT_LT(difference(seen, printed), 0.005);
    EXPECT_GT(difference(plain, printed), 0.01) << "the watermark cannot be told";
}

TEST_F(SettingsWindowTest, WhatIsKeptIsWhatLpAndTheNextWindowBeginWith)
{
    addQueue("office");
    {
        const auto window = openWindow(setup());
        type(*window, "KLDepartmentCode", "0815");
        type(*window, "KLPrivatePIN", "0471");
        keepAs(*window, "board");
    }
    EXPECT_THAT(Support::readFile(keptFile()),
                AllOf(HasSubstr("Dest office/board "), HasSubstr("KLDepartmentCode=Custom.0815"),
                      HasSubstr("KLPrivatePIN=Custom.0471")));

    auto again = setup();
    again.set = "board";
    const auto window = openWindow(again);
    EXPECT_EQ(typed(*window, "KLDepartmentCode"), "0815");
}

/// Print dialogs and lp(1) lay a named set over the user's defaults.
TEST_F(SettingsWindowTest, ASetSaysWhatIsOtherwiseInTheDefaults)
{
    addQueue("office");
    fs::create_directories(folder.file("home"));
    Support::writeFile(keptFile(), "Dest office KLDepartmentCode=Custom.0815 Staple=UpperLeft\n");
    {
        auto defaults = setup();
        const auto window = openWindow(defaults);
        EXPECT_EQ(
            window->findChild<FieldEditor *>("Staple")->findChild<QComboBox *>()->currentData(),
            "UpperLeft");
        choose(*window, "Staple", "None");
        keepAs(*window, "loose");
    }
    EXPECT_THAT(Support::readFile(keptFile()), HasSubstr("Staple=None"));
    auto again = setup();
    again.set = "loose";
    const auto window = openWindow(again);
    EXPECT_EQ(window->findChild<FieldEditor *>("Staple")->findChild<QComboBox *>()->currentData(),
              "None");
    EXPECT_EQ(typed(*window, "KLDepartmentCode"), "0815");
}

TEST_F(SettingsWindowTest, ASetIsRenamedAndItsSettingsStay)
{
    addQueue("office");
    const auto window = openWindow(setup());
    EXPECT_FALSE(entry(*window, "Rename This Set…")->isEnabled()) << "there is no set";
    type(*window, "KLDepartmentCode", "0815");
    keepAs(*window, "board");
    keepAs(*window, "council");
    ASSERT_TRUE(comesTrue([&] { return sets(*window)->currentText() == "council"; }));

    renameSet(*window, "board");
    EXPECT_TRUE(
        comesTrue([&] { return says(*window, "There are settings of the name board already"); }));
    renameSet(*window, "parish");
    EXPECT_TRUE(comesTrue([&] { return says(*window, "council is now parish."); }));
    EXPECT_TRUE(comesTrue([&] { return sets(*window)->currentText() == "parish"; }));
    EXPECT_EQ(entriesOf(*sets(*window)),
              QStringList({"The printer's own settings", "board", "parish"}));
    EXPECT_THAT(Support::readFile(keptFile()),
                AllOf(HasSubstr("Dest office/parish KLDepartmentCode=Custom.0815"),
                      HasSubstr("Dest office/board "), Not(HasSubstr("council"))));
}

TEST_F(SettingsWindowTest, ASetIsRemovedOnlyWhenThatIsMeantAndLeavesTheScreenAlone)
{
    addQueue("office");
    const auto window = openWindow(setup());
    EXPECT_FALSE(entry(*window, "Remove This Set…")->isEnabled()) << "there is no set";
    type(*window, "KLDepartmentCode", "0815");
    keepAs(*window, "board");
    keepAs(*window, "council");
    ASSERT_TRUE(comesTrue([&] { return sets(*window)->currentText() == "council"; }));

    EXPECT_EQ(removeSet(*window, QMessageBox::No), "Remove the set council?");
    EXPECT_THAT(Support::readFile(keptFile()), HasSubstr("Dest office/council "));
    removeSet(*window, QMessageBox::Yes);
    EXPECT_TRUE(comesTrue([&] { return says(*window, "Removed."); }));
    EXPECT_TRUE(comesTrue([&] { return sets(*window)->count() == 2; }));
    EXPECT_EQ(entriesOf(*sets(*window)), QStringList({"The printer's own settings", "board"}));
    EXPECT_EQ(sets(*window)->currentIndex(), 0);
    EXPECT_EQ(typed(*window, "KLDepartmentCode"), "0815");
    EXPECT_FALSE(entry(*window, "Remove This Set…")->isEnabled());
    EXPECT_THAT(Support::readFile(keptFile()),
                AllOf(HasSubstr("Dest office/board "), Not(HasSubstr("council"))));
}

TEST_F(SettingsWindowTest, TheWholeProgramIsWorkedByTheKeyboardAlone)
{
    addQueue("archive");
    addQueue("office");
    const std::string home = folder.file("home");
    fs::create_directories(home);
    const std::string document = KL_DOCUMENTS "/office-7.pdf";
    const auto answer = Support::runProgram(
        {.arguments = {"env",
                       "-u",
                       "QT_QPA_PLATFORM",
                       "HOME=" + home,
                       "XDG_RUNTIME_DIR=" + home,
                       "CUPS_SERVER=127.0.0.1:" + std::to_string(scheduler().port()),
                       "LC_ALL=C.UTF-8",
                       "dbus-run-session",
                       "--",
                       "xvfb-run",
                       "-a",
                       "-s",
                       "-screen 0 1280x900x24",
                       KL_WORK_WINDOW,
                       KL_SETTINGS_PROGRAM,
                       "printer:office",
                       "open:" + document,
                       "Who prints:Department Code=0815",
                       "Private printing and document box:PIN for Private Printing=0471",
                       "Watermark:Watermark=Confidential",
                       "turn:Sheet 2, front",
                       "keep:board",
                       "copy",
                       "print"}});
    ASSERT_EQ(answer.exitStatus, 0) << answer.errors;
    EXPECT_THAT(answer.output,
                HasSubstr("lp -d office -o KLDepartmentCode=Custom.0815 -o "
                          "KLPrivatePIN=Custom.0471 -o KLWatermarkText=Confidential " +
                          document));
    printer().finishJobs();
    ASSERT_EQ(printer().jobs().size(), 1U);
    const std::string job = printer().jobs().front();
    EXPECT_THAT(job, AllOf(HasSubstr("@PJL COMMENT DSSC PRINT ACCESSCODE=0815\r\n"),
                           HasSubstr("@PJL COMMENT DSSC PRINT PRIVPRINT=0471\r\n")));
    constexpr QSize kPicture(300, 425);
    const QImage plain = firstPage(Support::readFile(document), kPicture);
    EXPECT_GT(difference(plain, firstPage(bodyOf(job), kPicture)), 0.005) << "no watermark";

    // What was kept is what lp(1) takes by that name.
    printer().forgetJobs();
    scheduler().run({"env", "HOME=" + home, "lp", "-d", "office/board", document});
    EXPECT_TRUE(Support::comesTrue([] { return !printer().jobs().empty(); }));
    EXPECT_THAT(printer().jobs(), ElementsAre(HasSubstr("DSSC PRINT ACCESSCODE=0815\r\n")));
}

TEST_F(SettingsWindowTest, ADocumentThatIsDroppedIsShown)
{
    addQueue("office");
    auto sample = setup();
    sample.document.clear();
    const auto window = openWindow(sample);
    EXPECT_FALSE(button(*window, "Print Now")->isEnabled()) << "the sample is nobody's document";

    QMimeData dragged;
    dragged.setUrls({QUrl::fromLocalFile(kDocument)});
    QDragEnterEvent enter({10, 10}, Qt::CopyAction, &dragged, Qt::LeftButton, {});
    QApplication::sendEvent(window.get(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop({10, 10}, Qt::CopyAction, &dragged, Qt::LeftButton, {});
    QApplication::sendEvent(window.get(), &drop);
    EXPECT_TRUE(comesTrue([&] { return says(*window, "office-1.pdf"); }));
    EXPECT_TRUE(button(*window, "Print Now")->isEnabled());
}

TEST_F(SettingsWindowTest, TheCommandHidesSecretsUnlessTheyAreAskedFor)
{
    addQueue("office");
    const auto window = openWindow(setup());
    type(*window, "KLPrivatePIN", "0471");
    const auto copied = [&](QMessageBox::StandardButton answer) {
        pressAndAnswer<QMessageBox>(*window, "Copy as Command",
                                    [&](QMessageBox &box) { box.button(answer)->click(); });
        return QGuiApplication::clipboard()->text().toStdString();
    };
    EXPECT_THAT(copied(QMessageBox::No),
                AllOf(HasSubstr("lp "), HasSubstr("office"), Not(HasSubstr("0471"))));
    EXPECT_THAT(copied(QMessageBox::Yes), HasSubstr("KLPrivatePIN=Custom.0471"));
}

TEST_F(SettingsWindowTest, SettingsWithAProblemAreNotPrinted)
{
    addQueue("office");
    const auto window = openWindow(setup());
    type(*window, "KLPrivatePIN", "12x");
    button(*window, "Print Now")->click();
    EXPECT_TRUE(says(*window, "digits"));
    EXPECT_TRUE(window->findChild<FieldEditor *>("KLPrivatePIN")->isVisible())
        << "the field is not gone to";
    EXPECT_EQ(scheduler().latestJob("office"), 0);
}

TEST_F(SettingsWindowTest, OnePressOfPrintNowIsOneJobWhateverIsDoneMeanwhile)
{
    addQueue("office");
    const auto window = openWindow(setup());
    const auto *print = button(*window, "Print Now");
    button(*window, "Print Now")->click();
    EXPECT_FALSE(print->isEnabled());
    emit sets(*window)->activated(0); // the printer's own settings
    EXPECT_FALSE(print->isEnabled()) << "the job is still on its way";
    EXPECT_TRUE(comesTrue([&] { return print->isEnabled(); }));
    EXPECT_TRUE(comesTrue([&] { return says(*window, "The printer has it"); }));
}

TEST_F(SettingsWindowTest, WithoutAPrinterItSaysWhatToDo)
{
    MainWindow window(setup());
    window.show();
    EXPECT_TRUE(comesTrue([&] { return says(window, "lpadmin -p office"); }));
    EXPECT_FALSE(button(window, "Print Now")->isEnabled());
}

TEST_F(SettingsWindowTest, OfAServerThatDoesNotAnswerNobodySaysThatItHasNoPrinter)
{
    auto nobody = setup();
    nobody.servers = {{"127.0.0.1", Support::freePort(), true}};
    nobody.patience = {};
    MainWindow window(nobody);
    window.show();
    EXPECT_TRUE(comesTrue([&] { return says(window, "does not answer"); }));
    EXPECT_TRUE(says(window, "Looking for printers"));
    EXPECT_FALSE(says(window, "There is no printer here"));
}

TEST_F(SettingsWindowTest, APrinterThatVanishesTakesNothingAlong)
{
    addQueue("office");
    addQueue("other");
    const auto window = openWindow(setup());
    type(*window, "KLDepartmentCode", "0815");
    removeQueue("office");
    QTest::keyClick(window.get(), Qt::Key_F5);
    EXPECT_TRUE(comesTrue([&] { return says(*window, "is not there any more"); }));
    EXPECT_EQ(typed(*window, "KLDepartmentCode"), "0815");
}

TEST_F(SettingsWindowTest, ADriverThatChangesTakesOverWhatWasSet)
{
    addQueue("office");
    const auto window = openWindow(setup());
    type(*window, "KLDepartmentCode", "0815");
    scheduler().run({"lpadmin", "-p", "office", "-o", "Staple=UpperLeft"}); // writes into the PPD
    QTest::keyClick(window.get(), Qt::Key_F5);
    EXPECT_TRUE(comesTrue([&] { return says(*window, "was taken over"); }));
    EXPECT_EQ(typed(*window, "KLDepartmentCode"), "0815");
    EXPECT_EQ(window->findChild<FieldEditor *>("Staple")->findChild<QComboBox *>()->currentData(),
              "UpperLeft");
}

TEST_F(SettingsWindowTest, WhereNothingCanBeKeptThatIsSaid)
{
    addQueue("office");
    auto noPlace = setup();
    noPlace.kept = Model::KeptSettings("/proc/lpoptions");
    const auto window = openWindow(noPlace);
    pressAndAnswer<QDialog>(*window, "Keep…",
                            [&](QDialog &dialog) { button(dialog, "Keep")->click(); });
    EXPECT_TRUE(comesTrue([&] { return says(*window, "/proc/lpoptions"); }));
}

TEST_F(SettingsWindowTest, ADocumentThatIsNoPDFIsToldOfWhereItWouldBeSeen)
{
    addQueue("office");
    const auto window = openWindow(setup());
    window->openDocument(QString::fromStdString(folder.write("letter.pdf", "Dear Sir or Madam")));
    auto *maker = window->findChild<PreviewMaker *>();
    const QSignalSpy failed(maker, &PreviewMaker::failed);
    EXPECT_TRUE(comesTrue([&] { return !failed.isEmpty(); }));
}

TEST_F(SettingsWindowTest, ABookletIsSeenAndASheetTurnedOver)
{
    addQueue("office");
    auto sample = setup();
    sample.document.clear();
    const auto window = openWindow(sample);
    choose(*window, "BookletPaperSize", "A3");
    EXPECT_TRUE(comesTrue([&] { return button(*window, "Turn Over")->isEnabled(); }));
    EXPECT_TRUE(comesTrue([&] { return says(*window, "Sheet 1, front"); }));
    button(*window, "Turn Over")->click();
    EXPECT_TRUE(comesTrue([&] { return says(*window, "Sheet 1, back"); }));
    EXPECT_FALSE(button(*window, "Print Now")->isEnabled()) << "there is no document to print";
}

/// PostScript has codes for trays, so that a cover need not come from that of the job.
TEST_F(SettingsWindowTest, ACoverSaysWhichTrayItComesFrom)
{
    addQueue("office", KL_SAMPLE_PPD);
    auto sample = setup();
    sample.document.clear();
    const auto window = openWindow(sample);
    choose(*window, "Duplex", "DuplexNoTumble");
    choose(*window, "InputSlot", "Tray1");
    window->findChild<FieldEditor *>("UseFrontCover")->findChild<QCheckBox *>()->click();
    choose(*window, "FrontCoverPrintStyle", "Print");
    choose(*window, "FrontCoverSource", "SheetFeedBypass");
    EXPECT_TRUE(comesTrue([&] { return says(*window, "Front cover, front · from Bypass Tray"); }));
    button(*window, "Turn Over")->click();
    EXPECT_TRUE(comesTrue([&] { return says(*window, "Front cover, back · from Bypass Tray"); }));
    buttonNamed(*window, "Next sheet")->click();
    EXPECT_TRUE(comesTrue([&] { return says(*window, "Sheet 2, back · from Tray 1"); }));
}

/// The printers of two servers, one of which may stop.
TEST_F(SettingsWindowTest, PrintersOfTwoServersAreOneListAndStayApart)
{
    auto other = std::make_unique<OtherScheduler>();
    addQueue("office");
    other->scheduler.addQueue("office", folder.write("other.ppd", quietPPD()),
                              other->printer.deviceURI());
    auto both = setup();
    both.servers.push_back(other->address());
    const auto window = openWindow(both);
    const QString name = QString::fromStdString(server().name());
    ASSERT_TRUE(comesTrue([&] { return printers(*window)->count() == 2; }));
    EXPECT_EQ(
        entriesOf(*printers(*window)),
        QStringList({"office – The test's printer (" + name + ")", "office (this computer)"}));

    // What is set for one is not set for the other.
    choosePrinter(*window, 0);
    ASSERT_TRUE(hasSettings(*window));
    type(*window, "KLDepartmentCode", "0815");
    choosePrinter(*window, 1);
    EXPECT_TRUE(says(*window, "Reading the driver of office"));
    ASSERT_TRUE(hasSettings(*window));
    EXPECT_EQ(typed(*window, "KLDepartmentCode"), "");
    type(*window, "KLDepartmentCode", "4711");
    button(*window, "Print Now")->click();
    EXPECT_TRUE(comesTrue([&] { return says(*window, "on office): The printer has it"); }))
        << wordsIn(*window).join("\n").toStdString();
    other->printer.finishJobs();
    EXPECT_THAT(other->printer.jobs(), ElementsAre(HasSubstr("ACCESSCODE=4711\r\n")));
    EXPECT_THAT(printer().jobs(), testing::IsEmpty());
    QGuiApplication::clipboard()->clear();
    button(*window, "Copy as Command")->click();
    EXPECT_THAT(QGuiApplication::clipboard()->text().toStdString(),
                HasSubstr("lp -h " + other->address().name() + " -d office "));

    const std::string gone = other->address().name();
    other.reset();
    QTest::keyClick(window.get(), Qt::Key_F5);
    EXPECT_TRUE(comesTrue(
        [&] { return says(*window, QString::fromStdString(gone) + " does not answer"); }));
    EXPECT_EQ(typed(*window, "KLDepartmentCode"), "4711");
    EXPECT_TRUE(says(*window, "is on the clipboard"));
    choosePrinter(*window, 0);
    EXPECT_FALSE(says(*window, "is on the clipboard")) << "that was of the other";
    EXPECT_EQ(typed(*window, "KLDepartmentCode"), "0815");
    button(*window, "Print Now")->click();
    const QString printed = "on office (" + name + ")): The printer has it";
    EXPECT_TRUE(comesTrue([&] { return says(*window, printed); }));
    printer().finishJobs();
    EXPECT_THAT(printer().jobs(), ElementsAre(HasSubstr("ACCESSCODE=0815\r\n")));

    // Jobs are told apart by their servers, too, whatever their numbers.
    button(*window, "Dismiss")->click(); // the first one
    EXPECT_TRUE(comesTrue([&] { return !says(*window, "on office): "); }));
    EXPECT_TRUE(says(*window, printed));
}

/// lp(1) adds what the administrator has set for everybody.
TEST_F(SettingsWindowTest, EverybodysDefaultsAreBegunWithAndTheCommandSaysWhatIsOtherwise)
{
    addQueue("office");
    const Support::ScopedEnvironment settings("CUPS_SERVERROOT", folder.path());
    folder.write("lpoptions", "Dest office Staple=UpperLeft Duplex=DuplexNoTumble\n");
    const auto window = openWindow(setup());
    const auto *staple = window->findChild<FieldEditor *>("Staple")->findChild<QComboBox *>();
    EXPECT_EQ(staple->currentData(), "UpperLeft");
    choose(*window, "Staple", "None");
    button(*window, "Copy as Command")->click();
    EXPECT_THAT(QGuiApplication::clipboard()->text().toStdString(), HasSubstr(" -o Staple=None "));
    pressAndAnswer<QDialog>(*window, "Keep…",
                            [&](QDialog &dialog) { button(dialog, "Keep")->click(); });
    EXPECT_TRUE(comesTrue([&] { return fs::exists(keptFile()); }));
    EXPECT_THAT(Support::readFile(keptFile()), HasSubstr("Staple=None"));
}

/// The preview of the printer before asks for nothing that is not there yet.
TEST_F(SettingsWindowTest, APrinterThatIsReadForTheFirstTimeEndsThePreviewOfTheOneBefore)
{
    addQueue("office");
    addQueue("other");
    const auto window = openWindow(setup());
    ASSERT_TRUE(comesTrue([&] { return printers(*window)->count() == 2; }));
    choose(*window, "InputSlot", "Tray2");
    ASSERT_TRUE(comesTrue([&] { return says(*window, "from Tray 2"); }));
    auto *maker = window->findChild<PreviewMaker *>();
    maker->show(0, Side::Front, {301, 425});
    ASSERT_TRUE(maker->isBusy());

    choosePrinter(*window, 1);
    EXPECT_TRUE(says(*window, "Reading the driver of other"));
    EXPECT_FALSE(maker->isBusy());
    emit maker->progress(50, "Preparing the pages");
    ASSERT_TRUE(hasSettings(*window));
    EXPECT_FALSE(says(*window, "from Tray 2"));
}

TEST_F(SettingsWindowTest, AServerThatTellsNothingDoesNotHoldUpTheOther)
{
    addQueue("office");
    auto held = std::make_unique<HeldServer>(scheduler().port());
    auto both = setup({});
    Model::ServerAddress second = server();
    second.isStandard = false;
    both.servers = {held->address(), second};
    both.patience = {};
    const auto window = openWindow(both);
    EXPECT_FALSE(says(*window, "does not answer")) << "it was waited for";
    held.reset();
    EXPECT_TRUE(comesTrue([&] { return says(*window, "does not answer"); }));
    EXPECT_EQ(printers(*window)->count(), 1);
    EXPECT_FALSE(button(*window, "Keep…")->isHidden());
}

TEST_F(SettingsWindowTest, OfTwoPrintersOfTheWantedNameItIsTheOneThatLpTakes)
{
    const OtherScheduler other;
    addQueue("office");
    other.scheduler.addQueue("office", folder.write("other.ppd", quietPPD()),
                             other.printer.deviceURI());
    const HeldServer held(scheduler().port());
    auto both = setup("office");
    both.servers = {held.address(), other.address()};
    both.patience = kPatience;
    const MainWindow window(both);
    ASSERT_TRUE(comesTrue([&] { return printers(window)->count() == 1; }));
    EXPECT_EQ(printers(window)->currentIndex(), -1) << "the other server has one, too";
    held.release();
    EXPECT_TRUE(comesTrue([&] { return printers(window)->count() == 2; }));
    EXPECT_EQ(printers(window)->currentIndex(), 0);
}

} // namespace
