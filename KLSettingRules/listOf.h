#pragma once

#include <cstddef>
#include <span>

/// A list of the PPD library's records: where it begins and how many they are. Empty for a count of
/// 0, also where it begins nowhere. Stays whose it is.
template <class Element>
std::span<const Element> listOf(const Element *first, int count)
{
    return {first, static_cast<std::size_t>(count)};
}
