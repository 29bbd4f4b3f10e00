// Validates a stored profile, which a user may have edited.
#pragma once

#include "layout/WorkspaceProfile.h"
#include "themes/ThemeRegistry.h"

#include <string>
#include <string_view>
#include <vector>

namespace kova {

/// Replaces values that are out of range: the theme by `fallbackThemeID`, a chosen layout by the automatic one, others
/// by their defaults; drops minimum sizes that no window can have. Returns one line for each correction: "tileInset:
/// 5000 is not between 0 and 100; 5 is used".
std::vector<std::string> correctStoredProfile(WorkspaceProfile& profile, const ThemeRegistry& registry,
                                              std::string_view fallbackThemeID);

} // namespace kova
