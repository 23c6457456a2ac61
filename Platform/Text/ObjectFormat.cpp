#include "ObjectFormat.h"

#include <fmt/args.h>
#include <fmt/printf.h>

#include <stdexcept>

namespace Platform {
namespace {

/// Spells "%@" and "%N$@" as the "%s" and "%N$s" that the printf engine knows.
std::string withTextConversions(std::string_view format)
{
    static constexpr std::string_view kFlagsWidthPrecisionPosition = "0123456789$-+ #.*'";
    std::string result(format);
    for (std::size_t at = result.find('%'); at != std::string::npos; at = result.find('%', at)) {
        at = result.find_first_not_of(kFlagsWidthPrecisionPosition, at + 1);
        if (at == std::string::npos)
            break;
        if (result[at] == '@')
            result[at] = 's';
        ++at;
    }
    return result;
}

} // namespace

FormatArgument::FormatArgument(const KLValue &value)
{
    if (const auto *text = std::get_if<std::string>(&value))
        _value = std::string_view(*text);
    else if (const auto *number = std::get_if<std::int64_t>(&value))
        _value = std::to_string(*number);
    else
        _value = std::string_view(std::get<bool>(value) ? "1" : "0");
}

std::string objectFormatWithArguments(std::string_view format,
                                      std::initializer_list<FormatArgument> arguments)
{
    fmt::dynamic_format_arg_store<fmt::printf_context> store;
    store.reserve(arguments.size(), 0);
    for (const FormatArgument &argument : arguments)
        std::visit([&store](const auto &value) { store.push_back(value); }, argument.value());
    try {
        return fmt::vsprintf(fmt::string_view(withTextConversions(format)),
                             fmt::basic_format_args<fmt::printf_context>(store));
    } catch (const fmt::format_error &error) {
        throw std::invalid_argument("object format \"" + std::string(format) +
                                    "\": " + error.what());
    }
}

std::string description(const KLValue &value)
{
    return objectFormat("%@", value);
}

} // namespace Platform
