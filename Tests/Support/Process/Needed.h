#pragma once

#include <gtest/gtest.h>

namespace Support {

/// @param name  of a program, to be looked up in PATH
bool isProgramThere(const char *name);

/// @param file  of a shared library, "libfmt.so.9", which the loader looks up
bool isLibraryThere(const char *file);

} // namespace Support

// Stand first in a test, or in its SetUp(), for what is in a package that not every system has: the
// test says which, and ends as skipped.

/// @param packages  the names of those that bring it, "chromium and chromium-driver"
#define KL_NEEDS_PROGRAM(name, packages)                                                           \
    if (!Support::isProgramThere(name))                                                            \
    GTEST_SKIP() << "no " << (name) << " here: " << (packages) << " would bring it"

/// @param packages  as above
#define KL_NEEDS_LIBRARY(file, packages)                                                           \
    if (!Support::isLibraryThere(file))                                                            \
    GTEST_SKIP() << "no " << (file) << " here: " << (packages) << " would bring it"
