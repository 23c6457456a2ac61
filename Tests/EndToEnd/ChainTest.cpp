#include "EndToEndTest.h"

using Support::PJLJob;

namespace {

/// The sample queue names one program that is filter and companion, another queue names the two.
class ChainTest : public EndToEndTest, public testing::WithParamInterface<const char *> {
protected:
    /// The header but for the lines that name the job and its number.
    static std::vector<std::string> settings(const PJLJob &job)
    {
        auto lines = headerLines(job);
        std::erase_if(lines, [](const std::string &line) {
            return line.starts_with("@PJL JOB NAME") || line.starts_with("@PJL RDYMSG");
        });
        return lines;
    }
};

TEST_P(ChainTest, FilterAndCompanionByThemselvesPrintTheSame)
{
    const std::vector<std::string> options = {
        "copies=3", "Collate=True", "KLDepartmentCode=Custom.0815", "KLPrivatePIN=Custom.0471"};
    const PJLJob inOne = print(kQueue, document(GetParam()), options);
    const PJLJob inARow = print(kPairQueue, document(GetParam()), options);
    EXPECT_THAT(settings(inOne),
                testing::IsSupersetOf({dssc("PRIVPRINT=0471"), dssc("ACCESSCODE=0815")}));
    EXPECT_EQ(settings(inARow), settings(inOne));
    EXPECT_EQ(copiesOfEachSide(inARow.body), copiesOfEachSide(inOne.body));
    EXPECT_EQ(kPages, copiesOfEachSide(inOne.body).size());
}

INSTANTIATE_TEST_SUITE_P(Documents, ChainTest,
                         testing::Values("sample.ps", "sample.pdf", "sample.txt"));

} // namespace
