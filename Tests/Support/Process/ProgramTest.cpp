#include "Program.h"

#include <gtest/gtest.h>

TEST(Program, ThatIsNotThereIsNamed)
{
    const auto result = Support::runProgram({.arguments = {"no-such-program"}});
    EXPECT_EQ(127, result.exitStatus);
    EXPECT_EQ("no-such-program: No such file or directory\n", result.errors);
}
