// Makes the plan of an arrangement. Windows whose tile is named by a rule or preferred by the user get their tiles
// first. The other windows get tiles by score: first a tile of their own display, then a tile of any display.
#include "workspace/ArrangementPlan.h"

#include "support/text/Text.h"
#include "workspace/ArrangementScore.h"
#include "workspace/DesignatedTiles.h"
#include "workspace/TileRoom.h"
#include "workspace/WindowNames.h"

#include <algorithm>
#include <limits>
#include <tuple>

namespace kova {

namespace {

/// A window that could be put into a tile, with the score for this tile.
struct Pair {
    std::size_t candidate;
    std::size_t slot;
    ArrangementScore score;
    double total;
};

/// The planner's working copy of a display.
struct DisplayState {
    const ArrangementDisplay* display;
    std::vector<std::optional<std::size_t>> holder; // by slot: the candidate that gets it; absent if the slot is free
};

struct Assignment {
    std::size_t displayIndex;
    std::vector<std::size_t> slots; // anchor first
    std::string reason;
};

/// The tiles that a window would cover, the anchor first; empty if the window must not be put there.
using Fit = std::vector<std::size_t>;

/// Whether a large window may take tiles from other windows.
enum class Displacement { forbidden, allowed };

/// Which of the windows without a tile may get a tile.
enum class Admission { asManyAsTiles, all };

class Planner {
  public:
    explicit Planner(const ArrangementInput& input);
    ArrangementPlan plan();

  private:
    enum class Phase { ownDisplay, anyDisplay };
    void assignDesignatedTiles();
    bool hasTileLeftForHiddenWindow() const;
    void assignRemaining(Phase phase);
    bool assignOn(std::size_t displayIndex, Phase phase, Displacement displacement,
                  Admission admission = Admission::asManyAsTiles);
    std::vector<Pair> pairsFor(std::size_t displayIndex, Phase phase, Admission admission) const;
    std::vector<std::size_t> windowsWithoutTile(std::size_t displayIndex, Phase phase) const;
    std::optional<std::size_t> slotForOnlyWindow(std::size_t displayIndex, Phase phase) const;
    void keepHighestRanked(std::vector<Pair>& pairs, std::size_t tileCount) const;
    bool outranks(std::size_t candidate, std::size_t other) const;
    bool isCrowded(std::size_t displayIndex, Phase phase) const;
    bool isFree(std::size_t displayIndex, std::size_t slot) const;
    Fit fitFor(std::size_t candidate, std::size_t displayIndex, std::size_t slot) const;
    bool displacesWindow(std::size_t displayIndex, const Fit& fit) const;
    bool isOutrankedByWindowWithoutTile(std::size_t candidate, std::size_t displayIndex, Phase phase) const;
    bool displacesWindowOfHigherRank(std::size_t candidate, std::size_t displayIndex, const Fit& fit) const;
    void assign(std::size_t candidate, std::size_t displayIndex, const Fit& fit, std::string reason);
    void vacate(std::size_t candidate);
    TileRoom roomOn(std::size_t displayIndex) const;
    bool isAnyTileFree() const;
    std::optional<AutoArrangePlacement> stackedPlacement(std::size_t candidate) const;
    AutoArrangePlacement frontPlacement(std::size_t candidate, const Assignment& assignment) const;
    std::string describe(std::size_t candidate) const;

