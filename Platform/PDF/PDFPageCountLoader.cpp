#include "ChildMessages.h"
#include "Module.h"
#include "PDFPageCount.h"

#include <charconv>
#include <string>

namespace Platform {
namespace {

constexpr std::chrono::seconds kTimeLimit(10);
constexpr std::size_t kMemoryLimit = std::size_t{512} << 20;

/// In the child, which has this process's memory and so the document.
void sendPages(const ChildMessageSender &answer, std::string_view pdf)
{
    std::size_t pages = 0;
    callModule<std::string_view, std::size_t &>("KLPDFPageCountModule.so", "KLCountPDFPages", pdf,
                                                pages);
    answer.send('P', std::to_string(pages));
}

} // namespace

std::optional<std::size_t> pagesOfPDFWithModule(std::string_view pdf)
{
    const ChildReport report =
        messagesFromChild([pdf](const ChildMessageSender &answer) { sendPages(answer, pdf); },
                          {.deadline = std::chrono::steady_clock::now() + kTimeLimit,
                           .silence = kTimeLimit,
                           .memory = kMemoryLimit});
    if (report.error || report.messages.size() != 1)
        return std::nullopt;
    const std::string &text = report.messages.front().text;
    std::size_t pages = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), pages);
    return failure == std::errc() ? std::optional(pages) : std::nullopt;
}

} // namespace Platform
