#include "SSSDQuestion.h"

#include "ChildMessages.h"
#include "Descriptor.h"
#include "DomainName.h"
#include "LocalDirectoryService.h"
#include "Module.h"
#include "SSSDLibrary.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>

namespace Platform {
namespace {

/// In milliseconds. Beyond what this process is given, so that it is never the library that ends
/// the wait: it says "unknown user" then.
constexpr unsigned kTimeout = 60'000;

template <class Function>
Function *function(const char *name)
{
    return reinterpret_cast<Function *>(symbolFromModule(SSSDLibrary::kFile, name));
}

bool somebodyListens()
{
    const Descriptor client(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::copy_n(kSSSDSocket, sizeof kSSSDSocket, address.sun_path);
    return connect(client.number(), reinterpret_cast<const sockaddr *>(&address),
                   sizeof address) == 0 ||
           errno == EAGAIN; // many do
}

[[noreturn]] void failWith(int error)
{
    if (error != ENOENT)
        throw std::runtime_error(std::string("no answer: ") + std::strerror(error));
    // The library says this of everything.
    throw std::runtime_error(somebodyListens()
                                 ? "does not know the user, or had no answer from its servers"
                                 : "does not run, though its socket is there");
}

std::string_view valueOf(std::string_view key, const SSSDLibrary::KeyAndValue *list)
{
    for (; list != nullptr && list->key != nullptr; ++list) {
        if (list->key == key && list->value != nullptr)
            return list->value;
    }
    return {};
}

} // namespace

void askSSSD(const ChildMessageSender &answers, const std::string &userName)
{
    auto *const getOriginal = function<SSSDLibrary::GetOriginal>(SSSDLibrary::kGetOriginal);
    auto *const freeList = function<SSSDLibrary::FreeList>(SSSDLibrary::kFreeList);

    SSSDLibrary::KeyAndValue *raw = nullptr;
    int type = 0;
    if (const int error = getOriginal(userName.c_str(), kTimeout, &raw, &type); error != 0)
        failWith(error);
    const std::unique_ptr<SSSDLibrary::KeyAndValue, SSSDLibrary::FreeList *> list(raw, freeList);
    const std::string_view name = valueOf("originalDN", list.get());
    if (name.empty())
        throw std::runtime_error("knows the user, but of no directory");
    const auto domain = domainOfDistinguishedName(name);
    if (!domain)
        throw std::runtime_error("the user's entry lies in no domain: " +
                                 std::string(name.substr(0, 256)));
    answers.send(LocalDomain, *domain);
}

} // namespace Platform
