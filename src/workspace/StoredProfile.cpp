#include "workspace/StoredProfile.h"

#include "layout/LayoutCatalogue.h"
#include "layout/LayoutSolver.h"
#include "support/Limits.h"
#include "support/Quoted.h"

#include <array>
#include <charconv>

namespace kova {

namespace {

constexpr double kLargestMinimumSize = 1 << 15; // points; no display is so large

std::string text(double number) {
    std::array<char, 32> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return {digits.data(), end};
}

bool isPossible(CGSize size) {
    const auto fits = [](double length) { return length >= 0 && length <= kLargestMinimumSize; };
    return fits(size.width) && fits(size.height);
}

} // namespace

std::vector<std::string> correctStoredProfile(WorkspaceProfile& profile, const ThemeRegistry& registry,
                                              std::string_view fallbackThemeID) {
    std::vector<std::string> lines;
    if (!registry.contains(profile.themeID)) {
        lines.push_back("themeID: there is no theme " + quoted(profile.themeID) + "; " + quoted(fallbackThemeID) +
                        " is used");
        profile.themeID = fallbackThemeID;
    }
    const auto& layouts = registry.theme(profile.themeID).layouts;
    if (!findLayout(layouts, profile.layoutID)) {
        const WorkspaceProfile standard;
        lines.push_back("layoutID: there is no layout " + quoted(profile.layoutID) + "; " + quoted(standard.layoutID) +
                        " is used");
        profile.layoutID = standard.layoutID;
    }
    for (auto& [display, selection] : profile.layoutSelectionsByDisplay) {
        if (!selection.layoutID || findLayout(layouts, *selection.layoutID)) continue;
        lines.push_back("layoutSelectionsByDisplay." + display.text() + ": there is no layout " +
                        quoted(*selection.layoutID) + "; the automatic one is used");
        selection = DisplayLayoutSelection::automatic();
    }
    if (!(profile.tileInset >= 0 && profile.tileInset <= kLargestTileInset)) {
        lines.push_back("tileInset: " + text(profile.tileInset) + " is not between 0 and " + text(kLargestTileInset) +
                        "; " + text(kSlotInset) + " is used");
        profile.tileInset = kSlotInset;
    }
    std::erase_if(profile.applicationMinimumSizes, [&lines](const auto& entry) {
        const auto& [application, size] = entry;
        if (isPossible(size)) return false;
        lines.push_back("applicationMinimumSizes." + application + ": " + text(size.width) + " x " + text(size.height) +
                        " is no size of a window; it is not used");
        return true;
    });
    return lines;
}

} // namespace kova
