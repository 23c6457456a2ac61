#include "ImmediateNames.h"

#include "ToolkitError.h"

#include <algorithm>

namespace {

constexpr std::string_view kSigns = "//";
constexpr std::string_view kDelimiters(" \t\r\n\f\0()<>[]{}/%", 16);
constexpr std::uint64_t kLongestLine = 4096; ///< looked at for what stands ahead of a name

/// The name that begins there, if it is one of these.
bool beginsWithOneOf(std::string_view bytes, std::span<const std::string_view> names)
{
    const std::string_view name = bytes.substr(0, bytes.find_first_of(kDelimiters));
    return std::ranges::find(names, name) != names.end();
}

/// Whether what follows this begin of a line is inside a string or a comment.
bool endsInsideText(std::string_view line)
{
    unsigned depth = 0; // of parentheses
    for (std::size_t index = 0; index < line.size(); ++index) {
        const char byte = line[index];
        if (depth == 0 && byte == '%')
            return true;
        if (depth > 0 && byte == '\\')
            ++index;
        else if (byte == '(')
            ++depth;
        else if (byte == ')' && depth > 0)
            --depth;
    }
    return depth > 0;
}

bool isInsideText(const InputFile &file, std::uint64_t position)
{
    const std::string before = file.text(position - std::min(position, kLongestLine), position);
    const auto lineEnd = before.find_last_of("\r\n");
    return endsInsideText(
        std::string_view(before).substr(lineEnd == std::string::npos ? 0 : lineEnd + 1));
}

std::size_t lengthOfLongest(std::span<const std::string_view> names)
{
    std::size_t length = 0;
    for (const std::string_view name : names)
        length = std::max(length, name.size());
    return length;
}

} // namespace

bool takesValueAtOnce(const DSCDocument &document, std::span<const std::string_view> names)
{
    const InputFile &file = document.file();
    const std::size_t enough = kSigns.size() + lengthOfLongest(names) + 1;
    FileWindow window(file, file.size());
    DSCScanner scanner(file, 0, file.size());
    std::uint64_t position = 0;
    while (true) {
        const auto found = window.find(kSigns, position);
        if (!found)
            return false;
        const std::string_view bytes = window.from(*found, enough);
        if (beginsWithOneOf(bytes.substr(kSigns.size()), names) && !isInsideText(file, *found) &&
            !scanner.isInData(*found))
            return true;
        position = *found + 1;
    }
}

void requireReplaceable(const DSCDocument &document, std::span<const std::string_view> names)
{
    if (takesValueAtOnce(document, names))
        throw ToolkitError("The PostScript document does not allow its page operators to be "
                           "replaced.");
}
