#include "OpenDescriptors.h"

#include "Descriptor.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

using namespace Platform;

namespace {

bool isOpen(int number)
{
    return fcntl(number, F_GETFD) >= 0;
}

/// Far above the others, so that there is a gap.
constexpr int kFar = 200;

class OpenDescriptorsTest : public testing::Test {
protected:
    OpenDescriptorsTest()
    {
        dup2(_null.number(), kFar);
        dup2(_null.number(), kFar + 1);
    }
    ~OpenDescriptorsTest() override
    {
        close(kFar);
        close(kFar + 1);
    }

    /// @return what `holds` says in a child, whose descriptors the test can do without
    static bool inChild(const std::function<bool()> &holds)
    {
        const pid_t child = fork();
        if (child == 0)
            _exit(holds() ? 0 : 1);
        int status = -1;
        EXPECT_EQ(child, waitpid(child, &status, 0));
        return status == 0;
    }

    int near() const { return _null.number(); }

private:
    Descriptor _null{open("/dev/null", O_RDWR)};
};

} // namespace

TEST_F(OpenDescriptorsTest, AreClosedFromTheFirstOnAcrossGaps)
{
    EXPECT_TRUE(inChild([this] {
        return closeDescriptorsFrom(near()) && !isOpen(near()) && !isOpen(kFar) &&
               !isOpen(kFar + 1);
    }));
}

TEST_F(OpenDescriptorsTest, BelowTheFirstStayOpen)
{
    EXPECT_TRUE(inChild([this] {
        return closeDescriptorsFrom(kFar + 1) && isOpen(STDERR_FILENO) && isOpen(near()) &&
               isOpen(kFar) && !isOpen(kFar + 1);
    }));
}

TEST_F(OpenDescriptorsTest, AreAllClosedFromZeroOn)
{
    EXPECT_TRUE(inChild([] {
        if (!closeDescriptorsFrom(0))
            return false;
        for (int number = 0; number < 1024; ++number)
            if (isOpen(number))
                return false;
        return true;
    }));
}

TEST_F(OpenDescriptorsTest, ThatExecClosesAreOpenUntilThen)
{
    EXPECT_TRUE(inChild([] {
        return closeDescriptorsFromOnExec(kFar) && fcntl(kFar, F_GETFD) == FD_CLOEXEC &&
               fcntl(kFar + 1, F_GETFD) == FD_CLOEXEC && fcntl(STDERR_FILENO, F_GETFD) == 0;
    }));
}
