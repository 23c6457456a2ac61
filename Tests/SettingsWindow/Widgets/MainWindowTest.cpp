#include "MainWindow.h"
#include "KeepDialog.h"
#include "OffscreenApplication.h"
#include "SettingsPages.h"
#include "language.h"

#include <QAbstractButton>
#include <QAction>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QTranslator>

#include <gtest/gtest.h>

#include <algorithm>
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
        window = std::make_unique<MainWindow>(MainWindow::Setup{});
        std::string whyNot;
        const Model::QueueSettings settings(std::move(*PPD::open(KL_SAMPLE_PPD, &whyNot)),
                                            GetParam());
        window->findChild<SettingsPages *>()->show(settings);
    }

    ~MainWindowTest() override
    {
        for (QTranslator *each : QCoreApplication::instance()->findChildren<QTranslator *>())
            delete each;
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

/// What Tab comes to behind a widget until it is there again, as that is called.
std::vector<std::string> behind(const QWidget &widget)
{
    std::vector<std::string> names;
    for (const QWidget *next = widget.nextInFocusChain(); next != &widget;
         next = next->nextInFocusChain())
        if ((next->focusPolicy() & Qt::TabFocus) != 0 && next->focusProxy() == nullptr &&
            !next->isHidden()) {
            const auto *button = qobject_cast<const QAbstractButton *>(next);
            const QString name = next->accessibleName().isEmpty() && button != nullptr
                                     ? button->text().remove('&')
                                     : next->accessibleName();
            names.push_back(name.toStdString());
        }
    return names;
}

TEST_P(OneMainWindowTest, TheKeyboardGoesFromThePagesToTheirFieldsAndThroughThePreview)
{
    const auto names = behind(*window->findChild<QListWidget *>());
    EXPECT_EQ(std::vector(names.begin(), names.begin() + 3),
              (std::vector<std::string>{"Send Department Code", "Department Code",
                                        "User, where it is not you"}));
    const auto preview = std::ranges::find(names, "Open Document…");
    ASSERT_GT(names.end() - preview, 10);
    EXPECT_EQ(std::vector(preview - 1, preview + 10),
              (std::vector<std::string>{"Hole Punch", "Open Document…", "", "Previous sheet",
                                        "Sheet in view", "Next sheet", "Turn Over", "Stop", "Keep…",
                                        "Copy as Command", "Print Now"}));
}

TEST_P(OneMainWindowTest, BeginsAsLargeAsSettingsAndAPageNeed)
{
    window->show();
    const QSize screen = window->screen()->availableSize();
    EXPECT_GE(window->height(), std::min(screen.height(), 30 * window->fontMetrics().height()));
    EXPECT_LE(window->height(), screen.height());
    EXPECT_LE(window->width(), screen.width());
}

INSTANTIATE_TEST_SUITE_P(English, OneMainWindowTest, testing::Values("en"));

INSTANTIATE_TEST_SUITE_P(Languages, MainWindowTest,
                         testing::Values("en", "de", "es", "fr", "ja", "zh_CN"),
                         [](const auto &language) { return std::string(language.param); });

} // namespace
