#include "SettingsPages.h"
#include "FieldEditor.h"
#include "OffscreenApplication.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QStandardItemModel>
#include <QTest>

#include <gtest/gtest.h>

#include <stdexcept>

using Model::QueueSettings;

namespace {

const auto *const application = testing::AddGlobalTestEnvironment(new OffscreenApplication);

QueueSettings sampleSettings(const std::string &language = {})
{
    std::string whyNot;
    auto ppd = PPD::open(KL_SAMPLE_PPD, &whyNot);
    if (!ppd)
        throw std::runtime_error(whyNot);
    return QueueSettings(std::move(*ppd), language);
}

/// The pages of the sample queue, as a person works them: what is edited is set, and shown.
class SettingsPagesTest : public testing::Test {
protected:
    SettingsPagesTest()
    {
        QObject::connect(&pages, &SettingsPages::edited, &pages,
                         [this](const QString &field, const QString &value) {
                             settings.set(field.toStdString(), value.toStdString());
                             pages.show(settings);
                         });
        pages.resize(700, 500);
        pages.show(settings);
        pages.QWidget::show();
    }

    FieldEditor *editor(const QString &field)
    {
        auto *found = pages.findChild<FieldEditor *>(field);
        if (found == nullptr)
            throw std::runtime_error("no field " + field.toStdString());
        pages.goToField(field);
        return found;
    }

    template <class Control>
    Control *control(const QString &field)
    {
        return editor(field)->findChild<Control *>();
    }

    /// The words that stand below the control; empty when there are none.
    QString problemOf(const QString &field)
    {
        for (const QLabel *label : editor(field)->findChildren<QLabel *>())
            if (label->isVisible() && label->text().startsWith(u'⚠'))
                return label->text();
        return {};
    }

    QListWidget *names() { return pages.findChild<QListWidget *>(); }

