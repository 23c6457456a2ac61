#pragma once

#include "DSCDocument.h"

#include <span>
#include <string_view>

/// Whether the document takes the value of one of these names at the moment the name is read, as
/// with "//showpage". An operator that has become a procedure is no longer called then: it is only
/// put on the stack.
///
/// Comments, counted data, and strings that begin on the same line do not count. In doubt a name
/// does: data without a count, or a string of several lines, can be taken for it.
/// @throws ToolkitError when the document cannot be read
bool takesValueAtOnce(const DSCDocument &document, std::span<const std::string_view> names);

/// @throws ToolkitError when the document takes the value of one of them at once
void requireReplaceable(const DSCDocument &document, std::span<const std::string_view> names);