    const ArrangementInput& input_;
    std::vector<DisplayState> displays_;
    std::vector<std::optional<Assignment>> assignments_; // by candidate
    std::vector<bool> isCrowded_; // by display: when the phase began, there were more windows than free tiles
    // By candidate:
    std::vector<bool> wasDisplaced_;       // a displaced window is not displaced again, so that planning ends
    std::vector<bool> isInDesignatedTile_; // the window has its tile by a rule or preference; no other window takes it
    std::vector<bool> staysStacked_; // the window is stacked in the tile that its rule names; another window holds it
};

Planner::Planner(const ArrangementInput& input) :
    input_(input), assignments_(input.candidates.size()), isCrowded_(input.displays.size()),
    wasDisplaced_(input.candidates.size()), isInDesignatedTile_(input.candidates.size()),
    staysStacked_(input.candidates.size()) {
    for (const auto& display : input.displays) {
        displays_.push_back({&display, {}});
        displays_.back().holder.resize(display.solved.slots.size());
    }
}

bool Planner::isFree(std::size_t displayIndex, std::size_t slot) const {
    const auto& d = displays_[displayIndex];
    return !d.holder[slot] && !d.display->reservedSlotIDs.contains(d.display->solved.slots[slot].id);
}

/// The candidates that need a tile: in the phase `ownDisplay` only those of the display.
std::vector<std::size_t> Planner::windowsWithoutTile(std::size_t displayIndex, Phase phase) const {
    std::vector<std::size_t> candidates;
    for (std::size_t c = 0; c < input_.candidates.size(); ++c) {
        const bool isHere = input_.candidates[c].displayID == displays_[displayIndex].display->displayID;
        if (!assignments_[c] && !staysStacked_[c] && (isHere || phase == Phase::anyDisplay)) candidates.push_back(c);
    }
    return candidates;
}

/// Ranks decide which windows get tiles if there are fewer tiles than windows. They compare, in this order: visible
/// before hidden, recently used before less recently used or unused, resizable before fixed size.
bool Planner::outranks(std::size_t candidate, std::size_t other) const {
    const auto rank = [](const ArrangementCandidate& c) {
        return std::tuple(c.isDeferred, c.useRank.value_or(std::numeric_limits<std::size_t>::max()), c.isFixedSize);
    };
    return rank(input_.candidates[candidate]) < rank(input_.candidates[other]);
}

bool Planner::isCrowded(std::size_t displayIndex, Phase phase) const {
    std::size_t freeCount = 0;
    for (std::size_t slot = 0; slot < displays_[displayIndex].holder.size(); ++slot)
        freeCount += isFree(displayIndex, slot) ? 1 : 0;
    return windowsWithoutTile(displayIndex, phase).size() > freeCount;
}

/// Keeps the pairs of the `tileCount` windows of highest rank. `pairs` are sorted by score, which decides between
/// windows of the same rank.
void Planner::keepHighestRanked(std::vector<Pair>& pairs, std::size_t tileCount) const {
    std::vector<std::size_t> order;
    for (const Pair& pair : pairs) {
        if (std::find(order.begin(), order.end(), pair.candidate) == order.end()) order.push_back(pair.candidate);
    }
    if (order.size() <= tileCount) return;
    std::stable_sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) { return outranks(a, b); });
    order.resize(tileCount);
    std::erase_if(
        pairs, [&](const Pair& pair) { return std::find(order.begin(), order.end(), pair.candidate) == order.end(); });
}

/// If only one window needs a tile of the display and no other window has one: the slot into which the user has put its
/// application or, without such a slot, the primary slot. Absent otherwise.
std::optional<std::size_t> Planner::slotForOnlyWindow(std::size_t displayIndex, Phase phase) const {
    const ArrangementDisplay& display = *displays_[displayIndex].display;
    const auto& slots = display.solved.slots;
    const auto candidates = windowsWithoutTile(displayIndex, phase);
    const bool isAlone = phase == Phase::ownDisplay && candidates.size() == 1 && display.reservedSlotIDs.empty() &&
                         std::none_of(displays_[displayIndex].holder.begin(), displays_[displayIndex].holder.end(),
                                      [](const auto& holder) { return holder.has_value(); });
    if (!isAlone || slots.empty()) return std::nullopt;
    const std::string& key = input_.candidates[candidates.front()].applicationKey;
    std::size_t primary = 0;
    for (std::size_t s = 0; s < slots.size(); ++s) {
        if (input_.learning.isPlacedByUser(display.layout.id, key, slots[s].id)) return s;
        if (canonicalSlotID(slots[s].id) == kPrimarySlotID) primary = s;
    }
    return primary;
}

