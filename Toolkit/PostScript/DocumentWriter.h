#pragma once

#include "DSCDocument.h"

#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Writes what a command makes of a document: its parts, and lines and procedures of our own.
///
/// The names of our procedures end with the number of the run, so that what one run of the toolkit
/// wrote can be the input of the next.
class DocumentWriter {
public:
    /// @param document  the parts' source
    /// @param output    open for writing, with nothing in its buffer
    /// Both stay the caller's, who keeps them at least as long.
    DocumentWriter(const DSCDocument &document, std::FILE *output);

    /// Copies bytes as they are.
    /// @param scanner  of the document; what it holds of them in memory is taken from there. Null
    ///                 when there is none.
    /// @throws ToolkitError when reading or writing fails
    void copy(DSCRange range, const DSCScanner *scanner = nullptr);

    /// Copies bytes without the comments that have one of these keywords, with their continuation
    /// lines. What lies inside embedded documents and counted data is copied as it is.
    /// @throws ToolkitError when reading or writing fails
    void copyWithout(DSCRange range, std::span<const std::string_view> keywords);

    /// Writes text that is made of whole lines, at the begin of a line: an unfinished one is ended.
    /// @throws ToolkitError when writing fails
    void lines(std::string_view text);

    /// A line that calls one of our procedures: "1 2 KLToolkitBookletHalf.1".
    /// @param procedure  its name without the run's number
    std::string callOf(std::string_view procedure, std::string_view operands = {}) const;
    /// Writes such a line.
    /// @throws ToolkitError when writing fails
    void call(std::string_view procedure, std::string_view operands = {});

    /// Writes a command's procedures as a resource of the document.
    /// @param name        of the resource, and of the dictionary in it; begins with
    ///                    DSCDocument::kOurProcSets
    /// @param request     lines that define in the dictionary what is asked for
    /// @param procedures  what the command adds to the dictionary and to the document (ProcSets.h)
    /// In both texts ".N" stands for the run's number.
    /// @throws ToolkitError when writing fails
    void procedures(std::string_view name, std::string_view request, std::string_view procedures);

    /// Writes what stands between the setup and the first page in a document for which procedures()
    /// has written: a call where that is needed for the meanings that it gives to names; else
    /// nothing.
    /// @throws ToolkitError when writing fails
    void callAheadOfPages();

    /// Writes the procedures that copyContent() needs for a page that the end of the document cuts
    /// off; nothing when there is none.
    /// @throws ToolkitError when writing fails
    void proceduresForCutOffPage();

    /// Copies what a page draws, without some comments, as copyWithout() does. A page that the end
    /// of the document cuts off may leave a text or a procedure open; it is framed, so that it does
    /// not swallow what is written behind it.
    /// @throws ToolkitError when reading or writing fails
    void copyContent(const DSCPage &page, std::span<const std::string_view> keywords = {});

    /// Hands the output what is still held back. To be called behind the last part: what a writer
    /// holds when it is destroyed is lost.
    /// @throws ToolkitError when writing fails
    void finish();

private:
    void copyFromFile(DSCRange range);
    void procSet(std::string_view name, std::string_view text);
    void write(std::string_view bytes);
    void hold(std::size_t count);

    const DSCDocument &_document;
    const unsigned _run; ///< of the toolkit on the document, from 1
    const bool _hearsGlobalMeanings;
    std::FILE *_output;
    std::vector<char> _buffer;
    std::size_t _filled = 0; ///< of the buffer, with what is still to be written
    char _last = '\n';       ///< the byte written last
};
