#include "workspace/TileGeometry.h"

#include "layout/SpanFrame.h"
#include "workspace/WorkspaceParts.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

constexpr std::string_view kZoomLayoutID = "jarvis.focus-single";

} // namespace

TileGeometry::TileGeometry(WorkspaceParts& parts) :
    state_(parts.state), liveWindows_(parts.liveWindows), assignments_(parts.assignments), frames_(parts.frames) {}

std::optional<LearnedPlace> TileGeometry::learnedPlace(const TileTarget& target) const {
    const Screen* screen = screenOfTarget(target);
    if (!screen) return std::nullopt;
    return LearnedPlace{layoutOn(*screen).id, target.slot};
}

std::vector<DisplayLayoutDivider> TileGeometry::dividersOn(const DisplayID& id) const {
    const Screen* screen = screenOf(id);
    if (!screen) return {};
    std::vector<DisplayLayoutDivider> all;
    const std::string& layoutID = layoutIDOn(*screen);
    for (const auto& divider : solvedTiles(*screen).dividers) all.push_back({id, layoutID, divider});
    return all;
}

std::optional<CGRect> TileGeometry::dividerFrameOnScreen(const DisplayLayoutDivider& divider) const {
    const Screen* screen = screenOf(divider.displayID);
    if (!screen) return std::nullopt;
    return kova::tileFrameOnScreen(divider.divider.frame, screen->visibleFrame);
}

const std::vector<LayoutDefinition>& TileGeometry::catalogue() const {
    return registry_.theme(state_.profile->themeID).layouts;
}

const Screen* TileGeometry::screenOf(const DisplayID& id) const {
    const auto& screens = *state_.screens;
    const auto found =
        std::find_if(screens.begin(), screens.end(), [&](const Screen& screen) { return displayID(screen) == id; });
    return found == screens.end() ? nullptr : &*found;
}

const Screen* TileGeometry::screenOfTarget(const TileTarget& target) const {
    return screenOf(target.display);
}

double TileGeometry::firstScreenMaxY() const {
    return state_.screens->empty() ? 0 : maxY(state_.screens->front().frame);
}

bool TileGeometry::isOnSomeScreen(const CGRect& frameForWindowService) const {
    const CGRect frameOnScreen = flipped(frameForWindowService, firstScreenMaxY());
    return std::any_of(state_.screens->begin(), state_.screens->end(),
                       [&](const Screen& screen) { return intersectionArea(screen.frame, frameOnScreen) > 0; });
}

const LayoutDefinition* TileGeometry::resolvedLayout(const DisplayID& id) const {
    const Screen* screen = screenOf(id);
    return screen ? &layoutOn(*screen) : nullptr;
}

/// The minimum sizes of the windows in single tiles, by slot. Spanning windows are left out, because their spans are
/// already large enough.
TileMinimumSizes TileGeometry::tileMinimumSizes(const DisplayID& id) const {
    TileMinimumSizes sizes;
    const auto& assigned = assignments_.assignedWindowIDs;
    for (auto entry = assigned.lower_bound({id, {}}); entry != assigned.end(); ++entry) {
        if (entry->first.display != id) break;
        const ManagedWindow* window = liveWindows_.find(entry->second);
        if (!window || assignments_.anchorsByWindowID.contains(entry->second)) continue;
        const CGSize minimum = minimumSizeOf(*window);
        if (minimum.width > 0 || minimum.height > 0) sizes.emplace(entry->first.slot, minimum);
    }
    return sizes;
}

const SolvedLayout& TileGeometry::solvedTiles(const Screen& screen) const {
    return layouts_.solve(screen, *state_.profile, catalogue(), tileMinimumSizes(displayID(screen)));
}

std::optional<CGRect> TileGeometry::tileFrameOnScreen(const TileTarget& target) const {
    const Screen* screen = screenOfTarget(target);
    if (!screen) return std::nullopt;
    const SolvedLayout& solved = solvedTiles(*screen);
    for (std::size_t i = 0; i < solved.slots.size(); ++i) {
        if (solved.slots[i].id == target.slot) return kova::tileFrameOnScreen(solved.frames[i], screen->visibleFrame);
    }
    return std::nullopt;
}

std::optional<CGRect> TileGeometry::frameForWindow(const WindowID& windowID) const {
    const auto target = assignments_.targetOf(windowID);
    const Screen* screen = target ? screenOfTarget(*target) : nullptr;
    if (!screen) return std::nullopt;
    const auto frames = framesOfTiledWindows(*screen);
    const auto frame = frames.find(windowID);
    return frame == frames.end() ? std::nullopt : std::optional(frame->second);
}

