#include "AnsweringChild.h"

#include "Descriptor.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <system_error>
#include <unistd.h>

using Platform::AnsweringChild;

namespace {

/// Answers each line with that line and the child's process.
void echo(std::FILE *questions, std::FILE *answers)
{
    std::array<char, 100> line = {};
    while (std::fgets(line.data(), line.size(), questions) != nullptr) {
        std::fprintf(answers, "%d %s", getpid(), line.data());
        std::fflush(answers);
    }
}

/// The child's answer, without its line feed; empty when there is none.
std::string answerOf(const AnsweringChild &child, const std::string &question)
{
    std::array<char, 100> line = {};
    std::fprintf(child.questions(), "%s\n", question.c_str());
    std::fflush(child.questions());
    if (std::fgets(line.data(), line.size(), child.answers()) == nullptr)
        return {};
    const std::string answer = line.data();
    return answer.substr(0, answer.find('\n'));
}

class AnsweringChildTest : public testing::Test {
protected:
    AnsweringChildTest() { std::signal(SIGPIPE, SIG_IGN); }
};

} // namespace

TEST_F(AnsweringChildTest, QuestionsAreAnsweredOneAfterTheOther)
{
    const AnsweringChild child(&echo);
    const std::string first = answerOf(child, "one");
    EXPECT_TRUE(first.ends_with(" one")) << first;
    EXPECT_NE(std::to_string(getpid()), first.substr(0, first.find(' ')));
    EXPECT_EQ(first.substr(0, first.find(' ')) + " two", answerOf(child, "two"));
}

TEST_F(AnsweringChildTest, TheChildIsGoneWithTheObject)
{
    pid_t process = 0;
    {
        const AnsweringChild child(&echo);
        process = std::stoi(answerOf(child, "who"));
        EXPECT_EQ(0, kill(process, 0));
    }
    EXPECT_EQ(-1, kill(process, 0));
    EXPECT_EQ(ESRCH, errno);
}

TEST_F(AnsweringChildTest, AChildThatCrashesDoesNotAnswer)
{
    const AnsweringChild child([](std::FILE *, std::FILE *) { raise(SIGKILL); });
    EXPECT_EQ("", answerOf(child, "who"));
}

TEST_F(AnsweringChildTest, WorkThatThrowsDoesNotAnswer)
{
    const AnsweringChild child(
        [](std::FILE *, std::FILE *) { throw std::runtime_error("no answer"); });
    EXPECT_EQ("", answerOf(child, "who"));
}

TEST_F(AnsweringChildTest, TheChildHasNoOpenFileBesideItsStreams)
{
    const Platform::Descriptor file(open("/dev/null", O_RDONLY));
    const AnsweringChild child([&](std::FILE *, std::FILE *answers) {
        for (int number = 0; number < 100; ++number) {
            if (fcntl(number, F_GETFD) >= 0)
                std::fprintf(answers, "%d ", number);
        }
    });
    EXPECT_EQ("0 1 2 ", answerOf(child, "which"));
}

#ifndef KL_SANITIZED // who need descriptors to look at an exception
TEST_F(AnsweringChildTest, WithoutDescriptorsThereIsNoChild)
{
    const auto runWithoutRoom = [] {
        const Platform::Descriptor next(dup(STDERR_FILENO));
        const rlimit limit = {static_cast<rlim_t>(next.number()) + 3,
                              static_cast<rlim_t>(next.number()) + 3};
        setrlimit(RLIMIT_NOFILE, &limit);
        try {
            const AnsweringChild child(&echo);
        } catch (const std::system_error &error) {
            _exit(error.code().value());
        }
        _exit(0);
    };
    EXPECT_EXIT(runWithoutRoom(), testing::ExitedWithCode(EMFILE), "");
}
#endif
