#pragma once

#include "Environment.h"
#include "MinimalPPD.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string_view>

namespace Support {

/// A test with a queue: the environment's PPD names the small PPD of minimalPPD().
class QueueTest : public testing::Test {
protected:
    /// Gives the queue's PPD further lines. It counts for the stores that are made from then on.
    void usePPD(std::string_view extraLines) { folder.write("queue.ppd", minimalPPD(extraLines)); }

    TemporaryFolder folder;

private:
    ScopedEnvironment _ppd{"PPD", folder.write("queue.ppd", minimalPPD())};
};

} // namespace Support
