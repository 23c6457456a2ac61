#include "watermarkPlaceholders.h"

#include "Text.h"

#include <array>
#include <optional>
#include <stdexcept>

namespace {

constexpr std::size_t kLongest = 100'000;

std::string localTime(std::time_t time, const char *format)
{
    std::tm parts = {};
    std::array<char, 32> text = {};
    localtime_r(&time, &parts);
    return {text.data(), std::strftime(text.data(), text.size(), format, &parts)};
}

/// @return nullopt for a name that is not the filter's
std::optional<std::string> valueOf(std::string_view name, const JobValues &job)
{
    if (name == "user")
        return job.user;
    if (name == "title")
        return job.title;
    if (name == "job-id")
        return job.jobId;
    if (name == "date")
        return localTime(job.printed, "%Y-%m-%d");
    if (name == "time")
        return localTime(job.printed, "%H:%M");
    return std::nullopt;
}

/// As the toolkit reads it back.
std::string escaped(const std::string &value)
{
    std::string text;
    for (const char c : Platform::repairedUTF8(value, '?')) {
        if (c == '[' || c == ']')
            text += c;
        text += c;
    }
    return text;
}

} // namespace

std::string withJobValues(std::string_view text, const JobValues &job)
{
    std::string result;
    while (!text.empty()) {
        const bool isDoubled = text.starts_with("[[");
        const std::size_t end = text.starts_with('[') ? text.find(']') : std::string_view::npos;
        const auto value = isDoubled || end == std::string_view::npos
                               ? std::nullopt
                               : valueOf(text.substr(1, end - 1), job);
        const std::size_t taken = value ? end + 1 : isDoubled ? 2 : 1;
        result += value ? escaped(*value) : std::string(text.substr(0, taken));
        text.remove_prefix(taken);
        if (result.size() > kLongest)
            throw std::length_error("The watermark's text is too long.");
    }
    return result;
}
