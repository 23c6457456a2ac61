#include "DocumentWriter.h"

#include "ToolkitError.h"

#include <algorithm>

namespace {

constexpr std::size_t kBufferSize = std::size_t{256} * 1024;

} // namespace

DocumentWriter::DocumentWriter(const DSCDocument &document, std::FILE *output)
    : _document(document), _output(output), _buffer(kBufferSize)
{
}

void DocumentWriter::copy(DSCRange range)
{
    while (range.begin < range.end) {
        const auto size = std::min<std::uint64_t>(_buffer.size(), range.end - range.begin);
        const std::size_t count =
            _document.file().read(range.begin, std::span(_buffer).first(size));
        if (count == 0)
            throw ToolkitError("The input file became shorter while it was read.");
        write({_buffer.data(), count});
        range.begin += count;
    }
}

void DocumentWriter::copyWithout(DSCRange range, std::span<const std::string_view> keywords)
{
    DSCScanner scanner(_document.file(), range.begin, range.end);
    bool dropped = false;
    while (const auto comment = scanner.next()) {
        dropped = comment->is("%%+")
                      ? dropped
                      : std::any_of(keywords.begin(), keywords.end(),
                                    [&](std::string_view keyword) { return comment->is(keyword); });
        if (!dropped)
            continue;
        copy({range.begin, comment->begin});
        range.begin = comment->end;
    }
    copy(range);
}

void DocumentWriter::lines(std::string_view text)
{
    if (_last != '\n' && _last != '\r')
        write("\n");
    write(text);
}

void DocumentWriter::write(std::string_view bytes)
{
    if (bytes.empty())
        return;
    if (std::fwrite(bytes.data(), 1, bytes.size(), _output) != bytes.size())
        throw ToolkitError("The output file cannot be written.");
    _last = bytes.back();
}
