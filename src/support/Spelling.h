// Finds the known word that is nearest to a misspelled one.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace kova {

/// The number of edits that turn `a` into `b`. An edit inserts, drops or replaces a byte, or exchanges two adjacent
/// bytes.
std::size_t editDistance(std::string_view a, std::string_view b);

/// The index of the word that needs the fewest edits. Absent if it needs more than two edits, or more than one edit if
/// `wanted` has at most four bytes. A word of one byte is not near another one. Upper and lower case are different
/// letters.
std::optional<std::size_t> nearestWord(std::string_view wanted, std::span<const std::string> words);

} // namespace kova
