#include "KeepDialog.h"
#include "OffscreenApplication.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

namespace {

const auto *const application = testing::AddGlobalTestEnvironment(new OffscreenApplication);

constexpr char kWhere[] = "It lies in a file.";

QRadioButton *asSet(const KeepDialog &dialog)
{
    return dialog.findChildren<QRadioButton *>().back();
}

QPushButton *keep(const KeepDialog &dialog)
{
    for (QPushButton *button : dialog.findChildren<QPushButton *>())
        if (button->text() == "&Keep")
            return button;
    return nullptr;
}

TEST(KeepDialogTest, BeginsWithTheDefaults)
{
    const KeepDialog dialog("office", {}, {}, {}, false, kWhere, nullptr);
    EXPECT_EQ(dialog.set(), "");
    EXPECT_TRUE(keep(dialog)->isEnabled());
}

TEST(KeepDialogTest, BeginsWithTheSetThatIsBeingChanged)
{
    const KeepDialog dialog("office", {}, {"confidential", "draft"}, "draft", false, kWhere,
                            nullptr);
    EXPECT_EQ(dialog.set(), "draft");
}

TEST(KeepDialogTest, ASetNeedsANameThatASetCanHave)
{
    KeepDialog dialog("office", {}, {}, {}, false, kWhere, nullptr);
    dialog.show();
    asSet(dialog)->click();
    EXPECT_FALSE(keep(dialog)->isEnabled());

    QTest::keyClicks(dialog.findChild<QComboBox *>()->lineEdit(), "two words");
    EXPECT_FALSE(keep(dialog)->isEnabled());
    bool isSaid = false;
    for (const QLabel *label : dialog.findChildren<QLabel *>())
        isSaid = isSaid || (label->isVisible() && label->text().startsWith(u'⚠'));
    EXPECT_TRUE(isSaid) << "what is wrong with the name is not said";

    dialog.findChild<QComboBox *>()->setCurrentText("words");
    EXPECT_TRUE(keep(dialog)->isEnabled());
    EXPECT_EQ(dialog.set(), "words");
}

TEST(KeepDialogTest, SecretsAreKeptOnlyWhenThatIsTicked)
{
    KeepDialog dialog("office", {}, {}, {}, true, kWhere, nullptr);
    dialog.show();
    EXPECT_FALSE(dialog.withSecrets());
    EXPECT_EQ(dialog.findChild<QCheckBox *>()->accessibleDescription(), kWhere);
    dialog.findChild<QCheckBox *>()->click();
    EXPECT_TRUE(dialog.withSecrets());
}

TEST(KeepDialogTest, WithoutSecretsNothingIsAskedOfThem)
{
    KeepDialog dialog("office", {}, {}, {}, false, kWhere, nullptr);
    dialog.show();
    EXPECT_FALSE(dialog.findChild<QCheckBox *>()->isVisible());
}

} // namespace
