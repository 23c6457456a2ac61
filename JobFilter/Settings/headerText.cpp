#include "headerText.h"

#include "ObjectFormat.h"

#include <algorithm>

std::string headerText(const std::optional<KLValue> &value)
{
    if (!value)
        return {};
    std::string text = Platform::description(*value);
    const auto isControl = [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 || byte == 0x7F;
    };
    std::ranges::replace_if(text, isControl, ' ');
    return text;
}
