// The open windows that each rule of a list matches.
#pragma once

#include "persistence/WorkspaceProductDocument.h"
#include "windowing/ManagedWindow.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace kova {

struct RuleMatch {
    WindowID windowID;
    bool decides = false; // false: an earlier rule matches the window as well, and decides
    bool operator==(const RuleMatch&) const = default;
};

/// The largest number of rules that are matched: only generated lists are longer, and matching them would take too
/// long.
inline constexpr std::size_t kMostRulesMatched = 500;

/// For each of the first `kMostRulesMatched` rules the windows that it matches, in the order of the windows.
std::vector<std::vector<RuleMatch>> matchesOf(std::span<const WorkspaceRule> rules,
                                              const std::vector<ManagedWindow>& windows);

} // namespace kova
