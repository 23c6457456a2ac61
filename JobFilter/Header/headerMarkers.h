#pragma once

#include <string>
#include <string_view>
#include <vector>

class KLPrintOptions;

// The markers: what the setting of a DSSC line begins with that handlePJL() fills in, replaces or
// puts lines beside. Letter case counts.

inline constexpr std::string_view kAccessCodeMarker = "ACCESSCODE=";
inline constexpr std::string_view kCollateMarker = "COLLATE=";
inline constexpr std::string_view kAdvancedColorMarker = "DOCUMENTTYPE=ADVANCED";
inline constexpr std::string_view kPrintModeMarker = "PRINTMODE=";

inline constexpr std::string_view kHeaderMarkers[] = {kAccessCodeMarker, kCollateMarker,
                                                      kAdvancedColorMarker, kPrintModeMarker};

/// Whether the line, which may end in CR LF or not, is a DSSC line with that marker.
bool isMarkerLine(std::string_view line, std::string_view marker);

/// The markers that the job needs and the header has in no line: what belongs there would be lost.
///
/// Every job needs PRINTMODE= (user, domain, protection); ACCESSCODE= one with a department code;
/// COLLATE= one that says how its colours are matched; DOCUMENTTYPE=ADVANCED one with a setting
/// under "com.kalmira.pde.advancedcolorsettings.".
/// @param header  as it is before it is walked; empty when there is none
std::vector<std::string_view> missingMarkers(std::string_view header,
                                             const KLPrintOptions &options);

/// Logs each missing marker as a DEBUG line of its own, where the PPD has lines that only jobfilter
/// knows ("*KL..."): its writer can mend it.
void logMissingMarkers(std::string_view header, const KLPrintOptions &options);
