#pragma once

#include "Descriptor.h"
#include "Streams.h"

#include <cstdio>
#include <string>

/// The file that a command writes: there in full, or not at all.
///
/// It is written in place, so that an existing file keeps its mode and owner. Unless commit() was
/// called, the destructor removes it, and so does a cancellation (Cancellation.h). Whoever owns the
/// folder can give its name to another file meanwhile: that one is neither written nor removed
/// (MadeFiles.h says what moment is left).
class OutputFile {
public:
    /// Opens and empties the file, or makes it.
    /// @param path   its last part may not be a symbolic link, which others could have put there
    /// @param input  the input's stream, null when it could not be opened
    /// @throws ToolkitError when it cannot be opened, is no regular file or is the input. The file
    ///         is left as it was then. Also when it cannot be emptied; it is removed then.
    OutputFile(const std::string &path, std::FILE *input);
    ~OutputFile();
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    /// For writing, at the start. Owned by this object.
    std::FILE *stream() const { return _stream.get(); }

    /// Closes the file and keeps it.
    /// @throws ToolkitError when not all of it could be written; it is removed then.
    void commit();

private:
    void putOnList(const Platform::Descriptor &file);
    void openStream(Platform::Descriptor file);
    void remove();

    std::string _path;
    Platform::Stream _stream;
    bool _committed = false;
};
