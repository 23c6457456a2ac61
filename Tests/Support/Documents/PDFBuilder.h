#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Support {

/// Writes a PDF document (ISO 32000) object by object, so that a test sees every byte that matters.
/// Nothing that is added is looked at.
class PDFBuilder {
public:
    /// Adds an object. @return its reference, e.g. "3 0 R"
    std::string add(std::string_view object);
    /// Adds a stream; its length is filled in.
    /// @param entries  what its dictionary holds besides, e.g. "/Subtype /Form"
    std::string addStream(std::string_view data, std::string_view entries = {});
    /// Adds a page behind the others.
    /// @param entries  what its dictionary holds besides type and parent
    void addPage(std::string_view entries);
    /// The same with contents: a stream of its own.
    void addPage(std::string_view entries, std::string_view contents);

    /// The whole document.
    /// @param pagesEntries    what the root of the page tree holds besides, for pages to inherit
    /// @param catalogEntries  what the catalogue holds besides
    std::string document(std::string_view pagesEntries = {},
                         std::string_view catalogEntries = {}) const;

private:
    std::vector<std::string> _objects = {"", ""}; ///< the first two are catalogue and page tree
    std::string _kids;
    int _pages = 0;
};

} // namespace Support
