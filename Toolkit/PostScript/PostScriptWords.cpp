#include "PostScriptWords.h"

#include <algorithm>
#include <set>

namespace {

constexpr int kEnd = -1;
constexpr std::size_t kLongestWord = 128;

bool isBlank(int byte)
{
    return std::string_view(" \t\r\n\f").find(static_cast<char>(byte)) != std::string_view::npos ||
           byte == 0;
}

bool isRegular(int byte)
{
    return byte != kEnd && !isBlank(byte) &&
           std::string_view("()<>[]{}/%").find(static_cast<char>(byte)) == std::string_view::npos;
}

} // namespace

PostScriptWords::PostScriptWords(const InputFile &file, std::uint64_t begin, std::uint64_t end)
    : _window(file, end), _position(begin), _end(std::min(end, file.size()))
{
}

std::optional<PostScriptWord> PostScriptWords::next()
{
    while (_position < _end) {
        const std::uint64_t begin = _position;
        const int byte = take();
        if (byte == '%')
            passComment();
        else if (byte == '(')
            passString();
        else if (byte == '<' && peek() != '<')
            passHexString();
        else if (byte == '{')
            return PostScriptWord{begin, "{", _depth++};
        else if (byte == '}')
            return PostScriptWord{begin, "}", _depth > 0 ? --_depth : 0};
        else if (byte == '/')
            return PostScriptWord{begin, "/" + takeRegular(), _depth};
        else if (isRegular(byte)) {
            --_position;
            std::string text = takeRegular();
            if (text == "eexec")
                passBehind("cleartomark");
            return PostScriptWord{begin, std::move(text), _depth};
        }
    }
    return std::nullopt;
}

int PostScriptWords::peek()
{
    const std::string_view bytes = _window.from(_position, 1);
    return bytes.empty() ? kEnd : static_cast<unsigned char>(bytes.front());
}

int PostScriptWords::take()
{
    const int byte = peek();
    _position += byte == kEnd ? 0 : 1;
    return byte;
}

void PostScriptWords::passComment()
{
    std::string text;
    for (int byte = take(); byte != kEnd && byte != '\n' && byte != '\r'; byte = take()) {
        if (text.size() < kLongestWord)
            text += static_cast<char>(byte);
    }
    if (text.starts_with("%BeginBinary"))
        passBehind("%%EndBinary");
    else if (text.starts_with("%BeginData"))
        passBehind("%%EndData");
}

void PostScriptWords::passString()
{
    for (int depth = 1; depth > 0;) {
        const int byte = take();
        if (byte == kEnd)
            return;
        if (byte == '\\')
            take();
        depth += byte == '(' ? 1 : byte == ')' ? -1 : 0;
    }
}

void PostScriptWords::passHexString()
{
    for (int byte = take(); byte != kEnd && byte != '>';)
        byte = take();
}

/// Stays where it is if the text is not there.
void PostScriptWords::passBehind(std::string_view text)
{
    for (std::uint64_t position = _position; !_absent.contains(text);) {
        const std::string_view bytes = _window.from(position, text.size());
        if (bytes.size() < text.size()) {
            _absent.insert(text);
            return;
        }
        const auto found = bytes.find(text);
        if (found != std::string_view::npos) {
            _position = position + found + text.size();
            return;
        }
        position += bytes.size() - text.size() + 1;
    }
}

std::string PostScriptWords::takeRegular()
{
    std::string text;
    for (; isRegular(peek()); ++_position) {
        if (text.size() < kLongestWord)
            text += static_cast<char>(peek());
    }
    return text;
}

bool showsPage(PostScriptWords words)
{
    std::set<std::string> showing = {"showpage", "copypage"};
    std::string name; ///< of the procedure that begins, or that the words stand in
    bool bodyShows = false;
    while (const auto word = words.next()) {
        const bool shows = showing.contains(word->text);
        if (word->depth > 0)
            bodyShows = bodyShows || shows;
        else if (shows)
            return true;
        else if (word->isLiteralName())
            name = word->text.substr(1);
        else if (word->text == "{")
            bodyShows = false;
        else if (word->text == "}" && bodyShows && !name.empty())
            showing.insert(name);
        else if (word->text == "}")
            showing.erase(name);
        else
            name.clear();
    }
    return false;
}
