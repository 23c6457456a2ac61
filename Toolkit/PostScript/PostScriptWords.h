#pragma once

#include "InputFile.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

/// A word of a PostScript program.
struct PostScriptWord {
    std::uint64_t begin = 0; ///< position of its first byte
    std::string text;        ///< with its slash if it has one, or a brace; long ones are cut

    bool isLiteralName() const { return text.starts_with('/'); }
};

/// Reads the words of a PostScript program one after the other. Comments, strings and what lies in
/// encrypted fonts and in data that comments frame are passed over. Nothing is executed: whatever
/// else a program reads as data looks like words.
class PostScriptWords {
public:
    /// @param file  stays the caller's, who keeps it at least as long
    /// @param end   behind the last byte to be read
    PostScriptWords(const InputFile &file, std::uint64_t begin, std::uint64_t end);

    /// @return nullopt at the end
    /// @throws ToolkitError when reading fails
    std::optional<PostScriptWord> next();

private:
    int peek();
    int take();
    void passComment();
    void passString();
    void passHexString();
    void passBehind(std::string_view text);
    std::string takeRegular();

    FileWindow _window;
    std::uint64_t _position;
    std::uint64_t _end;
    std::set<std::string_view> _absent; ///< what has been looked for in vain
};

/// Whether a program runs one of some operators itself, under whatever condition: by its name, by
/// one that it has loaded it under, or in a procedure that it has made of it. What it runs ahead of
/// "quit" does not count.
/// @throws ToolkitError when reading fails
bool runsAnyOf(std::set<std::string> operators, PostScriptWords words);
