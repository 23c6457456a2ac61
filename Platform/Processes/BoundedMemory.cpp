#include "BoundedMemory.h"

#include <new>

namespace Platform {

void *BoundedMemory::do_allocate(std::size_t bytes, std::size_t alignment)
{
    if (bytes > _left)
        throw std::bad_alloc();
    void *const memory = _source->allocate(bytes, alignment);
    _left -= bytes;
    return memory;
}

void BoundedMemory::do_deallocate(void *memory, std::size_t bytes, std::size_t alignment)
{
    _source->deallocate(memory, bytes, alignment);
    _left += bytes;
}

} // namespace Platform
