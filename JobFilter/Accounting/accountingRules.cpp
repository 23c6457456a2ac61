#include "accountingRules.h"

#include "Module.h"
#include "Streams.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <optional>
#include <string_view>
#include <strings.h>

namespace {

constexpr std::string_view kKeyword = "*KLPageAccounting";
constexpr std::string_view kCopiesKey = "com.kalmira.copies";
/// Far above any real PPD, in bytes.
constexpr std::size_t kLargestPPD = std::size_t{16} << 20;

bool isEqual(std::string_view left, std::string_view right)
{
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

std::string_view without(std::string_view text, const char *bytes)
{
    const auto first = text.find_first_not_of(bytes);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(bytes) - first + 1);
}

bool isLineEnd(char byte)
{
    return byte == '\n' || byte == '\r';
}

/// Empty when the file cannot be read or is too large.
std::string contentOf(const char *path)
{
    std::string content;
    const Platform::Stream file = Platform::openForReading(path);
    std::array<char, 16384> block = {};
    while (file && content.size() <= kLargestPPD) {
        const auto length = std::fread(block.data(), 1, block.size(), file.get());
        if (length == 0)
            return content;
        content.append(block.data(), length);
    }
    return {};
}

/// The value of the line, without quotes; nullopt for every other line.
std::optional<std::string_view> valueOfOurLine(std::string_view line)
{
    const auto colon = line.find(':');
    if (colon == std::string_view::npos ||
        !isEqual(without(line.substr(0, colon), " \t"), kKeyword))
        return std::nullopt;
    return without(line.substr(colon + 1), " \t\"");
}

int numberFrom(std::string_view text)
{
    int number = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = failure == std::errc() && end == text.data() + text.size();
    return isNumber ? std::max(number, 1) : 1;
}

/// The same from the job's store, which takes the libraries that jobfilter itself has.
std::string copiesFromStore(const std::string &options, const std::string &copies)
{
    std::string stored;
    Platform::callModule<const std::string &, const std::string &, std::string &>(
        "KLCopiesModule.so", "KLCopiesOfJob", options, copies, stored);
    return stored;
}

} // namespace

bool asksForPageAccounting(const char *ppdPath)
{
    const std::string ppd = ppdPath != nullptr ? contentOf(ppdPath) : std::string();
    for (auto at = ppd.find('*'); at != std::string::npos; at = ppd.find('*', at + 1)) {
        if (at > 0 && !isLineEnd(ppd[at - 1]))
            continue;
        const auto end = std::min(ppd.find_first_of("\r\n", at), ppd.size());
        if (const auto value = valueOfOurLine(std::string_view(ppd).substr(at, end - at)))
            return isEqual(*value, "True");
    }
    return false;
}

int copiesOfHeader(const std::string &options, const std::string &copies)
{
    if (options.find(kCopiesKey) == std::string::npos)
        return numberFrom(copies);
    try {
        return numberFrom(copiesFromStore(options, copies));
    } catch (const Platform::ModuleError &) {
        return numberFrom(copies);
    }
}
