#include "protectedHeader.h"

#include "KLPrintOptions.h"
#include "QueueTest.h"
#include "jobHeader.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <vector>

using testing::HasSubstr;
using testing::Optional;

namespace {

constexpr char kCode[] = "com.kalmira.pde.print-mode-ovm.privatePassword";

std::string printMode(const std::string &choices)
{
    return "*JCLOpenUI *PrintMode: PickOne\n*OrderDependency: 20 JCLSetup *PrintMode\n"
           "*DefaultPrintMode: Normal\n" +
           choices + "*JCLCloseUI: *PrintMode\n";
}

const std::string kNormal =
    "*PrintMode Normal: \"@PJL COMMENT DSSC PRINT PRINTMODE=NORMAL<0D0A>\"\n";
const std::string kPrivate =
    "*PrintMode Private: \"@PJL COMMENT DSSC PRINT PRINTMODE=PRIVATE<0D0A>\"\n";
const std::string kBoxLine = "@PJL COMMENT DSSC PRINT PRINTMODE=BOX\r\n";

class ProtectedHeaderTest : public Support::QueueTest {
protected:
    ProtectedHeaderTest() { usePPD(printMode(kNormal + kPrivate)); }

    static std::optional<std::string> headerOf(const std::string &optionString)
    {
        const auto options = std::make_shared<KLPrintOptions>(optionString);
        EXPECT_TRUE(asksForProtection(*options)) << optionString;
        return protectedHeader(options, {7, "anna", "Report"});
    }
    static std::string code(const std::string &code) { return std::string(kCode) + "=" + code; }
};

const std::string kPrivately = "PrintMode=Private ";
const std::string kStoredOnly = "StoreToDocStore=True PrintAsWell=False ";

} // namespace

TEST_F(ProtectedHeaderTest, IsForPrivateJobsAndForThoseToBeStoredOnly)
{
    for (const std::string &protectedJob : {kPrivately, kStoredOnly, kPrivately + kStoredOnly})
        EXPECT_TRUE(asksForProtection(KLPrintOptions(protectedJob)));
    for (const char *open : {"", "StoreToDocStore=True", "PrintAsWell=False", "PrintMode=Hold",
                             "com.kalmira.pde.print-mode-ovm.privatePassword=1"})
        EXPECT_FALSE(asksForProtection(KLPrintOptions(open))) << open;
}

TEST_F(ProtectedHeaderTest, HoldsTheLineThatProtects)
{
    EXPECT_THAT(headerOf(kPrivately + code("1234")),
                Optional(HasSubstr("\r\n@PJL COMMENT DSSC PRINT PRIVPRINT=1234\r\n")));
    EXPECT_THAT(headerOf(kPrivately + code("")),
                Optional(HasSubstr("\r\n@PJL COMMENT DSSC PRINT PRIVPRINT=\r\n")));
    EXPECT_THAT(headerOf(kPrivately), Optional(HasSubstr("PRINTMODE=PRIVATE\r\n")));
    EXPECT_THAT(headerOf(kStoredOnly), Optional(HasSubstr("\r\n" + kBoxLine)));
    EXPECT_THAT(headerOf(kPrivately + kStoredOnly), Optional(HasSubstr("PRINTMODE=PRIVATE\r\n")));
}

TEST_F(ProtectedHeaderTest, ALineOfThePPDsForAnotherCodeIsNotTheJobs)
{
    usePPD("*JCLOpenUI *Own: PickOne\n*OrderDependency: 20 JCLSetup *Own\n*DefaultOwn: On\n"
           "*Own On: \"@PJL COMMENT DSSC PRINT PRIVPRINT=0<0D0A>\"\n*JCLCloseUI: *Own\n");
    EXPECT_EQ(std::nullopt, headerOf(kPrivately + code("1234")));
    EXPECT_EQ(std::nullopt, headerOf(kStoredOnly));
}

// Before it the printer reads no PJL.
TEST_F(ProtectedHeaderTest, ALineBeforeTheMarkerProtectsNothing)
{
    folder.write("queue.ppd", "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n"
                              "*JCLBegin: \"" +
                                  kBoxLine.substr(0, kBoxLine.size() - 2) +
                                  "<0D0A1B>%-12345X@PJL<0A>\"\n"
                                  "*JCLToPSInterpreter: \"@PJL ENTER LANGUAGE = PS<0A>\"\n");
    EXPECT_EQ(std::nullopt, headerOf(kStoredOnly));
}

TEST_F(ProtectedHeaderTest, PrivateJobWithoutACodeNeedsThePPDsChoice)
{
    usePPD(printMode(kNormal));
    EXPECT_EQ(std::nullopt, headerOf(kPrivately));
    // A marker that belongs to no such option is the PPD's word for every job.
    usePPD("*JCLOpenUI *Mode: PickOne\n*OrderDependency: 20 JCLSetup *Mode\n*DefaultMode: On\n"
           "*Mode On: \"@PJL COMMENT DSSC PRINT PRINTMODE=PRIVATE<0D0A>\"\n*JCLCloseUI: *Mode\n");
    EXPECT_NE(std::nullopt, headerOf(kPrivately));
}

TEST_F(ProtectedHeaderTest, IsNoneWhereThereIsNoFileToKeepItIn)
{
    rlimit before = {};
    getrlimit(RLIMIT_NOFILE, &before);
    const auto options = std::make_shared<KLPrintOptions>(kPrivately);
    for (const rlim_t files : {rlim_t{0}, rlim_t{1}}) {
        const int lowest = dup(0); // the number that the next file would get
        close(lowest);
        const rlimit limit = {static_cast<rlim_t>(lowest) + files, before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &limit);
        const auto header = protectedHeader(options, {7, "anna", "Report"});
        setrlimit(RLIMIT_NOFILE, &before);
        EXPECT_EQ(std::nullopt, header) << files;
    }
    EXPECT_NE(std::nullopt, protectedHeader(options, {7, "anna", "Report"}));
}