    QueueSettings settings = sampleSettings();
    SettingsPages pages;
};

TEST_F(SettingsPagesTest, StandInTheOrderInWhichPeopleLookForThem)
{
    QStringList words;
    for (int row = 0; row < names()->count(); ++row)
        words << names()->item(row)->text();
    EXPECT_EQ(words, (QStringList{"Who prints", "Private printing and document box", "Watermark",
                                  "Booklet", "Cover pages", "Colour", "Paper and printer"}));
}

TEST_F(SettingsPagesTest, ADepartmentCodeThatIsTypedIsSet)
{
    QTest::keyClicks(control<QLineEdit>("KLDepartmentCode"), "0815");
    EXPECT_EQ(settings.value("KLDepartmentCode"), "Custom.0815");

    control<QLineEdit>("KLDepartmentCode")->selectAll();
    QTest::keyClick(control<QLineEdit>("KLDepartmentCode"), Qt::Key_Delete);
    EXPECT_EQ(settings.value("KLDepartmentCode"), "None");
}

TEST_F(SettingsPagesTest, WhatIsTypedIsCheckedAtOnceAndInWords)
{
    QTest::keyClicks(control<QLineEdit>("KLPrivatePIN"), "12x");
    EXPECT_EQ(problemOf("KLPrivatePIN"), "⚠ Must be 1 to 8 digits, and nothing else");
    EXPECT_EQ(control<QLineEdit>("KLPrivatePIN")->accessibleDescription(),
              "Must be 1 to 8 digits, and nothing else");
    EXPECT_FALSE(names()->item(1)->icon().isNull()) << "its page is not marked";

    QTest::keyClick(control<QLineEdit>("KLPrivatePIN"), Qt::Key_Backspace);
    EXPECT_EQ(problemOf("KLPrivatePIN"), "");
    EXPECT_TRUE(names()->item(1)->icon().isNull());
}

TEST_F(SettingsPagesTest, APINIsNotShownUnlessThatIsAskedFor)
{
    auto *line = control<QLineEdit>("KLPrivatePIN");
    EXPECT_EQ(line->echoMode(), QLineEdit::Password);
    line->actions().front()->toggle();
    EXPECT_EQ(line->echoMode(), QLineEdit::Normal);
}

TEST_F(SettingsPagesTest, AWatermarkIsChosenOrTyped)
{
    auto *list = control<QComboBox>("KLWatermarkText");
    auto *line = control<QLineEdit>("KLWatermarkText");
    EXPECT_FALSE(line->isVisible());

    list->setFocus();
    QTest::keyClick(list, Qt::Key_D); // "Draft"
    QTest::keyClick(list, Qt::Key_Return);
    emit list->activated(list->currentIndex());
    EXPECT_EQ(settings.value("KLWatermarkText"), "Draft");

    list->setCurrentIndex(list->count() - 1);
    emit list->activated(list->currentIndex());
    ASSERT_TRUE(line->isVisible());
    QTest::keyClicks(line, "For the board");
    EXPECT_EQ(settings.value("KLWatermarkText"), "Custom.For the board");
}

TEST_F(SettingsPagesTest, WhatHasNoEffectCannotBeSetAndSaysWhy)
{
    EXPECT_FALSE(control<QComboBox>("KLWatermarkAngle")->isEnabled());
    EXPECT_NE(control<QComboBox>("KLWatermarkAngle")->accessibleDescription(), "");

    settings.set("KLWatermarkText", "Draft");
    pages.show(settings);
    EXPECT_TRUE(control<QComboBox>("KLWatermarkAngle")->isEnabled());
    EXPECT_EQ(control<QComboBox>("KLWatermarkAngle")->accessibleDescription(), "");
}

TEST_F(SettingsPagesTest, AChoiceThatAnotherExcludesCannotBeChosen)
{
    // A booklet is stitched at its fold or not at all.
    settings.set("BookletPaperSize", "A3");
    pages.show(settings);
    auto *list = control<QComboBox>("Staple");
    const auto *model = qobject_cast<QStandardItemModel *>(list->model());
    EXPECT_FALSE(model->item(list->findData("UpperLeft"))->isEnabled());
    EXPECT_NE(model->item(list->findData("UpperLeft"))->toolTip(), "");
    EXPECT_TRUE(model->item(list->findData("Saddle"))->isEnabled());
}

TEST_F(SettingsPagesTest, EditorsStayWhileSomebodyTypes)
{
    const FieldEditor *before = editor("KLDepartmentCode");
    QTest::keyClicks(control<QLineEdit>("KLDepartmentCode"), "08");
    EXPECT_EQ(editor("KLDepartmentCode"), before);
}

TEST_F(SettingsPagesTest, EveryControlHasANameForScreenReaders)
{
    for (const QWidget *widget : pages.findChildren<QWidget *>()) {
        const bool isControl = widget->window() == &pages && widget->focusPolicy() != Qt::NoFocus &&
                               widget->focusProxy() == nullptr;
        if (isControl) {
            EXPECT_FALSE(widget->accessibleName().isEmpty())
                << widget->metaObject()->className() << " in "
                << widget->parentWidget()->objectName().toStdString();
        }
    }
}

TEST_F(SettingsPagesTest, TheTabKeyLeadsThroughAllFieldsOfAPage)
{
    pages.setCurrentPage(0);
    pages.activateWindow();
    QList<const QWidget *> wanted;
    for (const FieldEditor *each : pages.findChildren<FieldEditor *>())
        if (each->isVisible() && each->isEnabled())
            wanted << each->focusProxy();
    ASSERT_FALSE(wanted.isEmpty());
    names()->setFocus();
    for (int key = 0; key < 100 && !wanted.isEmpty(); ++key) {
        QTest::keyClick(pages.focusWidget(), Qt::Key_Tab);
        wanted.removeAll(pages.focusWidget());
    }
    EXPECT_TRUE(wanted.isEmpty()) << wanted.front()->accessibleName().toStdString()
                                  << " is not reached";
}

TEST_F(SettingsPagesTest, RightToLeftTheListOfPagesStandsAtTheRight)
{
    pages.setLayoutDirection(Qt::RightToLeft);
    QTest::qWait(1);
    EXPECT_GT(names()->x(), pages.width() / 2);
}

TEST_F(SettingsPagesTest, ThePrintersWordsAreInTheReadersLanguage)
{
    settings = sampleSettings("de_DE");
    pages.show(settings);
    EXPECT_EQ(control<QComboBox>("KLWatermarkText")->accessibleName(), "Wasserzeichen");
}

TEST_F(SettingsPagesTest, HeadingsHaveWordsAndTheOneOfLibcupsIsTranslatable)
{
    for (const QLabel *label : pages.findChildren<QLabel *>())
        EXPECT_FALSE(label->font().bold() && label->text().isEmpty()) << "a heading of nothing";
    for (const Model::Field &field : settings.fields(Model::Page::Printer))
        if (field.id == "PageSize") {
            EXPECT_EQ(Model::Words{"General"}, field.group);
        }
}

TEST_F(SettingsPagesTest, AListThatIsOpenedIsAsWideAsItsLongestChoice)
{
    auto *list = control<QComboBox>("KLWatermarkText");
    list->setItemText(0, QString(70, u'x'));
    ASSERT_LT(list->width(), list->fontMetrics().horizontalAdvance(list->itemText(0)));
    list->showPopup();
    EXPECT_GT(list->view()->width(), list->fontMetrics().horizontalAdvance(list->itemText(0)));
    list->hidePopup();
}

TEST_F(SettingsPagesTest, AnAmpersandOfTheDriverIsNoUnderlinedLetter)
{
    Model::Field field = settings.fields(Model::Page::Identity).front();
    field.label = Model::asTheyAre("Store & Print");
    const std::unique_ptr<FieldEditor> made(FieldEditor::make(field, nullptr));
    EXPECT_EQ(made->label()->text(), "Store && Print");
}

} // namespace
