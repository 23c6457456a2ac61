#pragma once

#include "DSCScanner.h"
#include "PageSizes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The paper that a document's comments name (DSC 3.0), for the document and for its pages. Grows
/// to a few hundred names at the most.
class DSCMedia {
public:
    /// Takes in a comment about the document's media: %%DocumentMedia, %%DocumentPaperSizes or a
    /// continuation of either. All others are passed over.
    void readDocumentComment(const DSCComment &comment);

    /// A number that stands for the media that a %%PageMedia comment names. Only the first few
    /// hundred names of a document are told apart; the others get kDefault.
    std::uint32_t numberFromPageComment(const DSCComment &comment);
    /// Makes this the media of all pages that name none. Without it that is the first that was
    /// named.
    /// @param number  from numberFromPageComment()
    void setDefault(std::uint32_t number) { _default = number; }
    /// What stands for the document's default media.
    static constexpr std::uint32_t kDefault = 0;

    /// The size of the media with that number: as the document says, else by its standard name (see
    /// pageSizeNamed(); the queue's PPD is not asked).
    /// @param number  from numberFromPageComment(), or kDefault
    /// @return nullopt when no comment has named any media, and for a name that is not known
    std::optional<PageSize> sizeOf(std::uint32_t number) const;

private:
    struct Entry {
        std::string name;
        std::optional<PageSize> size;
    };

    void readEntry(std::string_view value);
    std::uint32_t numberOf(std::string_view name);

    bool _inDocumentMedia = false; ///< a continuation line belongs to it
    std::uint32_t _default = kDefault;
    std::vector<Entry> _entries; ///< number N is entry N - 1
};