std::vector<Pair> Planner::pairsFor(std::size_t displayIndex, Phase phase, Admission admission) const {
    // Ranks all visible windows before hidden and minimized windows.
    constexpr double kDeferredPenalty = 1000;
    // Ranks tiles that have room for the window before tiles that would have to grow at the cost of other tiles.
    constexpr double kGrowthPenalty = 50;
    const ArrangementDisplay& display = *displays_[displayIndex].display;
    const auto alone = slotForOnlyWindow(displayIndex, phase);
    std::vector<Pair> pairs;
    std::size_t freeCount = 0;
    for (std::size_t s = 0; s < display.solved.slots.size(); ++s) freeCount += isFree(displayIndex, s) ? 1 : 0;
    for (const std::size_t c : windowsWithoutTile(displayIndex, phase)) {
        const auto& candidate = input_.candidates[c];
        const auto fits = [&](std::size_t s) {
            const CGSize tile = display.solved.frames[s].size;
            return tile.width - 2 * input_.tileInset >= candidate.minimumSize.width &&
                   tile.height - 2 * input_.tileInset >= candidate.minimumSize.height;
        };
        bool fitsAny = false;
        for (std::size_t s = 0; s < display.solved.slots.size(); ++s)
            fitsAny = fitsAny || (isFree(displayIndex, s) && fits(s));
        for (std::size_t s = 0; s < display.solved.slots.size(); ++s) {
            if (!isFree(displayIndex, s) || (alone && s != *alone)) continue;
            ArrangementScore score = scoreOf(candidate, display, s, input_.learning);
            score.isAlone = alone && display.solved.slots.size() > 1 &&
                            canonicalSlotID(display.solved.slots[s].id) == kPrimarySlotID;
            const double penalty =
                (candidate.isDeferred ? kDeferredPenalty : 0) + (fitsAny && !fits(s) ? kGrowthPenalty : 0);
            pairs.push_back({c, s, score, score.total() - penalty});
        }
    }
    std::stable_sort(pairs.begin(), pairs.end(), [&](const Pair& a, const Pair& b) {
        if (a.total != b.total) return a.total > b.total;
        return localizedCaseInsensitiveCompare(input_.candidates[a.candidate].window.applicationName,
                                               input_.candidates[b.candidate].window.applicationName) < 0;
    });
    if (admission == Admission::asManyAsTiles) keepHighestRanked(pairs, freeCount);
    return pairs;
}

TileRoom Planner::roomOn(std::size_t displayIndex) const {
    const ArrangementDisplay& display = *displays_[displayIndex].display;
    std::vector<TileHolder> holders;
    for (std::size_t c = 0; c < assignments_.size(); ++c) {
        if (!assignments_[c] || assignments_[c]->displayIndex != displayIndex) continue;
        TileHolder holder{input_.candidates[c].window.id, {}, input_.candidates[c].minimumSize};
        for (const std::size_t slot : assignments_[c]->slots) holder.slotIDs.push_back(display.solved.slots[slot].id);
        holders.push_back(std::move(holder));
    }
    return {display.layout, display.visibleFrame.size, input_.tileInset, std::move(holders)};
}

/// The tiles that the window needs at `slot`: one tile or a span. Empty if the span would displace a window that was
/// displaced before or that is in the tile that a rule or a preference designates for it. A span never contains the
/// tile of a full-screen window: a window that needs such a tile gets only `slot` and overlaps its neighbor. If its
/// span would also displace a window, the result is empty.
Fit Planner::fitFor(std::size_t candidate, std::size_t displayIndex, std::size_t slot) const {
    const DisplayState& d = displays_[displayIndex];
    const ArrangementDisplay& display = *d.display;
    const auto& slots = display.solved.slots;
    const ArrangementCandidate& wanted = input_.candidates[candidate];
    const auto needed = roomOn(displayIndex).tilesFor(wanted.window.id, wanted.minimumSize, slots[slot].id);
    Fit fit{slot};
    bool needsTileOfFullScreen = false;
    for (std::size_t s = 0; s < slots.size(); ++s) {
        if (s == slot || std::ranges::find(needed, slots[s].id) == needed.end()) continue;
        if (d.holder[s] && (wasDisplaced_[*d.holder[s]] || isInDesignatedTile_[*d.holder[s]])) return {};
        needsTileOfFullScreen = needsTileOfFullScreen || display.reservedSlotIDs.contains(slots[s].id);
        fit.push_back(s);
    }
    if (!needsTileOfFullScreen) return fit;
    return displacesWindow(displayIndex, fit) ? Fit{} : Fit{slot};
}

bool Planner::displacesWindow(std::size_t displayIndex, const Fit& fit) const {
    return std::any_of(fit.begin(), fit.end(),
                       [&](std::size_t slot) { return displays_[displayIndex].holder[slot].has_value(); });
}

void Planner::vacate(std::size_t candidate) {
    DisplayState& d = displays_[assignments_[candidate]->displayIndex];
    for (const std::size_t slot : assignments_[candidate]->slots) d.holder[slot].reset();
    assignments_[candidate].reset();
    wasDisplaced_[candidate] = true;
}

void Planner::assign(std::size_t candidate, std::size_t displayIndex, const Fit& fit, std::string reason) {
    DisplayState& d = displays_[displayIndex];
    for (const std::size_t slot : fit) {
        if (d.holder[slot]) vacate(*d.holder[slot]);
        d.holder[slot] = candidate;
    }
    assignments_[candidate] = Assignment{displayIndex, fit, std::move(reason)};
}

