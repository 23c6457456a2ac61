#include "markedChoices.h"

#include "ppdLibrary.h"

#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

/// A PPD of libcups' records, put together by hand.
class markedChoicesTest : public testing::Test {
protected:
    markedChoicesTest()
    {
        std::strcpy(option.keyword, "Stamps");
        for (std::size_t number = 0; number < 3; ++number)
            std::strcpy(choices[number].choice, std::string(1, "ABC"[number]).c_str());
        option.choices = choices;
        option.num_choices = 3;
        group.options = &option;
        group.num_options = 1;
        ppd.groups = &group;
        ppd.num_groups = 1;
    }

    ppd_choice_t choices[3] = {};
    ppd_option_t option = {};
    ppd_group_t group = {};
    ppd_file_t ppd = {};
};

} // namespace

TEST_F(markedChoicesTest, FindsNothingWhereNothingIsMarked)
{
    EXPECT_THAT(markedChoices(ppd), IsEmpty());
    EXPECT_THAT(markedChoices(ppd_file_t()), IsEmpty());
}

TEST_F(markedChoicesTest, DoesNotStopAtTheFirstMarkedChoice)
{
    choices[0].marked = 1;
    choices[2].marked = 1;
    EXPECT_THAT(markedChoices(ppd), ElementsAre(Pair("Stamps", "A"), Pair("Stamps", "C")));
}

TEST_F(markedChoicesTest, DoesNotLookIntoSubgroups)
{
    choices[0].marked = 1;
    ppd_group_t outer = {};
    outer.subgroups = &group;
    outer.num_subgroups = 1;
    ppd.groups = &outer;
    EXPECT_THAT(markedChoices(ppd), IsEmpty());
}
