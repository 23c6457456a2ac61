#include "SmallObjects.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <sys/mman.h>

namespace {

/// The largest of them, in bytes.
constexpr std::size_t kMost = 512;
/// Sizes are rounded up to multiples of it.
constexpr std::size_t kStep = __STDCPP_DEFAULT_NEW_ALIGNMENT__;
/// The room is handed out in pieces, each for objects of one size.
constexpr std::size_t kPiece = std::size_t{64} << 10;
constexpr std::size_t kPieces = kRoomForSmallObjects / kPiece;

/// A size in steps, less one.
using Kind = std::uint8_t;

/// Where an object was.
struct Gap {
    Gap *next;
};

/// The places for objects of one kind.
struct Shelf {
    Gap *gaps;        ///< where objects were
    char *fresh;      ///< where none was yet
    std::size_t left; ///< bytes from there to the end of the piece
};

thread_local constinit std::array<Shelf, kMost / kStep> shelves = {};
constinit std::array<Kind, kPieces> kindOfPiece = {};
constinit std::atomic<std::size_t> takenPieces = 0;
constinit std::atomic<char *> room = nullptr; ///< set by the first object; null if there is none

char *setRoomAside()
{
    void *const memory = mmap(nullptr, kRoomForSmallObjects, PROT_READ | PROT_WRITE,
                              MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    return memory == MAP_FAILED ? nullptr : static_cast<char *>(memory);
}

/// @return whether there was a piece left
bool takePiece(Shelf &shelf, Kind kind)
{
    static char *const begin = room = setRoomAside();
    if (begin == nullptr || takenPieces >= kPieces)
        return false;
    const std::size_t piece = takenPieces++;
    if (piece >= kPieces) // another thread took the last one
        return false;
    kindOfPiece[piece] = kind;
    char *const fresh = begin + piece * kPiece;
    if (shelf.fresh != nullptr) // all of it will be used, as was the one before
        madvise(fresh, kPiece, MADV_POPULATE_WRITE);
    shelf.fresh = fresh;
    shelf.left = kPiece;
    return true;
}

/// @return null when the room is used up
void *takePlace(Kind kind)
{
    Shelf &shelf = shelves[kind];
    if (Gap *const gap = shelf.gaps) {
        shelf.gaps = gap->next;
        return gap;
    }
    const std::size_t size = (kind + std::size_t{1}) * kStep;
    if (shelf.left < size && !takePiece(shelf, kind))
        return nullptr;
    char *const place = shelf.fresh;
    shelf.fresh += size;
    shelf.left -= size;
    return place;
}

void givePlaceBack(void *place, Kind kind)
{
    Shelf &shelf = shelves[kind];
    shelf.gaps = ::new (place) Gap{shelf.gaps};
}

} // namespace

void *operator new(std::size_t size)
{
    const std::size_t atLeastOne = size == 0 ? 1 : size;
    if (size <= kMost) {
        if (void *const place = takePlace(static_cast<Kind>((atLeastOne - 1) / kStep)))
            return place;
    }
    if (void *const memory = std::malloc(atLeastOne))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void *object) noexcept
{
    const auto offset = static_cast<std::size_t>(static_cast<char *>(object) - room);
    if (room != nullptr && offset < kRoomForSmallObjects)
        givePlaceBack(object, kindOfPiece[offset / kPiece]);
    else
        std::free(object);
}

void operator delete(void *object, std::size_t /*size*/) noexcept
{
    operator delete(object);
}
