#include "optionName.h"

#include <string_view>
#include <utility>

OptionName optionName(std::string name)
{
    static constexpr std::pair<std::string_view, OptionName::Kind> kSuffixes[] = {
        {"..n.", OptionName::Kind::Integer}, {"..b.", OptionName::Kind::Boolean}};
    for (const auto &[suffix, kind] : kSuffixes) {
        if (name.ends_with(suffix)) {
            name.erase(name.size() - suffix.size());
            return {std::move(name), kind};
        }
    }
    return {std::move(name), OptionName::Kind::Text};
}
