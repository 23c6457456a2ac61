#include "MainWindow.h"
#include "FieldEditor.h"
#include "KeepDialog.h"
#include "OffscreenApplication.h"
#include "SettingsPages.h"
#include "language.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QStackedWidget>
#include <QTest>
#include <QTranslator>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

const auto *const application = testing::AddGlobalTestEnvironment(new OffscreenApplication);

/// The window without servers, in each language.
class MainWindowTest : public testing::TestWithParam<const char *> {
protected:
    MainWindowTest()
    {
        speakLanguage(*QCoreApplication::instance(), QLocale(GetParam()));
        MainWindow::Setup setup;
        setup.patience = std::chrono::hours(1);
        window = std::make_unique<MainWindow>(setup);
        showSettings(GetParam());
    }

    ~MainWindowTest() override
    {
        for (QTranslator *each : QCoreApplication::instance()->findChildren<QTranslator *>())
            delete each;
    }

    void showSettings(const std::string &language)
    {
        std::string whyNot;
        const Model::QueueSettings settings(std::move(*PPD::open(KL_SAMPLE_PPD, &whyNot)),
                                            language);
        window->findChild<SettingsPages *>()->show(settings);
    }

    /// What underlines a letter, beside menus.
    static QStringList textsWithLetters(const QWidget &widget)
    {
        QStringList texts;
        for (const auto *button : widget.findChildren<QAbstractButton *>())
            texts << button->text();
        for (const auto *label : widget.findChildren<QLabel *>())
            if (label->buddy() != nullptr)
                texts << label->text();
        return texts;
    }

    static QStringList textsOf(const QMenu &menu)
    {
        QStringList texts;
        for (const QAction *action : menu.actions())
            texts << action->text();
        return texts;
    }

    /// Fails where two texts have the same one.
    static void expectOwnLetters(const QStringList &texts, int least)
    {
        QHash<QString, QString> textOf;
        for (const QString &text : texts) {
            const QString letter = QKeySequence::mnemonic(text).toString();
            EXPECT_FALSE(!letter.isEmpty() && textOf.contains(letter))
                << text.toStdString() << " and " << textOf.value(letter).toStdString();
            if (!letter.isEmpty())
                textOf.insert(letter, text);
        }
        EXPECT_GE(textOf.size(), least);
    }

    std::unique_ptr<MainWindow> window;
};

TEST_P(MainWindowTest, EachUnderlinedLetterStandsForOneThing)
{
    expectOwnLetters(textsWithLetters(*window), 8);
    expectOwnLetters(textsOf(*window->findChild<QMenu *>()), 3);
    const KeepDialog dialog("Miller&Miller", {}, {"draft"}, {}, true, "There.", nullptr);
    expectOwnLetters(textsWithLetters(dialog), 4);
}

TEST_P(MainWindowTest, EachUnderlinedLetterPressesItsButton)
{
    for (const auto *button : window->findChildren<QAbstractButton *>())
        EXPECT_EQ(QKeySequence::mnemonic(button->text()), button->shortcut())
            << button->text().toStdString();
}

/// In English.
class OneMainWindowTest : public MainWindowTest {};

/// What Tab leads to, one after the other, from a widget until it is there again, as that is
/// called.
std::vector<std::string> wayOfTab(QWidget &window, QWidget &from)
{
    std::vector<std::string> names;
    from.setFocus();
    do {
        QTest::keyClick(&window, Qt::Key_Tab);
        const QWidget *focus = window.focusWidget();
        const auto *button = qobject_cast<const QAbstractButton *>(focus);
        const bool hasName = button == nullptr || !focus->accessibleName().isEmpty();
        names.push_back(
            (hasName ? focus->accessibleName() : button->text().remove('&')).toStdString());
    } while (window.focusWidget() != &from && names.size() < 100);
    return names;
}

TEST_P(OneMainWindowTest, TheKeyboardGoesFromThePagesToTheirFieldsAndOnAsTheEyeDoes)
{
    window->findChild<QStackedWidget *>()->setCurrentIndex(1); // settings in the place of words
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    const std::vector<std::string> way = {"Department Code",
                                          "User, where it is not you",
                                          "The user's domain",
                                          "User Domain from the Directory Service",
                                          "Open Document…",
                                          "",
                                          "Printer",
                                          "Settings to begin with",
                                          "More",
                                          "Pages of settings",
                                          "Send Department Code"};
    const auto field = [this] {
        return window->findChild<FieldEditor *>("DepartmentCode")->focusProxy();
    };
    EXPECT_EQ(wayOfTab(*window, *field()), way);
    showSettings("de");
    showSettings("en");
    EXPECT_EQ(wayOfTab(*window, *field()), way) << "where other settings were shown meanwhile";
}

TEST_P(OneMainWindowTest, BeginsAsLargeAsSettingsAndAPageNeed)
{
    window->show();
    const QSize screen = window->screen()->availableSize();
    EXPECT_GE(window->height(), std::min(screen.height(), 30 * window->fontMetrics().height()));
    EXPECT_LE(window->height(), screen.height());
    EXPECT_LE(window->width(), screen.width());
}

/// Of the labels that belong to a list of choices, as screen readers find them.
QStringList labelsHeardOf(QComboBox &list)
{
    QStringList names;
    for (const auto &[label, relation] :
         QAccessible::queryAccessibleInterface(&list)->relations(QAccessible::Label))
        names << label->text(QAccessible::Name).remove(':');
    return names;
}

TEST_P(OneMainWindowTest, ScreenReadersHearWhatEachListOfChoicesIsFor)
{
    KeepDialog dialog("office", {}, {"draft"}, "draft", true, "There.", window.get());
    int lists = 0;
    for (QComboBox *list : window->findChildren<QComboBox *>()) {
        EXPECT_EQ(labelsHeardOf(*list).size(), 1) << list->accessibleName().toStdString();
        ++lists;
    }
    EXPECT_GT(lists, 20);
    EXPECT_EQ(labelsHeardOf(*dialog.findChild<QComboBox *>()), QStringList("Name of the set"));
}

INSTANTIATE_TEST_SUITE_P(English, OneMainWindowTest, testing::Values("en"));

INSTANTIATE_TEST_SUITE_P(Languages, MainWindowTest,
                         testing::Values("en", "de", "es", "fr", "ja", "zh_CN"),
                         [](const auto &language) { return std::string(language.param); });

} // namespace
