#include "headerText.h"

#include "ObjectFormat.h"
#include "Text.h"

std::string headerText(const std::optional<KLValue> &value)
{
    return value ? Platform::withoutControls(Platform::description(*value)) : std::string();
}
