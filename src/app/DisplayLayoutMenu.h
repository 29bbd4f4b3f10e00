// For each display the layouts that can be chosen, and the chosen one.
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
    DisplayID id;      // the display's
    std::string title; // the display's name
    std::vector<DisplayLayoutMenuOption> options;
    std::string selectedOptionID;
    bool operator==(const DisplayLayoutMenu&) const = default;
};

/// The layout is chosen by the display's size.
inline constexpr std::string_view kAutomaticLayoutOption = "automatic";

/// In the platform's order of displays. A display for which nothing was chosen shows the layout in force as selected.
std::vector<DisplayLayoutMenu> displayLayoutMenus(const WorkspaceController& workspace);
/// False if the display or the option does not exist any more, or if the workspace refuses (its status message has the
/// reason).
bool chooseLayout(WorkspaceController& workspace, const DisplayID& displayID, const std::string& optionID);

} // namespace kova
