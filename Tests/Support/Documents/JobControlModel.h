#pragma once

#include <string>
#include <string_view>

namespace Support {

// What is to be kept of a stream with job control in it: the rules of KLJobControlStripper told
// another way, on all of the stream at once, plainly and slowly. Shares nothing with the class.

/// The page data of the stream.
std::string pageDataOf(std::string_view stream);

/// The same for a reader who knows a marker only where it stands in one piece in the stream.
/// Where that leaves no marker it is what pageDataOf() says.
std::string pageDataBetweenWholeMarkers(std::string_view stream);

/// The bytes without the control-Ds at their end.
std::string_view withoutEnds(std::string_view bytes);

bool hasMarker(std::string_view bytes);

} // namespace Support