bool Planner::isAnyTileFree() const {
    for (std::size_t displayIndex = 0; displayIndex < displays_.size(); ++displayIndex) {
        for (std::size_t slot = 0; slot < displays_[displayIndex].holder.size(); ++slot) {
            if (isFree(displayIndex, slot)) return true;
        }
    }
    return false;
}

bool Planner::isOutrankedByWindowWithoutTile(std::size_t candidate, std::size_t displayIndex, Phase phase) const {
    const auto others = windowsWithoutTile(displayIndex, phase);
    return std::any_of(others.begin(), others.end(), [&](std::size_t other) { return outranks(other, candidate); });
}

bool Planner::displacesWindowOfHigherRank(std::size_t candidate, std::size_t displayIndex, const Fit& fit) const {
    return std::any_of(fit.begin(), fit.end(), [&](std::size_t slot) {
        const auto& holder = displays_[displayIndex].holder[slot];
        return holder && outranks(*holder, candidate);
    });
}

/// Gives free tiles of the display to windows, the highest score first. Returns whether a window was displaced.
bool Planner::assignOn(std::size_t displayIndex, Phase phase, Displacement displacement, Admission admission) {
    bool wasDisplaced = false;
    const bool wasCrowded = isCrowded_[displayIndex];
    for (const Pair& pair : pairsFor(displayIndex, phase, admission)) {
        if (assignments_[pair.candidate] || !isFree(displayIndex, pair.slot)) continue;
        const Fit fit = fitFor(pair.candidate, displayIndex, pair.slot);
        const bool displacesOthers = displacesWindow(displayIndex, fit);
        if (fit.empty() || (displacesOthers && displacement == Displacement::forbidden)) continue;
        const bool takesTilesOfOthers =
            fit.size() > 1 && isOutrankedByWindowWithoutTile(pair.candidate, displayIndex, phase);
        if (wasCrowded && (takesTilesOfOthers || displacesWindowOfHigherRank(pair.candidate, displayIndex, fit)))
            continue;
        wasDisplaced = wasDisplaced || displacesOthers;
        assign(pair.candidate, displayIndex, fit,
               reasonFor(pair.score, input_.candidates[pair.candidate],
                         displays_[displayIndex].display->solved.slots[pair.slot]));
    }
    return wasDisplaced;
}

/// Whether more tiles are free than visible windows need, so that a hidden window may take one.
bool Planner::hasTileLeftForHiddenWindow() const {
    std::size_t free = 0;
    for (std::size_t displayIndex = 0; displayIndex < displays_.size(); ++displayIndex) {
        for (std::size_t slot = 0; slot < displays_[displayIndex].holder.size(); ++slot)
            free += isFree(displayIndex, slot) ? 1 : 0;
    }
    std::size_t visible = 0; // visible windows without a tile
    for (std::size_t c = 0; c < assignments_.size(); ++c)
        visible += assignments_[c] || input_.candidates[c].isDeferred ? 0 : 1;
    return free > visible;
}

/// Assigns windows to the tiles that rules and preferences designate for them, whatever the scores are. A hidden or
/// minimized window gets its tile only if no visible window has to be minimized for it.
void Planner::assignDesignatedTiles() {
    for (const DesignatedTile& designated : designatedTiles(input_)) {
        const ArrangementCandidate& candidate = input_.candidates[designated.candidate];
        if (assignments_[designated.candidate]) continue;
        const ArrangementDisplay& display = input_.displays[designated.display];
        const TileTarget target{display.displayID, display.solved.slots[designated.slot].id};
        if (!isFree(designated.display, designated.slot)) {
            const bool isStackedThere =
                designated.kind == DesignatedTile::Kind::rule && candidate.stackTarget == target;
            if (isStackedThere) staysStacked_[designated.candidate] = true;
            continue;
        }
        if (candidate.isDeferred && !hasTileLeftForHiddenWindow()) continue;
        const Fit fit = fitFor(designated.candidate, designated.display, designated.slot);
        if (fit.empty() || displacesWindow(designated.display, fit)) continue;
        assign(designated.candidate, designated.display, fit, designated.reason);
        isInDesignatedTile_[designated.candidate] = true;
    }
}

