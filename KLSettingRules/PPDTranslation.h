#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

/// The words of a PPD in one language, from the lines "*LANGUAGE.KEYWORD NAME/WORDS: ..." that its
/// attribute "cupsLanguages" announces.
///
/// They are read from the file itself: the library that reads PPDs keeps those of the process' own
/// language alone, and cuts them, a group's after 13 Japanese letters. A value.
class PPDTranslation {
public:
    /// @param path      of a PPD; nothing is translated when it cannot be read
    /// @param language  "de", "de_DE"; of a PPD that has both the words of "de_DE" count. Empty for
    ///                  the words as they stand
    PPDTranslation(const std::string &path, std::string_view language);

    /// What the line of a keyword and a name says, as UTF-8.
    /// @param otherwise  what counts when there is no such line, or no words in it
    std::string of(const std::string &keyword, const std::string &name,
                   const std::string &otherwise) const;

private:
    void read(std::string_view line, std::string_view prefix);

    std::map<std::string, std::string, std::less<>> _words; ///< by "KEYWORD NAME"
};
