#include "MemoryShortage.h"

#include "Cancellation.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <pthread.h>

#if defined(__SANITIZE_ADDRESS__) || !defined(__GLIBC__) // only glibc's is known below
#define KL_OWN_ALLOCATOR 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KL_OWN_ALLOCATOR 0
#endif
#endif
#ifndef KL_OWN_ALLOCATOR
#define KL_OWN_ALLOCATOR 1
#endif

namespace Platform {
namespace {

const char *lastLine = nullptr;

} // namespace

void endWhenMemoryRunsOut(const char *line)
{
    lastLine = line;
    pthread_atfork(nullptr, nullptr, [] { lastLine = nullptr; });
}

} // namespace Platform

#if KL_OWN_ALLOCATOR

// A program may replace the C library's allocation functions (its manual, "Replacing malloc"); all
// libraries call these then. Memory still comes from where it always does.

// NOLINTBEGIN(clang-diagnostic-reserved-identifier): the C library's own
extern "C" {

void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);
void *__libc_memalign(std::size_t alignment, std::size_t size);

} // extern "C"
// NOLINTEND(clang-diagnostic-reserved-identifier)

namespace {

/// What the streams still hold is not written: it is no whole job.
void *orEnd(void *memory)
{
    if (memory == nullptr && Platform::lastLine != nullptr)
        Platform::abandonRun(Platform::lastLine);
    return memory;
}

} // namespace

extern "C" {

void *malloc(std::size_t size) noexcept
{
    return orEnd(__libc_malloc(size));
}

void *calloc(std::size_t nmemb, std::size_t size) noexcept
{
    return orEnd(__libc_calloc(nmemb, size));
}

void *realloc(void *ptr, std::size_t size) noexcept
{
    void *const moved = __libc_realloc(ptr, size);
    return size == 0 ? moved : orEnd(moved); // to nothing is to free
}

void *memalign(std::size_t alignment, std::size_t size) noexcept
{
    return orEnd(__libc_memalign(alignment, size));
}

void *aligned_alloc(std::size_t alignment, std::size_t size) noexcept
{
    return orEnd(__libc_memalign(alignment, size));
}

int posix_memalign(void **memptr, std::size_t alignment, std::size_t size) noexcept
{
    *memptr = orEnd(__libc_memalign(alignment, size));
    return *memptr == nullptr ? ENOMEM : 0;
}

} // extern "C"

#endif
