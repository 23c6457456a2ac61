#include "printMode.h"

#include "KLPrintOptions.h"
#include "QueueTest.h"

namespace {

class PrintModeTest : public Support::QueueTest {
protected:
    static PrintMode modeOf(const std::string &options)
    {
        return printMode(KLPrintOptions(options));
    }
};

} // namespace

TEST_F(PrintModeTest, IsWhatTheOptionsSay)
{
    EXPECT_EQ(PrintMode::Open, modeOf(""));
    EXPECT_EQ(PrintMode::Open, modeOf("PrintMode=Hold PrintAsWell=False"));
    EXPECT_EQ(PrintMode::Open, modeOf("StoreToDocStore=no PrintAsWell=False"));
    EXPECT_EQ(PrintMode::Private, modeOf("PrintMode=Private"));
    EXPECT_EQ(PrintMode::StoredAndPrinted, modeOf("StoreToDocStore=true"));
    EXPECT_EQ(PrintMode::StoredAndPrinted, modeOf("StoreToDocStore=tRUE PrintAsWell=no"));
    EXPECT_EQ(PrintMode::StoredOnly, modeOf("StoreToDocStore=tRUE PrintAsWell=false"));
}

TEST_F(PrintModeTest, PrivateJobIsNotStored)
{
    EXPECT_EQ(PrintMode::Private,
              modeOf("PrintMode=Private StoreToDocStore=true PrintAsWell=False"));
}

TEST_F(PrintModeTest, CodeIsTheJobsOrNone)
{
    EXPECT_EQ(std::nullopt, privatePrintCode(KLPrintOptions("PrintMode=Private")));
    EXPECT_EQ(KLValue("1\n2"), privatePrintCode(KLPrintOptions(
                                   "com.kalmira.pde.print-mode-ovm.privatePassword='1\n2'")));
}

// Without an option of that name in the PPD, letter case counts.
TEST_F(PrintModeTest, OtherSpellingsAreOtherValues)
{
    EXPECT_EQ(PrintMode::Open, modeOf("PrintMode=private"));
    EXPECT_EQ(PrintMode::StoredAndPrinted, modeOf("StoreToDocStore=True PrintAsWell=FALSE"));
}
