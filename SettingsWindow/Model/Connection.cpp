#include "Connection.h"

#include "sentences.h"

#include <utility>

namespace Model {
namespace {

/// What is larger is no driver.
constexpr std::size_t kMostBytes = std::size_t{16} << 20;

/// A window has no terminal where libcups would ask.
const char *askNobody(const char *, http_t *, const char *, const char *, void *)
{
    return nullptr;
}

int giveUp(http_t *, void *)
{
    return 0;
}

} // namespace

Connection::Connection(http_t *http, ServerAddress server, std::chrono::milliseconds bound)
    : _http(http), _server(std::move(server)), _bound(static_cast<int>(bound.count()))
{
    httpSetTimeout(http, std::chrono::duration<double>(bound).count(), giveUp, nullptr);
}

std::optional<Connection> Connection::open(const ServerAddress &server,
                                           std::chrono::milliseconds bound, Words *whyNot)
{
    cupsSetPasswordCB2(askNobody, nullptr); // of this thread
    http_t *const http =
        httpConnect2(server.host.c_str(), server.port, nullptr, AF_UNSPEC, cupsEncryption(), 1,
                     static_cast<int>(bound.count()), nullptr);
    if (http == nullptr) {
        *whyNot = {kNoAnswer, {asTheyAre(server.name())}};
        return std::nullopt;
    }
    return Connection(http, server, bound);
}

Words Connection::whyItFailed() const
{
    const Words server = asTheyAre(_server.name());
    if (httpError(http()) != 0 || cupsLastError() == IPP_STATUS_ERROR_SERVICE_UNAVAILABLE)
        return {kNoAnswer, {server}};
    return {kServerRefuses, {server, asTheyAre(cupsLastErrorString())}};
}

Response Connection::ask(ipp_t *request, Words *whyNot) const
{
    Response response(cupsDoRequest(http(), request, "/"), ippDelete);
    if (response && ippGetStatusCode(response.get()) > IPP_STATUS_OK_CONFLICTING)
        response.reset();
    if (!response)
        *whyNot = whyItFailed();
    return response;
}

/// A server may have closed the connection behind its last answer.
bool Connection::startFetching(const std::string &path) const
{
    httpClearFields(http());
    if (httpGet(http(), path.c_str()) == 0)
        return true;
    return httpReconnect2(http(), _bound, nullptr) == 0 && httpGet(http(), path.c_str()) == 0;
}

std::optional<std::string> Connection::readAll() const
{
    std::string all;
    char bytes[8192];
    ssize_t count = 0;
    while (all.size() <= kMostBytes && (count = httpRead2(http(), bytes, sizeof bytes)) > 0)
        all.append(bytes, static_cast<std::size_t>(count));
    return count == 0 ? std::optional(std::move(all)) : std::nullopt;
}

std::optional<std::string> Connection::fetch(const std::string &path, Words *whyNot) const
{
    http_status_t status = HTTP_STATUS_ERROR;
    if (startFetching(path))
        do
            status = httpUpdate(http());
        while (status == HTTP_STATUS_CONTINUE);
    if (status == HTTP_STATUS_OK) {
        if (auto bytes = readAll())
            return bytes;
        status = HTTP_STATUS_ERROR;
    }
    if (status == HTTP_STATUS_ERROR)
        *whyNot = {kNoAnswer, {asTheyAre(_server.name())}};
    else if (status == HTTP_STATUS_UNAUTHORIZED || status == HTTP_STATUS_FORBIDDEN)
        *whyNot = {kServerRefuses, {asTheyAre(_server.name()), asTheyAre(httpStatus(status))}};
    else
        httpFlush(http());
    return std::nullopt;
}

ipp_t *newRequest(ipp_op_t operation, const std::string &queue)
{
    ipp_t *const request = ippNewRequest(operation);
    if (!queue.empty()) {
        char uri[HTTP_MAX_URI];
        httpAssembleURIf(HTTP_URI_CODING_ALL, uri, sizeof uri, "ipp", nullptr, "localhost", 0,
                         "/printers/%s", queue.c_str());
        ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, uri);
    }
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr,
                 cupsUser());
    return request;
}

std::string textOf(const Response &response, const char *attribute)
{
    const char *text =
        ippGetString(ippFindAttribute(response.get(), attribute, IPP_TAG_ZERO), 0, nullptr);
    return text != nullptr ? text : "";
}

} // namespace Model
