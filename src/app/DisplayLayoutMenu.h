// For each display the layouts that can be chosen for it, and the one that is.
#pragma once

#include "workspace/WorkspaceController.h"

#include <string>
#include <vector>

namespace kova {

struct DisplayLayoutMenuOption {
    std::string id; // a layout's, or kAutomaticLayoutOption
    std::string name;
    bool operator==(const DisplayLayoutMenuOption&) const = default;
};

struct DisplayLayoutMenu {
    std::string id;    // the display's
    std::string title; // the display's name
    std::vector<DisplayLayoutMenuOption> options;
    std::string selectedOptionID;
    bool operator==(const DisplayLayoutMenu&) const = default;
};

/// Lets the display's shape decide.
inline constexpr std::string_view kAutomaticLayoutOption = "automatic";

/// In the platform's order of displays. A display for which nothing was chosen shows the layout in force as selected.
std::vector<DisplayLayoutMenu> displayLayoutMenus(const WorkspaceController& workspace);
/// False when the display or the option is not there any more, or the workspace refuses (its status message says why).
bool chooseLayout(WorkspaceController& workspace, const std::string& displayID, const std::string& optionID);

} // namespace kova
