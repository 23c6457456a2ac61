#include "sheetsOfJob.h"

#include <gtest/gtest.h>

namespace {

constexpr QSizeF kA4(595, 842);
constexpr QSizeF kA5(420, 595);

PrintedDocument documentOf(int pages, bool oneSided)
{
    PrintedDocument document;
    document.pages = QList<QSizeF>(pages, kA4);
    document.oneSided = oneSided;
    document.paper = {"Tray1", "Plain"};
    return document;
}

TEST(SheetsOfJobTest, EachPageOfAOneSidedJobHasASheet)
{
    const auto sheets = sheetsOfJob(documentOf(3, true));
    ASSERT_EQ(3, sheets.size());
    for (int page = 0; page < 3; ++page) {
        EXPECT_EQ(page, sheets[page].frontPage);
        EXPECT_FALSE(sheets[page].hasBack());
        EXPECT_EQ(Sheet::Kind::Job, sheets[page].kind);
        EXPECT_EQ("Tray1", sheets[page].tray);
        EXPECT_EQ("Plain", sheets[page].medium);
    }
}

TEST(SheetsOfJobTest, TwoPagesShareASheetAndTheLastOneMayBeAlone)
{
    auto document = documentOf(3, false);
    document.pages[1] = kA5;
    document.turnedOver = Sheet::Edge::Short;
    const auto sheets = sheetsOfJob(document);
    ASSERT_EQ(2, sheets.size());
    EXPECT_EQ(0, sheets[0].frontPage);
    EXPECT_EQ(1, sheets[0].backPage);
    EXPECT_EQ(kA4, sheets[0].front);
    EXPECT_EQ(kA5, sheets[0].back);
    EXPECT_EQ(Sheet::Edge::Short, sheets[0].turnedOver);
    EXPECT_EQ(2, sheets[1].frontPage);
    EXPECT_FALSE(sheets[1].hasBack());
    EXPECT_TRUE(sheets[1].back.isEmpty());
}

TEST(SheetsOfJobTest, CoversAreTheFirstAndTheLastSheetAndComeFromTheirOwnTrays)
{
    auto document = documentOf(6, false);
    document.frontCover = Paper{"Tray2", "Card"};
    document.backCover = Paper{"Bypass", "Plain"};
    const auto sheets = sheetsOfJob(document);
    ASSERT_EQ(3, sheets.size());
    EXPECT_EQ(Sheet::Kind::FrontCover, sheets[0].kind);
    EXPECT_EQ("Tray2", sheets[0].tray);
    EXPECT_EQ("Card", sheets[0].medium);
    EXPECT_EQ(Sheet::Kind::Job, sheets[1].kind);
    EXPECT_EQ("Tray1", sheets[1].tray);
    EXPECT_EQ(Sheet::Kind::BackCover, sheets[2].kind);
    EXPECT_EQ("Bypass", sheets[2].tray);
}

TEST(SheetsOfJobTest, ASingleSheetIsTheFrontCover)
{
    auto document = documentOf(1, true);
    document.frontCover = Paper{"Tray2", ""};
    document.backCover = Paper{"Tray3", ""};
    const auto sheets = sheetsOfJob(document);
    ASSERT_EQ(1, sheets.size());
    EXPECT_EQ(Sheet::Kind::FrontCover, sheets[0].kind);
    EXPECT_EQ("Tray2", sheets[0].tray);
}

TEST(SheetsOfJobTest, NoPagesAreNoSheets)
{
    auto document = documentOf(0, false);
    document.frontCover = Paper{};
    document.backCover = Paper{};
    EXPECT_TRUE(sheetsOfJob(document).isEmpty());
}

} // namespace
