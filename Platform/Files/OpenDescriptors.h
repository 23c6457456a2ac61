#pragma once

namespace Platform {

/// Closes every descriptor of this process from the number `first` on, whoever opened it.
/// @return false, with errno set, when the system does not say which there are
bool closeDescriptorsFrom(int first);

/// Has those descriptors closed by the next program that this process becomes. Until then they stay
/// open.
/// @return as above
bool closeDescriptorsFromOnExec(int first);

} // namespace Platform
