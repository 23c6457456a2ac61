#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Support {

/// A new folder of the test's own under the temporary directory, removed with all that is in it.
/// What a killed test program left there is removed by the next one.
class TemporaryFolder {
public:
    /// @throws std::runtime_error when the folder cannot be made
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    const std::string &path() const { return _path; }
    /// The path of a file of that name in the folder; nothing is made.
    std::string file(std::string_view name) const;
    // These throw std::runtime_error when they cannot.

    /// Makes or replaces the file. @return its path
    std::string write(std::string_view name, std::string_view bytes) const;
    /// Makes an executable shell script out of the lines that follow "#!/bin/sh". @return its path
    std::string writeScript(std::string_view name, std::string_view lines) const;
    /// The names of all entries, sorted.
    std::vector<std::string> names() const;

private:
    std::string _path;
};

/// @throws std::runtime_error when the file cannot be read
std::string readFile(const std::string &path);
/// A file that a package brings, for the tests that need the real one.
/// @return its path
/// @throws std::runtime_error, which names the package, when the file cannot be read
std::string packagedFile(const std::string &path, const std::string &package);
/// Makes or replaces a file.
/// @throws std::runtime_error when it cannot
void writeFile(const std::string &path, std::string_view bytes);

} // namespace Support
