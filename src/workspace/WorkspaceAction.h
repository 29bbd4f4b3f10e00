// All commands of the workspace: verbs of the command line, requests on the socket, shortcuts, URLs, menus and the
// pointer. `WorkspaceController::perform` takes a `WorkspaceAction`. The traits of an action say what must be true
// before it is carried out.
#pragma once

#include "layout/LayoutSolver.h"
#include "layout/TileTarget.h"
#include "layout/WorkspaceProfile.h"
#include "persistence/WorkspaceProductDocument.h"
#include "support/Identifiers.h"
#include "windowing/ApplicationServicing.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kova {

enum class WorkspaceDirection { left, right, up, down };
/// "left", "right", "up" or "down".
std::string_view describe(WorkspaceDirection direction);

enum class StackStep { next, previous };
enum class LayoutStep { next, previous };
enum class DisplayStep { next, previous };
/// The next or previous display in the platform's order, with wrap-around, or the display with an id.
using DisplayChoice = std::variant<DisplayStep, DisplayID>;
/// The neighboring tile in a direction, or a certain tile.
using TileChoice = std::variant<WorkspaceDirection, TileTarget>;

struct ActionTraits {
    enum class Needs {
        nothing,       // the action itself checks what it needs
        visibleScreen, // KOVA is not paused, and the screen is neither locked nor asleep
        windowAccess,  // a visible screen and the permission to manage windows
    };
    enum class FocusMode { stays, closes };
    Needs needs = Needs::nothing;
    /// `closes`: focus mode ends before the action is carried out. `stays`: only the undo step of the action, if it
    /// adds one, ends focus mode.
    FocusMode focusMode = FocusMode::stays;
    /// The label of the action's undo step. Empty if the action adds no step, or if the label depends on details.
    std::string_view undoLabel{};
};

