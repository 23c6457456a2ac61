#pragma once

#include <cstddef>

// Memory for small C++ objects, those of all libraries included: a program that links this file has
// its operator new and operator delete.
//
// libqpdf makes hundreds of small objects of each object of a document, and most of them live as
// long as the program. The C library's allocator takes a sixth of the time for that, and puts
// its own data between them.
//
// Objects of one size lie together. What is deleted serves the next object of that size, and never
// goes back to the system. Larger objects, and all where the room is used up or cannot be had, come
// from malloc(). Any thread may call; what a thread has deleted serves that thread alone.

/// The address space that is set aside for them, in bytes. It becomes memory as it is used.
constexpr std::size_t kRoomForSmallObjects = std::size_t{256} << 20;
