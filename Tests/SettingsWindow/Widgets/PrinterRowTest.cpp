#include "PrinterRow.h"
#include "OffscreenApplication.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLabel>
#include <QScrollBar>

#include <gtest/gtest.h>

namespace {

using Model::Queue;

const auto *const application = testing::AddGlobalTestEnvironment(new OffscreenApplication);

const Model::ServerAddress kRemote = {"print.example.com", 631, true, false};
const Model::ServerAddress kOwn = {"/run/cups/cups.sock", 0, false, true};

Queue queue(const std::string &name, const Model::ServerAddress &server)
{
    Queue made;
    made.name = name;
    made.server = server;
    return made;
}

class PrinterRowTest : public testing::Test {
protected:
    QComboBox *list() const { return row.findChildren<QComboBox *>().front(); }

    QStringList labels() const
    {
        QStringList texts;
        for (int index = 0; index < list()->count(); ++index)
            texts << list()->itemText(index);
        return texts;
    }

    PrinterRow row;
};

TEST_F(PrinterRowTest, TheServerIsNamedWhereItIsAnotherComputerOrTellsTwoApart)
{
    row.showPrinters({queue("office", kRemote), queue("post", kRemote), queue("desk", kOwn),
                      queue("office", kOwn)},
                     {}, {});
    EXPECT_EQ(labels(),
              QStringList({"office (print.example.com:631)", "post (print.example.com:631)", "desk",
                           "office (this computer)"}));
    EXPECT_EQ(list()->currentIndex(), -1) << "nobody has chosen one";
}

TEST_F(PrinterRowTest, TheChosenOneOfTwoOfANameIsShownAndTold)
{
    const std::vector<Queue> printers = {queue("office", kRemote), queue("office", kOwn)};
    row.showPrinters(printers, printers[1].id(), {});
    EXPECT_EQ(list()->currentIndex(), 1);
    Model::QueueId told;
    QObject::connect(&row, &PrinterRow::printerChosen, &row,
                     [&](const Model::QueueId &printer) { told = printer; });
    emit list()->activated(0);
    EXPECT_EQ(told, printers[0].id());
}

/// Somebody may be on the way through it.
TEST_F(PrinterRowTest, AListThatIsOpenStaysStillWhenStatesChange)
{
    std::vector<Queue> printers;
    for (int number = 0; number < 200; ++number)
        printers.push_back(queue("printer" + std::to_string(number), kOwn));
    row.show();
    row.showPrinters(printers, printers[0].id(), {});
    list()->showPopup();
    QAbstractItemView *view = list()->view();
    view->setCurrentIndex(view->model()->index(150, 0));
    view->scrollToBottom();
    QScrollBar *bar = view->verticalScrollBar();
    const int scrolled = bar->value();
    ASSERT_GT(scrolled, 0);
    printers[150].state = Queue::State::Stopped;
    row.showPrinters(printers, printers[0].id(), {});
    EXPECT_EQ(view->currentIndex().row(), 150);
    EXPECT_EQ(bar->value(), scrolled);
    EXPECT_TRUE(view->isVisible());
    list()->hidePopup();
}

TEST_F(PrinterRowTest, PrintersThatAreGoneLeaveAnEmptyList)
{
    const std::vector<Queue> printers = {queue("office", kOwn)};
    row.showPrinters(printers, printers[0].id(), {});
    row.showPrinters({}, {}, {});
    EXPECT_EQ(list()->count(), 0);
}

TEST_F(PrinterRowTest, ProblemsOfServersStandBelowAsLongAsThereAreAny)
{
    row.show();
    const auto isSaid = [this] {
        for (const QLabel *label : row.findChildren<QLabel *>())
            if (label->isVisible() && label->text() == "Silence")
                return true;
        return false;
    };
    row.showPrinters({}, {}, "Silence");
    EXPECT_TRUE(isSaid());
    row.showPrinters({}, {}, {});
    EXPECT_FALSE(isSaid());
}

TEST_F(PrinterRowTest, ASetThatIsGoneIsNotTakenForAnother)
{
    const QComboBox *sets = row.findChildren<QComboBox *>().back();
    row.showSets(true, {"board"}, "board", true);
    EXPECT_EQ(sets->currentText(), "board");
    row.showSets(true, {}, "board", false);
    EXPECT_EQ(sets->currentIndex(), -1);
    row.showSets(true, {}, std::nullopt, false);
    EXPECT_EQ(sets->currentIndex(), 0);
}

TEST_F(PrinterRowTest, RightToLeftTheStateBeginsAtTheRight)
{
    QApplication::setLayoutDirection(Qt::RightToLeft);
    const PrinterRow mirrored;
    QApplication::setLayoutDirection(Qt::LeftToRight);
    for (const QLabel *label : mirrored.findChildren<QLabel *>())
        if (label->wordWrap()) {
            EXPECT_TRUE(label->alignment() & Qt::AlignAbsolute);
            EXPECT_TRUE(label->alignment() & Qt::AlignRight);
        }
}

} // namespace
