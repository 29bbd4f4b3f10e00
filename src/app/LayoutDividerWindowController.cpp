#include "app/LayoutDividerWindowController.h"

#include "app/DesktopGuards.h"
#include "layout/LayoutSolver.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

/// Takes the footer out of the frame of a handle between an upper and a lower tile: the gap begins with the upper
/// tile's footer, which has its own controls. `frame` is in screen space.
void leaveFooterFree(LayoutAxis axis, CGRect& frame) {
    if (axis == LayoutAxis::vertical && frame.size.height > kFooterHeight) frame.size.height -= kFooterHeight;
}

std::string handleID(const DisplayLayoutDivider& divider) {
    return divider.displayID.text() + "::" + divider.layoutID + "/" + divider.divider.splitID + "/" +
           std::to_string(divider.divider.boundaryIndex);
}

} // namespace

LayoutDividerWindowController::LayoutDividerWindowController(WorkspaceController& workspace,
                                                             DividerHandleServicing& handles, OverlayBoard& board,
                                                             MainQueue& queue) :
    workspace_(workspace),
    handles_(handles), board_(board), queue_(queue) {
    const auto& state = workspace_.state();
    subscriptions_.push_back(state.layoutRevision.observe([this](auto) { refreshSoon(); }));
    subscriptions_.push_back(state.screens.observe([this](const auto&) { refreshSoon(); }));
    subscriptions_.push_back(state.focusMode.observe([this](const auto&) { refreshSoon(); }));
    subscriptions_.push_back(state.assignedWindowIDs.observe([this](const auto&) { refreshSoon(); }));
    subscriptions_.push_back(state.permissionState.observe([this](auto) { refreshSoon(); }));
    subscriptions_.push_back(state.isSuspended.observe([this](bool isSuspended) {
        if (isSuspended) forgetPointer();
    }));
    subscriptions_.push_back(handles_.observeHandles([this](const DividerHandleEvent& event) { handle(event); }));
    refresh();
}

LayoutDividerWindowController::~LayoutDividerWindowController() {
    close();
}

/// One operation changes the state several times; the handles are updated once, after the windows were placed.
void LayoutDividerWindowController::refreshSoon() {
    if (std::exchange(isRefreshDue_, true)) return;
    board_.refresh(OverlaySection::dividers);
    queue_.post(lifetime_.guard([this] {
        if (isRefreshDue_) showHandles();
    }));
}

void LayoutDividerWindowController::refresh() {
    showHandles();
    if (!std::exchange(isClosed_, false)) return board_.refresh(OverlaySection::dividers);
    board_.provide(OverlaySection::dividers, [this](OverlayContents& out) {
        if (isRefreshDue_) showHandles();
        out.dividers = contents();
    });
}

void LayoutDividerWindowController::showHandles() {
    isRefreshDue_ = false;
    std::vector<Shown> next;
    const bool isPermitted = *workspace_.state().permissionState == AccessibilityPermissionState::granted;
    if (isPermitted) {
        const double inset = workspace_.state().profile->tileInset;
        for (const auto& divider : workspace_.dividers()) {
            if (handles_.coversDesktopIcons() && !holdsWindows(workspace_, divider.displayID)) continue;
            if (auto frame = workspace_.dividerFrameOnScreen(divider)) {
                leaveFooterFree(divider.divider.axis, *frame);
                next.push_back({{handleID(divider), *frame, divider.divider.axis, inset}, divider});
            }
        }
    }
    const bool isSame = std::equal(next.begin(), next.end(), shown_.begin(), shown_.end(),
                                   [](const Shown& a, const Shown& b) { return a.handle == b.handle; });
    shown_ = std::move(next);
    if (hoveredID_ && !dividerOf(*hoveredID_)) hoveredID_.reset();
    std::vector<DividerHandle> frames;
    for (const auto& shown : shown_) frames.push_back(shown.handle);
    if (!isSame) handles_.showHandles(frames);
    if (handles_.coversDesktopIcons()) guardDesktop(isPermitted ? desktopGuards(workspace_, frames) : Guards());
}

