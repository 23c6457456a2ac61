#include "textOnPage.h"

#include "ToolkitError.h"

#include <string_view>

namespace {

/// What stands for the placeholder of that name, without its brackets.
std::string valueOf(std::string_view name, std::uint64_t page, std::uint64_t pages)
{
    if (name == "page")
        return std::to_string(page);
    if (name == "pages")
        return std::to_string(pages);
    throw ToolkitError("The watermark's text has a placeholder that is not known.");
}

} // namespace

std::string textOnPage(const Watermark &watermark, std::uint64_t page, std::uint64_t pages)
{
    std::string_view left = watermark.text;
    if (!watermark.hasPlaceholders)
        return std::string(left);
    std::string text;
    while (true) {
        const std::size_t bracket = left.find_first_of("[]");
        text += left.substr(0, bracket);
        if (bracket == std::string_view::npos)
            return text;
        left.remove_prefix(bracket);
        const bool isDoubled = left.starts_with("[[") || left.starts_with("]]");
        const std::size_t end = isDoubled ? 1 : left.find(']');
        if (end == 0 || end == std::string_view::npos)
            throw ToolkitError(
                "The watermark's text has a single bracket, which is written twice.");
        text += isDoubled ? std::string(left.substr(0, 1))
                          : valueOf(left.substr(1, end - 1), page, pages);
        left.remove_prefix(end + 1);
    }
}

bool differsFromPageToPage(const Watermark &watermark, std::uint64_t pages)
{
    return pages > 1 && textOnPage(watermark, 1, pages) != textOnPage(watermark, 2, pages);
}