/// Commands for one window, which can be planned without being carried out. An absent window id stands for the focused
/// window.
namespace command {
/// Makes the window the front window of the tile.
struct Place {
    std::optional<WindowID> windowID;
    TileTarget target;
};
/// Makes the window the front window of the tile with this number in the layout of its display. The first number is 1.
struct PlaceInNumbered {
    std::optional<WindowID> windowID;
    std::size_t number = 1;
};
/// Exchanges the window with the front window of a tile; each tile keeps its stacked windows.
struct Swap {
    std::optional<WindowID> windowID;
    TileChoice with;
};
/// Focuses the window. A stacked window becomes the front window of its tile first.
struct FocusWindow {
    std::optional<WindowID> windowID;
};
/// Focuses the window that was focused last on the display, else its first front window, else any of its windows.
struct FocusDisplay {
    DisplayChoice display;
};
/// Moves the window to a free tile of the display. If none is free, moves it to the tile of the same slot, else to the
/// first tile.
struct MoveToDisplay {
    std::optional<WindowID> windowID;
    DisplayChoice display;
};
/// Takes the window out of its tile; arrangements and rules leave it alone until it is put into a tile again.
struct Float {
    std::optional<WindowID> windowID;
};
/// Puts the window into the nearest free tile of its display, else into the nearest tile.
struct Tile {
    std::optional<WindowID> windowID;
};
/// `Float` for a window in a tile, else `Tile`.
struct ToggleFloating {
    std::optional<WindowID> windowID;
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
    std::optional<WindowID> windowID{}; // the window from which the neighbor is searched
};
struct Move {
    static constexpr ActionTraits kTraits{.needs = windowAccess, .focusMode = closes};
    WorkspaceDirection direction;
    std::optional<WindowID> windowID{};
};
struct CycleStack {
    static constexpr ActionTraits kTraits{.needs = windowAccess, .focusMode = closes, .undoLabel = "cycle stack"};
    StackStep step = StackStep::next;
    std::optional<WindowID> windowID{}; // a window of the stack
    std::optional<TileTarget> target{}; // the tile of the stack; if present, `windowID` is ignored
};
/// Begins or ends focus mode.
struct ToggleFocusZoom {
    static constexpr ActionTraits kTraits{.needs = windowAccess, .undoLabel = "focus mode"};
    std::optional<WindowID> windowID{};
};
struct Arrange {
    static constexpr ActionTraits kTraits{.needs = windowAccess, .focusMode = closes, .undoLabel = "arrange"};
};
/// Undoes the newest step and ends focus mode.
struct Undo {};
/// Requests the frames of windows again that have drifted from their tiles.
struct RepairPlacements {
    static constexpr ActionTraits kTraits{.needs = windowAccess, .focusMode = closes};
};

// Layouts. An action that would change nothing does not end focus mode.
struct SelectLayout {
    DisplayID displayID;
    DisplayLayoutSelection selection;
};
/// Selects the next or previous layout of the catalogue, with wrap-around. Without a display id, on the current
/// display.
struct CycleLayout {
    LayoutStep step = LayoutStep::next;
    std::optional<DisplayID> displayID{};
};
/// Drops the weights of every layout on the display. Without a display id, on the current display.
struct ResetLayoutSizes {
    static constexpr ActionTraits kTraits{.undoLabel = "reset layout sizes"};
    std::optional<DisplayID> displayID{};
};
/// Sets the inset: the gap on each side between a tile's cell and its window, in points (0 to 100).
struct SetTileInset {
    static constexpr ActionTraits kTraits{.undoLabel = "tile inset"};
    double points = 0;
};

// Dividers. A translation is the distance in points from the divider's position at the beginning. It is positive to the
// right or downwards.
/// Refused if the display is disconnected or shows another layout.
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
/// Returns the divider to its position before the drag.
struct CancelDividerDrag {};
/// Carries out a whole drag at once. Of the divider's values only the display, the split and the boundary count. The
/// outcome's details are a `DividerMovement`.
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

// Windows under the pointer. Positions are in screen space, frames in window-service space.
enum class WindowDragKind { move, resize };
enum class DropMode { intoTile, floating };
/// The pointer has pressed a managed window, which may move before a drag is detected. So until the release, neither
/// polls nor the verification of a placement move the window. Refused while the pointer drags a divider.
struct PressWindow {
    WindowID windowID;
};
/// The pointer has released the window without dragging it.
struct ReleaseWindow {};
/// Until the drag ends, polls move no window. Refused for the zoomed window, which returns to its
/// frame when the pointer releases it.
struct BeginWindowDrag {
    WindowID windowID;
    CGRect frameBefore{}; // the window's frame before the pointer moved it
};
struct UpdateWindowDrag {
    CGPoint pointer{};
    WindowDragKind kind = WindowDragKind::move;
    DropMode mode = DropMode::intoTile; // what a drop at this moment would do
};
struct EndWindowDrag {
    CGPoint pointer{};
    WindowDragKind kind = WindowDragKind::move;
    DropMode mode = DropMode::intoTile;
};
/// Ends the drag or the press of the window.
struct CancelWindowDrag {};

// Applications
/// Launches the application and puts its first window without a tile into this tile. The window may exist already, or
/// appear within 20 s. Another launch into the tile replaces this one. `completion` is called when the launch has
/// succeeded or failed.
struct LaunchApplication {
    static constexpr ActionTraits kTraits{.needs = windowAccess};
    LaunchableApplication application;
    DisplayID displayID;
    SlotID slotID;
    LaunchCompletion completion{};
};
/// Requests the application that owns the window to quit. Refused if there is no such window, or the application
/// belongs to the desktop.
struct QuitApplication {
    static constexpr ActionTraits kTraits{.focusMode = closes};
    WindowID windowID;
};
/// Kills the application. Refused if no signal was sent.
struct ForceQuitApplication {
    static constexpr ActionTraits kTraits{.focusMode = closes};
    WindowID windowID;
};
/// Asks the user for confirmation, and then ends all regular applications.
struct ForceQuitAll {};
/// Ends the confirmed applications, except those that have ended or restarted since the confirmation. The outcome's
/// details are a `ForceQuitOutcome`.
struct ForceQuit {
    std::vector<RunningApplication> confirmed;
};
/// Drops the minimum sizes and the slots' weights that were learned for an application. `name` is its name, its
/// identifier, or a part of them that no other application has. The outcome's details are `ForgottenApplications`.
struct ForgetApplication {
    std::string name;
};

// Scenes and rules
/// Saves the workspace as a scene with the name. Without a name, makes one from the time. Refused if the scene could
/// not be decoded again.
struct CaptureScene {
    std::optional<std::string> name{};
};
/// Restores layouts, theme, accent color, inset and windows; launches missing applications and places their windows if
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
/// Inserts a deleted scene into the list again. An index beyond the end means the last place.
struct InsertScene {
    WorkspaceScene scene;
    std::size_t index = 0;
};
/// Adds the rule. An empty name is replaced by a name made from its criterion. Refused for a rule without a criterion.
struct AddRule {
    WorkspaceRule rule;
};
/// Adds a rule for all windows of the application that owns the window. Without an id, this is the focused window.
struct AddRuleForWindow {
    WorkspaceRuleDisposition disposition;
    std::optional<WindowID> windowID{};
};
/// Changes the members that are present. White space at both ends of `titleContains` is dropped. An empty text removes
/// this criterion.
struct ChangeRule {
    Uuid id;
    std::optional<bool> isEnabled{};
    std::optional<std::string> titleContains{};
    std::optional<WorkspaceRuleDisposition> disposition{};
};
struct DeleteRule {
    Uuid id;
};
/// Moves the rule to the index in the list. An index beyond the end means the last place.
struct MoveRule {
    Uuid id;
    std::size_t index = 0;
};
/// Adds those scenes and rules of an exported document that do not exist yet. If this fails, nothing is changed. The
/// outcome's details are `WorkspaceImportCounts`.
struct ImportDocument {
    std::string data;
};

// Settings. Each change is stored at once and moves no window.
enum class Setting {
    isPaused, // no window is moved, no rule is applied, and only the shortcut that resumes KOVA works; not stored
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
/// Refused if there is no such theme.
struct SelectTheme {
    std::string id;
};
/// An unknown id selects the default color.
struct SelectAccentColor {
    std::string id;
};
/// Makes arrangements prefer the application for the tiles of this slot. Without an application key, none is preferred.
struct PreferApplication {
    SlotID slotID;
    std::optional<std::string> applicationKey{};
};
/// Shows the text as the status message.
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
