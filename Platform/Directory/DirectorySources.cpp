#include "DirectorySources.h"

#include "ChildMessages.h"
#include "LDAPDirectoryService.h"
#include "Text.h"

#include <utility>

namespace Platform {
namespace {

using Clock = std::chrono::steady_clock;

/// What the messages about the settings mean.
enum SettingsMessage : char {
    SettingSource = 's',       ///< one of DirectorySource
    SettingMethod = 'm',       ///< one of LDAPSignIn::Method
    SettingBindDN = 'd',       ///< and so on: the settings' texts
    SettingPasswordFile = 'p', //
    SettingKeytab = 'k',       //
    SettingStartTLS = 't',     ///< StartTLS is to be used
};

void sendSettings(const ChildMessageSender &answers, const DirectorySettings &settings)
{
    for (const DirectorySource source : settings.sources)
        answers.send(SettingSource, {reinterpret_cast<const char *>(&source), 1});
    const LDAPSignIn &signIn = settings.signIn;
    answers.send(SettingMethod, {reinterpret_cast<const char *>(&signIn.method), 1});
    answers.send(SettingBindDN, signIn.bindDN);
    answers.send(SettingPasswordFile, signIn.passwordFile);
    answers.send(SettingKeytab, signIn.keytab);
    if (signIn.startTLS)
        answers.send(SettingStartTLS);
}

DirectorySettings receivedSettings(const std::vector<ChildMessage> &messages)
{
    DirectorySettings settings = {.sources = {}, .signIn = {}};
    for (const auto &[kind, text] : messages) {
        if (kind == SettingSource)
            settings.sources.push_back(static_cast<DirectorySource>(text.front()));
        else if (kind == SettingMethod)
            settings.signIn.method = static_cast<LDAPSignIn::Method>(text.front());
        else if (kind == SettingBindDN)
            settings.signIn.bindDN = text;
        else if (kind == SettingPasswordFile)
            settings.signIn.passwordFile = text;
        else if (kind == SettingKeytab)
            settings.signIn.keytab = text;
        else if (kind == SettingStartTLS)
            settings.signIn.startTLS = true;
    }
    return settings;
}

/// Has a child read the file. @return nullopt, with the error set, when it cannot be used
std::optional<DirectorySettings> settingsIn(const std::string &path, const ChildLimits &limits,
                                            std::optional<KLError> *error)
{
    const auto work = [&](const ChildMessageSender &answers) {
        sendSettings(answers, readDirectorySettings(path));
    };
    ChildReport report = messagesFromChild(work, limits);
    if (!report.error)
        return receivedSettings(report.messages);
    *error = std::move(report.error);
    return std::nullopt;
}

} // namespace

DirectorySources::DirectorySources(const DirectoryTimeLimits &limits, LDAPSignIn signIn,
                                   SourceObserver observer)
    : _limits(limits),
      _deadline(Clock::now() + limits.session),
      _signIn(std::move(signIn)),
      _observer(std::move(observer))
{
}

std::unique_ptr<DirectorySources> DirectorySources::open(const std::string &settingsPath,
                                                         std::optional<KLError> *error,
                                                         const SourceObserver &observer,
                                                         const DirectoryTimeLimits &limits)
{
    const auto settings = settingsIn(
        settingsPath, {.deadline = Clock::now() + limits.session, .silence = limits.localAnswer},
        error);
    if (!settings)
        return nullptr;
    std::unique_ptr<DirectorySources> directory(
        new DirectorySources(limits, settings->signIn, observer));
    for (const DirectorySource source : settings->sources)
        directory->addSource(source);
    if (!directory->_hasLocalSource && !directory->keepOnlyLDAP(error))
        return nullptr;
    return directory;
}

void DirectorySources::addSource(DirectorySource source)
{
    switch (source) {
    case DirectorySource::SSSD:
        return addLocalSource(sssdSource());
    case DirectorySource::Winbind:
        return addLocalSource(winbindSource());
    case DirectorySource::LDAP:
        _sources.push_back(nullptr);
    }
}

void DirectorySources::addLocalSource(LocalSource source)
{
    auto service = std::make_unique<LocalDirectoryService>(std::move(source), _limits.localAnswer,
                                                           _deadline, _observer);
    _hasLocalSource = _hasLocalSource || service->isThere();
    _sources.push_back(std::move(service));
}

/// For a host without local sources. @return false, with the error set, when LDAP cannot be opened
bool DirectorySources::keepOnlyLDAP(std::optional<KLError> *error)
{
    std::vector<std::unique_ptr<DirectoryService>> kept;
    for (auto &source : _sources) {
        if (source) {
            source->openAuthenticationNode(); // tells the observer
            continue;
        }
        kept.push_back(openLDAP(error));
        if (!kept.back())
            return false;
    }
    _sources = std::move(kept);
    return true;
}

std::unique_ptr<DirectoryService> DirectorySources::openLDAP(std::optional<KLError> *error) const
{
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(_deadline - Clock::now());
    return LDAPDirectoryService::open(error, {.answer = _limits.serverAnswer, .session = left},
                                      _signIn, _observer);
}

bool DirectorySources::openAuthenticationNode()
{
    return _sources.size() == 1 ? _sources.front()->openAuthenticationNode() : !_sources.empty();
}

bool DirectorySources::prepareQueryForUser(const std::string &userName,
                                           std::optional<KLError> *error)
{
    if (!isValidUTF8(userName)) {
        error->emplace("DirectoryErrorDomain", 0, "The user name is not UTF-8");
        return false;
    }
    _userName = userName;
    return true;
}

std::size_t DirectorySources::runQuery()
{
    for (auto &source : _sources) {
        if (const std::size_t count = runQueryOf(source)) {
            _answering = source.get();
            return count;
        }
    }
    return 0;
}

std::size_t DirectorySources::runQueryOf(std::unique_ptr<DirectoryService> &source)
{
    std::optional<KLError> error; // the observer's to know
    if (!source)
        source = openLDAP(&error);
    if (!source || !source->openAuthenticationNode() ||
        !source->prepareQueryForUser(_userName, &error))
        return 0;
    return source->runQuery();
}

std::optional<DirectoryAttributes> DirectorySources::recordDetails(std::size_t record)
{
    return _answering->recordDetails(record);
}

bool DirectorySources::openNodeNamed(const std::string &name, std::optional<KLError> *error)
{
    return _answering->openNodeNamed(name, error);
}

std::optional<DirectoryAttributes> DirectorySources::nodeDetails(std::optional<KLError> *error)
{
    return _answering->nodeDetails(error);
}

} // namespace Platform
