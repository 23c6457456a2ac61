#include "PostScriptWords.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

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

/// Follows a program word by word, and with it the names by which some operators are run.
class ProgramReader {
public:
    explicit ProgramReader(std::set<std::string> operators) : _operators(std::move(operators)) {}

    void read(const PostScriptWord &word);

    /// Whether the program has run one of them by now.
    bool runsOne() const { return _bodies.front().runsOne; }

private:
    /// What has been read of a procedure, or of the program around all of them.
    struct Body {
        std::string name = {};       ///< that stands last, with a slash: the next procedure's
        std::string nameBefore = {}; ///< that stands in front of this
        bool holdsOne = false;       ///< a procedure without a name, which runs one of them
        bool runsOne = false;
    };

    void endBody();
    void readWord(const PostScriptWord &word);

    std::set<std::string> _operators; ///< and what does the same
    std::vector<Body> _bodies = std::vector<Body>(1);
};

void ProgramReader::read(const PostScriptWord &word)
{
    if (word.text == "{")
        _bodies.emplace_back();
    else if (word.text == "}")
        endBody();
    else if (word.text != "bind")
        readWord(word);
}

void ProgramReader::endBody()
{
    if (_bodies.size() == 1)
        return;
    const bool runsOne = _bodies.back().runsOne;
    _bodies.pop_back();
    Body &around = _bodies.back();
    if (around.name.empty())
        around.holdsOne = around.holdsOne || runsOne;
    else if (runsOne)
        _operators.insert(around.name);
    else if (_bodies.size() == 1) // else whoever calls the procedure around makes it so
        _operators.erase(around.name);
}

void ProgramReader::readWord(const PostScriptWord &word)
{
    static const std::set<std::string_view> kRunning = {"exec",   "for",  "forall", "if",
                                                        "ifelse", "loop", "repeat", "stopped"};
    Body &body = _bodies.back();
    if (word.text == "load" && !body.nameBefore.empty() && _operators.contains(body.name))
        _operators.insert(body.nameBefore);
    if (word.text == "quit") // what it tells instead of the pages
        body.runsOne = false;
    else if (_operators.contains(word.text) || (body.holdsOne && kRunning.contains(word.text)))
        body.runsOne = true;
    body.holdsOne = false;
    body.nameBefore = std::move(body.name);
    body.name = word.isLiteralName() ? word.text.substr(1) : "";
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
            return PostScriptWord{begin, "{"};
        else if (byte == '}')
            return PostScriptWord{begin, "}"};
        else if (byte == '/')
            return PostScriptWord{begin, "/" + takeRegular()};
        else if (isRegular(byte)) {
            --_position;
            std::string text = takeRegular();
            if (text == "eexec")
                passBehind("cleartomark");
            return PostScriptWord{begin, std::move(text)};
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

bool runsAnyOf(std::set<std::string> operators, PostScriptWords words)
{
    ProgramReader reader(std::move(operators));
    while (const auto word = words.next()) {
        reader.read(*word);
        if (reader.runsOne())
            return true;
    }
    return false;
}
