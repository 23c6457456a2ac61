#include "EndToEndTest.h"

#include <numeric>
#include <regex>
#include <tuple>

using Support::PJLJob;
using testing::Combine;
using testing::Values;

namespace {

/// What the copies line of the header says; 0 when there is none.
int copiesOfHeader(const PJLJob &job)
{
    std::smatch match;
    return std::regex_search(job.header, match, std::regex("@PJL SET COPIES = (\\d+)\r\n"))
               ? std::stoi(match[1])
               : 0;
}

/// How many sides the printer makes: the page data's own number of copies stands in place of the
/// job's.
int deliveredSides(const PJLJob &job)
{
    const auto sides = copiesOfEachSide(job.body);
    return std::accumulate(sides.begin(), sides.end(), 0, [&](int sum, int copies) {
        return sum + (copies == 0 ? copiesOfHeader(job) : copies);
    });
}

/// Document, copies, collation, duplex.
using Wish = std::tuple<const char *, int, const char *, const char *>;

class CopiesTest : public EndToEndTest, public testing::WithParamInterface<Wish> {};

TEST_P(CopiesTest, PrinterDeliversEveryPageOnceForEachCopy)
{
    const auto &[name, copies, collate, duplex] = GetParam();
    const PJLJob job = print(kQueue, document(name),
                             {"copies=" + std::to_string(copies), std::string("Collate=") + collate,
                              std::string("Duplex=") + duplex});
    EXPECT_EQ(kPages, copiesOfEachSide(job.body).size());
    EXPECT_EQ(copies, copiesOfHeader(job));
    EXPECT_EQ(static_cast<int>(kPages) * copies, deliveredSides(job));
}

TEST_P(CopiesTest, CopiesOfABareIPPClientAreDeliveredLikewise)
{
    const auto &[name, copies, collate, duplex] = GetParam();
    const bool isCollated = collate == std::string("True");
    const bool isTwoSided = duplex != std::string("None");
    const PJLJob job = printOverIPP(
        kQueue, document(name),
        {"integer copies " + std::to_string(copies),
         std::string("keyword multiple-document-handling separate-documents-") +
             (isCollated ? "collated-copies" : "uncollated-copies"),
         std::string("keyword sides ") + (isTwoSided ? "two-sided-long-edge" : "one-sided")});
    EXPECT_EQ(kPages, copiesOfEachSide(job.body).size());
    EXPECT_EQ(copies, copiesOfHeader(job));
    EXPECT_EQ(static_cast<int>(kPages) * copies, deliveredSides(job));
    EXPECT_THAT(headerLines(job),
                testing::IsSupersetOf({dssc(isCollated ? "COLLATE=ON" : "COLLATE=OFF"),
                                       dssc(isTwoSided ? "DUPLEX=LONGEDGE" : "DUPLEX=OFF")}));
}

INSTANTIATE_TEST_SUITE_P(Wishes, CopiesTest,
                         Combine(Values("sample.ps", "sample.pdf"), Values(1, 3),
                                 Values("True", "False"), Values("None", "DuplexNoTumble")));

} // namespace
