#include "MainWindow.h"
#include "KeepDialog.h"
#include "OffscreenApplication.h"
#include "SettingsPages.h"
#include "language.h"

#include <QAbstractButton>
#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTranslator>

#include <gtest/gtest.h>

#include <memory>

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

INSTANTIATE_TEST_SUITE_P(Languages, MainWindowTest,
                         testing::Values("en", "de", "es", "fr", "ja", "zh_CN"),
                         [](const auto &language) { return std::string(language.param); });

} // namespace
