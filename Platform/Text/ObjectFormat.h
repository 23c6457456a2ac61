#pragma once

#include "KLValue.h"

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace Platform {

/// One argument of an object format: an object (a text, a value, or nothing) or a C number.
///
/// A text is referred to, not copied: the argument lives no longer than the call it is made for.
class FormatArgument {
public:
    /// @param text  not null: an absent text is std::nullopt
    FormatArgument(const char *text) : _value(std::string_view(text)) {}
    FormatArgument(std::string_view text) : _value(text) {}
    FormatArgument(const std::string &text) : _value(std::string_view(text)) {}
    FormatArgument(const KLValue &value);
    FormatArgument(bool value) : _value(static_cast<long long>(value)) {}
    FormatArgument(std::signed_integral auto value) : _value(static_cast<long long>(value)) {}
    FormatArgument(std::unsigned_integral auto value)
        : _value(static_cast<unsigned long long>(value))
    {
    }
    FormatArgument(double value) : _value(value) {}
    /// An absent object prints as "(null)".
    FormatArgument(std::nullopt_t) : _value(std::string_view("(null)")) {}
    template <class Object>
    FormatArgument(const std::optional<Object> &object)
        : FormatArgument(object ? FormatArgument(*object) : FormatArgument(std::nullopt))
    {
    }

    /// An owned text is a number's description.
    using Value =
        std::variant<std::string_view, std::string, long long, unsigned long long, double>;
    /// For the formatter.
    const Value &value() const { return _value; }

private:
    Value _value;
};

/// @see objectFormat
std::string objectFormatWithArguments(std::string_view format,
                                      std::initializer_list<FormatArgument> arguments);

/// Text from a format in object-format syntax: printf(3) with "%@" for an object.
///
/// "%@" prints a text as it stands, an integer in decimal, a boolean as 1 or 0, and an absent
/// object as "(null)"; "%1$@" names an argument by position. All other conversions are printf's
/// ("%lu", "%d", "%f", "%s", "%%", ...). The result never depends on the locale, and texts are
/// inserted whole: a percent sign or a NUL byte in them means nothing. Surplus arguments are
/// ignored.
/// @throws std::invalid_argument when the format is malformed, asks for an argument that is not
///         there, or for an object where a C number was given or the other way round.
template <class... Arguments>
std::string objectFormat(std::string_view format, const Arguments &...arguments)
{
    return objectFormatWithArguments(format, {FormatArgument(arguments)...});
}

/// The text form of a value, as "%@" prints it: a text as it stands, an integer in decimal, a
/// boolean as 1 or 0.
std::string description(const KLValue &value);

} // namespace Platform
