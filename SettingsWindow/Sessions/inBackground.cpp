#include "inBackground.h"

#include <cstdlib>

namespace {

constexpr int kThreads = 64;

/// Lives until the process ends: to take it down would be to wait for its threads.
QThreadPool &lastingPool()
{
    auto *pool = new QThreadPool;
    pool->setMaxThreadCount(kThreads);
    return *pool;
}

} // namespace

QThreadPool &questionThreads()
{
    static QThreadPool &pool = lastingPool();
    return pool;
}

QThreadPool &deedThreads()
{
    static QThreadPool &pool = lastingPool();
    return pool;
}

void endProgram(int status)
{
    deedThreads().waitForDone();
    if (questionThreads().waitForDone(0))
        std::exit(status);
    std::_Exit(status); // what libraries tidy up at the end is still in use
}
