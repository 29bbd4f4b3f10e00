// Every command that a client gives to the workspace: verbs of the command line, requests on the socket, shortcuts,
// URLs, menus and the pointer. Each case is what `WorkspaceController::perform` takes; what must hold before it is
// carried out stands beside it as its traits.
#pragma once

#include "layout/LayoutSolver.h"
#include "layout/WorkspaceProfile.h"
#include "persistence/WorkspaceProductDocument.h"
#include "windowing/ApplicationServicing.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kova {

enum class WorkspaceDirection { left, right, up, down };
/// "left", "right", "up", "down".
std::string_view describe(WorkspaceDirection direction);

enum class StackStep { next, previous };
enum class LayoutStep { next, previous };
enum class DisplayStep { next, previous };
/// A step through the displays in the platform's order, with wrap-around, or a display id.
using DisplayChoice = std::variant<DisplayStep, std::string>;
/// The neighbouring tile in a direction, or a tile-target id.
using TileChoice = std::variant<WorkspaceDirection, std::string>;

struct ActionTraits {
    enum class Needs {
        nothing,       // or only if there is something to change, which the action then checks
        visibleScreen, // neither paused, nor locked, nor suspended
        windowAccess,  // that, and the permission to manage windows
    };
    enum class FocusMode { stays, closes };
    Needs needs = Needs::nothing;
    FocusMode focusMode = FocusMode::stays; // what changes a layout closes it all the same, with the undo step
    std::string_view undoLabel{}; // of the step that it adds to the history; empty when the step names details, or none
};

/// Commands for one window, which can be planned without being carried out. An absent window id stands for the focused
/// window.
namespace command {
/// Puts the window in front of the tile.
struct Place {
    std::optional<std::string> windowID;
    std::string targetID;
};
/// The same, with the tile's number in the layout of the window's display, from 1.
struct PlaceInNumbered {
    std::optional<std::string> windowID;
    std::size_t number = 1;
};
/// Exchanges the window with the front window of a tile; each tile keeps what waits behind.
struct Swap {
    std::optional<std::string> windowID;
    TileChoice with;
};
/// Focuses the window; one that waits in a stack comes to the front of its tile first.
struct FocusWindow {
    std::optional<std::string> windowID;
};
/// Focuses the window of the display that had the keyboard last, else the first that is in front of a tile there.
struct FocusDisplay {
    DisplayChoice display;
};
/// Moves the window to a free tile of the display, else to the tile of the same slot or at the same place.
struct MoveToDisplay {
    std::optional<std::string> windowID;
    DisplayChoice display;
};
/// Takes the window out of its tile; arrangements and rules leave it alone until it is put into a tile again.
struct Float {
    std::optional<std::string> windowID;
};
/// Puts the window into the free tile nearest to it on its display, else into the one under its middle.
struct Tile {
    std::optional<std::string> windowID;
};
/// `Float` for a window in a tile, else `Tile`.
struct ToggleFloating {
    std::optional<std::string> windowID;
};
} // namespace command

using WindowCommand =
    std::variant<command::Place, command::PlaceInNumbered, command::Swap, command::FocusWindow, command::FocusDisplay,
                 command::MoveToDisplay, command::Float, command::Tile, command::ToggleFloating>;

