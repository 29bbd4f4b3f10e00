#include "layout/TileSpans.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

namespace kova {

namespace {

constexpr std::size_t kFewestSlots = 2;
constexpr std::size_t kMostSlots = 63;
constexpr double kOverlapTolerance = 0.000001;  // normalized area
constexpr double kAreaTolerance = 0.000001;     // normalized area
constexpr double kDistanceTolerance = 0.000001; // normalized length
constexpr double kFitTolerance = 0.001;         // points

/// A set of slots, one bit each in layout order.
using SlotSet = std::uint64_t;

constexpr SlotSet only(std::size_t slot) {
    return SlotSet{1} << slot;
}
constexpr std::size_t firstOf(SlotSet set) {
    return static_cast<std::size_t>(std::countr_zero(set));
}
constexpr SlotSet withoutFirst(SlotSet set) {
    return set & (set - 1);
}

/// The interval that a slot covers along one axis.
struct Interval {
    double low;
    double high;
};

/// A possible side of the span, at the edge of some slot, and sets of slots by their position relative to this side.
struct Side {
    double position = 0;
    SlotSet within = 0;   // slots that do not extend beyond the side
    SlotSet touching = 0; // slots that end exactly on the side
    SlotSet reaching = 0; // slots of which a part is on the same side as the span
};

struct Candidate {
    SlotSet slots = 0;
    CGRect frame{};
    double area = 0;
    double expansionDistance = 0;
};

double sizeOrZero(double points) {
    return std::isfinite(points) && points > 0 ? points : 0;
}

Interval intervalOf(double origin, double length) {
    return {std::min(origin, origin + length), std::max(origin, origin + length)};
}

/// The sides at which a span around the anchor may begin, the nearest to the anchor first.
std::vector<Side> beginnings(std::span<const Interval> slots, double anchorLow) {
    std::vector<Side> sides;
    for (const Interval& slot : slots) {
        if (slot.low <= anchorLow) sides.push_back({slot.low});
    }
    std::sort(sides.begin(), sides.end(), [](const Side& a, const Side& b) { return a.position > b.position; });
    return sides;
}

/// The sides at which a span around the anchor may end, the nearest to the anchor first.
std::vector<Side> ends(std::span<const Interval> slots, double anchorHigh) {
    std::vector<Side> sides;
    for (const Interval& slot : slots) {
        if (slot.high >= anchorHigh) sides.push_back({slot.high});
    }
    std::sort(sides.begin(), sides.end(), [](const Side& a, const Side& b) { return a.position < b.position; });
    return sides;
}

void dropRepeated(std::vector<Side>& sides) {
    const auto samePlace = [](const Side& a, const Side& b) { return a.position == b.position; };
    sides.erase(std::unique(sides.begin(), sides.end(), samePlace), sides.end());
}

/// A span is valid if it contains each slot that overlaps its bounding rectangle by more than the tolerance. So it
/// suffices to try the rectangles around the anchor whose four sides are edges of slots.
class SpanSearch {
  public:
    SpanSearch(std::span<const TileSlot> slots, std::size_t anchor, CGSize displaySize, double tileInset,
               CGSize minimumSize, const std::set<SlotID>& occupiedSlotIDs);

    std::optional<TileSpan> run();

  private:
    using Sides = std::array<const Side*, 4>; // left, right, top, bottom

    bool fits(double normalizedLength, double displayLength, double minimumLength) const;
    void tryHeights(const Side& left, const Side& right);
    bool cutsASlot(const CGRect& frame, SlotSet crossing) const;
    SlotSet smallestSetReaching(const Sides& sides, SlotSet slots, SlotSet tiny, int most) const;
    void offer(SlotSet slots, const CGRect& frame);
    std::optional<TileSpan> preferred();

    CGRect frameOf(std::size_t slot) const;
    /// The number of slots of the best candidates; the largest possible number without a candidate.
    int fewestSlots() const {
        return candidates_.empty() ? static_cast<int>(kMostSlots) : std::popcount(candidates_.front().slots);
    }
    int occupiedIn(SlotSet set) const { return std::popcount(set & occupied_); }
    std::string joinedIDs(SlotSet set) const;
    bool isPreferred(SlotSet a, SlotSet b) const;