void LayoutDividerWindowController::guardDesktop(Guards guards) {
    if (guards == guards_) return;
    guards_ = std::move(guards);
    handles_.guardDesktop(guards_);
}

void LayoutDividerWindowController::close() {
    if (!isClosed_) {
        // The drag is canceled first, because this restores the tiles and their handles.
        if (std::exchange(held_, std::nullopt)) workspace_.perform(action::CancelDividerDrag{});
        isClosed_ = true;
        shown_.clear();
        hoveredID_.reset();
        handles_.showHandles({});
        guardDesktop({});
        board_.close(OverlaySection::dividers);
    }
    isRefreshDue_ = false;
}

std::vector<OverlayDivider> LayoutDividerWindowController::contents() const {
    const auto& screens = *workspace_.state().screens;
    std::vector<OverlayDivider> out;
    for (const auto& [handle, shown] : shown_) {
        if (screens.empty()) break;
        out.push_back({.id = handle.id,
                       .displayID = shown.displayID,
                       .layoutID = shown.layoutID,
                       .splitID = shown.divider.splitID,
                       .boundaryIndex = shown.divider.boundaryIndex,
                       .axis = handle.axis,
                       .frame = flipped(handle.frame, maxY(screens.front().frame)),
                       .isHovered = hoveredID_ == handle.id,
                       .isDragged = held_ && handleID(held_->divider) == handle.id});
    }
    return out;
}

void LayoutDividerWindowController::hover(const std::optional<std::string>& handleID) {
    if (std::exchange(hoveredID_, handleID) != handleID) board_.refresh(OverlaySection::dividers);
}

/// Call when the workspace has canceled the drag because of a suspension. The next event of the pointer may arrive
/// only after the suspension, or never.
void LayoutDividerWindowController::forgetPointer() {
    held_.reset();
    hoveredID_.reset();
    board_.refresh(OverlaySection::dividers);
}

std::optional<DisplayLayoutDivider> LayoutDividerWindowController::dividerOf(const std::string& id) const {
    const auto found = std::find_if(shown_.begin(), shown_.end(), [&](const Shown& s) { return s.handle.id == id; });
    if (found == shown_.end()) return std::nullopt;
    return found->divider;
}

/// The y axis of layout space points down, the y axis of screen space up.
double LayoutDividerWindowController::translation(const Held& held, CGPoint location) const {
    return held.divider.divider.axis == LayoutAxis::horizontal ? location.x - held.start.x : held.start.y - location.y;
}

void LayoutDividerWindowController::handle(const DividerHandleEvent& event) {
    using Kind = DividerHandleEvent::Kind;
    if (isRefreshDue_) showHandles();
    // Copies the divider, since the drag may replace the handles.
    const auto divider = dividerOf(event.handleID);
    switch (event.kind) {
    case Kind::pressed:
        if (divider && workspace_.perform(action::BeginDividerDrag{*divider})) held_ = Held{*divider, event.location};
        return board_.refresh(OverlaySection::dividers);
    case Kind::moved:
        if (held_) workspace_.perform(action::UpdateDividerDrag{held_->divider, translation(*held_, event.location)});
        return;
    case Kind::released:
        if (!held_) return;
        workspace_.perform(action::UpdateDividerDrag{held_->divider, translation(*held_, event.location)});
        workspace_.perform(action::EndDividerDrag{held_->divider});
        held_.reset();
        return board_.refresh(OverlaySection::dividers);
    case Kind::canceled:
        if (held_) workspace_.perform(action::CancelDividerDrag{});
        held_.reset();
        return board_.refresh(OverlaySection::dividers);
    case Kind::doubleClicked:
        if (divider) workspace_.perform(action::ResetDivider{*divider});
        return;
    case Kind::entered:
        return hover(event.handleID);
    case Kind::left:
        if (hoveredID_ == event.handleID) hover(std::nullopt);
        return;
    }
}

} // namespace kova
