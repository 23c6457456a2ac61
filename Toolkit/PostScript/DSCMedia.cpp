#include "DSCMedia.h"

#include "Values.h"

#include <algorithm>

namespace {

constexpr std::size_t kMostEntries = 256;
constexpr std::string_view kAtEnd = "(atend)";

/// Takes the first word off the text. A text in parentheses is one word.
std::string_view takeWord(std::string_view &text)
{
    const auto begin = std::min(text.find_first_not_of(" \t"), text.size());
    text.remove_prefix(begin);
    const bool inParentheses = text.starts_with('(');
    auto end = inParentheses ? text.find(')') : text.find_first_of(" \t");
    end = std::min(end, text.size());
    const std::string_view word = text.substr(inParentheses ? 1 : 0, end - (inParentheses ? 1 : 0));
    text.remove_prefix(std::min(end + 1, text.size()));
    return word;
}

} // namespace

void DSCMedia::readDocumentComment(const DSCComment &comment)
{
    const bool continued = comment.is("%%+");
    if (!continued)
        _inDocumentMedia = comment.is("%%DocumentMedia") || comment.is("%%DocumentPaperSizes");
    if (_inDocumentMedia && comment.value() != kAtEnd)
        readEntry(comment.value());
}

/// "A4 595 842 80 white ()", or a name alone.
void DSCMedia::readEntry(std::string_view value)
{
    const std::uint32_t number = numberOf(takeWord(value));
    const auto width = numberFromText(takeWord(value));
    const auto height = numberFromText(takeWord(value));
    if (number != kDefault && width && height && *width > 0 && *height > 0)
        _entries[number - 1].size = PageSize{*width, *height};
}

std::uint32_t DSCMedia::numberFromPageComment(const DSCComment &comment)
{
    std::string_view value = comment.value();
    return numberOf(takeWord(value));
}

std::uint32_t DSCMedia::numberOf(std::string_view name)
{
    const auto known = std::find_if(_entries.begin(), _entries.end(),
                                    [name](const Entry &entry) { return entry.name == name; });
    if (known == _entries.end() && (name.empty() || _entries.size() == kMostEntries))
        return kDefault;
    const auto index = known - _entries.begin();
    if (known == _entries.end())
        _entries.push_back({std::string(name), std::nullopt});
    return static_cast<std::uint32_t>(index + 1);
}

std::optional<PageSize> DSCMedia::sizeOf(std::uint32_t number) const
{
    if (_entries.empty())
        return std::nullopt;
    // A document that names no default has its first media on every page that names none.
    const std::uint32_t chosen = number != kDefault ? number : std::max<std::uint32_t>(_default, 1);
    const Entry &entry = _entries[chosen - 1];
    return entry.size ? entry.size : pageSizeNamed(entry.name, {});
}
