#include "SettingKeys.h"

namespace Model {

std::string_view titleOf(Page)
{
    return "";
}

std::span<const SettingKey> settingKeys()
{
    return {};
}

const SettingKey *findSettingKey(std::string_view)
{
    return nullptr;
}

} // namespace Model
