#include "PPDTranslation.h"

#include "Streams.h"
#include "Text.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace {

/// Of a line; what is longer is no word.
constexpr std::size_t kLongestLine = 4096;

std::string readLine(FILE *file, bool *isThere)
{
    std::string line;
    int byte = 0;
    while ((byte = std::getc(file)) != EOF && byte != '\n' && byte != '\r') {
        if (line.size() < kLongestLine)
            line += static_cast<char>(byte);
    }
    *isThere = byte != EOF || !line.empty();
    return line;
}

/// The bytes of "E4F6", as a PPD has them in angle brackets; empty for what is none.
std::string bytesOf(std::string_view digits)
{
    std::string bytes;
    for (; digits.size() >= 2; digits.remove_prefix(2)) {
        unsigned value = 0;
        const auto end = std::from_chars(digits.data(), digits.data() + 2, value, 16);
        if (end.ptr != digits.data() + 2)
            return {};
        bytes += static_cast<char>(value);
    }
    return digits.empty() ? bytes : std::string();
}

std::string decoded(std::string_view text)
{
    std::string whole;
    while (!text.empty()) {
        const std::size_t end = text.front() == '<' ? text.find('>') : std::string_view::npos;
        const std::string bytes =
            end != std::string_view::npos ? bytesOf(text.substr(1, end - 1)) : std::string();
        whole += bytes.empty() ? std::string(1, text.front()) : bytes;
        text.remove_prefix(bytes.empty() ? 1 : end + 1);
    }
    return whole;
}

} // namespace

PPDTranslation::PPDTranslation(const std::string &path, std::string_view language)
{
    const Platform::Stream file =
        language.size() < 2 ? Platform::Stream() : Platform::openForReading(path);
    if (!file)
        return;
    // The words of the place come last: they count.
    std::vector<std::string> prefixes = {'*' + std::string(language.substr(0, 2)) + '.'};
    if (language.size() > 2)
        prefixes.push_back('*' + std::string(language) + '.');
    for (const std::string &prefix : prefixes) {
        std::rewind(file.get());
        bool isThere = true;
        while (isThere)
            read(readLine(file.get(), &isThere), prefix);
    }
}

void PPDTranslation::read(std::string_view line, std::string_view prefix)
{
    if (!line.starts_with(prefix))
        return;
    line.remove_prefix(prefix.size());
    const std::size_t blank = line.find_first_of(" \t");
    const std::size_t slash = line.find('/');
    const std::size_t colon = line.find(':');
    if (blank == std::string_view::npos || slash == std::string_view::npos || slash < blank ||
        colon == std::string_view::npos || colon <= slash + 1)
        return;
    const std::string_view name = Platform::withoutBlanks(line.substr(blank, slash - blank), " \t");
    const std::string words = decoded(line.substr(slash + 1, colon - slash - 1));
    _words[std::string(line.substr(0, blank)).append(" ").append(name)] =
        Platform::repairedUTF8(words, '?');
}

std::string PPDTranslation::of(const std::string &keyword, const std::string &name,
                               const std::string &otherwise) const
{
    const auto found = _words.find(keyword + ' ' + name);
    return found != _words.end() ? found->second : otherwise;
}
