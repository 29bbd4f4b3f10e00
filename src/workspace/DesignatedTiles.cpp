#include "workspace/DesignatedTiles.h"

#include "support/Quoted.h"

#include <algorithm>
#include <tuple>

namespace kova {

namespace {

DisplayTileTarget targetOf(const ArrangementInput& input, const DesignatedTile& designated) {
    const auto& display = input.displays[designated.display];
    return {display.displayID, display.solved.slots[designated.slot]};
}

void addTilesOfRules(const ArrangementInput& input, std::size_t c, std::vector<DesignatedTile>& tiles) {
    const ArrangementCandidate& candidate = input.candidates[c];
    if (!candidate.rule) return;
    for (std::size_t d = 0; d < input.displays.size(); ++d) {
        if (input.displays[d].displayID != candidate.displayID) continue;
        const auto& slots = input.displays[d].solved.slots;
        for (std::size_t s = 0; s < slots.size(); ++s) {
            if (slots[s].id != candidate.rule->slotID) continue;
            tiles.push_back(
                {DesignatedTile::Kind::rule, c, d, s, "the rule " + quoted(candidate.rule->name) + " names this tile"});
        }
    }
}

void addTilesOfPreferences(const ArrangementInput& input, std::size_t c, std::vector<DesignatedTile>& tiles) {
    const ArrangementCandidate& candidate = input.candidates[c];
    for (std::size_t d = 0; d < input.displays.size(); ++d) {
        const auto& slots = input.displays[d].solved.slots;
        for (std::size_t s = 0; s < slots.size(); ++s) {
            const auto preferred = input.preferredApplications.find(slots[s].id);
            if (preferred == input.preferredApplications.end() || preferred->second != candidate.applicationKey)
                continue;
            tiles.push_back({DesignatedTile::Kind::preference, c, d, s,
                             "“kova layout prefer” offers this tile to " + candidate.window.applicationName});
        }
    }
}

} // namespace

std::vector<DesignatedTile> designatedTiles(const ArrangementInput& input) {
    std::vector<DesignatedTile> tiles;
    for (std::size_t c = 0; c < input.candidates.size(); ++c) {
        addTilesOfRules(input, c, tiles);
        if (!input.preferredApplications.empty()) addTilesOfPreferences(input, c, tiles);
    }
    const auto rank = [&](const DesignatedTile& tile) {
        const ArrangementCandidate& candidate = input.candidates[tile.candidate];
        const DisplayTileTarget target = targetOf(input, tile);
        return std::tuple(tile.kind, candidate.isDeferred, candidate.currentTarget != target.id(),
                          candidate.displayID != target.displayID);
    };
    std::stable_sort(tiles.begin(), tiles.end(),
                     [&](const DesignatedTile& a, const DesignatedTile& b) { return rank(a) < rank(b); });
    return tiles;
}

} // namespace kova
