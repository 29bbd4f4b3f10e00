#include "app/BackdropWindowController.h"

namespace kova {

namespace {

using Section = OverlaySection;

constexpr Section kSections[] = {Section::isSuspended, Section::appearance, Section::displays, Section::message};

OverlayAppearance appearanceOf(const WorkspaceController& workspace) {
    const WorkspaceState& state = workspace.state();
    const ThemeDescriptor& theme = workspace.registry().theme(state.profile->themeID);
    const bool isNative = theme.visualStyle == ThemeVisualStyle::native;
    return {.themeID = theme.id,
            .accentColorID = *state.accentColorID,
            .isDark = isNative ? std::nullopt : std::optional(true),
            .palette = workspace.registry().palette(theme.id, *state.accentColorID),
            .useThemeBackground = *state.useThemeBackground,
            .showTileBackgrounds = *state.showTileBackgrounds,
            .showBrain = *state.showBrain};
}

/// Frames of the windows that are shown on the display outside its tiles: floating ones, and those in full screen.
std::vector<CGRect> floatingFrames(const WorkspaceController& workspace, const CGRect& display) {
    std::vector<CGRect> frames;
    for (const ManagedWindow& window : workspace.liveWindows()) {
        const bool isShown = window.isVisible && !window.isMinimized && !window.isElsewhere && window.frame;
        const bool isInTile = !window.isFullScreen && workspace.assignments().isInAnyTile(window.id);
        if (isShown && !isInTile && intersectionArea(*window.frame, display) > 0) frames.push_back(*window.frame);
    }
    return frames;
}

std::vector<OverlayDisplay> displaysOf(const WorkspaceController& workspace) {
    const WorkspaceState& state = workspace.state();
    const auto current = workspace.currentDisplayID();
    std::vector<OverlayDisplay> out;
    for (const Screen& screen : *state.screens) {
        const double firstMaxY = maxY(state.screens->front().frame);
        OverlayDisplay display{.id = displayID(screen),
                               .number = static_cast<int>(out.size()) + 1,
                               .name = screen.localizedName,
                               .frame = flipped(screen.frame, firstMaxY),
                               .visibleFrame = flipped(screen.visibleFrame, firstMaxY),
                               .scale = screen.scale};
        if (const LayoutDefinition* layout = workspace.resolvedLayout(display.id)) {
            display.layoutID = layout->id;
            display.layoutName = layout->name;
        }
        display.isFocusMode = *state.focusMode && (*state.focusMode)->displayID == display.id;
        display.isCurrent = display.id == current;
        if (*state.showBrain) display.floatingFrames = floatingFrames(workspace, display.frame);
        out.push_back(std::move(display));
    }
    return out;
}

} // namespace

BackdropWindowController::BackdropWindowController(const WorkspaceController& workspace, OverlayBoard& board) :
    workspace_(workspace), board_(board) {}

BackdropWindowController::~BackdropWindowController() {
    close();
}

void BackdropWindowController::show() {
    if (!subscriptions_.empty()) return refresh();
    board_.provide(Section::isSuspended, [this](auto& out) { out.isSuspended = *workspace_.state().isSuspended; });
    board_.provide(Section::appearance, [this](auto& out) { out.appearance = appearanceOf(workspace_); });
    board_.provide(Section::displays, [this](auto& out) { out.displays = displaysOf(workspace_); });
    board_.provide(Section::message, [this](auto& out) { out.message = message(); });
    const auto watch = [this](const auto& published, Section section) {
        subscriptions_.push_back(published.observe([this, section](const auto&) { board_.refresh(section); }));
    };
    const WorkspaceState& state = workspace_.state();
    watch(state.isSuspended, Section::isSuspended);
    watch(state.profile, Section::appearance);
    watch(state.accentColorID, Section::appearance);
    watch(state.useThemeBackground, Section::appearance);
    watch(state.showTileBackgrounds, Section::appearance);
    watch(state.showBrain, Section::appearance);
    watch(state.screens, Section::displays);
    watch(state.layoutRevision, Section::displays);
    watch(state.profile, Section::displays);
    watch(state.focusMode, Section::displays);
    watch(state.focusedWindowID, Section::displays);
    watch(state.assignedWindowIDs, Section::displays);
    watch(state.showBrain, Section::displays);
    subscriptions_.push_back(state.windows.observe([this](const auto&) {
        if (*workspace_.state().showBrain) board_.refresh(Section::displays);
    }));
    watch(state.lastActionMessage, Section::message);
    watch(state.canUndo, Section::message);
}

void BackdropWindowController::refresh() {
    if (subscriptions_.empty()) return;
    for (const Section section : kSections) board_.refresh(section);
}

void BackdropWindowController::close() {
    subscriptions_.clear();
    for (const Section section : kSections) board_.close(section);
}

std::optional<OverlayMessage> BackdropWindowController::message() {
    const auto& text = *workspace_.state().lastActionMessage;
    if (!text) return std::nullopt;
    const std::uint64_t serial = workspace_.messagesShown();
    if (serial != messagePlace_.serial) messagePlace_ = {serial, workspace_.currentDisplayID()};
    return OverlayMessage{*text, messagePlace_.displayID, workspace_.isMessageUndoable() ? "undo" : ""};
}

} // namespace kova
