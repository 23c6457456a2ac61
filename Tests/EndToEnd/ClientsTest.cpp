#include "EndToEndTest.h"

#include "Needed.h"
#include "Waiting.h"

#include <set>
#include <stdexcept>
#include <unistd.h>

using Support::lpOption;
using testing::AllOf;
using testing::Contains;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

namespace {

/// Settings on the ways that people's programs have for them: a print dialog, a browser, queues of
/// other machines in front of a shared one.
class ClientsTest : public EndToEndTest {
protected:
    /// Prints from a real print dialog in which these fields ("Label=text") are filled in.
    static Support::PJLJob printFromDialog(const std::string &queue,
                                           const std::vector<std::string> &fields)
    {
        // A session and a screen of its own.
        std::vector<std::string> call = {
            "dbus-run-session", "--", "xvfb-run", "-a", KL_CLIENT_PROGRAMS "/print-dialog", queue};
        call.insert(call.end(), fields.begin(), fields.end());
        scheduler().run(call);
        return finishedJob(scheduler().latestJob(queue));
    }

    /// Sets defaults of a queue ("Option=text") on the scheduler's web page, in a real browser.
    static void setDefaultsInBrowser(const std::string &queue,
                                     const std::vector<std::string> &values)
    {
        std::vector<std::string> call = {KL_CLIENT_PROGRAMS "/set-default-options",
                                         scheduler().webPage(queue)};
        call.insert(call.end(), values.begin(), values.end());
        scheduler().run(call);
    }

    /// What another machine has for a shared queue: a queue in front of it, of the model "raw" or
    /// "everywhere". @return its name
    static std::string clientQueue(const std::string &model, const std::string &sharedQueue)
    {
        const std::string name = model + "-" + sharedQueue;
        if (!queues.insert(name).second)
            return name;
        scheduler().run(
            {"lpadmin", "-p", name, "-E", "-v", scheduler().queueURI(sharedQueue), "-m", model});
        // The scheduler makes the PPD of an everywhere queue after it has answered.
        const auto isThere = [&] {
            return model == "raw" ||
                   scheduler().run({"lpoptions", "-p", name}).find(" IPP Everywhere") !=
                       std::string::npos;
        };
        if (!Support::comesTrue(isThere))
            throw std::runtime_error(name + " is not made:\n" + scheduler().log());
        return name;
    }

    static std::vector<std::string> headerWith(const std::string &queue,
                                               const std::vector<std::string> &options)
    {
        return headerLines(print(queue, document("sample.pdf"), options));
    }

