#pragma once

#include "FileURL.h"

#include <memory_resource>
#include <optional>
#include <string>

/// Reading ICC colour profiles (ICC.1): the device model of the header, and the description as
/// profiles of version 2 carry it.
///
/// Ownership. A function with Create or Copy in its name hands its result to the caller, who owns
/// it. A profile carries a count of its owners: Create gives the first reference, Retain adds one,
/// Release gives one back, and the last Release frees the profile. A string from a Copy function
/// is a value that belongs to the caller and stays good after the profile has gone.
///
/// Allocators. A profile and the strings made from it take their memory from the allocator given
/// to Create; null stands for the default one, what std::pmr::get_default_resource() gives at that
/// time. The allocator stays the caller's and must outlive the profile and those strings. One that
/// throws std::bad_alloc makes the operation give none.
///
/// Threads. A profile belongs to one thread at a time; the count is not atomic.
///
/// Profiles from anywhere may be opened: every offset and count in them is checked against the
/// data before it is used.

/// A profile, immutable once created.
struct KLICCProfile;
using KLICCProfileRef = KLICCProfile *;

/// Reads the whole profile into memory, of whatever length (the format ends at 4 GiB).
///
/// Only a regular file is read, and reading stops as soon as the data is longer than the profile
/// size in its header (bytes 0 to 3): a device, a FIFO or a file that grows for ever neither hangs
/// the caller nor fills the memory.
/// @param allocator  null for the default one
/// @return a profile with one reference, the caller's. Null when the file cannot be read, is
///         shorter than 129 bytes, differs in length from the profile size in its header, or has
///         a tag table that reaches beyond its end.
KLICCProfileRef KLICCProfileCreateWithContentsOfURL(std::pmr::memory_resource *allocator,
                                                    const Platform::FileURL &url);

/// Adds a reference, which the caller gives back with KLICCProfileRelease().
/// @param profile  not null
/// @return the same profile
KLICCProfileRef KLICCProfileRetain(KLICCProfileRef profile);

/// Gives one reference back. The last one frees the profile. Nothing happens to null.
void KLICCProfileRelease(KLICCProfileRef profile);

/// The device model: the four bytes at offset 52 of the header, read as ISO Latin-1 and handed
/// over as UTF-8. Nothing is trimmed: always four characters, blanks and NULs included.
/// @param profile  not null
/// @return nullopt only when the allocator has no memory
std::optional<std::pmr::string> KLICCProfileCopyModel(KLICCProfileRef profile);

/// The ASCII description of the first "desc" tag, in the layout of a version 2 text description
/// (its type signature is not examined), without the terminating NUL.
///
/// Version 4 writes another layout there. Of such a profile the result is none or a text that is
/// not its description.
/// @param profile  not null
/// @return nullopt when there is no such tag, when its text lies outside the data, counts no
///         characters at all or holds a byte that is not ASCII.
std::optional<std::pmr::string> KLICCProfileCopyDescription(KLICCProfileRef profile);
