#include "PreviewPane.h"
#include "OffscreenApplication.h"
#include "SheetView.h"

#include <QAbstractButton>
#include <QLabel>
#include <QSpinBox>

#include <gmock/gmock.h>

#include <set>
#include <string>

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;
using testing::UnorderedElementsAre;

namespace {

const auto *const application = testing::AddGlobalTestEnvironment(new OffscreenApplication);

constexpr QSizeF kA4(595, 842);
constexpr char kSilentProgram[] = "/usr/bin/tail"; // which waits for the end of what it reads

/// The pane with a program that says nothing: the test says it in its place.
class PreviewPaneTest : public testing::Test {
protected:
    PreviewPaneTest() { pane.show(); }

    void showDocument(const QString &path)
    {
        pane.setJob(
            {"/none.ppd", {}, path, {}, {}},
            [](const QString &option, const QString &choice) { return option + " " + choice; });
    }

    PreviewMaker &maker() { return *pane.findChild<PreviewMaker *>(); }

    void tellSheets(int count, const QString &tray = {})
    {
        QList<Sheet> sheets;
        for (int page = 0; page < count; ++page)
            sheets.append({.frontPage = page, .tray = tray, .front = kA4});
        emit maker().sheetsKnown(sheets);
    }

    void tellPicture(int sheet)
    {
        emit maker().sheetReady(sheet, Side::Front, QImage(10, 14, QImage::Format_RGB32));
        emit maker().progress(-1, {});
    }

    /// A document of three sheets, the first of which is seen.
    void showLetter()
    {
        showDocument("/letter.pdf");
        tellSheets(3, "Tray1");
        tellPicture(0);
    }

    /// What its labels say.
    std::set<std::string> words() const
    {
        std::set<std::string> words;
        for (const QLabel *label : pane.findChildren<QLabel *>())
            if (label->isVisible() && !label->text().isEmpty())
                words.insert(label->text().toStdString());
        return words;
    }

    void press(const QString &text)
    {
        for (auto *button : pane.findChildren<QAbstractButton *>())
            if (button->text().remove('&') == text)
                button->click();
    }

    void turnTo(int sheet) { pane.findChild<QSpinBox *>()->setValue(sheet); }
    std::string seen() const
    {
        return pane.findChild<SheetView *>()->accessibleName().toStdString();
    }

    PreviewPane pane{{kSilentProgram, {}}};
};

TEST_F(PreviewPaneTest, TheCaptionTellsWhatIsSeen)
{
    showLetter();
    EXPECT_THAT(words(), UnorderedElementsAre("letter.pdf", "Sheet 1, front · from InputSlot Tray1",
                                              "Sheet", "of 3"));
    turnTo(2);
    EXPECT_THAT(words(), Contains(HasSubstr("Sheet 1, front"))) << "that is still seen";
    tellPicture(1);
    EXPECT_THAT(words(), Contains(HasSubstr("Sheet 2, front")));
    EXPECT_EQ(seen(), "Sheet 2, front");
}

TEST_F(PreviewPaneTest, NothingIsSaidOfTheSheetsOfAnotherDocument)
{
    showLetter();
    showDocument("/other.pdf");
    EXPECT_THAT(words(), UnorderedElementsAre("other.pdf", "Preparing the pages"));
    EXPECT_EQ(seen(), "");
    press("Stop");
    EXPECT_THAT(words(), ElementsAre("other.pdf"));
    EXPECT_EQ(seen(), "Stopped. The next change begins anew.");
}

/// A change of the settings is no reason for everything to flicker.
TEST_F(PreviewPaneTest, TheSheetsOfTheSameDocumentStayUntilTheirSuccessorsAreThere)
{
    showLetter();
    turnTo(2);
    tellPicture(1);
    showDocument("/letter.pdf");
    EXPECT_THAT(words(), IsSupersetOf({"Sheet 2, front · from InputSlot Tray1", "of 3"}));
    tellSheets(4);
    tellPicture(1);
    EXPECT_THAT(words(), IsSupersetOf({"Sheet 2, front", "of 4"}));
}

TEST_F(PreviewPaneTest, WhatWasStoppedIsNotSeenAsItWasBefore)
{
    showLetter();
    showDocument("/letter.pdf");
    press("Stop");
    EXPECT_THAT(words(), ElementsAre("letter.pdf"));
    EXPECT_EQ(seen(), "Stopped. The next change begins anew.");
}

TEST_F(PreviewPaneTest, TheNumberOfASheetIsWrittenAsTheirCountIs)
{
    showDocument("/book.pdf");
    tellSheets(4000);
    turnTo(1234);
    EXPECT_EQ(pane.findChild<QSpinBox *>()->text(), "1,234");
    EXPECT_THAT(words(), Contains("of 4,000"));
}

TEST_F(PreviewPaneTest, ASheetThatCannotBeDrawnLeavesTheOthers)
{
    showLetter();
    turnTo(2);
    emit maker().failed("The page cannot be drawn.");
    EXPECT_EQ(seen(), "The page cannot be drawn.");
    EXPECT_THAT(words(), Not(Contains(HasSubstr("front"))));
    turnTo(3);
    tellPicture(2);
    EXPECT_EQ(seen(), "Sheet 3, front");
}

TEST_F(PreviewPaneTest, ADocumentThatCannotBeReadHasNoSheets)
{
    showLetter();
    showDocument("/letter.pdf");
    emit maker().failed("The document is damaged.");
    EXPECT_EQ(seen(), "The document is damaged.");
    EXPECT_THAT(words(), Not(Contains("of 3")));
}

} // namespace