    static void expectEverySettingToComeThrough(const std::string &queue);

private:
    static inline std::set<std::string> queues;
};

void ClientsTest::expectEverySettingToComeThrough(const std::string &queue)
{
    const auto job = print(queue, document("sample.pdf"),
                           {"KLDepartmentCode=Custom.0815", "KLPrivatePIN=Custom.0471",
                            "Staple=UpperLeft", "sides=two-sided-long-edge", "MediaType=Recycled",
                            "InputSlot=Tray2", "media=A3", "TonerSave=True", "copies=2",
                            lpOption("KLWatermarkText", "Custom.Behind " + queue)});
    EXPECT_THAT(
        headerLines(job),
        IsSupersetOf({dssc("ACCESSCODE=0815"), dssc("PRINTMODE=PRIVATE"), dssc("PRIVPRINT=0471"),
                      dssc("STAPLE=UPPERLEFT"), dssc("DUPLEX=LONGEDGE"), dssc("MEDIATYPE=RECYCLED"),
                      dssc("TONERSAVE=ON"), std::string("@PJL SET COPIES = 2")}));
    EXPECT_THAT(job.body, HasSubstr("/MediaPosition 2"));
    EXPECT_THAT(job.end, HasSubstr("JOBENDINFO PAGESIZE=A3\r\n"));
    EXPECT_THAT(toolkitArguments(), Contains("Behind " + queue));

    EXPECT_THAT(headerWith(queue, {"StoreToDocStore=True", "KLBoxNumber=Custom.12"}),
                Contains("@PJL COMMENT DSSC BOX BOXNO=12"));
    EXPECT_THAT(
        headerWith(queue, {"job-password=4711", "job-account-id=0816",
                           "job-accounting-user-id=anna-acct", "finishings=75"}),
        IsSupersetOf({dssc("PRINTMODE=PRIVATE"), dssc("PRIVPRINT=4711"), dssc("ACCESSCODE=0816"),
                      dssc("USERLOGIN=anna-acct"), dssc("PUNCH=TOP")}));
    EXPECT_THAT(headerWith(queue, {"com.kalmira.pde.print-mode-ovm.departmentCode=99",
                                   "print-color-mode=monochrome"}),
                IsSupersetOf({dssc("ACCESSCODE=99"), dssc("COLORMODE=BW")}));
}

TEST_F(ClientsTest, PrintDialogHasFieldsForCodePINAndWatermark)
{
    KL_NEEDS_VALUES_WITH_BLANKS();
    const auto job =
        printFromDialog(kToolkitQueue, {"Department Code=0815", "PIN for Private Printing=0471",
                                        "Watermark=The board's \"eyes\" only"});
    EXPECT_THAT(headerLines(job), IsSupersetOf({dssc("PRINTMODE=PRIVATE"), dssc("PRIVPRINT=0471"),
                                                dssc("ACCESSCODE=0815")}));
    EXPECT_THAT(job.body, AllOf(Not(HasSubstr("0815")), Not(HasSubstr("KLPrivatePIN"))));
    EXPECT_THAT(toolkitArguments(), Contains("The board's \"eyes\" only"));
}

TEST_F(ClientsTest, FieldsOfThePrintDialogThatAreLeftAloneSayNothing)
{
    const auto lines = headerLines(printFromDialog(kQueue, {"Department Code=0815"}));
    EXPECT_THAT(lines, IsSupersetOf({dssc("PRINTMODE=NORMAL"), dssc("ACCESSCODE=0815")}));
    EXPECT_THAT(lines, Not(Contains(HasSubstr("PRIVPRINT="))));
    EXPECT_THAT(lines, Not(Contains(HasSubstr("DSSC BOX"))));
}

TEST_F(ClientsTest, DefaultsThatAreTypedIntoTheSchedulersWebPageCount)
{
    KL_NEEDS_PROGRAM("chromium", "chromium and chromium-driver");
    KL_NEEDS_VALUES_WITH_BLANKS();
    setDefaultsInBrowser(kDefaultsQueue, {"KLDepartmentCode=9999", "KLPrivatePIN=123456",
                                          "KLWatermarkText=House \"copy\", it's ours"});
    EXPECT_THAT(headerWith(kDefaultsQueue, {}),
                IsSupersetOf({dssc("ACCESSCODE=9999"), dssc("PRINTMODE=PRIVATE"),
                              dssc("PRIVPRINT=123456")}));
    EXPECT_THAT(toolkitArguments(), Contains("House \"copy\", it's ours"));
    EXPECT_THAT(headerWith(kDefaultsQueue, {"KLDepartmentCode=None"}),
                Not(Contains(HasSubstr("ACCESSCODE="))));
}

TEST_F(ClientsTest, InstanceOfAQueueIsPrintedOnWithWhatItRemembers)
{
    KL_NEEDS_VALUES_WITH_BLANKS();
    const std::string instance = std::string(kToolkitQueue) + "/confidential";
    scheduler().run({"lpoptions", "-p", instance, "-o", "KLPrivatePIN=Custom.0471", "-o",
                     "KLDepartmentCode=Custom.0815", "-o",
                     lpOption("KLWatermarkText", "Custom.Of an instance")});
    EXPECT_THAT(
        headerWith(instance, {}),
        IsSupersetOf({dssc("PRINTMODE=PRIVATE"), dssc("PRIVPRINT=0471"), dssc("ACCESSCODE=0815")}));
    EXPECT_THAT(toolkitArguments(), Contains("Of an instance"));
    EXPECT_THAT(headerWith(kToolkitQueue, {}), Not(Contains(HasSubstr("PRIVPRINT="))));
    scheduler().run({"lpoptions", "-x", instance});
}

// Queues in front of a shared one. Documentation/printing.md tells what comes through.

TEST_F(ClientsTest, EverySettingComesThroughARawQueue)
{
    KL_NEEDS_VALUES_WITH_BLANKS();
    expectEverySettingToComeThrough(clientQueue("raw", kToolkitQueue));
}

TEST_F(ClientsTest, RawQueuePrintsBlackAndWhiteUnlessColourIsAskedFor)
{
    const std::string queue = clientQueue("raw", kQueue);
    EXPECT_THAT(headerWith(queue, {}), Contains(dssc("COLORMODE=BW")));
    EXPECT_THAT(headerWith(queue, {"print-color-mode=color"}), Contains(dssc("COLORMODE=COLOR")));
    scheduler().run({"lpadmin", "-p", queue, "-o", "print-color-mode-default=color"});
    EXPECT_THAT(headerWith(queue, {}), Contains(dssc("COLORMODE=COLOR")));
    scheduler().run({"lpadmin", "-p", queue, "-R", "print-color-mode-default"});
}

TEST_F(ClientsTest, EverySettingComesThroughAQueueEverywhere)
{
    KL_NEEDS_VALUES_WITH_BLANKS();
    const std::string queue = clientQueue("everywhere", kToolkitQueue);
    expectEverySettingToComeThrough(queue);
    EXPECT_THAT(headerWith(queue, {}), Contains(dssc("COLORMODE=COLOR")));
}

TEST_F(ClientsTest, ChoicesOfTheQueueEverywhereItselfAreLost)
{
    EXPECT_THAT(headerWith(clientQueue("everywhere", kQueue),
                           {"MediaType=StationeryRecycled", "StapleLocation=SinglePortrait",
                            "PunchMedia=DualPortrait"}),
                IsSupersetOf({dssc("MEDIATYPE=PLAIN"), dssc("STAPLE=OFF"), dssc("PUNCH=OFF")}));
}

TEST_F(ClientsTest, QueueEverywhereHasNoFields)
{
    const std::string queue = clientQueue("everywhere", kQueue);
    const std::string list = scheduler().run({"lpoptions", "-p", queue, "-l"});
    EXPECT_THAT(list, HasSubstr("Duplex"));
    EXPECT_THAT(list, Not(HasSubstr("Custom.PASSCODE")));
    EXPECT_THAT(list, Not(HasSubstr("Watermark")));
}

TEST_F(ClientsTest, DefaultsOfTheSharedQueueCountBehindTheQueuesInFrontOfIt)
{
    scheduler().run({"lpadmin", "-p", kQueue, "-o", "KLDepartmentCode=Custom.9999", "-o",
                     "Duplex=DuplexNoTumble"});
    for (const char *model : {"raw", "everywhere"})
        EXPECT_THAT(headerWith(clientQueue(model, kQueue), {}),
                    IsSupersetOf({dssc("ACCESSCODE=9999"), dssc("DUPLEX=LONGEDGE")}));
    scheduler().run({"lpadmin", "-p", kQueue, "-o", "KLDepartmentCode=None", "-o", "Duplex=None"});
}

} // namespace
