#include "PostScriptCommands.h"

#include "DSCDocument.h"
#include "DocumentWriter.h"
#include "PostScriptStamp.h"
#include "ToolkitError.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <unistd.h>
#include <vector>

namespace {

/// A document that is copied with a watermark on its pages. That can begin while it is still being
/// read, with what is known of it by then; in the end it shows whether that was enough.
class WatermarkedCopy {
public:
    /// Writes what stands ahead of all that the document itself defines, and the watermark.
    /// @param document  with a page at least
    /// @param scanner   what is reading the document; null when that has been read
    /// All stay the caller's, who keeps them as long as this, the scanner until finish().
    /// @throws ToolkitError when the text cannot be drawn, and when reading or writing fails
    WatermarkedCopy(const Watermark &watermark, const DSCDocument &document, const Job &job,
                    const DSCScanner *scanner = nullptr);

    /// Goes on up to a position; nothing is written any more once it cannot be right.
    /// @param position  as DSCDocument::Progress has it
    /// @throws ToolkitError when reading or writing fails
    void goOnTo(std::uint64_t position);

    /// Goes on to the end of the document, which has been read.
    /// @return false when the document turned out to be another than it seemed: what is written is
    ///         of no use then
    /// @throws ToolkitError when reading or writing fails
    bool finish();

private:
    bool isAsItSeemed() const;
    void beginPages();
    void endPage(std::size_t number);
    void copyTo(std::uint64_t position);

    const Watermark &_watermark;
    const DSCDocument &_document;
    const DSCScanner *_scanner;
    DocumentWriter _writer;
    PostScriptStamp _stamp;
    const bool _namesOperatorDictionary;  ///< the document, as it seemed when this began
    const std::optional<PageSize> _media; ///< of the first page, likewise
    const std::uint64_t _firstPage;       ///< where it begins, likewise
    std::vector<bool> _areLandscape;      ///< the pages that have begun, as they seemed then
    std::uint64_t _copied;                ///< of the document, up to this position
    bool _isRight = true;                 ///< what is written
};

WatermarkedCopy::WatermarkedCopy(const Watermark &watermark, const DSCDocument &document,
                                 const Job &job, const DSCScanner *scanner)
    : _watermark(watermark),
      _document(document),
      _scanner(scanner),
      _writer(document, job.output),
      _stamp(watermark, document, job),
      _namesOperatorDictionary(document.namesOperatorDictionary()),
      _media(document.mediaOf(document.pages().front())),
      _firstPage(document.pages().front().begin),
      _copied(document.beginOfProcedures())
{
    _writer.copy({0, _copied});
    _writer.procedures("KLToolkitWatermark", _stamp.request(), _stamp.procedures());
    // What is shown ahead of the pages belongs to the first one.
    if (document.runsAheadOfPages({"showpage", "copypage"}))
        _stamp.callFor(1, _writer);
}

void WatermarkedCopy::goOnTo(std::uint64_t position)
{
    _isRight = _isRight && isAsItSeemed();
    beginPages();
    if (_isRight)
        copyTo(position);
}

bool WatermarkedCopy::finish()
{
    _scanner = nullptr;
    _isRight = _isRight && isAsItSeemed();
    for (std::size_t number = 1; _isRight && number <= _areLandscape.size(); ++number)
        _isRight = _areLandscape[number - 1] == _stamp.isLandscape(number);
    beginPages();
    if (!_isRight)
        return false;
    endPage(_document.pages().size());
    copyTo(_document.file().size());
    _writer.finish();
    return true;
}

/// What the procedures were written for, but for single pages.
bool WatermarkedCopy::isAsItSeemed() const
{
    return _firstPage == _document.pages().front().begin &&
           _namesOperatorDictionary == _document.namesOperatorDictionary() &&
           (!_watermark.place || _media == _document.mediaOf(_document.pages().front()));
}

/// All that are known and have not begun.
void WatermarkedCopy::beginPages()
{
    const auto &pages = _document.pages();
    for (auto number = _areLandscape.size() + 1; number <= pages.size(); ++number) {
        _isRight = _isRight && _stamp.suits(number);
        if (!_isRight)
            return;
        endPage(number - 1);
        if (number == 1) {
            copyTo(pages.front().begin);
            _writer.callAheadOfPages();
        }
        copyTo(pages[number - 1].content);
        _stamp.callFor(number, _writer);
        _areLandscape.push_back(_stamp.isLandscape(number));
    }
}

/// @param number  of a page that has begun; 0 for none
void WatermarkedCopy::endPage(std::size_t number)
{
    if (number == 0 || _watermark.above || !_watermark.pages.contains(number))
        return;
    const DSCPage &page = _document.pages()[number - 1];
    if (_document.isCutOff(page))
        return;
    copyTo(page.end);
    _writer.call("KLToolkitWatermarkPageEnd");
}

void WatermarkedCopy::copyTo(std::uint64_t position)
{
    _writer.copy({_copied, position}, _scanner);
    _copied = position;
}

/// Writes the copy of a document that has been read over what an attempt has left. The output is
/// not emptied before: it would have to be on the disk when it is closed then.
void writeAnew(const Watermark &watermark, const DSCDocument &document, const Job &job)
{
    const int file = fileno(job.output);
    if (lseek(file, 0, SEEK_SET) != 0)
        throw unwritableOutput(errno);
    WatermarkedCopy(watermark, document, job).finish();
    if (std::fflush(job.output) != 0 || ftruncate(file, lseek(file, 0, SEEK_CUR)) != 0)
        throw unwritableOutput(errno);
}

} // namespace

void applyToPostScript(const Watermark &watermark, const Job &job)
{
    job.texts.prepare();
    // What stands ahead of the pages depends on all of them, but most pages change nothing: the
    // document is copied while it is read, and once more if one did.
    std::optional<WatermarkedCopy> early;
    const DSCDocument document(job.input, [&](const DSCDocument &soFar, const DSCScanner &scanner) {
        if (watermark.hasPlaceholders)
            return; // for the number of pages, among others
        if (!early)
            early.emplace(watermark, soFar, job, &scanner);
        early->goOnTo(scanner.passed());
    });
    if (!early)
        WatermarkedCopy(watermark, document, job).finish();
    else if (!early->finish())
        writeAnew(watermark, document, job);
}
