// The lines of a settings file.

#include "DirectorySettings.h"

#include "Fuzzing.h"

#include <set>

using Platform::DirectorySettings;
using Platform::LDAPSignIn;

void Fuzz::tryInput(std::string_view input)
{
    DirectorySettings settings;
    try {
        settings = Platform::parseDirectorySettings(input);
    } catch (const Platform::DirectorySettingsError &error) {
        Fuzz::require(*error.what() != '\0', "an objection says why");
        return;
    }
    const LDAPSignIn &signIn = settings.signIn;
    const std::set<Platform::DirectorySource> sources(settings.sources.begin(),
                                                      settings.sources.end());
    Fuzz::require(!sources.empty() && sources.size() == settings.sources.size(),
                  "there are sources, and none twice");
    for (const std::string &path : {signIn.passwordFile, signIn.keytab})
        Fuzz::require(path.empty() || path.starts_with('/'), "paths are absolute");
    if (signIn.method == LDAPSignIn::Method::Simple)
        Fuzz::require(!signIn.bindDN.empty() && !signIn.passwordFile.empty(),
                      "a password has a name and a file");
    if (signIn.method == LDAPSignIn::Method::GSSAPI)
        Fuzz::require(!signIn.startTLS, "Kerberos goes without StartTLS");
    Fuzz::require(settings ==
                      Platform::parseDirectorySettings("# a comment\n" + std::string(input)),
                  "comments make no difference");
}