namespace action {

using enum ActionTraits::Needs;
using enum ActionTraits::FocusMode;

// Windows and tiles. An absent window id stands for the focused window.
struct Focus {
    static constexpr ActionTraits kTraits{.needs = windowAccess, .focusMode = closes};
    WorkspaceDirection direction;
    std::optional<std::string> windowID{}; // where the search begins
};
struct Move {
    static constexpr ActionTraits kTraits{.needs = windowAccess, .focusMode = closes};
    WorkspaceDirection direction;
    std::optional<std::string> windowID{};
};
struct CycleStack {
    static constexpr ActionTraits kTraits{.needs = windowAccess, .focusMode = closes, .undoLabel = "cycle stack"};
    StackStep step = StackStep::next;
    std::optional<std::string> windowID{}; // whose tile is meant
    std::optional<std::string> targetID{}; // the tile itself
};
/// Gives the window its whole display, or gives the display back.
struct ToggleFocusZoom {
    static constexpr ActionTraits kTraits{.needs = windowAccess, .undoLabel = "focus mode"};
    std::optional<std::string> windowID{};
};
struct Arrange {
    static constexpr ActionTraits kTraits{.needs = windowAccess, .focusMode = closes, .undoLabel = "arrange"};
};
/// Takes the newest step back; focus mode ends with it.
struct Undo {};
/// Requests the frames of windows that drifted from their tiles again.
struct RepairPlacements {
    static constexpr ActionTraits kTraits{.needs = windowAccess, .focusMode = closes};
};

// Layouts. What is in force already is not changed; then focus mode stays.
struct SelectLayout {
    std::string displayID;
    DisplayLayoutSelection selection;
};
/// Through the whole catalogue in its order, with wrap-around, on the current display.
struct CycleLayout {
    LayoutStep step = LayoutStep::next;
};
/// Drops the weights of every layout on the display; of the current display when none is named.
struct ResetLayoutSizes {
    static constexpr ActionTraits kTraits{.undoLabel = "reset layout sizes"};
    std::optional<std::string> displayID{};
};
/// Sets the gap on each side between tiles and windows, in points (0 to 100).
struct SetTileInset {
    static constexpr ActionTraits kTraits{.undoLabel = "tile inset"};
    double points = 0;
};

// Dividers. Translations are in points from where the divider was at the beginning: to the right, and downwards.
/// Refused when the display is gone or shows another layout.
struct BeginDividerDrag {
    static constexpr ActionTraits kTraits{.needs = visibleScreen, .focusMode = closes};
    DisplayLayoutDivider divider;
};
struct UpdateDividerDrag {
    DisplayLayoutDivider divider;
    double translationPoints = 0;
};
struct EndDividerDrag {
    static constexpr ActionTraits kTraits{.undoLabel = "drag divider"};
    DisplayLayoutDivider divider;
};
/// Puts the divider back where the drag began.
struct CancelDividerDrag {};
/// The whole of a drag at once; the divider is found by its display, split and boundary. The outcome's details are a
/// `DividerMovement`.
struct MoveDivider {
    static constexpr ActionTraits kTraits{.needs = visibleScreen, .focusMode = closes};
    DisplayLayoutDivider divider;
    double translationPoints = 0;
};
/// Drops the weights of the divider's split.
struct ResetDivider {
    static constexpr ActionTraits kTraits{.needs = visibleScreen, .focusMode = closes, .undoLabel = "reset divider"};
    DisplayLayoutDivider divider;
};

// Windows under the pointer. Points are in screen space, frames in window-service space.
enum class WindowDragKind { move, resize };
enum class DropMode { intoTile, floating };
/// The button is down on a managed window, which may begin to move before that is noticed: until it is released,
/// neither polls nor what is left of a placement move it.
struct PressWindow {
    std::string windowID;
};
/// The button is up and the window was not dragged.
struct ReleaseWindow {};
/// Until the drag ends, polls leave all windows alone. Refused for the zoomed window.
struct BeginWindowDrag {
    std::string windowID;
    CGRect frameBefore{}; // before the pointer moved the window
};
struct UpdateWindowDrag {
    CGPoint pointer{};
    WindowDragKind kind = WindowDragKind::move;
};
struct EndWindowDrag {
    CGPoint pointer{};
    WindowDragKind kind = WindowDragKind::move;
    DropMode mode = DropMode::intoTile;
};
/// The window is neither dragged nor pressed any more.
struct CancelWindowDrag {};

// Applications
/// The first window of the application that appears within 20 s, or is there without a tile, is put into the tile.
/// Another launch into the tile replaces this one. `completion` is called once the launch has worked or failed.
struct LaunchApplication {
    static constexpr ActionTraits kTraits{.needs = windowAccess};
    LaunchableApplication application;
    std::string displayID;
    std::string slotID;
    LaunchCompletion completion{};
};
/// Asks the application that owns the window to quit. Refused when there is no such window, or it is the desktop's.
struct QuitApplication {
    static constexpr ActionTraits kTraits{.focusMode = closes};
    std::string windowID;
};
/// Ends it without asking it. Refused when nothing was signaled.
struct ForceQuitApplication {
    static constexpr ActionTraits kTraits{.focusMode = closes};
    std::string windowID;
};
/// Asks the user and then ends all regular applications.
struct ForceQuitAll {};
/// Ends those that the user has confirmed and that are still what they were. The outcome's details are a
/// `ForceQuitOutcome`.
struct ForceQuit {
    std::vector<RunningApplication> confirmed;
};
/// Drops what was learned of an application, given by its name, its identifier or a part of them that no other
/// application has: minimum sizes and usual tiles. The outcome's details are `ForgottenApplications`.
struct ForgetApplication {
    std::string name;
};

// Scenes and rules
/// Saves the workspace under the name, or under one that tells the time. Refused when it could not be read back.
struct CaptureScene {
    std::optional<std::string> name{};
};
/// Restores layouts, look and windows; applications that are missing are launched, and their windows are placed as
/// they appear within 25 s.
struct ActivateScene {
    static constexpr ActionTraits kTraits{.needs = windowAccess, .focusMode = closes, .undoLabel = "open scene"};
    Uuid id;
};
struct RenameScene {
    Uuid id;
    std::string name;
};
struct DeleteScene {
    Uuid id;
};
/// Puts a scene that was deleted back into the list; an index beyond the end is the last place.
struct InsertScene {
    WorkspaceScene scene;
    std::size_t index = 0;
};
/// An empty name is made from the application. Refused for a rule without any criterion.
struct AddRule {
    WorkspaceRule rule;
};
/// For all windows of the application of the window, the focused one when none is named.
struct AddRuleForWindow {
    WorkspaceRuleDisposition disposition;
    std::optional<std::string> windowID{};
};
/// Changes what is given. White space at both ends of the title is dropped; an empty one takes the criterion away.
struct ChangeRule {
    Uuid id;
    std::optional<bool> isEnabled{};
    std::optional<std::string> titleContains{};
    std::optional<WorkspaceRuleDisposition> disposition{};
};
struct DeleteRule {
    Uuid id;
};
/// To the place in the list, counted from 0; beyond the end is the last.
struct MoveRule {
    Uuid id;
    std::size_t index = 0;
};
/// Adds the scenes and rules of an exported document that are new. On an error nothing changes. The outcome's details
/// are `WorkspaceImportCounts`.
struct ImportDocument {
    std::string data;
};

// Settings. Each is stored at once; none of them moves a window.
enum class Setting {
    isPaused, // no window is moved, no rule acts and no other shortcut is heard; ends with the agent
    continuousManagement,
    autoArrangeOnLaunch,
    bringsNextForward,
    useThemeBackground,
    showBrain,
    showTileBackgrounds,
};
struct Switch {
    Setting setting = Setting::isPaused;
    bool isOn = false;
};
/// Refused when there is no such theme.
struct SelectTheme {
    std::string id;
};
/// An unknown id selects the default color.
struct SelectAccentColor {
    std::string id;
};
/// Arrangements offer tiles of this slot to the application, by its key, before others; to none when it is absent.
struct PreferApplication {
    std::string slotID;
    std::optional<std::string> applicationKey{};
};
/// Shows the text for 4 seconds, or until the next one.
struct ShowMessage {
    std::string text;
};

} // namespace action

