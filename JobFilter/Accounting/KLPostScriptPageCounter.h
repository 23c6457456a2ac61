#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Counts the pages of PostScript documents by the comments that structure them (DSC 3.0), while
/// they pass by block by block.
///
/// A document begins at a line that begins with "%!", at the start of the stream (perhaps behind
/// blanks, line ends and control-Ds), behind an %%EOF comment, or right behind a control-D; it
/// keeps the conventions when that line begins with "%!PS-Adobe-". Each "%%Page:" comment is a
/// page. Lines end at LF, CR or CR LF.
///
/// What lies between %%BeginDocument and %%EndDocument, between %%BeginBinary and %%EndBinary and
/// between %%BeginData and %%EndData is content, whatever it looks like. Binary and data end at the
/// first line that is their end comment. Where their begin says how many bytes they have, an end
/// comment far inside these belongs to them; one that should stand behind them and does not shows
/// that the count is wrong, and then there is no telling what is content.
///
/// What is counted does not depend on where the blocks end. Memory does not grow with the stream,
/// nor with its lines. A copy goes on from where the original stands. One thread.
class KLPostScriptPageCounter {
public:
    /// Takes the next bytes of the stream.
    void count(std::string_view block);

    /// The pages of all documents, for a stream that ends here; it may go on all the same.
    /// @return nullopt where the comments do not say: a document does not keep the conventions or
    ///         has no page comment, one ends inside content, the comments contradict one another,
    ///         or they only frame a document without any, as CUPS' pstops(8) does (its
    ///         "%%BeginDocument: nondsc"). So for the empty stream, too.
    std::optional<std::size_t> pages() const;

private:
    std::string_view findLine(std::string_view bytes);
    void lookAtStart(std::string_view bytes);
    bool beginsLine(char before, std::uint64_t position) const;
    void pass(std::string_view bytes);
    std::string_view readLine(std::string_view bytes);
    void takeLine();
    void takeLineOfData();
    void takeComment();
    void beginData(std::string_view end);
    void beginEmbeddedDocument();
    void beginDocument();
    void beginPage();

    // Of the stream and the line that is being read, one that begins with "%".
    std::uint64_t _position = 0; ///< of the next byte
    std::uint64_t _lineBegin = 0;
    std::string _line; ///< its beginning

    // Of what is content.
    std::string_view _dataEnd;      ///< the comment that ends the data; empty outside data
    std::uint64_t _behindCount = 0; ///< where the data end by their count; 0 for none
    std::uint64_t _depth = 0;       ///< of embedded documents

    std::size_t _pages = 0;
    std::size_t _pagesOfDocument = 0;

    char _before = '\n';           ///< the byte in front of the position
    bool _inLine = false;          ///< reading one
    bool _followsControlD = false; ///< the line
    bool _hasInnerEnd = false;     ///< an end comment lies before the data end by their count
    bool _isAtStart = true;        ///< of the stream, but for blanks and line ends
    bool _mayBegin = true;         ///< a document, with the next line
    bool _inDocument = false;
    bool _isUnclear = false; ///< for good
};