    std::span<const TileSlot> slots_;
    SlotSet anchor_;
    CGPoint anchorCenter_{};
    CGSize displaySize_;
    double tileInset_;
    CGSize minimumSize_;
    std::array<Interval, kMostSlots> columns_{}; // by slot
    std::array<Interval, kMostSlots> rows_{};
    SlotSet solid_ = 0; // slots with an area above the tolerance: a span that covers such a slot contains it
    SlotSet occupied_ = 0;
    std::vector<Side> lefts_, rights_, tops_, bottoms_;
    std::vector<Candidate> candidates_; // all with the fewest slots and, among these, the fewest occupied ones
};

SpanSearch::SpanSearch(std::span<const TileSlot> slots, std::size_t anchor, CGSize displaySize, double tileInset,
                       CGSize minimumSize, const std::set<SlotID>& occupiedSlotIDs) :
    slots_(slots),
    anchor_(only(anchor)), displaySize_(displaySize), tileInset_(tileInset), minimumSize_(minimumSize) {
    SlotSet usable = 0;
    for (std::size_t i = 0; i < slots.size(); ++i) {
        const CGRect& frame = slots[i].normalizedFrame;
        columns_[i] = intervalOf(frame.origin.x, frame.size.width);
        rows_[i] = intervalOf(frame.origin.y, frame.size.height);
        if (occupiedSlotIDs.contains(slots[i].id)) occupied_ |= only(i);
        const CGRect covered = frameOf(i);
        if (!isFinite(covered)) continue;
        usable |= only(i);
        if (covered.size.width * covered.size.height > kOverlapTolerance) solid_ |= only(i);
    }
    if (!(usable & anchor_)) return; // no sides, hence no spans
    anchorCenter_ = center(frameOf(anchor));

    const std::span<const Interval> columns(columns_.data(), slots.size());
    const std::span<const Interval> rows(rows_.data(), slots.size());
    lefts_ = beginnings(columns, columns_[anchor].low);
    rights_ = ends(columns, columns_[anchor].high);
    tops_ = beginnings(rows, rows_[anchor].low);
    bottoms_ = ends(rows, rows_[anchor].high);
    for (auto* sides : {&lefts_, &rights_, &tops_, &bottoms_}) {
        dropRepeated(*sides);
        const bool begins = sides == &lefts_ || sides == &tops_;
        const auto& intervals = sides == &lefts_ || sides == &rights_ ? columns : rows;
        for (Side& side : *sides) {
            for (SlotSet remaining = usable; remaining != 0; remaining = withoutFirst(remaining)) {
                const Interval& slot = intervals[firstOf(remaining)];
                const SlotSet bit = remaining & ~withoutFirst(remaining);
                const double end = begins ? slot.low : slot.high;
                if (begins ? end >= side.position : end <= side.position) side.within |= bit;
                if (end == side.position) side.touching |= bit;
                if (begins ? slot.high > side.position : slot.low < side.position) side.reaching |= bit;
            }
        }
    }
}

CGRect SpanSearch::frameOf(std::size_t slot) const {
    return makeRect(columns_[slot].low, rows_[slot].low, columns_[slot].high - columns_[slot].low,
                    rows_[slot].high - rows_[slot].low);
}

std::string SpanSearch::joinedIDs(SlotSet set) const {
    std::string joined = slots_[firstOf(set)].id.text();
    for (set = withoutFirst(set); set != 0; set = withoutFirst(set)) {
        joined.append(1, '\0').append(slots_[firstOf(set)].id.text());
    }
    return joined;
}

/// Whether `a` is preferred to `b`, which has the same bounding rectangle.
bool SpanSearch::isPreferred(SlotSet a, SlotSet b) const {
    if (std::popcount(a) != std::popcount(b)) return std::popcount(a) < std::popcount(b);
    if (occupiedIn(a) != occupiedIn(b)) return occupiedIn(a) < occupiedIn(b);
    return joinedIDs(a) < joinedIDs(b);
}

bool SpanSearch::fits(double normalizedLength, double displayLength, double minimumLength) const {
    const double length = std::max(0.0, normalizedLength * displayLength - 2 * tileInset_);
    return minimumLength <= length + kFitTolerance;
}

bool SpanSearch::cutsASlot(const CGRect& frame, SlotSet crossing) const {
    for (; crossing != 0; crossing = withoutFirst(crossing)) {
        if (intersectionArea(frame, frameOf(firstOf(crossing))) > kOverlapTolerance) return true;
    }
    return false;
}

/// The preferred set that contains `slots` and touches every side. The slots of `tiny` have an area below the
/// tolerance; they are added only if no other slot touches a side. Empty if they do not suffice, or if more than `most`
/// slots would be needed.
SlotSet SpanSearch::smallestSetReaching(const Sides& sides, SlotSet slots, SlotSet tiny, int most) const {
    const auto missed =
        std::find_if(sides.begin(), sides.end(), [slots](const Side* side) { return !(side->touching & slots); });
    if (missed == sides.end()) return slots;
    if (std::popcount(slots) >= most) return 0;
    SlotSet best = 0;
    for (SlotSet choice = tiny & (*missed)->touching; choice != 0; choice = withoutFirst(choice)) {
        const SlotSet set = smallestSetReaching(sides, slots | only(firstOf(choice)), tiny, most);
        if (set != 0 && (best == 0 || isPreferred(set, best))) best = set;
    }
    return best;
}

void SpanSearch::offer(SlotSet slots, const CGRect& frame) {
    if (!candidates_.empty()) {
        const SlotSet best = candidates_.front().slots;
        const int byCount = std::popcount(slots) - std::popcount(best);
        const int byOccupancy = occupiedIn(slots) - occupiedIn(best);
        if (byCount > 0 || (byCount == 0 && byOccupancy > 0)) return;
        if (byCount < 0 || byOccupancy < 0) candidates_.clear();
    }
    const CGPoint middle = center(frame);
    candidates_.push_back({slots, frame, frame.size.width * frame.size.height,
                           std::hypot(middle.x - anchorCenter_.x, middle.y - anchorCenter_.y)});
}

void SpanSearch::tryHeights(const Side& left, const Side& right) {
    for (const Side& top : tops_) {
        for (const Side& bottom : bottoms_) {
            const CGRect frame =
                makeRect(left.position, top.position, right.position - left.position, bottom.position - top.position);
            if (!fits(frame.size.height, displaySize_.height, minimumSize_.height)) continue;
            const SlotSet within = left.within & right.within & top.within & bottom.within;
            const SlotSet slots = (within & solid_) | anchor_;
            const int most = fewestSlots();
            if (std::popcount(slots) > most) break; // the next bottoms are farther from the anchor and only add slots
            const SlotSet reaching = left.reaching & right.reaching & top.reaching & bottom.reaching;
            if (cutsASlot(frame, reaching & ~within)) continue;
            const SlotSet set = smallestSetReaching({&left, &right, &top, &bottom}, slots, within & ~slots, most);
            if (set != 0) offer(set, frame);
        }
    }
}

/// Compares each area and distance with the smallest one. Comparing candidates pairwise with a tolerance would not be
/// transitive.
std::optional<TileSpan> SpanSearch::preferred() {
    if (candidates_.empty()) return std::nullopt;
    const auto keepSmallest = [this](double Candidate::*measure, double tolerance) {
        double smallest = candidates_.front().*measure;
        for (const auto& candidate : candidates_) smallest = std::min(smallest, candidate.*measure);
        std::erase_if(candidates_, [&](const Candidate& c) { return c.*measure - smallest > tolerance; });
    };
    keepSmallest(&Candidate::area, kAreaTolerance);
    keepSmallest(&Candidate::expansionDistance, kDistanceTolerance);
    const auto best =
        std::min_element(candidates_.begin(), candidates_.end(), [this](const Candidate& a, const Candidate& b) {
            return joinedIDs(a.slots) < joinedIDs(b.slots);
        });
    TileSpan span{{}, best->frame};
    for (SlotSet set = best->slots; set != 0; set = withoutFirst(set)) span.slots.push_back(slots_[firstOf(set)]);
    return span;
}

std::optional<TileSpan> SpanSearch::run() {
    for (const Side& left : lefts_) {
        for (const Side& right : rights_) {
            if (fits(right.position - left.position, displaySize_.width, minimumSize_.width)) tryHeights(left, right);
        }
    }
    return preferred();
}

} // namespace

std::optional<TileSpan> TileSpanPolicy::bestSpan(std::span<const TileSlot> slots, const SlotID& anchorSlotID,
                                                 CGSize displaySize, double tileInset, CGSize minimumSize,
                                                 const std::set<SlotID>& occupiedSlotIDs) {
    if (slots.size() < kFewestSlots || slots.size() > kMostSlots) return std::nullopt;
    const auto anchor =
        std::find_if(slots.begin(), slots.end(), [&](const TileSlot& slot) { return slot.id == anchorSlotID; });
    if (anchor == slots.end()) return std::nullopt;
    const CGSize needed{sizeOrZero(minimumSize.width), sizeOrZero(minimumSize.height)};
    return SpanSearch(slots, static_cast<std::size_t>(anchor - slots.begin()), displaySize, tileInset, needed,
                      occupiedSlotIDs)
        .run();
}

} // namespace kova
