#pragma once

#include "TemporaryFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace Support {

/// A test with files that belong to root; skipped, and it says so, for any other user.
class RootsFilesTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (geteuid() != 0)
            GTEST_SKIP() << "only root can make files of root's";
        // Others read what their modes allow.
        std::filesystem::permissions(_folder.path(), std::filesystem::perms(0755));
    }

    /// Makes or replaces a file of root's. @return its path
    std::string write(std::string_view name, std::string_view text, mode_t mode) const
    {
        std::string path = _folder.write(name, text);
        std::filesystem::permissions(path, std::filesystem::perms(mode));
        return path;
    }

    TemporaryFolder _folder;
};

} // namespace Support
