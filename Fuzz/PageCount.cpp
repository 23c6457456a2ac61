// A stream of PostScript documents, its pages counted as a whole and in blocks; where no data are
// framed in it, against a model that sees all of it at once.

#include "KLPostScriptPageCounter.h"

#include "Fuzzing.h"

#include <algorithm>
#include <optional>
#include <regex>
#include <string>

namespace {

using Pages = std::optional<std::size_t>;

Pages count(std::string_view stream, std::size_t blockSize)
{
    KLPostScriptPageCounter counter;
    for (std::size_t at = 0; at < stream.size(); at += blockSize)
        counter.count(stream.substr(at, blockSize));
    return counter.pages();
}

/// The pages of one document after another, by the rules alone.
class Model {
public:
    void readLine(std::string_view line)
    {
        const auto begin = line.starts_with('%') ? 0 : line.find("\x04%");
        if (begin == std::string_view::npos)
            return;
        const bool followsControlD = !line.starts_with('%');
        readComment(line.substr(begin + (followsControlD ? 1 : 0)), followsControlD);
    }

    Pages pages() const
    {
        return _isClear && _depth == 0 && _pagesOfDocument > 0 ? Pages(_pages) : std::nullopt;
    }

private:
    static bool is(std::string_view line, std::string_view keyword)
    {
        if (!line.starts_with(keyword))
            return false;
        const auto rest = line.substr(keyword.size());
        return rest.empty() || rest.starts_with(':') || rest.starts_with(' ') ||
               rest.starts_with('\t');
    }

    void readComment(std::string_view line, bool followsControlD)
    {
        if (is(line, "%%BeginDocument")) {
            static const std::regex frame("%%BeginDocument[: \t]+nondsc");
            if (_depth++ == 0 && std::regex_match(line.begin(), line.end(), frame))
                _isClear = false;
        } else if (is(line, "%%EndDocument")) {
            _depth -= std::min(_depth, 1);
        } else if (_depth == 0) {
            readOuterComment(line, followsControlD);
        }
    }

    void readOuterComment(std::string_view line, bool followsControlD)
    {
        if (line.starts_with("%!") && (_mayBegin || followsControlD)) {
            _isClear = _isClear && line.starts_with("%!PS-Adobe-") && _pagesOfDocument != 0;
            _pagesOfDocument = 0;
            _mayBegin = false;
        } else if (line.starts_with("%%Page:")) {
            _isClear = _isClear && _pagesOfDocument >= 0;
            ++_pages;
            ++_pagesOfDocument;
            _mayBegin = false;
        } else if (is(line, "%%EOF")) {
            _mayBegin = true;
        }
    }

    bool _isClear = true;
    bool _mayBegin = true;
    int _depth = 0;
    int _pagesOfDocument = -1; ///< before the first document
    std::size_t _pages = 0;
};

Pages pagesOf(std::string_view stream)
{
    const auto first = stream.find_first_not_of("\x04\r\n\t ");
    if (first == std::string_view::npos || stream[first] != '%')
        return std::nullopt;
    Model model;
    while (!stream.empty()) {
        const auto end = std::min(stream.find_first_of("\r\n"), stream.size());
        model.readLine(stream.substr(0, end));
        stream.remove_prefix(std::min(end + 1, stream.size()));
    }
    return model.pages();
}

} // namespace

void Fuzz::tryInput(std::string_view input)
{
    const Pages pages = count(input, std::max<std::size_t>(input.size(), 1));
    for (const std::size_t blockSize : {1U, 2U, 7U, 64U})
        require(pages == count(input, blockSize), "blocks make no difference");
    const bool hasData = input.find("%%BeginBinary") != std::string_view::npos ||
                         input.find("%%BeginData") != std::string_view::npos;
    // Longer lines are cut.
    if (!hasData && input.size() < 256)
        require(pages == pagesOf(input), "comments are counted where they structure a document");
}
