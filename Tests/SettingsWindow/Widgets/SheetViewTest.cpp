#include "SheetView.h"
#include "OffscreenApplication.h"

#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <climits>

namespace {

const auto *const application = testing::AddGlobalTestEnvironment(new OffscreenApplication);

constexpr QSizeF kA4(595, 842);

class SheetViewTest : public testing::Test {
protected:
    SheetViewTest()
    {
        view.resize(424, 324);
        view.show();
    }

    QColor colorAt(QPoint place) { return view.grab().toImage().pixelColor(place); }

    SheetView view;
};

TEST_F(SheetViewTest, APageIsAsLargeAsThereIsPlaceForIt)
{
    // 12 pixels are left free on each side, so that there are 300 for the height: 300 * 595 / 842 =
    // 212 wide, in the middle from 106 to 318.
    QImage red(10, 10, QImage::Format_RGB32);
    red.fill(Qt::red);
    view.showSide(red, kA4, "Sheet 1, front");
    EXPECT_EQ(view.place(), QSize(400, 300));
    EXPECT_EQ(colorAt({110, 160}), QColor(Qt::red));
    EXPECT_EQ(colorAt({314, 160}), QColor(Qt::red));
    EXPECT_NE(colorAt({102, 160}), QColor(Qt::red));
    EXPECT_NE(colorAt({326, 160}), QColor(Qt::red));
    EXPECT_EQ(view.accessibleName(), "Sheet 1, front");
}

TEST_F(SheetViewTest, PaperIsWhiteInADarkThemeToo)
{
    view.setPalette(QPalette(Qt::darkGray, Qt::black));
    view.showSide({}, kA4, "Sheet 1, back");
    EXPECT_EQ(colorAt({212, 160}), QColor(Qt::white));
}

TEST_F(SheetViewTest, AClickOrAKeyTurnsASheetThatHasABack)
{
    const QSignalSpy turned(&view, &SheetView::turned);
    QTest::mouseClick(&view, Qt::LeftButton);
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_EQ(turned.count(), 0) << "there is no back to turn to";

    view.setTurnable(true);
    QTest::mouseClick(&view, Qt::LeftButton);
    QTest::keyClick(&view, Qt::Key_Space);
    QTest::keyClick(&view, Qt::Key_Return);
    QTest::mouseClick(&view, Qt::RightButton);
    EXPECT_EQ(turned.count(), 3);
}

TEST_F(SheetViewTest, KeysAskForOtherSheets)
{
    QSignalSpy moved(&view, &SheetView::moved);
    for (const Qt::Key key : {Qt::Key_PageDown, Qt::Key_PageUp, Qt::Key_End, Qt::Key_Home})
        QTest::keyClick(&view, key);
    QList<int> steps;
    for (const auto &arguments : moved)
        steps << arguments.front().toInt();
    EXPECT_EQ(steps, (QList<int>{1, -1, INT_MAX, -INT_MAX}));
}

TEST_F(SheetViewTest, WordsStandWhereThereIsNoSheet)
{
    view.showWords("It is no PDF.");
    EXPECT_EQ(view.accessibleName(), "It is no PDF.");
    EXPECT_NE(colorAt({212, 160}), QColor(Qt::white));
}

} // namespace
