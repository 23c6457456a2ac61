#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace Platform {

// How many pages a PDF document has. The two functions keep nothing between two calls.

/// Counts the pages of a document, by following its page tree: what the document itself says of
/// their number is not believed.
/// @param pdf  all of it
/// @throws std::exception when it cannot be read as it stands: it is damaged, if only in what leads
///         to the pages, or needs a password, or there is no memory for it
std::size_t pagesOfPDF(std::string_view pdf);

/// The same by a library that is loaded for it, in a child process: whatever the document does to
/// the library, this process loses no more than ten seconds, and the child takes no more than
/// 512 MiB beside the document.
/// @param pdf  not changed by anybody meanwhile
/// @return nullopt when it cannot be read like that, which nothing is logged about
std::optional<std::size_t> pagesOfPDFWithModule(std::string_view pdf);

} // namespace Platform
