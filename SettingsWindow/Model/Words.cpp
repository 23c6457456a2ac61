#include "Words.h"

#include "SettingKeys.h"
#include "Text.h"
#include "sentences.h"

#include <algorithm>
#include <utility>

namespace Model {
namespace {

/// Which argument stands at the place, counted from 0; the count of arguments for none.
std::size_t argumentAt(std::string_view text, std::size_t place, std::size_t count)
{
    if (text[place] != '%' || place + 1 == text.size() || text[place + 1] < '1' ||
        text[place + 1] > '9')
        return count;
    return std::min(count, static_cast<std::size_t>(text[place + 1] - '1'));
}

void addUnlessEmpty(std::vector<std::string_view> &texts, std::string_view text)
{
    if (!text.empty())
        texts.push_back(text);
}

} // namespace

Words asTheyAre(std::string words)
{
    return {.asTheyAre = Platform::repairedUTF8(std::move(words), '?')};
}

std::string inLanguage(const Words &words, const Translator &translator)
{
    if (words.text.empty())
        return words.asTheyAre;
    const std::string text = translator(words.text);
    std::string whole;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::size_t argument = argumentAt(text, at, words.arguments.size());
        if (argument < words.arguments.size()) {
            whole += inLanguage(words.arguments[argument], translator);
            ++at;
        } else {
            whole += text[at];
        }
    }
    return whole;
}

std::string inEnglish(const Words &words)
{
    return inLanguage(words, [](std::string_view english) { return std::string(english); });
}

std::vector<std::string_view> allWords()
{
    std::vector<std::string_view> texts(std::begin(kSentences), std::end(kSentences));
    for (const Page page : kPages)
        texts.push_back(titleOf(page));
    for (const SettingKey &key : settingKeys()) {
        addUnlessEmpty(texts, key.label);
        for (const KeyChoice &choice : key.choices)
            texts.push_back(choice.label);
    }
    std::ranges::sort(texts);
    texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
    return texts;
}

} // namespace Model
