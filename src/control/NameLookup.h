// Finds things by the names that users type: a display, a layout, a window, a rule or an application by its id, number,
// name or an unambiguous part; a scene by its id or its whole name.
#pragma once

#include "control/ControlHandling.h"
#include "support/Identifiers.h"
#include "support/JsonDecoding.h"
#include "workspace/WorkspaceController.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kova {

/// Something that has names. All but the id are compared without regard to case.
struct NamedThing {
    std::string id;
    std::vector<std::string> names;
    std::string description; // for the list of choices in an error message
};

enum class Numbered { no, yes }; // whether a number means the place in the list, counted from 1

/// The index of the matching thing; if none or several match, a failure that lists them. `kind` is "display", "layout",
/// ...
ControlResult<std::size_t> lookUp(std::string_view kind, std::string_view wanted, std::span<const NamedThing> things,
                                  Numbered numbered);

/// Text to append to an error, such as ". Did you mean “quad-grid”?"; empty if no name is similar.
std::string nearestName(std::string_view wanted, const std::vector<std::string>& names);

/// For use in a message: valid UTF-8, and cut if it is very long.
std::string textForMessage(std::string_view wanted);

/// The display's id.
ControlResult<DisplayID> lookUpDisplay(const WorkspaceController& controller, std::string_view wanted);
/// The id of the display that the parameters name, else of the current one.
ControlResult<DisplayID> wantedDisplay(const WorkspaceController& controller, const JsonCursor& parameters);
/// A tile of the layout in force on the display, by its slot's id, its number in the layout's order, its name, ...
ControlResult<TileSlot> lookUpSlot(const WorkspaceController& controller, const DisplayID& displayID,
                                   std::string_view wanted);
/// The id of a slot, for settings that apply to all displays: `wanted` is the id of a slot of any layout, or the number
/// or name of a tile on the current display.
ControlResult<SlotID> lookUpSlotOfAnyLayout(const WorkspaceController& controller, const std::string& wanted);
/// The layout's id.
ControlResult<std::string> lookUpLayout(const WorkspaceController& controller, std::string_view wanted);
ControlResult<ManagedWindow> lookUpWindow(const WorkspaceController& controller, std::string_view wanted);
/// Finds a window for an operation on its whole application: if several windows of one application match, the result is
/// the first of them.
ControlResult<ManagedWindow> lookUpWindowOfApplication(const WorkspaceController& controller, std::string_view wanted);
/// Finds a window, or else a dialog by its id or title.
ControlResult<ManagedWindow> lookUpWindowOrDialog(const WorkspaceController& controller, std::string_view wanted);
/// A window that is not managed, by its id, title or application; null unless exactly one matches.
const UnmanagedWindow* findUnmanagedWindow(const WorkspaceController& controller, std::string_view wanted);
/// Finds a scene by its exact name, else the first whose name differs only in case, else by its id. Never by a part of
/// its name, since scenes are deleted by name.
ControlResult<WorkspaceScene> lookUpScene(const WorkspaceController& controller, std::string_view wanted);
/// The rule's index. A number in `wanted` is its place in the list, counted from 1.
ControlResult<std::size_t> lookUpRule(const WorkspaceController& controller, std::string_view wanted);

struct NamedApplication {
    std::string name;
    std::optional<BundleID> bundleIdentifier;
};
/// A running application with windows, or an installed one.
ControlResult<NamedApplication> lookUpApplicationForRule(const WorkspaceController& controller,
                                                         std::string_view wanted);

} // namespace kova
