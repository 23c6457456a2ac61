#include "PJLChecker.h"

#include <algorithm>
#include <cctype>
#include <set>

namespace Support {
namespace {

constexpr std::string_view kExit = "\x1B%-12345X";
constexpr std::string_view kEnter = "@PJL ENTER LANGUAGE";

//
// The words of a line
//

enum class Kind { word, string, sign, junk };

/// A word, a string in double quotes, a sign ("=" or ":") or a character that is none of these.
struct Token {
    Kind kind;
    std::string_view text;
};

bool isWordCharacter(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0 ||
           std::string_view("_.+-").find(c) != std::string_view::npos;
}

/// Takes the first token off the text, which does not begin with a blank.
Token takeToken(std::string_view &text)
{
    std::size_t length = 1;
    Kind kind = Kind::junk;
    if (isWordCharacter(text.front())) {
        length = static_cast<std::size_t>(std::ranges::find_if_not(text, isWordCharacter) -
                                          text.begin());
        kind = Kind::word;
    } else if (text.front() == '=' || text.front() == ':') {
        kind = Kind::sign;
    } else if (const std::size_t end = text.find('"', 1);
               text.front() == '"' && end != std::string_view::npos) {
        length = end + 1;
        kind = Kind::string;
    }
    const Token token{kind, text.substr(0, length)};
    text.remove_prefix(length);
    return token;
}

std::vector<Token> tokensOf(std::string_view text)
{
    std::vector<Token> tokens;
    while (true) {
        text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
        if (text.empty())
            return tokens;
        tokens.push_back(takeToken(text));
    }
}

//
// The form of a command
//

/// The tokens behind a command's name, taken from the front.
class Parameters {
public:
    explicit Parameters(std::string_view text) : _tokens(tokensOf(text)) {}

    bool atEnd() const { return _at == _tokens.size(); }
    bool takeWord()
    {
        return take([](const Token &t) { return t.kind == Kind::word; });
    }
    bool takeString()
    {
        return take([](const Token &t) { return t.kind == Kind::string; });
    }
    bool takeValue() { return takeWord() || takeString(); }
    bool takeText(std::string_view text)
    {
        return take([text](const Token &t) { return t.text == text; });
    }

private:
    template <class Test>
    bool take(const Test &test)
    {
        if (atEnd() || !test(_tokens[_at]))
            return false;
        ++_at;
        return true;
    }

