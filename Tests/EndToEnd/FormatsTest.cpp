#include "EndToEndTest.h"

using Support::PJLJob;
using testing::Contains;
using testing::StartsWith;

namespace {

struct Format {
    const char *document;
    std::size_t pages;
};

void PrintTo(const Format &format, std::ostream *stream)
{
    *stream << format.document;
}

class FormatsTest : public EndToEndTest, public testing::WithParamInterface<Format> {
protected:
    static std::string path() { return document(GetParam().document); }

    static void expectThePagesOnce(const PJLJob &job)
    {
        EXPECT_EQ(recordedBody(), job.body);
        EXPECT_EQ(GetParam().pages, copiesOfEachSide(job.body).size());
    }
};

TEST_P(FormatsTest, PrintedWithLpHasOneHeaderAndThePagesAsTheyEnteredTheFilter)
{
    const PJLJob job = print(kRecordedQueue, path());
    expectThePagesOnce(job);
    EXPECT_THAT(headerLines(job), Contains(dssc("PRINTMODE=NORMAL")));
}

TEST_P(FormatsTest, PrintedByABareIPPClientHasOneHeaderAndThePagesAsTheyEnteredTheFilter)
{
    const PJLJob job = printOverIPP(kRecordedQueue, path());
    expectThePagesOnce(job);
    EXPECT_THAT(headerLines(job), Contains(StartsWith("@PJL JOB NAME = \"bare\"")));
    EXPECT_THAT(headerLines(job), Contains(dssc("USERLOGIN=anna")));
}

TEST_P(FormatsTest, ForcingTheChainToWriteJobControlDoublesNoHeader)
{
    expectThePagesOnce(print(kRecordedQueue, path(), {"emit-jcl=true"}));
}

INSTANTIATE_TEST_SUITE_P(Documents, FormatsTest,
                         testing::Values(Format{"sample.ps", 5}, Format{"sample.pdf", 5},
                                         Format{"sample.png", 1}, Format{"sample.txt", 5}),
                         [](const auto &test) {
                             return std::string(test.param.document).replace(6, 1, "_");
                         });

} // namespace
