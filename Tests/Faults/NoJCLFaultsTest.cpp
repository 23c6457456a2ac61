// What becomes of jobfilter-nojcl when any one of its calls fails.

#include "FaultTest.h"

#include <csignal>
#include <gmock/gmock.h>

using Support::FaultedRun;
using testing::StartsWith;

namespace {

std::string job()
{
    std::string pages = "%!PS\n";
    while (pages.size() < 300000)
        pages += std::to_string(pages.size()) + " neither marker nor line that matters\n";
    return pages;
}

class NoJCLFaultsTest : public FaultTest {
protected:
    Support::ProgramCall callWithInput() const
    {
        return {.arguments = {KL_NOJCL, "7", "anna", "Report", "1", ""},
                .environment = {{"TMPDIR", temporaries}},
                .input = "\033%-12345X@PJL JOB\n@PJL ENTER LANGUAGE = POSTSCRIPT\n" + pages};
    }
    Support::ProgramCall callWithFile() const
    {
        auto call = callWithInput();
        call.arguments.push_back(folder.write("job", call.input));
        call.input.clear();
        return call;
    }

    /// Complete, or failed with a line and at most less.
    void expectAllOrALine(const NamedFault &fault, const FaultedRun &run) const
    {
        EXPECT_TRUE(temporaryFiles().empty());
        if (run.result.exitStatus == 0) {
            EXPECT_EQ(pages, run.result.output);
            EXPECT_EQ("", run.result.errors);
            return;
        }
        EXPECT_EQ(1, run.result.exitStatus);
        EXPECT_TRUE(run.struck);
        EXPECT_THAT(pages, StartsWith(run.result.output));
        EXPECT_EQ(fault.name == kNoMemory.name ? "CRIT: Out of memory\n"
                  : fault.fault.systemCalls == Support::SystemCalls::kWrite
                      ? "CRIT: Unable to write print data\n"
                      : "CRIT: Unable to read from input\n",
                  run.result.errors);
    }

    const std::string pages = job();
};

TEST_F(NoJCLFaultsTest, AnySystemCallThatFails)
{
    for (const NamedFault &fault : faultsOfSystemCalls()) {
        const auto check = [&](const FaultedRun &run) { expectAllOrALine(fault, run); };
        strikeEveryCall(
            fault, [this] { return callWithInput(); }, check);
        strikeEveryCall(
            fault, [this] { return callWithFile(); }, check);
    }
}

TEST_F(NoJCLFaultsTest, AHalvedReadOrWriteChangesNothing)
{
    for (const auto &calls : {Support::SystemCalls::kRead, Support::SystemCalls::kWrite}) {
        const auto check = [&](const FaultedRun &run) { EXPECT_EQ(pages, run.result.output); };
        EXPECT_LT(2U, strikeEveryCall(
                          {"half", {Support::Fault::Kind::Halved, calls}},
                          [this] { return callWithInput(); }, check));
    }
}

TEST_F(NoJCLFaultsTest, AnyAllocationThatFails)
{
    const auto check = [&](const FaultedRun &run) { expectAllOrALine(kNoMemory, run); };
    EXPECT_LT(2U, strikeEveryCall(
                      kNoMemory, [this] { return callWithFile(); }, check));
}

TEST_F(NoJCLFaultsTest, ASignalAtAnyTime)
{
    const NamedFault signal = signalAtSystemCalls(SIGTERM);
    EXPECT_LT(9U, strikeEveryCall(
                      signal, [this] { return callWithFile(); },
                      [&](const FaultedRun &run) {
                          EXPECT_EQ(run.struck ? SIGTERM : 0, run.result.signal);
                          EXPECT_THAT(pages, StartsWith(run.result.output));
                          EXPECT_EQ("", run.result.errors);
                      }));
}

} // namespace