    std::vector<Token> _tokens;
    std::size_t _at = 0;
};

/// [NAME = "..."] [DISPLAY = "..."] [START = number] [END = number] [PASSWORD = number]
bool isJob(Parameters parameters)
{
    while (!parameters.atEnd()) {
        const bool isText = parameters.takeText("NAME") || parameters.takeText("DISPLAY");
        const bool isNumber =
            !isText && (parameters.takeText("START") || parameters.takeText("END") ||
                        parameters.takeText("PASSWORD"));
        if (!(isText || isNumber) || !parameters.takeText("="))
            return false;
        if (!(isText ? parameters.takeString() : parameters.takeWord()))
            return false;
    }
    return true;
}

/// LANGUAGE = name
bool isEnter(Parameters parameters)
{
    return parameters.takeText("LANGUAGE") && parameters.takeText("=") && parameters.takeWord() &&
           parameters.atEnd();
}

/// [LPARM : name | IPARM : name] variable = value
bool isSet(Parameters parameters)
{
    if (parameters.takeText("LPARM") || parameters.takeText("IPARM")) {
        if (!parameters.takeText(":") || !parameters.takeWord())
            return false;
    }
    return parameters.takeWord() && parameters.takeText("=") && parameters.takeValue() &&
           parameters.atEnd();
}

/// DISPLAY = "..."
bool isMessage(Parameters parameters)
{
    return parameters.takeText("DISPLAY") && parameters.takeText("=") && parameters.takeString() &&
           parameters.atEnd();
}

/// The name of a DSSC setting, e.g. "RGB PROFILE"; empty when the comment is none of right form.
std::string_view settingNameOf(std::string_view comment)
{
    for (const std::string_view prefix : {"DSSC PRINT ", "DSSC BOX "}) {
        if (!comment.starts_with(prefix))
            continue;
        const std::string_view setting = comment.substr(prefix.size());
        const std::string_view name = setting.substr(0, setting.find('='));
        static constexpr std::string_view kAllowed = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_ ";
        const bool isName = name.size() < setting.size() && !name.empty() && name.front() != ' ' &&
                            name.back() != ' ' &&
                            name.find_first_not_of(kAllowed) == std::string_view::npos;
        return isName ? name : std::string_view();
    }
    return {};
}

bool isComment(std::string_view text)
{
    const bool isDSSC = text.starts_with("DSSC");
    return isDSSC ? !settingNameOf(text).empty() : !text.empty();
}

/// Whether the line is one that the filter writes and neither the PPD nor libcups.
bool isWrittenByTheFilter(std::string_view command)
{
    static const std::set<std::string_view> kSettings = {"FORCE_DEVICECOLOR",
                                                         "RGB PROFILE",
                                                         "CMYK PROFILE",
                                                         "OUTPUT PROFILE",
                                                         "USE PROFILE",
                                                         "RENDERING INTENT",
                                                         "USERLOGIN",
                                                         "DOMAINNAME",
                                                         "PRIVPRINT",
                                                         "EXTRADOCUMENTTYPE",
                                                         "ACCESSCODE",
                                                         "BOX",
                                                         "BOXNO",
                                                         "BOXNAME",
                                                         "BOXFOLDER",
                                                         "BOXPASSWORD",
                                                         "BOXPASSWORDEX",
                                                         "JOBENDINFO PAGES",
                                                         "JOBENDINFO PAGESIZE"};
    static constexpr std::string_view kComment = "@PJL COMMENT ";
    if (command.starts_with(kComment))
        return kSettings.contains(settingNameOf(command.substr(kComment.size())));
    return command.starts_with("@PJL SET COPIES");
}

//
// The problems
//

/// The beginning of a line, printable, for a problem's sentence.
std::string shown(std::string_view line)
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (const char c : line.substr(0, 60)) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F)
            ((text += "\\x") += kDigits[byte >> 4]) += kDigits[byte & 15];
        else
            text += c;
    }
    return "\"" + text + "\"";
}

class Checker {
public:
    std::vector<std::string> problems;

    void checkJob(std::string_view job);

private:
    void report(std::string_view problem, std::string_view line)
    {
        problems.push_back(std::string(problem) + ": " + shown(line));
    }
    void checkMarkers(std::string_view job);
    void checkHeader(std::string_view header);
    void checkLine(std::string_view line);
    void checkCommand(std::string_view command);
    void checkBody(std::string_view body);
    void checkEnd(std::string_view end);
};

void Checker::checkJob(std::string_view job)
{
    checkMarkers(job);
    const auto parts = splitPJLJob(job);
    if (!parts) {
        report("there is no ENTER LANGUAGE line with an exit marker behind it", job);
        return;
    }
    checkHeader(parts->header);
    checkBody(parts->body);
    checkEnd(parts->end);
}

void Checker::checkMarkers(std::string_view job)
{
    std::size_t count = 0;
    for (std::size_t at = job.find(kExit); at != std::string_view::npos;
         at = job.find(kExit, at + kExit.size()))
        ++count;
    if (count != 2)
        report("there are " + std::to_string(count) + " exit markers instead of two", job);
}