using WorkspaceAction =
    std::variant<WindowCommand, action::Focus, action::Move, action::CycleStack, action::ToggleFocusZoom,
                 action::Arrange, action::Undo, action::RepairPlacements, action::SelectLayout, action::CycleLayout,
                 action::ResetLayoutSizes, action::SetTileInset, action::BeginDividerDrag, action::UpdateDividerDrag,
                 action::EndDividerDrag, action::CancelDividerDrag, action::MoveDivider, action::ResetDivider,
                 action::PressWindow, action::ReleaseWindow, action::BeginWindowDrag, action::UpdateWindowDrag,
                 action::EndWindowDrag, action::CancelWindowDrag, action::LaunchApplication, action::QuitApplication,
                 action::ForceQuitApplication, action::ForceQuitAll, action::ForceQuit, action::ForgetApplication,
                 action::CaptureScene, action::ActivateScene, action::RenameScene, action::DeleteScene,
                 action::InsertScene, action::AddRule, action::AddRuleForWindow, action::ChangeRule, action::DeleteRule,
                 action::MoveRule, action::ImportDocument, action::Switch, action::SelectTheme,
                 action::SelectAccentColor, action::PreferApplication, action::ShowMessage>;

ActionTraits traitsOf(const WorkspaceAction& action);

} // namespace kova
