#pragma once

#include <string>

// The documents of several benchmarks, and where they lie.

/// A folder that is removed with everything in it.
class Folder {
public:
    /// @throws std::runtime_error when it cannot be made
    Folder();
    ~Folder();
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;

    std::string file(const std::string &name) const { return _path + "/" + name; }

private:
    std::string _path;
};

/// Runs a command.
/// @throws std::runtime_error when it fails
void shell(const std::string &command);

/// A PDF of pages that are pictures, as a scanner makes them.
/// @param size     of the picture, in dots
/// @param picture  what ImageMagick draws
/// @return its path
std::string makeScan(const Folder &folder, const std::string &name, int pages,
                     const std::string &size, const std::string &picture);

/// Such a one of 44 pages and 241 MB.
std::string makeLargeScan(const Folder &folder);
