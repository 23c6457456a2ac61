#include "WinbindScript.h"

#include "Program.h"

#include <cstring>
#include <filesystem>
#include <sys/socket.h>

namespace Support::WinbindScript {
namespace {

constexpr char kSocket[] = "/run/samba/winbindd/pipe";
constexpr std::uint32_t kOlderProtocol = 32;

constexpr std::size_t kRequestSize = 2136;
constexpr std::size_t kPrefixSize = 8;
constexpr std::uint32_t kSuccess = 2;
constexpr std::uint32_t kUser = 1;
constexpr std::uint32_t kGroup = 2;

constexpr char kDomain[] = "S-1-5-21-1-2-3";
constexpr char kAnna[] = "S-1-5-21-1-2-3-1000";
constexpr char kBerta[] = "S-1-5-21-4-5-6-1000";

Answer identifier(const Request &request)
{
    if (request.holds("CORP") && (request.holds("anna") || request.holds("anna@corp.test")))
        return {.texts = {{kFirstText, kAnna}}, .numbers = {{kSecondText, kUser}}};
    if (request.holds("SALES") && request.holds("berta"))
        return {.texts = {{kFirstText, kBerta}}, .numbers = {{kSecondText, kUser}}};
    if (request.holds("printers"))
        return {.texts = {{kFirstText, kAnna}}, .numbers = {{kSecondText, kGroup}}};
    return {.ok = false};
}

ScriptedServer::Script answeringEach(const std::function<Answer(const Request &)> &answer)
{
    return [=](int socket, int) {
        std::string bytes(kRequestSize, '\0');
        while (recv(socket, bytes.data(), bytes.size(), MSG_WAITALL) ==
               static_cast<ssize_t>(bytes.size())) {
            Request request = {0, bytes};
            std::memcpy(&request.command, bytes.data() + 4, sizeof request.command);
            if (!sendAll(socket, bytesOf(answer(request))))
                return;
        }
    };
}

bool isTheLibrarys(std::uint32_t protocol)
{
    const auto greet = [protocol](const Request &) {
        return Answer{.numbers = {{kFirstText, protocol}}};
    };
    const ScriptedServer server(kSocket, answeringEach(greet));
    const bool isIt = runProgram({.arguments = {"wbinfo", "--ping"}}).exitStatus == 0;
    std::filesystem::remove(kSocket);
    return isIt;
}

} // namespace

std::string bytesOf(const Answer &answer)
{
    std::string bytes(kAnswerSize, '\0');
    const auto put = [&](std::size_t at, std::uint32_t number) {
        std::memcpy(bytes.data() + at, &number, sizeof number);
    };
    put(0, kAnswerSize);
    put(4, answer.ok ? kSuccess : 0);
    for (const auto &[at, text] : answer.texts)
        text.copy(bytes.data() + kPrefixSize + at, text.size());
    for (const auto &[at, number] : answer.numbers)
        put(kPrefixSize + at, number);
    return bytes;
}

std::uint32_t protocol()
{
    static const std::uint32_t tried =
        isTheLibrarys(kOlderProtocol) ? kOlderProtocol : kOlderProtocol + 1;
    return tried;
}

ScriptedServer::Script answering(const std::function<Answer(const Request &)> &answer)
{
    protocol(); // before there is a server at the socket
    return answeringEach(answer);
}

Answer answer(const Request &request)
{
    const bool sales = request.holds("SALES");
    switch (request.command) {
    case Greeting:
        return {.numbers = {{kFirstText, protocol()}}};
    case Separator:
        return {.texts = {{kFirstText, "+4.17"}}};
    case DomainOfHost:
        return {.texts = {{kFirstText, "CORP"}}};
    case DomainInformation:
        return {.texts = {{kFirstText, sales ? "SALES" : "CORP"},
                          {kSecondText, sales ? "Sales.Test" : "Corp.Test"},
                          {kThirdText, kDomain}}};
    case LookUpName:
        return identifier(request);
    case LookUpSID:
        return {.texts = {{kFirstText, request.holds(kBerta) ? "SALES" : "CORP"},
                          {kSecondText, "somebody"}},
                .numbers = {{kThirdText, kUser}}};
    default:
        return {};
    }
}

} // namespace Support::WinbindScript
