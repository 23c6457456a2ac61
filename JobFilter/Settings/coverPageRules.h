#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// What makes a cover page, without the store that the settings come from. Nothing here keeps state.

/// A cover sheet, fed from a paper source of its own.
struct CoverPage {
    std::string position;   ///< "Front" or "Back"
    std::string source;     ///< the name of a paper source
    std::string mediaType;  ///< the name of a media type
    std::string printStyle; ///< "NoPrint", "Print1" or "Print"
    /// The PostScript that selects the media type; nullopt when there is none.
    std::optional<std::string> mediaTypeCode;
    /// The PostScript that selects the source; nullopt when there is none.
    std::optional<std::string> sourceCode;
    /// What a front cover does besides (see frontCover()); empty for a back cover.
    std::string addition;
};

/// The PostScript of a cover page, in the protected form of a printer feature: an error inside does
/// not end the job. A missing code is written as "(null)", the media type's inside a page device
/// call of its own with an empty line behind it. Names stand in it as they are. Ends in a line
/// feed.
std::string coverPagePostScript(const CoverPage &cover);

/// What a front cover adds to its PostScript, and where the job's own settings come back.
struct FrontCover {
    std::string addition;
    /// The job's page, counted from 1, at which its own paper source, media type and duplex setting
    /// must be in force again; nullopt for a style that is not known.
    std::optional<std::int64_t> restorationPage;
};

/// A blank front cover ("NoPrint") is a sheet before page 1. One printed on one side ("Print1")
/// holds page 1, one printed like the job ("Print") holds page 1 or, on two sides, pages 1 and 2.
/// @param printStyle  letter case counts
/// @param oneSided    whether the job prints on one side; else a style that prints one side
///                    switches duplex off
FrontCover frontCover(std::string_view printStyle, bool oneSided);
