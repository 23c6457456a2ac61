#include "PostScriptText.h"

#include <fmt/format.h>

namespace {

constexpr std::string_view kEndOfUnfinishedPage = "%KLToolkitEndOfUnfinishedPage.N";

} // namespace

std::string postScriptNumber(double number)
{
    std::string text = fmt::format("{:.4f}", number);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.'))
        text.pop_back();
    return text == "-0" ? "0" : text;
}

std::string postScriptNumbers(std::span<const double> numbers)
{
    std::string text;
    for (const double number : numbers) {
        if (!text.empty())
            text += ' ';
        text += postScriptNumber(number);
    }
    return text;
}

std::string procSetResource(std::string_view name, unsigned run, std::string_view procedures)
{
    return fmt::format("%%BeginResource: procset {} 1.0 {}\n{}%%EndResource\n", name, run,
                       withRunNumber(procedures, run));
}

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

std::string unfinishedPageBegin(unsigned run)
{
    return withRunNumber(fmt::format("currentfile 0 ({}) /SubFileDecode filter "
                                     "KLToolkitRunUnfinished.N\n",
                                     kEndOfUnfinishedPage),
                         run);
}

std::string unfinishedPageEnd(unsigned run, std::string_view missingEndOfData)
{
    std::string text = withRunNumber(kEndOfUnfinishedPage, run) + "\n";
    // For whoever reads the comments: what follows is no data any more.
    if (!missingEndOfData.empty())
        text.append(missingEndOfData) += '\n';
    return text;
}
