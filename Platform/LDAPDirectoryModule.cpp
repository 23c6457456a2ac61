#include "LDAPQuestions.h"

// What the module exports; LDAPDirectoryService looks for it. Of its own the module holds neither
// limits nor children: those are the program's.

#define KL_EXPORT extern "C" __attribute__((visibility("default")))

KL_EXPORT void KLListLDAPServers(const Platform::ChildMessageSender &answers)
{
    Platform::listLDAPServers(answers);
}

KL_EXPORT void KLFindLDAPUser(const Platform::ChildMessageSender &answers, const std::string &uri,
                              const std::string &userName)
{
    Platform::findLDAPUser(answers, uri, userName);
}

KL_EXPORT void KLInspectLDAPNode(const Platform::ChildMessageSender &answers,
                                 const std::string &url)
{
    Platform::inspectLDAPNode(answers, url);
}
