#include "domainLookup.h"

#include "Text.h"

#include <array>
#include <unistd.h>

std::optional<std::string> domainFromHostAnswer(int result, std::string_view buffer)
{
    if (result <= 0)
        return std::string();
    if (!Platform::isValidUTF8(buffer))
        return std::nullopt;
    return std::string(buffer);
}

namespace {

std::optional<std::string> domainOfHost()
{
    std::array<char, 257> buffer = {}; // one more than asked for: always terminated
    const int result = getdomainname(buffer.data(), 256);
    return domainFromHostAnswer(result, buffer.data());
}

} // namespace

std::optional<std::string> domainForUser(const KLPrintOptions & /*options*/)
{
    return domainOfHost();
}
