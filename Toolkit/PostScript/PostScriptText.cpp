#include "PostScriptText.h"

#include <fmt/format.h>

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