std::map<WindowID, CGRect> TileGeometry::framesOfTiledWindows() const {
    std::map<WindowID, CGRect> all;
    for (const auto& screen : *state_.screens) all.merge(framesOfTiledWindows(screen));
    return all;
}

std::map<WindowID, CGRect> TileGeometry::framesOfTiledWindows(const Screen& screen) const {
    struct Cell {
        const WindowID* front; // null if the tile is free
        CGRect onScreen;
    };
    std::vector<Cell> cells;
    const SolvedLayout& solved = solvedTiles(screen);
    cells.reserve(solved.slots.size());
    TileTarget target{displayID(screen), {}};
    for (std::size_t i = 0; i < solved.slots.size(); ++i) {
        target.slot = solved.slots[i].id;
        const auto front = assignments_.assignedWindowIDs.find(target);
        const bool isTaken = front != assignments_.assignedWindowIDs.end();
        cells.push_back(
            {isTaken ? &front->second : nullptr, kova::tileFrameOnScreen(solved.frames[i], screen.visibleFrame)});
    }
    const auto frameOf = [&cells](const WindowID& window) {
        std::vector<CGRect> own, others;
        for (const Cell& cell : cells) (cell.front && *cell.front == window ? own : others).push_back(cell.onScreen);
        return frameOfSpan(own, others);
    };
    std::map<WindowID, CGRect> frames;
    for (const Cell& cell : cells) {
        if (!cell.front) continue;
        const auto [entry, isFirst] = frames.try_emplace(*cell.front);
        if (!isFirst) continue;
        const bool isSpanning = assignments_.anchorsByWindowID.contains(*cell.front);
        const CGRect filled = isSpanning ? frameOf(*cell.front) : cell.onScreen;
        const CGRect tile = flipped(insetBy(filled, state_.profile->tileInset), firstScreenMaxY());
        const ManagedWindow* live = liveWindows_.find(*cell.front);
        entry->second = live ? largestAllowedFrame(*live, tile) : tile;
    }
    return frames;
}

std::vector<WorkspaceTile> TileGeometry::tiles() const {
    std::vector<WorkspaceTile> out;
    for (const auto& screen : *state_.screens) {
        const DisplayID id = displayID(screen);
        const SolvedLayout& solved = solvedTiles(screen);
        const auto frames = framesOfTiledWindows(screen);
        for (std::size_t i = 0; i < solved.slots.size(); ++i) {
            WorkspaceTile tile;
            tile.target = {id, solved.slots[i].id};
            tile.displayID = id;
            tile.slot = solved.slots[i];
            tile.frameOnScreen = kova::tileFrameOnScreen(solved.frames[i], screen.visibleFrame);
            tile.frameForWindowService =
                flipped(insetBy(tile.frameOnScreen, state_.profile->tileInset), firstScreenMaxY());
            const auto front = assignments_.assignedWindowIDs.find(tile.target);
            if (front != assignments_.assignedWindowIDs.end()) {
                tile.windowID = front->second;
                tile.frameForWindowService = frames.at(front->second);
            }
            const auto stack = assignments_.stackWindowIDsByTarget.find(tile.target);
            if (stack != assignments_.stackWindowIDsByTarget.end()) tile.stack = stack->second;
            out.push_back(std::move(tile));
        }
    }
    return out;
}

const Screen* TileGeometry::screenOfWindow(const ManagedWindow& window) const {
    if (const auto target = assignments_.targetOf(window.id)) {
        if (const Screen* screen = screenOfTarget(*target)) return screen;
    }
    if (!window.frame) return nullptr;
    const CGRect frame = flipped(*window.frame, firstScreenMaxY());
    const Screen* best = nullptr; // shows the largest part of the window so far
    double largestArea = 0;
    for (const auto& screen : *state_.screens) {
        if (containsPoint(screen.frame, center(frame))) return &screen;
        const double area = intersectionArea(screen.frame, frame);
        if (area > largestArea) {
            best = &screen;
            largestArea = area;
        }
    }
    return best;
}

CGSize TileGeometry::minimumSizeOf(const ManagedWindow& window, WindowSizes::Purpose purpose) const {
    return frames_.sizes().minimumOf(window, minimumOfApplication(window), purpose);
}

std::optional<CGSize> TileGeometry::minimumOfApplication(const ManagedWindow& window) const {
    const auto& remembered = state_.profile->applicationMinimumSizes;
    if (remembered.empty()) return std::nullopt;
    const auto found = remembered.find(applicationKey(window.applicationName, window.bundleIdentifier));
    return found == remembered.end() ? std::nullopt : std::optional(found->second);
}

