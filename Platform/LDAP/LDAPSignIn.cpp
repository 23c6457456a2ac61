#include "LDAPSignIn.h"

#include "ProtectedFile.h"

namespace Platform {

std::string readPassword(const std::string &path)
{
    auto text = readProtectedFile(path, Readers::ItsGroup);
    if (!text)
        throw ProtectedFileError(path + ": not there");
    if (text->ends_with('\n'))
        text->pop_back();
    if (text->ends_with('\r'))
        text->pop_back();
    if (text->empty()) // a server would take it for nobody's sign-in
        throw ProtectedFileError(path + ": holds no password");
    return *text;
}

} // namespace Platform
