// Finds the known word that is nearest to a misspelled one.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kova {

/// How many bytes have to be inserted, dropped, replaced or exchanged with their neighbor.
std::size_t editDistance(std::string_view a, std::string_view b);

/// The index of the nearest word; absent when none is near enough to be a misspelling: one edit for up to four bytes,
/// else two. Case counts.
std::optional<std::size_t> nearestWord(std::string_view wanted, std::span<const std::string> words);

} // namespace kova
