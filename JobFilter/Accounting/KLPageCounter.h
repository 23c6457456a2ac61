#pragma once

#include "KLPostScriptPageCounter.h"
#include "Streams.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Counts the pages of a job's page data while they pass by block by block, where the data say how
/// many they have.
///
/// Data that begin with "%PDF-" are PDF, all others are taken for PostScript. A PDF document can be
/// counted at its end only: until then a file in the temporary folder, without a name, holds it.
/// Memory does not grow with the data. One thread.
class KLPageCounter {
public:
    /// Takes the next bytes of the page data.
    void count(std::string_view block);

    /// The pages of page data that end here. For PDF this takes up to ten seconds.
    /// @return nullopt where the data do not say: see KLPostScriptPageCounter::pages(); for PDF,
    ///         when it is damaged or needs a password, or when there was no room for the file
    std::optional<std::size_t> pages();

private:
    std::string_view readStart(std::string_view block);
    void take(std::string_view bytes);
    std::optional<std::size_t> pagesOfPDF() const;

    std::string _start; ///< the data's first bytes, until their kind is known
    bool _isPDF = false;
    KLPostScriptPageCounter _postScript;
    Platform::Stream _pdf; ///< null as well when it could not be kept
};
