#pragma once

#include "PJLChecker.h"
#include "PrivateScheduler.h"
#include "RecordingPrinter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

/// A user prints through a real scheduler on a printer that records what it gets.
///
/// Scheduler, printer and the documents to print are made once for all tests of the program.
class EndToEndTest : public testing::Test {
protected:
    /// A request about a job.
    struct IPPRequest {
        std::string operation;                        ///< "Print-Job"
        std::vector<std::string> operationAttributes; ///< "name job-name fine"
        std::vector<std::string> jobAttributes = {};
        bool withDocument = true;
    };

    /// The sample queue.
    static constexpr char kQueue[] = "office";
    /// The sample queue, but the filter and its companion are named by themselves.
    static constexpr char kPairQueue[] = "pair";
    /// The same; what enters jobfilter is kept as well.
    static constexpr char kRecordedQueue[] = "recorded";
    /// The sample queue with a toolkit that leaves pages alone and notes how it was called.
    static constexpr char kToolkitQueue[] = "toolkit";
    /// The sample queue with a toolkit that fails and complains about a watermark's font and text.
    static constexpr char kBrokenToolkitQueue[] = "broken";
    /// The sample queue with a toolkit that takes for ever.
    static constexpr char kSlowToolkitQueue[] = "slow";
    /// The sample queue with the name of a toolkit bundle that does not exist.
    static constexpr char kNoToolkitQueue[] = "bare";
    /// The same queue as kToolkitQueue, for tests that change its defaults.
    static constexpr char kDefaultsQueue[] = "defaults";
    /// The sample queue, but nothing in its PPD enters PostScript.
    static constexpr char kHeadlessQueue[] = "headless";
    /// The sample queue of the same printer taking PDF.
    static constexpr char kPDFQueue[] = "pdf";

    /// The pages of the documents but for the picture, which has one.
    static constexpr std::size_t kPages = 5;

    static Support::PrivateScheduler &scheduler();
    static Support::RecordingPrinter &printer();
    /// The path of "sample.ps", "sample.pdf", "sample.png", "sample.txt", "long.ps" or "srgb.icc";
    /// all of them can be read by the scheduler's jobs.
    static std::string document(std::string_view name);

    /// Whether the scheduler hands on of a value only what stands before its first blank, as CUPS
    /// 2.4.17 to 2.4.19 and mends brought back from them do.
    static bool valuesEndAtTheirFirstBlank();
    /// Whether a job went through the chain of cups-filters 2, which makes PDF of every document on
    /// the way to PostScript.
    static bool wasPDFOnTheWay(int job);

    void SetUp() override;

    /// Prints with lp(1) on a queue and waits until the printer has the job.
    ///
    /// Fails the test unless the job was completed and the printer got exactly one job, and one
    /// that is right to the last line.
    /// @return the job's parts; empty ones when it never came out
    static Support::PJLJob print(const std::string &queue, const std::string &path,
                                 const std::vector<std::string> &options = {});
    /// The same as a bare IPP request, of a client that knows no PPD.
    static Support::PJLJob printOverIPP(const std::string &queue, const std::string &path,
                                        const std::vector<std::string> &ippAttributes = {});
    /// Sends such a request, of the user "anna" with the title "bare". @return the job's number
    static int submitOverIPP(const std::string &queue, const std::string &path,
                             const std::vector<std::string> &ippAttributes);

    /// Sends requests in the language of ipptool(1), each with what every one must have: character
    /// set, language, queue and the user "anna". @return the number of the job that they made
    static int submitRequests(const std::string &queue, const std::string &path,
                              const std::vector<IPPRequest> &requests);

    /// Waits for a job that was submitted; fails the test on the same conditions as print().
    static Support::PJLJob finishedJob(int job);

    /// What the last job on kRecordedQueue was when it entered jobfilter.
    static std::string recordedBody();
    /// The arguments of every toolkit call of the last job on kToolkitQueue, one a line.
    static std::vector<std::string> toolkitArguments();

    /// Names of files that jobfilter and its toolkit have left behind.
    static std::vector<std::string> strayFiles();
};

/// Stands first in a test that sends values with blanks: what becomes of them is the scheduler's
/// doing where it cuts them, and the test says so and ends. Paper as a client queue sends it has
/// blanks too.
#define KL_NEEDS_VALUES_WITH_BLANKS()                                                              \
    if (valuesEndAtTheirFirstBlank())                                                              \
    GTEST_SKIP() << "this scheduler cuts values at their first blank"

/// The sides that a PostScript printer makes of page data, each with the number of copies that the
/// page data asks for; 0 where they leave it to the job.
std::vector<int> copiesOfEachSide(const std::string &pageData);

/// The lines of a header without their line ends.
std::vector<std::string> headerLines(const Support::PJLJob &job);

/// A DSSC line of the header, without its line end.
std::string dssc(const std::string &setting);
