#include "DocumentWriter.h"

#include "ProcSets.h"
#include "ToolkitError.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fmt/format.h>
#include <unistd.h>

namespace {

/// Bytes, a power of two. The output is written in blocks of this size, wherever the document's
/// parts end: to write each page by itself takes the system half as long again.
constexpr std::size_t kBufferSize = std::size_t{128} * 1024;
constexpr std::string_view kEndOfCutOffPage = "%KLToolkitEndOfCutOffPage";

/// On an only page that holds the end of the prolog or of the setup: with others behind it, it
/// would be taken for none.
constexpr std::array<std::string_view, 2> kEndsOfParts = {"%%EndProlog", "%%EndSetup"};

/// The text with the run's number in place of each ".N".
std::string withRunNumber(std::string_view text, unsigned run)
{
    constexpr std::string_view kPlaceholder = ".N";
    const std::string number = fmt::format(".{}", run);
    std::string result;
    while (true) {
        const auto found = text.find(kPlaceholder);
        result += text.substr(0, found);
        if (found == std::string_view::npos)
            return result;
        result += number;
        text.remove_prefix(found + kPlaceholder.size());
    }
}

/// Past the stream's buffer, which would first take in as much as it holds, so that each block
/// would be written in two pieces; that takes the system a tenth longer, and the file in small
/// pieces of memory.
void writeBlock(std::span<const char> block, std::FILE *stream)
{
    while (!block.empty()) {
        const ssize_t count = ::write(fileno(stream), block.data(), block.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throw unwritableOutput(errno);
        block = block.subspan(static_cast<std::size_t>(count));
    }
}

} // namespace

DocumentWriter::DocumentWriter(const DSCDocument &document, std::FILE *output)
    : _document(document),
      _run(document.countOfOurProcSets() + 1),
      _hearsGlobalMeanings(document.namesAheadOfPages("globaldict")),
      _output(output),
      _buffer(kBufferSize)
{
}

void DocumentWriter::copy(DSCRange range, const DSCScanner *scanner)
{
    if (scanner == nullptr)
        return copyFromFile(range);
    const std::uint64_t begin = std::clamp(scanner->beginOfHeld(), range.begin, range.end);
    const std::string_view held = scanner->held(begin);
    const auto size = std::min<std::uint64_t>(held.size(), range.end - begin);
    copyFromFile({range.begin, begin});
    write(held.substr(0, static_cast<std::size_t>(size)));
    copyFromFile({begin + size, range.end});
}

void DocumentWriter::copyFromFile(DSCRange range)
{
    while (range.begin < range.end) {
        const std::span<char> room = std::span(_buffer).subspan(_filled);
        const auto size = std::min<std::uint64_t>(room.size(), range.end - range.begin);
        const std::size_t count =
            _document.file().read(range.begin, room.first(static_cast<std::size_t>(size)));
        if (count == 0)
            throw ToolkitError("The input file became shorter while it was read.");
        range.begin += count;
        hold(count);
    }
}

void DocumentWriter::copyWithout(DSCRange range, std::span<const std::string_view> keywords)
{
    if (keywords.empty())
        return copy(range); // without a look at all of it
    DSCScanner scanner(_document.file(), range.begin, range.end);
    const auto copyTo = [&](std::uint64_t position) {
        copy({range.begin, position}, &scanner);
        range.begin = position;
    };
    scanner.beforeLettingGo([&] { copyTo(scanner.passed()); });
    bool dropped = false;
    while (const auto comment = scanner.next()) {
        dropped = comment->is("%%+")
                      ? dropped
                      : std::any_of(keywords.begin(), keywords.end(),
                                    [&](std::string_view keyword) { return comment->is(keyword); });
        if (!dropped)
            continue;
        copyTo(comment->begin);
        range.begin = comment->end;
    }
    copyTo(range.end);
}

void DocumentWriter::lines(std::string_view text)
{
    if (_last != '\n' && _last != '\r')
        write("\n");
    write(text);
}

std::string DocumentWriter::callOf(std::string_view procedure, std::string_view operands) const
{
    return fmt::format("{}{}{}.{}\n", operands, operands.empty() ? "" : " ", procedure, _run);
}

void DocumentWriter::call(std::string_view procedure, std::string_view operands)
{
    lines(callOf(procedure, operands));
}

void DocumentWriter::procedures(std::string_view name, std::string_view request,
                                std::string_view procedures)
{
    const std::string begin = fmt::format("{}.N begin\n", name);
    std::string text = fmt::format("/{}.N 64 dict def\n", name);
    text += begin;
    text += request;
    text += kReplacingProcSet;
    text += "end\n";
    text += procedures;
    text += begin;
    text += kBindingProcSet;
    if (_hearsGlobalMeanings)
        text += kGlobalMeaningsProcSet;
    text += "end\n";
    if (_document.namesOperatorDictionary())
        text += kSystemdictProcSet;
    procSet(name, text);
}

void DocumentWriter::callAheadOfPages()
{
    if (_hearsGlobalMeanings)
        call("KLToolkitGlobalMeanings");
}

void DocumentWriter::proceduresForCutOffPage()
{
    if (!_document.isComplete())
        procSet("KLToolkitCutOffPage", kCutOffPageProcSet);
}

void DocumentWriter::procSet(std::string_view name, std::string_view text)
{
    lines(fmt::format("%%BeginResource: procset {} 1.0 {}\n{}%%EndResource\n", name, _run,
                      withRunNumber(text, _run)));
}

void DocumentWriter::copyContent(const DSCPage &page, std::span<const std::string_view> keywords)
{
    const bool isCutOff = _document.isCutOff(page);
    const std::string end = fmt::format("{}.{}", kEndOfCutOffPage, _run);
    if (isCutOff)
        call("KLToolkitRunCutOffPage",
             fmt::format("currentglobal true setglobal currentfile 0 ({}) /SubFileDecode filter "
                         "exch setglobal",
                         end));
    std::vector<std::string_view> dropped(keywords.begin(), keywords.end());
    if (_document.hasPartInOnlyPage())
        dropped.insert(dropped.end(), kEndsOfParts.begin(), kEndsOfParts.end());
    copyWithout({page.content, page.end}, dropped);
    if (!isCutOff)
        return;
    // For whoever reads the comments: what follows is no data any more.
    const auto missing = _document.missingEndOfData();
    const bool isWholeComment = missing.starts_with("%%");
    if (!isWholeComment)
        write(missing);
    lines(end + "\n");
    if (isWholeComment)
        lines(std::string(missing) + "\n");
}

void DocumentWriter::finish()
{
    if (std::fwrite(_buffer.data(), 1, _filled, _output) != _filled)
        throw unwritableOutput(errno);
    _filled = 0;
}

void DocumentWriter::write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const std::size_t count = bytes.copy(_buffer.data() + _filled, _buffer.size() - _filled);
        bytes.remove_prefix(count);
        hold(count);
    }
}

/// So many more bytes are in the buffer, at least one; it is emptied as soon as it is full.
void DocumentWriter::hold(std::size_t count)
{
    _filled += count;
    _last = _buffer[_filled - 1];
    if (_filled == _buffer.size()) {
        writeBlock(_buffer, _output);
        _filled = 0;
    }
}
