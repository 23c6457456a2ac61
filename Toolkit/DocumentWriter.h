#pragma once

#include "DSCDocument.h"

#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Writes a document that is made of parts of another one and of lines of our own.
class DocumentWriter {
public:
    /// @param document  the parts' source
    /// @param output    open for writing
    /// Both stay the caller's, who keeps them at least as long.
    DocumentWriter(const DSCDocument &document, std::FILE *output);

    /// Copies bytes as they are.
    /// @throws ToolkitError when reading or writing fails
    void copy(DSCRange range);

    /// Copies bytes without the comments that have one of these keywords, with their continuation
    /// lines. What lies inside embedded documents and counted data is copied as it is.
    /// @throws ToolkitError when reading or writing fails
    void copyWithout(DSCRange range, std::span<const std::string_view> keywords);

    /// Writes text that is made of whole lines, at the begin of a line: an unfinished one is ended.
    /// @throws ToolkitError when writing fails
    void lines(std::string_view text);

private:
    void write(std::string_view bytes);

    const DSCDocument &_document;
    std::FILE *_output;
    std::vector<char> _buffer;
    char _last = '\n'; ///< the byte written last
};
