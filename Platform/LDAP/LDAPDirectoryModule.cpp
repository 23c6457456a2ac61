#include "LDAPQuestions.h"
#include "Module.h"

// What the module exports; LDAPDirectoryService looks for it. Of its own the module holds neither
// limits nor children: those are the program's.

KL_MODULE_EXPORT void KLListLDAPServers(const Platform::ChildMessageSender &answers,
                                        std::string &failure)
{
    Platform::withinModule(failure, [&] { Platform::listLDAPServers(answers); });
}

KL_MODULE_EXPORT void KLFindLDAPUser(const Platform::ChildMessageSender &answers,
                                     const std::string &uri, const std::string &userName,
                                     const Platform::LDAPSignIn &signIn, std::string &failure)
{
    Platform::withinModule(failure,
                           [&] { Platform::findLDAPUser(answers, uri, userName, signIn); });
}

KL_MODULE_EXPORT void KLInspectLDAPNode(const Platform::ChildMessageSender &answers,
                                        const std::string &url, const Platform::LDAPSignIn &signIn,
                                        std::string &failure)
{
    Platform::withinModule(failure, [&] { Platform::inspectLDAPNode(answers, url, signIn); });
}
