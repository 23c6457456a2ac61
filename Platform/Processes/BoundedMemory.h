#pragma once

#include <cstddef>
#include <memory_resource>

namespace Platform {

/// An allocator for work whose size somebody else decides: it hands out memory of the default one
/// (std::pmr::get_default_resource() at its making, which must outlive it), but no more than its
/// limit at any time. What is given back can be handed out again.
///
/// Not copied; outlives what was allocated from it. One thread.
class BoundedMemory : public std::pmr::memory_resource {
public:
    /// @param limit  bytes as they are asked for; what the default one needs besides is not counted
    explicit BoundedMemory(std::size_t limit) : _left(limit) {}
    BoundedMemory(const BoundedMemory &) = delete;
    BoundedMemory &operator=(const BoundedMemory &) = delete;

private:
    /// @throws std::bad_alloc beyond the limit, and when the default one has no more
    void *do_allocate(std::size_t bytes, std::size_t alignment) override;
    void do_deallocate(void *memory, std::size_t bytes, std::size_t alignment) override;
    bool do_is_equal(const memory_resource &other) const noexcept override
    {
        return this == &other;
    }

    std::pmr::memory_resource *_source = std::pmr::get_default_resource();
    std::size_t _left; ///< bytes
};

} // namespace Platform
