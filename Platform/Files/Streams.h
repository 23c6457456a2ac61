#pragma once

#include "Descriptor.h"

#include <cstdio>
#include <memory>
#include <string>

struct stat;

namespace Platform {

// Of the whole room: one thread. What it returns belongs to the caller; what it is given by pointer
// or number stays the caller's.

/// Closes a stream; what closing reports is ignored.
struct StreamCloser {
    void operator()(FILE *stream) const { std::fclose(stream); }
};

/// A stdio stream with an owner. Destruction ignores what closing reports: where a failed close
/// loses data, call closeStream().
using Stream = std::unique_ptr<FILE, StreamCloser>;

/// The stream takes the descriptor over.
/// @param mode  as fdopen(3) has it
/// @return null, with errno set, when there is no memory for it; the descriptor is closed then.
Stream streamOf(Descriptor file, const char *mode);

/// Closes the stream, whatever comes of it.
/// @param stream  not null
/// @return false when bytes that were still buffered could not be written, or when a write had
///         failed before.
bool closeStream(Stream stream);

/// Opens a file for reading, mode "rb", not inherited by children.
///
/// Folders and FIFOs are refused like a file that is not there: the one has no bytes, the other
/// may keep a reader waiting for ever.
/// @return null on failure, with errno set: EISDIR for a folder, ESPIPE for a FIFO.
Stream openForReading(const std::string &path);

/// Opens a file for writing from its start, mode "wb", not inherited by children. It is made with
/// mode 0666 less the umask, or emptied. A FIFO's reader is waited for.
/// @return null on failure, with errno set; a file that was made by then stays, empty.
Stream openForWriting(const std::string &path);

/// Whether two files are one, whatever their names. Async-signal-safe.
bool isSameFile(const struct stat &one, const struct stat &other);

/// Takes everything out of a file that is open for writing. One that is empty is not touched: ext4
/// takes a file that is truncated for one that is written anew, and brings all of it to the disk
/// when it is closed, where a job's files need not come before they are removed. The descriptor's
/// position stays as it is.
/// @return false on failure, with errno set
bool makeEmpty(int descriptor);

/// An anonymous temporary stream for writing and reading, as tmpfile(3) gives it, but in memory
/// (memfd_create(2)): what is written, passwords included, never reaches a disk. Not inherited by
/// children.
/// @return null on failure, with errno set.
Stream openTemporary();

/// Opens an anonymous temporary stream for writing and reading, in a folder: what may be too large
/// for memory. It has no name, and is gone with the stream, however the process ends. Not inherited
/// by children.
/// @return null on failure, with errno set.
Stream openTemporaryIn(const std::string &folder);

/// Has the kernel move the rest of one stream to the other by itself, without a copy in this
/// program's memory (splice(2), sendfile(2)), which for a large file costs a fraction of reading
/// and writing it.
///
/// It moves as much as it can: all, a part, or nothing where it does not serve these kinds of
/// files, or for a stream without a descriptor. So an ordinary copy has to follow, for what is
/// left, if there is anything. Both streams then stand where the move has come to.
///
/// Pipes are widened to 256 KiB where the system allows it. One that is written to gets the
/// input's own pages: whoever overwrites the file before they have been read from there changes
/// them, and to remove it does no harm.
/// @param input   nothing has been read from it yet
/// @param output  flushed
/// @return false, with errno set, when reading or writing failed. That must not be passed over: an
///         error of bytes written earlier is told once, and the copy that followed would not meet
///         it.
bool moveInKernel(FILE *input, FILE *output);

/// Gives each of the descriptors 0, 1 and 2 that is closed a stand-in that can be neither read
/// nor usefully written, so that no file opened later lands there and takes in bytes that were
/// meant for the standard stream. Reading standard input and writing standard output then fail;
/// what goes to standard error is lost. Call it first thing in main().
void occupyStandardDescriptors();

} // namespace Platform
