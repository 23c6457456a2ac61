#pragma once

#include "KLValue.h"

#include <optional>
#include <string_view>

class KLPrintOptions;

/// What a job asks for to be done with its pages.
enum class PrintMode {
    Open,             ///< nothing in particular
    Private,          ///< "PrintMode" is "Private"; no document box then
    StoredAndPrinted, ///< "StoreToDocStore" is "true" in any letter case
    StoredOnly,       ///< and "PrintAsWell" is "False"
};

PrintMode printMode(const KLPrintOptions &options);

/// The setting of a DSSC line, an object format, by which the printer keeps a private job until its
/// code is typed.
inline constexpr std::string_view kPrivatePrintSetting = "PRIVPRINT=%@";

/// That code; nullopt when the job has none.
std::optional<KLValue> privatePrintCode(const KLPrintOptions &options);

/// The setting by which the printer stores a job and does not print it.
inline constexpr std::string_view kStoredOnlySetting = "PRINTMODE=BOX";