void Planner::assignRemaining(Phase phase) {
    for (std::size_t displayIndex = 0; displayIndex < displays_.size(); ++displayIndex) {
        isCrowded_[displayIndex] = isCrowded(displayIndex, phase);
        // Each round first assigns windows that displace no other window, then windows that do. The next round gives
        // the displaced windows another tile.
        bool wasDisplaced = true;
        while (wasDisplaced) {
            assignOn(displayIndex, phase, Displacement::forbidden);
            wasDisplaced = assignOn(displayIndex, phase, Displacement::allowed);
        }
        // Tiles that are too small for the windows of higher rank go to windows of lower rank.
        assignOn(displayIndex, phase, Displacement::forbidden, Admission::all);
    }
}

std::string Planner::describe(std::size_t candidate) const {
    return nameOf(input_.candidates[candidate].window);
}

AutoArrangePlacement Planner::frontPlacement(std::size_t candidate, const Assignment& assignment) const {
    const ArrangementDisplay& display = *displays_[assignment.displayIndex].display;
    AutoArrangePlacement placement;
    placement.window = input_.candidates[candidate].window;
    for (const std::size_t slot : assignment.slots) {
        placement.claimedTargets.push_back({display.displayID, display.solved.slots[slot]});
    }
    placement.target = placement.claimedTargets.front();
    placement.isDeferred = input_.candidates[candidate].isDeferred || input_.candidates[candidate].isShowRequested;
    placement.explanation =
        describe(candidate) + " → " + placement.target.slot.name + " on " + display.name + ": " + assignment.reason;
    if (assignment.slots.size() > 1) {
        const auto additional = std::to_string(assignment.slots.size() - 1);
        placement.explanation += "; its minimum size does not fit one tile, so it takes " + additional + " more";
    }
    return placement;
}

/// A candidate that got no tile stays in the stack that it is in now. Absent if the candidate is in no stack, or if the
/// tile of the stack is missing in the layout or has no front window.
std::optional<AutoArrangePlacement> Planner::stackedPlacement(std::size_t candidate) const {
    const auto& behind = input_.candidates[candidate].stackTarget;
    if (!behind) return std::nullopt;
    for (const DisplayState& state : displays_) {
        for (std::size_t slot = 0; slot < state.display->solved.slots.size(); ++slot) {
            const DisplayTileTarget target{state.display->displayID, state.display->solved.slots[slot]};
            if (target.id() != *behind) continue;
            AutoArrangePlacement placement;
            placement.window = input_.candidates[candidate].window;
            placement.isPrimary = false;
            if (state.display->reservedSlotIDs.contains(target.slot.id)) {
                placement.target = target;
                placement.explanation = describe(candidate) + " → behind the full-screen window in " +
                                        target.slot.name + " on " + state.display->name + ": it was stacked there";
                return placement;
            }
            if (!state.holder[slot]) continue;
            // A spanning window has one stack, at its anchor.
            const std::size_t anchor = assignments_[*state.holder[slot]]->slots.front();
            placement.target = {state.display->displayID, state.display->solved.slots[anchor]};
            placement.behindID = input_.candidates[*state.holder[slot]].window.id;
            placement.explanation = describe(candidate) + " → behind " + describe(*state.holder[slot]) + " in " +
                                    placement.target.slot.name + " on " + state.display->name +
                                    ": it was stacked there";
            return placement;
        }
    }
    return std::nullopt;
}

ArrangementPlan Planner::plan() {
    assignDesignatedTiles();
    assignRemaining(Phase::ownDisplay);
    assignRemaining(Phase::anyDisplay);

    ArrangementPlan plan;
    for (const DisplayState& state : displays_) {
        for (std::size_t slot = 0; slot < state.holder.size(); ++slot) {
            const auto candidate = state.holder[slot];
            if (candidate && assignments_[*candidate]->slots.front() == slot) {
                plan.placements.push_back(frontPlacement(*candidate, *assignments_[*candidate]));
            }
        }
    }
    for (std::size_t c = 0; c < input_.candidates.size(); ++c) {
        if (assignments_[c]) continue;
        if (auto behind = stackedPlacement(c)) {
            plan.placements.push_back(std::move(*behind));
        } else {
            const std::string reason = isAnyTileFree() ? "no free tile has room for it" : "no tile was left";
            plan.surplus.push_back({input_.candidates[c].window, describe(c) + " → minimized: " + reason});
        }
    }
    plan.leftAlone = input_.leftAlone;
    return plan;
}

} // namespace

ArrangementPlan planArrangement(const ArrangementInput& input) {
    return Planner(input).plan();
}

} // namespace kova
