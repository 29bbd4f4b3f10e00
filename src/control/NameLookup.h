// Finds a display, layout, window, rule or application by what the user typed: its id, its name, an unambiguous part of
// either, or for some kinds its number. A scene is found only by its id or its whole name.
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

/// Something that a user can name. Upper and lower case are not distinguished, but an exact id has precedence.
struct NamedThing {
    std::string id;
    std::vector<std::string> names;
    std::string description; // for the list of choices in an error message
};

enum class Numbered { no, yes }; // yes: the user can type a thing's number, which is its place in the list, from 1

/// The index of the thing that `wanted` names; an error that lists the choices if no thing or several things match.
/// `kind` is a noun for the error message, such as "display".
ControlResult<std::size_t> lookUp(std::string_view kind, std::string_view wanted, std::span<const NamedThing> things,
                                  Numbered numbered);

/// Text to append to an error message, such as ". Did you mean “quad-grid”?"; empty if no name is similar.
std::string suggestionFor(std::string_view wanted, const std::vector<std::string>& names);

/// What the user typed, for use in a message: valid UTF-8, and cut if it is very long.
std::string textForMessage(std::string_view wanted);

/// Returns the id of the display.
ControlResult<DisplayID> lookUpDisplay(const WorkspaceController& controller, std::string_view wanted);
/// The id of the display that the parameters name, else of the current display.
ControlResult<DisplayID> wantedDisplay(const WorkspaceController& controller, const JsonCursor& parameters);
/// Finds a slot of the layout in force on the display. The number of a slot is its place in the layout.
ControlResult<TileSlot> lookUpSlot(const WorkspaceController& controller, const DisplayID& displayID,
                                   std::string_view wanted);
/// Finds a slot for a setting that applies to all displays. `wanted` is the id of a slot of any layout, or what
/// `lookUpSlot` finds on the current display.
ControlResult<SlotID> lookUpSlotOfAnyLayout(const WorkspaceController& controller, const std::string& wanted);
/// Returns the id of the layout.
ControlResult<std::string> lookUpLayout(const WorkspaceController& controller, std::string_view wanted);
ControlResult<ManagedWindow> lookUpWindow(const WorkspaceController& controller, std::string_view wanted);
/// Finds a window for an operation on its whole application. So several matching windows of one process are no error;
/// the result is one of them, or the first window of that process.
ControlResult<ManagedWindow> lookUpWindowOfApplication(const WorkspaceController& controller, std::string_view wanted);
/// Finds a window; else a dialog, by its id or title.
ControlResult<ManagedWindow> lookUpWindowOrDialog(const WorkspaceController& controller, std::string_view wanted);
/// Finds a window that is not managed, by its id, title or application. Null unless exactly one matches.
const UnmanagedWindow* findUnmanagedWindow(const WorkspaceController& controller, std::string_view wanted);
/// Finds a scene by its exact name; else the first scene whose name differs only in case; else by its id. A part of the
/// name is not enough, so that `delete` cannot hit another scene.
ControlResult<WorkspaceScene> lookUpScene(const WorkspaceController& controller, std::string_view wanted);
/// Returns the index of the rule. The number of a rule is its place in the list, counted from 1.
ControlResult<std::size_t> lookUpRule(const WorkspaceController& controller, std::string_view wanted);

struct NamedApplication {
    std::string name;
    std::optional<BundleID> bundleIdentifier;
};
/// Finds a running application that has windows, or an installed application.
ControlResult<NamedApplication> lookUpApplicationForRule(const WorkspaceController& controller,
                                                         std::string_view wanted);

} // namespace kova
