#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace Model {

/// Words for the user: an English text that the window translates, with words for its "%1", "%2";
/// or words that are in the user's language already, as those of a PPD or of a server are.
///
/// Never holds a PIN, a password or a code.
struct Words {
    std::string_view text = {};        ///< one of allWords(), so it stays where it is
    std::vector<Words> arguments = {}; ///< nine at most
    std::string asTheyAre = {};        ///< stands in the place of the text when there is none

    bool isEmpty() const { return text.empty() && asTheyAre.empty(); }
    bool operator==(const Words &) const = default;
};

/// Words in the user's language; what is no UTF-8 in them becomes "?".
Words asTheyAre(std::string words);

/// What an English text is called in the user's language, "%1" included.
using Translator = std::function<std::string(std::string_view english)>;

/// The words with everything put in: of the text and of its arguments each is translated. A "%1"
/// that there is no argument for stays.
std::string inLanguage(const Words &words, const Translator &translator);

std::string inEnglish(const Words &words);

/// All English texts that the model has words from, each once, for those who translate them.
std::vector<std::string_view> allWords();

} // namespace Model
