#include "JobControl.h"

#include <algorithm>
#include <strings.h>

namespace {

constexpr std::string_view kMarker = "\033%-12345X";
constexpr std::string_view kReset = "\033E";
constexpr std::string_view kEnd = "\004";
constexpr std::string_view kWord = "@PJL";
constexpr std::string_view kBlanks("\0 \t\r\n\f", 6);

/// In bytes; longer job control is none.
constexpr std::uint64_t kLongestBefore = 65536;
constexpr std::uint64_t kLongestBehind = 4096;

bool beginsWithPJL(std::string_view text)
{
    return text.size() >= kWord.size() && strncasecmp(text.data(), kWord.data(), kWord.size()) == 0;
}

/// The length of the marker, line, reset or control-D that the text begins with; 0 for none.
std::size_t lengthOfControl(std::string_view text)
{
    for (const std::string_view control : {kMarker, kReset, kEnd}) {
        if (text.starts_with(control))
            return control.size();
    }
    return beginsWithPJL(text) ? std::min(text.find_first_of("\r\n\033"), text.size()) : 0;
}

std::size_t lengthOfBlanks(std::string_view text)
{
    return std::min(text.find_first_not_of(kBlanks), text.size());
}

} // namespace

std::size_t jobControlBefore(std::string_view text)
{
    std::size_t position = lengthOfBlanks(text);
    bool isFound = false;
    while (const std::size_t length = lengthOfControl(text.substr(position))) {
        position += length;
        position += lengthOfBlanks(text.substr(position));
        isFound = true;
    }
    return isFound ? position : 0;
}

std::size_t jobControlBehind(std::string_view text)
{
    constexpr std::string_view kFirstBytes = "\033\004";
    for (auto position = text.find_first_of(kFirstBytes); position != std::string_view::npos;
         position = text.find_first_of(kFirstBytes, position + 1)) {
        const std::string_view rest = text.substr(position);
        if (jobControlBefore(rest) == rest.size())
            return position;
    }
    return text.size();
}

InputFile withoutJobControl(const InputFile &file)
{
    const std::string start = file.text(0, std::min(file.size(), kLongestBefore));
    const std::size_t begin = jobControlBefore(start);
    if (begin == 0 || !start.substr(begin).starts_with("%!"))
        return file;
    const std::uint64_t last = file.size() - std::min(file.size() - begin, kLongestBehind);
    return file.part(begin, last + jobControlBehind(file.text(last, file.size())));
}
