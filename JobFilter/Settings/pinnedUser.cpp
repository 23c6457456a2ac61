#include "pinnedUser.h"

#include "Text.h"
#include "WriteLog.h"
#include "optionName.h"

#include <algorithm>

namespace {

constexpr std::string_view kUserOptions[] = {"com.kalmira.username", "com.kalmira.domainname",
                                             "UseOpenDirectoryForAuthentication"};

bool isSame(std::string_view left, std::string_view right)
{
    return Platform::isEqualText(left, right, Platform::CaseInsensitiveComparison);
}

/// Logs it when it does.
bool saysWhoPrints(const JobOptions::value_type &option)
{
    // In any letter case, as libcups finds the PPD's options by their names.
    const std::string key = optionName(option.first).key;
    const auto *const found = std::ranges::find_if(
        kUserOptions, [&key](std::string_view userOption) { return isSame(userOption, key); });
    if (found == std::end(kUserOptions))
        return false;
    WriteLog("DEBUG: The queue pins who prints, the job's option is ignored: %@", *found);
    return true;
}

} // namespace

bool pinsUser(const PPD &ppd)
{
    const auto value = ppd.attribute(kPinnedUserAttribute);
    return value && !isSame(*value, "False");
}

JobOptions withoutPinnedUser(JobOptions options, const PPD &ppd)
{
    if (pinsUser(ppd))
        std::erase_if(options, saysWhoPrints);
    return options;
}
