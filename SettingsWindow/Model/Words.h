#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Model {

/// Words for the user: an English text that the window translates, and what stands for its "%1",
/// "%2". Words that are translated already, as those of a PPD, are the text "%1" with them behind.
///
/// Never holds a PIN, a password or a code.
struct Words {
    std::string_view text; ///< of a fixed text (allWords()), so it stays where it is
    std::vector<std::string> arguments = {};

    /// With the arguments put in, untranslated.
    std::string inEnglish() const;

    bool operator==(const Words &) const = default;
};

/// Words that are translated already.
Words asTheyAre(std::string words);

/// The text with its "%1" to "%9" replaced. What is not among the arguments stays.
std::string withArguments(std::string_view text, std::span<const std::string> arguments);

/// All texts that the model has words from, each once, for those who translate them; without "%1".
std::vector<std::string_view> allWords();

} // namespace Model
