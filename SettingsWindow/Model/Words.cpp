#include "Words.h"

#include <utility>

namespace Model {

std::string withArguments(std::string_view text, std::span<const std::string> arguments)
{
    std::string whole;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::size_t number = text[at] == '%' && at + 1 < text.size()
                                       ? static_cast<std::size_t>(text[at + 1] - '1')
                                       : arguments.size();
        if (number < arguments.size() && number < 9) {
            whole += arguments[number];
            ++at;
        } else {
            whole += text[at];
        }
    }
    return whole;
}

std::string Words::inEnglish() const
{
    return withArguments(text, arguments);
}

Words asTheyAre(std::string words)
{
    return {"%1", {std::move(words)}};
}

std::vector<std::string_view> allWords()
{
    return {};
}

} // namespace Model
