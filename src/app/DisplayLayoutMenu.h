// For each display the layouts that can be chosen, and the chosen one.
#pragma once

#include "workspace/WorkspaceController.h"

#include <string>
#include <vector>

namespace kova {

struct DisplayLayoutMenuOption {
    std::string id; // of a layout, or kAutomaticLayoutOption
    std::string name;
    bool operator==(const DisplayLayoutMenuOption&) const = default;
};

struct DisplayLayoutMenu {
    DisplayID id;      // of the display
    std::string title; // the display's name
    std::vector<DisplayLayoutMenuOption> options;
    std::string selectedOptionID;
    bool operator==(const DisplayLayoutMenu&) const = default;
};

/// The option that lets the display's size decide the layout.
inline constexpr std::string_view kAutomaticLayoutOption = "automatic";

/// One menu for each display, in the platform's order of displays. If the user has chosen no layout for a display, the
/// layout in force is selected.
std::vector<DisplayLayoutMenu> displayLayoutMenus(const WorkspaceController& workspace);
/// Selects the option on the display. False if the display or the option no longer exists, or if the workspace refuses;
/// then the workspace's status message has the reason.
bool chooseLayout(WorkspaceController& workspace, const DisplayID& displayID, const std::string& optionID);

} // namespace kova