CGRect TileGeometry::largestAllowedFrame(const ManagedWindow& window, const CGRect& tileFrame) const {
    return window.sizeHints ? largestFrameWithin(tileFrame, *window.sizeHints) : tileFrame;
}

TileRoom TileGeometry::roomOn(const Screen& screen) const {
    std::map<WindowID, TileHolder> holders;
    const DisplayID id = displayID(screen);
    for (const auto& [target, windowID] : assignments_.assignedWindowIDs) {
        if (target.display != id) continue;
        TileHolder& holder = holders[windowID];
        holder.slotIDs.push_back(target.slot);
        if (assignments_.isAnchor(target, windowID)) std::swap(holder.slotIDs.front(), holder.slotIDs.back());
    }
    std::vector<TileHolder> all;
    for (auto& [windowID, holder] : holders) {
        holder.windowID = windowID;
        if (const ManagedWindow* window = liveWindows_.find(windowID)) holder.minimumSize = minimumSizeOf(*window);
        all.push_back(std::move(holder));
    }
    return {layoutOn(screen), screen.visibleFrame.size, state_.profile->tileInset, std::move(all)};
}

std::optional<Covering> TileGeometry::coveringFor(const ManagedWindow& window, const TileTarget& target) const {
    const Screen* screen = screenOfTarget(target);
    if (!screen) return std::nullopt;
    return coveringOn(*screen, roomOn(*screen).tilesFor(window.id, minimumSizeOf(window), target.slot));
}

std::optional<Covering> TileGeometry::coveringOn(const Screen& screen, const std::vector<SlotID>& slotIDs) const {
    const auto& slots = solvedTiles(screen).slots;
    Covering covering;
    for (const auto& slotID : slotIDs) {
        const auto slot = std::ranges::find(slots, slotID, &TileSlot::id);
        if (slot != slots.end()) covering.targets.push_back({displayID(screen), *slot});
    }
    if (covering.targets.empty()) return std::nullopt;
    return covering;
}

std::optional<Covering> TileGeometry::freeCoveringOn(const Screen& screen, const ManagedWindow& window) const {
    const TileRoom room = roomOn(screen);
    for (const auto& slot : solvedTiles(screen).slots) {
        const auto slots = room.tilesFor(window.id, minimumSizeOf(window), slot.id);
        const bool isFree =
            room.holdersOf(slots, window.id).empty() && std::ranges::none_of(slots, [&](const auto& id) {
                return assignments_.stackWindowIDsByTarget.contains({displayID(screen), id});
            });
        if (isFree) return coveringOn(screen, slots);
    }
    return std::nullopt;
}

std::vector<TileTarget> TileGeometry::targetsFor(const Screen& screen, const SlotID& slotID,
                                                 const std::optional<std::vector<SlotID>>& claimedSlotIDs) const {
    const auto& slots = layoutOn(screen).slots;
    std::vector<TileTarget> targets;
    for (const auto& slot : slotsTaken(slots, slotID, claimedSlotIDs)) {
        targets.push_back({displayID(screen), slot});
    }
    return targets;
}

std::vector<std::string> TileGeometry::applicationsOn(const std::optional<DisplayID>& wanted) const {
    std::vector<std::string> names;
    for (const auto& window : liveWindows_) {
        const auto target = assignments_.targetOf(window.id);
        const bool counts = !wanted || (target && target->display == *wanted);
        if (counts && std::find(names.begin(), names.end(), window.applicationName) == names.end()) {
            names.push_back(window.applicationName);
        }
    }
    return names;
}

std::optional<CGRect> TileGeometry::zoomFrame(const DisplayID& id) const {
    const Screen* screen = screenOf(id);
    if (!screen) return std::nullopt;
    const LayoutDefinition* zoom = findLayout(builtInLayouts(), kZoomLayoutID);
    const SolvedLayout solved = solveDefinition(*zoom, {}, screen->visibleFrame.size, state_.profile->tileInset);
    const CGRect cell = kova::tileFrameOnScreen(solved.frames.front(), screen->visibleFrame);
    return flipped(insetBy(cell, state_.profile->tileInset), firstScreenMaxY());
}

std::optional<TileTarget> TileGeometry::dropTarget(const WindowID& windowID, CGPoint pointOnScreen) const {
    for (const auto& tile : tiles()) {
        if (!containsPoint(tile.frameOnScreen, pointOnScreen)) continue;
        return tile.windowID == windowID ? std::nullopt : std::optional(tile.target);
    }
    return std::nullopt;
}

} // namespace kova
