#include "app/TileFooterWindowController.h"

#include "layout/SpanFrame.h"

#include <algorithm>
#include <map>
#include <utility>

namespace kova {

namespace {

/// The tiles of one footer: a single tile, or all tiles of a span with the anchor first.
using TileGroup = std::vector<const WorkspaceTile*>;

/// The groups in the order of the tiles; a span has the position of its anchor.
std::vector<TileGroup> groupsOf(const std::vector<WorkspaceTile>& tiles, const TileAssignments& assignments) {
    std::vector<TileGroup> groups;
    for (const WorkspaceTile& tile : tiles) {
        const auto targets = tile.windowID ? assignments.targetsAnchorFirst(*tile.windowID) : std::vector<TileTarget>();
        if (targets.size() < 2) {
            groups.push_back({&tile});
            continue;
        }
        if (targets.front() != tile.target) continue;
        TileGroup group{&tile};
        for (const WorkspaceTile& other : tiles) {
            if (&other != &tile && other.windowID == tile.windowID) group.push_back(&other);
        }
        groups.push_back(std::move(group));
    }
    return groups;
}

CGRect cellOf(const TileGroup& group, const std::vector<WorkspaceTile>& tiles) {
    std::vector<CGRect> own, others;
    for (const WorkspaceTile& tile : tiles) {
        if (tile.displayID != group.front()->displayID) continue;
        const bool isOwn = std::find(group.begin(), group.end(), &tile) != group.end();
        (isOwn ? own : others).push_back(tile.frameOnScreen);
    }
    return frameOfSpan(own, others);
}

OverlayApplication applicationOf(const ManagedWindow& window) {
    return {window.bundleIdentifier, window.applicationName};
}

class FooterBuild {
  public:
    explicit FooterBuild(const WorkspaceController& workspace) :
        workspace_(workspace), state_(workspace.state()), tiles_(workspace.tiles()),
        firstMaxY_(state_.screens->empty() ? 0 : maxY(state_.screens->front().frame)) {
        for (const ManagedWindow& window : workspace.liveWindows()) windows_.emplace(window.id, &window);
        const ManagedWindow* focused = workspace.focusedWindow();
        if (focused) focusedID_ = focused->id;
    }

    std::vector<OverlayTile> footers() const {
        std::vector<OverlayTile> out;
        for (const TileGroup& group : groupsOf(tiles_, workspace_.assignments())) out.push_back(footer(group));
        return out;
    }

  private:
    OverlayTile footer(const TileGroup& group) const {
        const WorkspaceTile& tile = *group.front();
        OverlayTile out{.id = tile.target, .displayID = tile.displayID, .slotID = tile.slot.id};
        out.name = tile.slot.name;
        out.cell = flipped(cellOf(group, tiles_), firstMaxY_);
        out.windowFrame = insetBy(out.cell, state_.profile->tileInset);
        const auto& zoom = *state_.focusMode;
        if (!zoom || zoom->displayID != tile.displayID) {
            out.footerFrame = makeRect(minX(out.cell), maxY(out.cell), out.cell.size.width, kFooterHeight);
        }
        std::vector<WindowID> stack = tile.stack;
        if (stack.empty() && tile.windowID) stack.push_back(*tile.windowID);
        for (const WindowID& id : stack) {
            if (const auto known = windows_.find(id); known != windows_.end()) {
                out.windows.push_back(entry(*known->second, tile.windowID == id));
            }
        }
        const auto& launches = *state_.pendingLaunches;
        for (const WorkspaceTile* covered : group) {
            out.coveredSlotIDs.push_back(covered->slot.id);
            if (covered->target == *state_.dropTarget) out.isDropTarget = true;
            const auto launch = launches.find(covered->target);
            if (launch != launches.end() && !out.pendingLaunch) {
                out.pendingLaunch = {launch->second.bundleIdentifier, launch->second.name};
            }
        }
        return out;
    }

    OverlayWindow entry(const ManagedWindow& window, bool isFront) const {
        return {.id = window.id,
                .application = applicationOf(window),
                .title = window.title,
                .isFront = isFront,
                .isFocused = window.id == focusedID_,
                .isMinimized = window.isMinimized};
    }

    const WorkspaceController& workspace_;
    const WorkspaceState& state_;
    const std::vector<WorkspaceTile> tiles_;
    const double firstMaxY_;
    std::map<WindowID, const ManagedWindow*> windows_;
    std::optional<WindowID> focusedID_;
};

} // namespace

std::string placementNoticeText(const WindowPlacementNotice& notice) {
    return notice.applicationName + " did not fit in the selected tile, so KOVA automatically claimed " +
           std::to_string(notice.additionalTileCount) + " additional tiles";
}

TileFooterWindowController::TileFooterWindowController(const WorkspaceController& workspace, OverlayBoard& board,
                                                       MainQueue& queue) :
    workspace_(workspace),
    board_(board), queue_(queue) {
    board_.provide(OverlaySection::tiles, [this](OverlayContents& contents) { fill(contents); });
    const auto watch = [this](const auto& published) {
        subscriptions_.push_back(published.observe([this](const auto&) { refresh(); }));
    };
    const WorkspaceState& state = workspace_.state();
    watch(state.permissionState);
    watch(state.screens);
    watch(state.layoutRevision);
    watch(state.profile);
    watch(state.focusMode);
    watch(state.windows);
    watch(state.titleRevision);
    watch(state.focusedWindowID);
    watch(state.assignedWindowIDs);
    watch(state.stackWindowIDsByTarget);
    watch(state.dropTarget);
    watch(state.pendingLaunches);
    subscriptions_.push_back(state.placementNotice.observe([this](const auto& notice) {
        noticeEnd_ = notice ? queue_.uptime() + kNoticeTime : Seconds(0);
        refresh();
    }));
}

TileFooterWindowController::~TileFooterWindowController() {
    close();
}

void TileFooterWindowController::refresh() {
    if (!subscriptions_.empty()) board_.refresh(OverlaySection::tiles);
}

void TileFooterWindowController::close() {
    subscriptions_.clear();
    board_.close(OverlaySection::tiles);
}

void TileFooterWindowController::fill(OverlayContents& contents) {
    if (*workspace_.state().permissionState != AccessibilityPermissionState::granted) return;
    contents.tiles = FooterBuild(workspace_).footers();
    addNotice(contents.tiles);
}

/// Adds the notice to the footer of its span. The notice names no window or tile, so its span is found by the
/// application and by the center of the claimed area: a divider may have changed the span's frame.
void TileFooterWindowController::addNotice(std::vector<OverlayTile>& tiles) {
    const auto& notice = *workspace_.state().placementNotice;
    const Seconds left = noticeEnd_ - queue_.uptime();
    if (!notice || left <= Seconds(0) || workspace_.state().screens->empty()) return;
    const CGRect claimed = flipped(notice->claimedFrame, maxY(workspace_.state().screens->front().frame));
    const auto span = std::find_if(tiles.begin(), tiles.end(), [&](const OverlayTile& tile) {
        return tile.coveredSlotIDs.size() > 1 && !tile.windows.empty() &&
               tile.windows.front().application.name == notice->applicationName &&
               containsPoint(tile.cell, center(claimed));
    });
    if (span == tiles.end()) return;
    span->notice = OverlayNotice{placementNoticeText(*notice), span->windows.front().application};
    if (std::exchange(isNoticeEndScheduled_, true)) return;
    queue_.after(left, lifetime_.guard([this] {
        isNoticeEndScheduled_ = false;
        refresh();
    }));
}

} // namespace kova
