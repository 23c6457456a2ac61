// The program that opens documents, without a window.

#include "PreviewMessages.h"
#include "Program.h"

#include <gtest/gtest.h>

namespace {

Support::ProgramResult answersTo(const std::string &requests)
{
    return Support::runProgram({.arguments = {KL_PREVIEW}, .input = requests});
}

std::string requestOf(const PreviewRequest &request)
{
    return bytesOf(request).toStdString();
}

TEST(PreviewProgramTest, EndsWhenTheWindowSaysNoMore)
{
    const auto result = answersTo("");
    EXPECT_EQ(0, result.exitStatus);
    EXPECT_EQ("", result.output);
}

TEST(PreviewProgramTest, RefusesRequestsThatAreNone)
{
    EXPECT_EQ(1, answersTo("GET / HTTP/1.0\r\n\r\n").exitStatus);
}

TEST(PreviewProgramTest, DrawsNothingOfNoDocument)
{
    const auto result = answersTo(requestOf(PreviewRequests::Draw{0, {10, 10}}));
    EXPECT_EQ(bytesOf(PreviewAnswers::Failed{Failure::NotDrawn}).toStdString(), result.output);
    EXPECT_EQ(0, result.exitStatus);
}

} // namespace
