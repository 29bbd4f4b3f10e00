#include "workspace/TileRoom.h"

#include "layout/LayoutSolver.h"
#include "layout/SpanFrame.h"

#include <algorithm>

namespace kova {

namespace {

template <class Id>
bool contains(const std::vector<Id>& ids, const Id& id) {
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

bool isKnown(const CGSize& size) {
    return size.width > 0 || size.height > 0;
}

} // namespace

TileRoom::TileRoom(const LayoutDefinition& layout, CGSize visibleSize, double tileInset,
                   std::vector<TileHolder> holders) :
    layout_(&layout),
    visibleSize_(visibleSize), tileInset_(tileInset), holders_(std::move(holders)) {}

TileRoom TileRoom::withHolders(std::vector<TileHolder> holders) const {
    return {*layout_, visibleSize_, tileInset_, std::move(holders)};
}

std::vector<TileHolder> TileRoom::withoutHoldersOf(const std::vector<SlotID>& slotIDs, const WindowID& windowID) const {
    const auto leaving = holdersOf(slotIDs, windowID);
    std::vector<TileHolder> remaining;
    for (const auto& holder : holders_) {
        if (holder.windowID != windowID && !leaving.contains(holder.windowID)) remaining.push_back(holder);
    }
    return remaining;
}

std::set<WindowID> TileRoom::holdersOf(const std::vector<SlotID>& slotIDs, const WindowID& exceptWindowID) const {
    std::set<WindowID> found;
    for (const auto& holder : holders_) {
        const bool holdsOne = std::any_of(holder.slotIDs.begin(), holder.slotIDs.end(),
                                          [&](const SlotID& slot) { return contains(slotIDs, slot); });
        if (holdsOne && holder.windowID != exceptWindowID) found.insert(holder.windowID);
    }
    return found;
}

/// As in `TileGeometry`, only the minimum sizes of windows in a single tile affect the solved sizes.
SolvedLayout TileRoom::solved() const {
    TileMinimumSizes sizes;
    for (const auto& holder : holders_) {
        if (holder.slotIDs.size() == 1 && isKnown(holder.minimumSize)) sizes[holder.slotIDs[0]] = holder.minimumSize;
    }
    return solveDefinition(*layout_, sizes, visibleSize_, tileInset_);
}

/// The minimum size, limited to the area of all tiles.
CGSize TileRoom::attainable(CGSize minimumSize, const SolvedLayout& solved) const {
    if (solved.slots.empty()) return minimumSize;
    CGRect all = solved.slots.front().normalizedFrame;
    for (const auto& slot : solved.slots) all = unionOf(all, slot.normalizedFrame);
    return {std::min(minimumSize.width, std::max(0.0, all.size.width * visibleSize_.width - 2 * tileInset_)),
            std::min(minimumSize.height, std::max(0.0, all.size.height * visibleSize_.height - 2 * tileInset_))};
}

bool TileRoom::isCramped(const TileHolder& holder, const SolvedLayout& solved) const {
    if (!isKnown(holder.minimumSize)) return false;
    std::vector<CGRect> own, others;
    for (std::size_t i = 0; i < solved.slots.size(); ++i) {
        (contains(holder.slotIDs, solved.slots[i].id) ? own : others).push_back(solved.frames[i]);
    }
    if (own.empty()) return false;
    const CGSize cell = own.size() == 1 ? own.front().size : frameOfSpan(own, others).size;
    const CGSize needed = attainable(holder.minimumSize, solved);
    return cell.width - 2 * tileInset_ < needed.width - kMinimumFitTolerance ||
           cell.height - 2 * tileInset_ < needed.height - kMinimumFitTolerance;
}

std::vector<WindowID> TileRoom::crampedIn(const SolvedLayout& solved) const {
    std::vector<WindowID> found;
    for (const auto& holder : holders_) {
        if (isCramped(holder, solved)) found.push_back(holder.windowID);
    }
    return found;
}

/// All slots of the layout without minimum sizes; `slotID` comes first.
std::vector<SlotID> TileRoom::allSlotsFrom(const SlotID& slotID) const {
    std::vector<SlotID> slots = {slotID};
    for (const auto& slot : withHolders({}).solved().slots) {
        if (slot.id != slotID) slots.push_back(slot.id);
    }
    return slots;
}

std::vector<SlotID> TileRoom::tilesFor(const WindowID& windowID, CGSize minimumSize, const SlotID& slotID) const {
    std::vector<SlotID> slots = {slotID};
    std::set<SlotID> occupied;
    for (const auto& holder : holders_) {
        if (holder.windowID != windowID) occupied.insert(holder.slotIDs.begin(), holder.slotIDs.end());
    }
    TileRoom others = withHolders(withoutHoldersOf(slots, windowID));
    const auto alone = others.solved();
    if (std::none_of(alone.slots.begin(), alone.slots.end(), [&](const auto& slot) { return slot.id == slotID; })) {
        return {};
    }

    // True if this or another window becomes cramped when this window is put into the slots `own`.
    const auto crampsAnyWindow = [&](const TileRoom& room, const std::vector<SlotID>& own) {
        auto holders = room.holders_;
        holders.push_back({windowID, own, minimumSize});
        const auto before = room.cramped();
        const auto after = room.withHolders(std::move(holders)).cramped();
        return std::any_of(after.begin(), after.end(), [&](const auto& id) { return !contains(before, id); });
    };
    if (!crampsAnyWindow(others, slots)) return slots;

    // A tile is enlarged if its front window needs that. The edges of an enlarged tile do not line up with those of its
    // neighbors, so spans are also searched in the layout without any windows. A tile that loses its window to the span
    // is not enlarged any more, so each span is tested without the windows that would lose their tiles. If no span has
    // enough room, the search is repeated without the windows that would lose their tiles to the largest span found. If
    // it covers none of the remaining windows, the window fits beside none of them and covers all tiles.
    for (;;) {
        std::vector<std::vector<SlotID>> spans;
        for (const SolvedLayout& solved : {others.solved(), withHolders({}).solved()}) {
            const auto span = TileSpanPolicy::bestSpan(solved.slots, slotID, visibleSize_, tileInset_,
                                                       attainable(minimumSize, solved), occupied);
            spans.push_back({slotID});
            for (const auto& slot : span ? span->slots : std::vector<TileSlot>{}) {
                if (slot.id != slotID) spans.back().push_back(slot.id);
            }
        }
        std::ranges::stable_sort(spans, {}, &std::vector<SlotID>::size);
        for (const auto& span : spans) {
            if (!crampsAnyWindow(withHolders(others.withoutHoldersOf(span, windowID)), span)) return span;
        }
        slots = spans.back();
        auto remaining = others.withoutHoldersOf(slots, windowID);
        if (remaining.size() == others.holders_.size()) return remaining.empty() ? slots : allSlotsFrom(slotID);
        others = withHolders(std::move(remaining));
    }
}

} // namespace kova
