// What the stream and the walk take from the heap. Counts every allocation of this program made
// with new; the buffers of the stdio streams, which never grow, are not among them.

#include "KLPJLHandler.h"
#include "KLPrintJob.h"
#include "MemoryStreams.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <malloc.h>
#include <new>

namespace {

struct Heap {
    std::size_t live = 0;        ///< bytes
    std::size_t peak = 0;        ///< most bytes live at any time
    std::size_t taken = 0;       ///< bytes of all allocations together
    std::size_t allocations = 0; ///< their number
};

Heap heap;

} // namespace

void *operator new(std::size_t size)
{
    void *memory = std::malloc(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    const std::size_t usable = malloc_usable_size(memory);
    heap.live += usable;
    heap.peak = std::max(heap.peak, heap.live);
    heap.taken += usable;
    ++heap.allocations;
    return memory;
}

// The libraries' own would not go together with what follows.
void *operator new(std::size_t size, const std::nothrow_t & /*tag*/) noexcept
try {
    return operator new(size);
} catch (const std::bad_alloc &) {
    return nullptr;
}

void operator delete(void *memory) noexcept
{
    heap.live -= malloc_usable_size(memory);
    std::free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    operator delete(memory);
}

namespace {

constexpr std::size_t kFlat = 16'384; // bytes

/// A stream that gives the beginning and then the repeated text so many times.
FILE *openRepeatingInput(const std::string &beginning, const std::string &repeated,
                         std::size_t times)
{
    // All is taken from one stretch of text, a whole number of repetitions long.
    std::string block;
    while (block.size() < 65'536)
        block += repeated;
    return Support::openStream({.read = [beginning, block, at = std::size_t(0),
                                         size = beginning.size() + repeated.size() * times](
                                            char *buffer, std::size_t room) mutable {
        const bool atBeginning = at < beginning.size();
        const std::string &text = atBeginning ? beginning : block;
        const std::size_t from = atBeginning ? at : (at - beginning.size()) % block.size();
        const std::size_t count = std::min({room, text.size() - from, size - at});
        std::memcpy(buffer, text.data() + from, count);
        at += count;
        return static_cast<ssize_t>(count);
    }});
}

/// What the work took from the heap, from a job over the input whose output goes nowhere.
template <class Work>
Heap heapOf(FILE *input, const Work &work)
{
    const auto job = std::make_shared<KLPrintJob>(input, true, Support::openStream({}), true);
    const Heap before = heap;
    heap.peak = heap.live;
    work(job);
    return {heap.live - before.live, heap.peak - before.live, heap.taken - before.taken,
            heap.allocations - before.allocations};
}

} // namespace

TEST(KLPrintJobMemoryTest, AllocationsAreCounted)
{
    const Heap taken = heapOf(openRepeatingInput("", "x", 100'000), [](const auto &job) {
        EXPECT_EQ(100'000U, job->readLine()->size());
    });
    EXPECT_GE(taken.peak, 100'000U);
}

TEST(KLPrintJobMemoryTest, LongHeaderIsWalkedInFlatMemory)
{
    constexpr std::size_t kLines = 100'000; // three megabytes, in 16 KiB
    std::size_t lines = 0;
    const auto edit = [&lines](KLPJLHandler &handler, const std::string &) {
        ++lines;
        handler.insertDSSCLineBeforeCurrentLineWithFormat("NUMBER=%@ OF A SETTING", "12345");
        handler.replaceCurrentLine("@PJL SET SOMETHING=\"to another value of some length\"\r\n");
        handler.addLineAfterCurrentLine("@PJL COMMENT a line of more than a few letters\r\n");
    };
    const Heap taken = heapOf(
        openRepeatingInput("\x1b%-12345X", "@PJL SET SOMETHING=\"to a value\"\r\n", kLines),
        [&edit](const auto &job) { KLPJLHandler::enumeratePJLFromPrintJobUsingBlock(job, edit); });
    EXPECT_EQ(kLines, lines);
    EXPECT_LT(taken.peak, kFlat);
}

TEST(KLPrintJobMemoryTest, LineOfAnyLengthPassesThroughInFlatMemory)
{
    static constexpr std::size_t kLength = 16'000'000;
    Heap taken = heapOf(openRepeatingInput("", "x", kLength), [](const auto &job) {
        EXPECT_FALSE(job->passDataThroughUntilEndOfLine());
    });
    EXPECT_LT(taken.peak, kFlat);

    taken = heapOf(openRepeatingInput("", "x", kLength), [](const auto &job) {
        EXPECT_FALSE(job->passDataThroughUntilMarker("marker"));
    });
    EXPECT_LT(taken.peak, kFlat);

    taken = heapOf(openRepeatingInput("", "x", kLength),
                   [](const auto &job) { job->passDataThroughUntilEndOfFile(); });
    EXPECT_LT(taken.peak, kFlat);

    taken = heapOf(openRepeatingInput("", "x", kLength), [](const auto &job) {
        job->whenLineStartsWithStringDo("@PJL", [] {});
        job->process();
    });
    EXPECT_LT(taken.peak, kFlat);
}

TEST(KLPrintJobMemoryTest, LongLineIsReadWithoutCopyingItOverAndOver)
{
    static constexpr std::size_t kLength = 16'000'000;
    const Heap taken = heapOf(openRepeatingInput("", "x", kLength),
                              [](const auto &job) { EXPECT_EQ(kLength, job->readLine()->size()); });
    EXPECT_LT(taken.taken, 8 * kLength);
}

TEST(KLPrintJobMemoryTest, OrdinaryLineTakesOneAllocation)
{
    const std::string line = std::string(200, 'x') + "\n";
    const Heap taken = heapOf(openRepeatingInput("", line, 1'000), [&line](const auto &job) {
        for (int i = 0; i < 1'000; ++i)
            EXPECT_EQ(line.size(), job->readLine()->size());
    });
    EXPECT_EQ(1'000U, taken.allocations);
}

TEST(KLPrintJobMemoryTest, ProcessAllocatesOnceAndNotForEachLine)
{
    std::size_t lines = 0;
    const auto register3 = [&lines](KLPrintJob &job) {
        for (const auto *prefix : {"%%Page", "%%Trailer", "@PJL"})
            job.whenLineStartsWithStringDo(prefix, [&job, &lines] {
                ++lines;
                job.insertDataBefore("a line of more than a few letters\n");
                job.addDataAfter("another line of more than a few letters\n");
            });
    };
    const Heap taken =
        heapOf(openRepeatingInput("", "0 0 moveto\n%%Page: 1 1\nshowpage\n@PJL\r\n", 10'000),
               [&](const auto &job) {
                   register3(*job);
                   job->process();
               });
    EXPECT_EQ(20'000U, lines);
    EXPECT_LT(taken.allocations, 50U);
    EXPECT_LT(taken.peak, kFlat);
}
