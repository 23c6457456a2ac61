#pragma once

#include "DirectoryService.h"
#include "SourceReport.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

class KLPrintOptions;

/// The network domain of the job's user, settled once per job: from the directory service when
/// the job's "UseOpenDirectoryForAuthentication" is exactly the text "True", else from the host.
/// The user is "com.kalmira.username", in its text form.
///
/// A job that does not ask for the directory service neither loads nor contacts it. Failures are
/// logged and give the empty domain.
/// @return empty when no domain can be found; nullopt only when the host's answer is not UTF-8.
std::optional<std::string> domainForUser(const KLPrintOptions &options);

/// Opens the directory service that this host's settings describe: jobfilter.conf(5) in CUPS'
/// folder, or the file that JOBFILTER_CONF names in the environment. The same is asked of both:
/// that they belong to root, and that nobody else may write them.
/// @param observer  told what each source says
/// @return null, with the error set, when the settings cannot be used
std::unique_ptr<Platform::DirectoryService>
openDirectoryOfHost(std::optional<KLError> *error, const Platform::SourceObserver &observer = {});

/// What getdomainname(2)'s answer means.
///
/// On purpose only a result above zero counts, although the call returns 0 when it succeeds: a
/// host whose call succeeds has the empty domain.
/// @param result  what the call returned
/// @param buffer  the name that it wrote, up to its NUL
/// @return nullopt when the name counts and is not UTF-8
std::optional<std::string> domainFromHostAnswer(int result, std::string_view buffer);

/// Opens a session with a directory service, the caller's.
/// @param error  not null
/// @return null, with the error set, when there can be none
using DirectoryServiceOpener =
    std::function<std::unique_ptr<Platform::DirectoryService>(std::optional<KLError> *error)>;

/// The domain of the directory node that holds the user's record: the node's own domain name, else
/// the one that its search base spells.
/// @param userName       nullopt when the job has none; the directory is not opened then
/// @param openDirectory  called at most once
/// @return empty after every failure, of which one line has then been logged
std::string domainFromDirectory(const std::optional<std::string> &userName,
                                const DirectoryServiceOpener &openDirectory);

/// The domain that a search base spells: "dc=example,dc=com" gives "example.com".
///
/// On purpose strict: split at every comma, no blank is trimmed, and each piece must begin with
/// "dc=" in lower case.
/// @return nullopt when a piece does not; so the empty text gives none either
std::optional<std::string> domainFromSearchBase(std::string_view searchBase);
