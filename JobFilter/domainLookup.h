#pragma once

#include <optional>
#include <string>
#include <string_view>

class KLPrintOptions;

/// The network domain of the job's user, settled once per job.
/// @return empty when no domain can be found; nullopt only when the host's answer is not UTF-8.
std::optional<std::string> domainForUser(const KLPrintOptions &options);

/// What getdomainname(2)'s answer means.
///
/// On purpose only a result above zero counts, although the call returns 0 when it succeeds: a
/// host whose call succeeds has the empty domain.
/// @param result  what the call returned
/// @param buffer  the name that it wrote, up to its NUL
/// @return nullopt when the name counts and is not UTF-8
std::optional<std::string> domainFromHostAnswer(int result, std::string_view buffer);
