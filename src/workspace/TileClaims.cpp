#include "workspace/TileClaims.h"

#include "support/Quoted.h"

#include <algorithm>
#include <tuple>

namespace kova {

namespace {

DisplayTileTarget targetOf(const ArrangementInput& input, const TileClaim& claim) {
    const auto& display = input.displays[claim.display];
    return {display.displayID, display.solved.slots[claim.slot]};
}

void addRuleClaims(const ArrangementInput& input, std::size_t c, std::vector<TileClaim>& claims) {
    const ArrangementCandidate& candidate = input.candidates[c];
    if (!candidate.rule) return;
    for (std::size_t d = 0; d < input.displays.size(); ++d) {
        if (input.displays[d].displayID != candidate.displayID) continue;
        const auto& slots = input.displays[d].solved.slots;
        for (std::size_t s = 0; s < slots.size(); ++s) {
            if (slots[s].id != candidate.rule->slotID) continue;
            claims.push_back(
                {TileClaim::Kind::rule, c, d, s, "the rule " + quoted(candidate.rule->name) + " names this tile"});
        }
    }
}

void addPreferenceClaims(const ArrangementInput& input, std::size_t c, std::vector<TileClaim>& claims) {
    const ArrangementCandidate& candidate = input.candidates[c];
    for (std::size_t d = 0; d < input.displays.size(); ++d) {
        const auto& slots = input.displays[d].solved.slots;
        for (std::size_t s = 0; s < slots.size(); ++s) {
            const auto preferred = input.preferredApplications.find(slots[s].id);
            if (preferred == input.preferredApplications.end() || preferred->second != candidate.applicationKey)
                continue;
            claims.push_back({TileClaim::Kind::preference, c, d, s,
                              "“kova layout prefer” offers this tile to " + candidate.window.applicationName});
        }
    }
}

} // namespace

std::vector<TileClaim> tileClaims(const ArrangementInput& input) {
    std::vector<TileClaim> claims;
    for (std::size_t c = 0; c < input.candidates.size(); ++c) {
        addRuleClaims(input, c, claims);
        if (!input.preferredApplications.empty()) addPreferenceClaims(input, c, claims);
    }
    const auto rank = [&](const TileClaim& claim) {
        const ArrangementCandidate& candidate = input.candidates[claim.candidate];
        const DisplayTileTarget target = targetOf(input, claim);
        return std::tuple(claim.kind, candidate.isDeferred, candidate.currentTarget != target.id(),
                          candidate.displayID != target.displayID);
    };
    std::stable_sort(claims.begin(), claims.end(),
                     [&](const TileClaim& a, const TileClaim& b) { return rank(a) < rank(b); });
    return claims;
}

} // namespace kova
