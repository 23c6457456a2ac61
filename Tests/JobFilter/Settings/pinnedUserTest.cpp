#include "pinnedUser.h"

#include "CapturedErrors.h"
#include "KLPrintOptions.h"
#include "QueueTest.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr char kDirectory[] = "UseOpenDirectoryForAuthentication";
constexpr char kIgnored[] = "DEBUG: The queue pins who prints, the job's option is ignored: ";

/// The option by which the queue asks for the directory.
std::string directoryOption(const std::string &defaultChoice)
{
    return std::string("*JCLOpenUI *") + kDirectory + ": Boolean\n*OrderDependency: 30 JCLSetup *" +
           kDirectory + "\n*Default" + kDirectory + ": " + defaultChoice + "\n*" + kDirectory +
           " True: \"\"\n*" + kDirectory + " False: \"\"\n*JCLCloseUI: *" + kDirectory + "\n";
}

class PinnedUserTest : public Support::QueueTest {
protected:
    void usePinnedPPD(const std::string &directoryDefault)
    {
        usePPD("*KLPinnedUser: True\n" + directoryOption(directoryDefault));
    }
};

} // namespace

TEST_F(PinnedUserTest, TheJobsOptionsDoNotSayWhoPrints)
{
    usePinnedPPD("False");
    const Support::CapturedErrors errors;
    const KLPrintOptions options("com.kalmira.username=otto com.kalmira.domainname=EVIL "
                                 "UseOpenDirectoryForAuthentication=true other=x");
    EXPECT_EQ(std::nullopt, options.valueForKey("com.kalmira.username"));
    EXPECT_EQ(std::nullopt, options.valueForKey("com.kalmira.domainname"));
    EXPECT_EQ(KLValue("False"), options.valueForKey(kDirectory));
    EXPECT_EQ(KLValue("x"), options.valueForKey("other"));
}

TEST_F(PinnedUserTest, WhetherTheDirectoryIsAskedIsTheQueuesDefault)
{
    const Support::CapturedErrors errors;
    for (const std::string queues : {"True", "False"}) {
        usePinnedPPD(queues);
        for (const std::string jobs : {"True", "true", "False", "no", ""})
            for (const std::string name :
                 {"UseOpenDirectoryForAuthentication", "useopendirectoryforauthentication"})
                EXPECT_EQ(KLValue(queues),
                          KLPrintOptions(name + "=" + jobs).valueForKey(kDirectory))
                    << name << jobs;
        EXPECT_EQ(KLValue(queues),
                  KLPrintOptions("noUseOpenDirectoryForAuthentication").valueForKey(kDirectory));
    }
    // Where the PPD has no such option nothing can ask.
    usePPD("*KLPinnedUser: True\n");
    EXPECT_EQ(std::nullopt,
              KLPrintOptions(std::string(kDirectory) + "=True").valueForKey(kDirectory));
}

TEST_F(PinnedUserTest, TypedNamesAreNoWayAround)
{
    usePinnedPPD("True");
    const Support::CapturedErrors errors;
    for (const std::string suffix : {"..n.", "..b."}) {
        const KLPrintOptions options("com.kalmira.username" + suffix + "=1 com.kalmira.domainname" +
                                     suffix + "=1 " + kDirectory + suffix + "=0");
        EXPECT_EQ(std::nullopt, options.valueForKey("com.kalmira.username"));
        EXPECT_EQ(std::nullopt, options.valueForKey("com.kalmira.domainname"));
        EXPECT_EQ(KLValue("True"), options.valueForKey(kDirectory));
    }
}

TEST_F(PinnedUserTest, EachIgnoredOptionIsSaidWithoutItsValue)
{
    usePinnedPPD("False");
    Support::CapturedErrors errors;
    const KLPrintOptions options("com.kalmira.username=otto com.kalmira.domainname..n.=4711 "
                                 "USEOPENDIRECTORYFORAUTHENTICATION=geheim other=x");
    EXPECT_EQ(std::string(kIgnored) + "com.kalmira.domainname\n" + kIgnored +
                  "com.kalmira.username\n" + kIgnored + "UseOpenDirectoryForAuthentication\n",
              errors.text());
}

TEST_F(PinnedUserTest, OnlyTheLinePins)
{
    Support::CapturedErrors errors;
    for (const std::string line : {"", "*KLPinnedUser: False\n", "*KLPinnedUser: false\n"}) {
        usePPD(line + directoryOption("False"));
        const KLPrintOptions options("com.kalmira.username=otto com.kalmira.domainname=EXAMPLE "
                                     "UseOpenDirectoryForAuthentication=true");
        EXPECT_EQ(KLValue("otto"), options.valueForKey("com.kalmira.username")) << line;
        EXPECT_EQ(KLValue("EXAMPLE"), options.valueForKey("com.kalmira.domainname")) << line;
        EXPECT_EQ(KLValue("True"), options.valueForKey(kDirectory)) << line;
    }
    EXPECT_EQ("", errors.text());
    // Misspelt it is safe.
    for (const std::string line :
         {"*KLPinnedUser: \"True\"\n", "*KLPinnedUser: true\n", "*KLPinnedUser: Yes\n"}) {
        usePPD(line);
        EXPECT_EQ(std::nullopt,
                  KLPrintOptions("com.kalmira.username=otto").valueForKey("com.kalmira.username"))
            << line;
    }
}

TEST_F(PinnedUserTest, TheQueueSaysWhetherItDoes)
{
    const auto pins = [this](std::string_view line) {
        usePPD(line);
        return pinsUser(KLPrintOptions("").ppd());
    };
    EXPECT_TRUE(pins("*KLPinnedUser: True\n"));
    EXPECT_FALSE(pins("*KLPinnedUser: False\n"));
    EXPECT_FALSE(pins(""));
}
