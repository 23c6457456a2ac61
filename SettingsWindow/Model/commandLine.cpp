#include "commandLine.h"

#include <string_view>

namespace Model {
namespace {

constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"
                                    "+,-./:=@_%";

bool isPlain(std::string_view text)
{
    return !text.empty() && text.find_first_not_of(kPlain) == std::string_view::npos;
}

/// A word for the shell.
std::string quoted(const std::string &word)
{
    if (isPlain(word))
        return word;
    std::string whole = "'";
    for (const char byte : word) {
        if (byte == '\'')
            whole += "'\\'";
        whole += byte;
    }
    return whole + "'";
}

/// An option for an option string.
std::string optionText(const std::string &name, const std::string &value)
{
    if (isPlain(value))
        return name + '=' + value;
    std::string whole = name + "=\"";
    for (const char byte : value) {
        if (byte == '"' || byte == '\\')
            whole += '\\';
        whole += byte;
    }
    return whole + '"';
}

} // namespace

std::string commandLine(const Queue &queue, const JobOptions &options, const std::string &path)
{
    std::string line = "lp";
    if (!queue.server.isStandard)
        line += " -h " + quoted(queue.server.name());
    line += " -d " + quoted(queue.name);
    for (const auto &[name, value] : options)
        line += " -o " + quoted(optionText(name, value));
    if (path.starts_with('-'))
        line += " --";
    if (!path.empty())
        line += ' ' + quoted(path);
    return line;
}

std::string optionString(const JobOptions &options)
{
    std::string all;
    for (const auto &[name, value] : options) {
        if (!all.empty())
            all += ' ';
        all += optionText(name, value);
    }
    return all;
}

} // namespace Model
