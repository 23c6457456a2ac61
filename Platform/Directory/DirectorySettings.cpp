#include "DirectorySettings.h"

#include "ProtectedFile.h"
#include "Text.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

namespace Platform {
namespace {

using Method = LDAPSignIn::Method;

constexpr std::string_view kBlanks = " \t\r";

constexpr std::array<std::pair<std::string_view, DirectorySource>, 3> kSources = {
    {{"sssd", DirectorySource::SSSD},
     {"winbind", DirectorySource::Winbind},
     {"ldap", DirectorySource::LDAP}}};
constexpr std::array<std::pair<std::string_view, Method>, 3> kMethods = {
    {{"anonymous", Method::Anonymous}, {"gssapi", Method::GSSAPI}, {"simple", Method::Simple}}};
constexpr std::array<std::pair<std::string_view, bool>, 2> kAnswers = {
    {{"yes", true}, {"no", false}}};

[[noreturn]] void fail(const std::string &reason)
{
    throw DirectorySettingsError(reason);
}

std::string quoted(std::string_view word)
{
    return std::string("\"").append(word.substr(0, 64)).append("\"");
}

/// Takes the first word off the text, and the blanks behind it.
std::string_view takeWord(std::string_view &text)
{
    const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
    text = withoutBlanks(text.substr(word.size()), kBlanks);
    return word;
}

/// What the word means.
template <class Words>
auto meaning(const Words &words, std::string_view word)
{
    const auto found =
        std::ranges::find_if(words, [&](const auto &entry) { return entry.first == word; });
    if (found == words.end())
        fail("unknown word " + quoted(word));
    return found->second;
}

std::vector<DirectorySource> sourcesIn(std::string_view value)
{
    std::vector<DirectorySource> sources;
    while (!value.empty()) {
        const std::string_view word = takeWord(value);
        const DirectorySource source = meaning(kSources, word);
        if (std::ranges::find(sources, source) != sources.end())
            fail(quoted(word) + " stands there twice");
        sources.push_back(source);
    }
    return sources;
}

std::string absolutePath(std::string_view value)
{
    if (!value.starts_with('/'))
        fail(quoted(value) + " is no absolute path");
    return std::string(value);
}

void applyLine(DirectorySettings &settings, std::string_view keyword, std::string_view value)
{
    LDAPSignIn &signIn = settings.signIn;
    if (keyword == "DirectorySources")
        settings.sources = sourcesIn(value);
    else if (keyword == "LDAPBind")
        signIn.method = meaning(kMethods, value);
    else if (keyword == "LDAPBindDN")
        signIn.bindDN = value;
    else if (keyword == "LDAPPasswordFile")
        signIn.passwordFile = absolutePath(value);
    else if (keyword == "LDAPKeytab")
        signIn.keytab = absolutePath(value);
    else if (keyword == "LDAPStartTLS")
        signIn.startTLS = meaning(kAnswers, value);
    else
        fail("unknown word " + quoted(keyword));
}

/// @param known  the keywords of the lines before
void readLine(DirectorySettings &settings, std::string_view line, std::set<std::string_view> &known)
{
    std::string_view value = withoutBlanks(line, kBlanks);
    if (value.empty() || value.starts_with('#'))
        return;
    if (value.find('\0') != std::string_view::npos)
        fail("not a text");
    const std::string_view keyword = takeWord(value);
    if (value.empty())
        fail(quoted(keyword) + " without a value");
    if (!known.insert(keyword).second)
        fail(quoted(keyword) + " stands there twice");
    applyLine(settings, keyword, value);
}

void requireUsable(const LDAPSignIn &signIn)
{
    if (signIn.method == Method::Simple && (signIn.bindDN.empty() || signIn.passwordFile.empty()))
        fail("LDAPBind simple needs LDAPBindDN and LDAPPasswordFile");
    if (signIn.method == Method::GSSAPI && signIn.startTLS)
        fail("LDAPBind gssapi goes without LDAPStartTLS: it protects the connection itself");
}

} // namespace

DirectorySettings parseDirectorySettings(std::string_view text)
{
    DirectorySettings settings;
    std::set<std::string_view> known;
    for (int number = 1; !text.empty(); ++number) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        try {
            readLine(settings, line, known);
        } catch (const DirectorySettingsError &error) {
            fail("line " + std::to_string(number) + ": " + error.what());
        }
    }
    requireUsable(settings.signIn);
    return settings;
}

DirectorySettings readDirectorySettings(const std::string &path)
{
    const auto text = readProtectedFile(path, Readers::Everybody);
    if (!text)
        return {};
    DirectorySettings settings;
    try {
        settings = parseDirectorySettings(*text);
    } catch (const DirectorySettingsError &error) {
        fail(path + ": " + error.what());
    }
    const bool asksLDAP =
        std::ranges::find(settings.sources, DirectorySource::LDAP) != settings.sources.end();
    if (asksLDAP && settings.signIn.method == Method::Simple)
        readPassword(settings.signIn.passwordFile);
    return settings;
}

} // namespace Platform
