#include "TemporaryDirectory.h"

#include "Environment.h"

#include <gtest/gtest.h>

TEST(TemporaryDirectoryTest, IsTheEnvironmentsSetting)
{
    const Support::ScopedEnvironment environment("TMPDIR", "/var/spool/cups/tmp/");
    EXPECT_EQ("/var/spool/cups/tmp/", Platform::temporaryDirectory());
}

TEST(TemporaryDirectoryTest, IsTheSystemsWithoutASetting)
{
    for (const auto &none : {std::optional<std::string>(), std::optional<std::string>("")}) {
        const Support::ScopedEnvironment environment("TMPDIR", none);
        EXPECT_EQ("/tmp", Platform::temporaryDirectory());
    }
}
