#include "headerText.h"

#include "ObjectFormat.h"
#include "Text.h"

#include <algorithm>

std::string headerText(const std::optional<KLValue> &value)
{
    if (!value)
        return {};
    std::string text = Platform::description(*value);
    std::ranges::replace_if(text, Platform::isControl, ' ');
    return text;
}