void Checker::checkHeader(std::string_view header)
{
    if (!header.starts_with(kExit)) {
        report("the job does not begin with the exit marker", header);
        header.remove_prefix(std::min(header.find("@PJL"), header.size()));
    } else {
        header.remove_prefix(kExit.size());
    }
    std::ptrdiff_t jobs = 0;
    for (const std::string &line : linesOf(header)) {
        checkLine(line);
        jobs += line.starts_with("@PJL JOB") ? 1 : 0;
    }
    if (jobs > 1)
        report("there are several JOB commands", header);
}

/// One line of the header or of the job's end, with its line feed.
void Checker::checkLine(std::string_view line)
{
    std::string_view command = line.substr(0, line.size() - 1);
    const bool hasCR = command.ends_with('\r');
    command.remove_suffix(hasCR ? 1 : 0);

    if (!hasCR && isWrittenByTheFilter(command))
        report("the line does not end with CR LF", line);
    if (std::ranges::any_of(command, [](unsigned char c) { return c < 0x20 || c == 0x7F; }))
        report("there is a control character in the line", line);
    checkCommand(command);
}

void Checker::checkCommand(std::string_view command)
{
    static constexpr std::string_view kPrefix = "@PJL";
    if (command == kPrefix)
        return; // a line of its own: nothing is asked for
    if (!command.starts_with("@PJL ")) {
        report("the line is no PJL command", command);
        return;
    }
    const std::string_view rest = command.substr(kPrefix.size() + 1);
    const std::string_view name = rest.substr(0, rest.find(' '));
    const std::string_view behind = rest.substr(std::min(name.size() + 1, rest.size()));
    const bool isRight = name == "COMMENT"  ? isComment(behind)
                         : name == "ENTER"  ? isEnter(Parameters(behind))
                         : name == "JOB"    ? isJob(Parameters(behind))
                         : name == "RDYMSG" ? isMessage(Parameters(behind))
                         : name == "SET"    ? isSet(Parameters(behind))
                                            : false;
    if (!isRight)
        report("the command does not have the right form for a job header", command);
}

void Checker::checkBody(std::string_view body)
{
    for (const std::string &line : linesOf(body)) {
        if (line.starts_with("@PJL"))
            report("there is a PJL line in the page data", line);
    }
}

void Checker::checkEnd(std::string_view end)
{
    const auto lines = linesOf(end.substr(kExit.size()));
    static constexpr std::string_view kPageSize = "@PJL COMMENT DSSC PRINT JOBENDINFO PAGESIZE=";
    const bool isRight = lines.size() == 3 &&
                         lines[0] == "@PJL COMMENT DSSC PRINT JOBENDINFO PAGES=1\r\n" &&
                         lines[1].starts_with(kPageSize) &&
                         lines[1].size() > kPageSize.size() + 2 && lines[2] == "@PJL EOJ\n";
    if (!isRight)
        report("the job does not end with PAGES, PAGESIZE and EOJ", end);
    else
        checkLine(lines[1]);
}

} // namespace

std::optional<PJLJob> splitPJLJob(std::string_view job)
{
    // The first line may stand behind the marker.
    std::size_t enter = job.find(kEnter);
    while (enter != std::string_view::npos && enter > 0 && job[enter - 1] != '\n' &&
           !job.substr(0, enter).ends_with(kExit))
        enter = job.find(kEnter, enter + 1);
    if (enter == std::string_view::npos)
        return std::nullopt;
    const std::size_t lineFeed = job.find('\n', enter);
    if (lineFeed == std::string_view::npos)
        return std::nullopt;
    const std::size_t body = lineFeed + 1;
    const std::size_t end = job.rfind(kExit);
    if (end == std::string_view::npos || end < body)
        return std::nullopt;
    return PJLJob{std::string(job.substr(0, body)), std::string(job.substr(body, end - body)),
                  std::string(job.substr(end))};
}

std::vector<std::string> linesOf(std::string_view text)
{
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.emplace_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return lines;
}

std::vector<std::string> problemsOfPJLJob(std::string_view job)
{
    Checker checker;
    checker.checkJob(job);
    return checker.problems;
}

} // namespace Support
