#include "workspace/DisplayRenaming.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kova {

namespace {

/// The size in the id of a display that is named by its frame: "1920x1080" for "display-0-0-1920x1080". Empty for an id
/// that is derived from the device.
std::string sizeInName(const DisplayID& displayID) {
    const std::string size = displayID.text().substr(displayID.text().rfind('-') + 1);
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const auto notDigit = std::find_if_not(size.begin(), size.end(), isDigit);
    const bool isSize = notDigit != size.begin() && notDigit != size.end() && *notDigit == 'x' &&
                        notDigit + 1 != size.end() && std::all_of(notDigit + 1, size.end(), isDigit);
    return isSize ? size : "";
}

} // namespace

bool isNamedByFrame(const DisplayID& displayID) {
    return !sizeInName(displayID).empty();
}

std::map<DisplayID, DisplayID> matchRenamedDisplays(const std::set<DisplayID>& disconnected,
                                                    const std::set<DisplayID>& connected) {
    std::multimap<std::string, DisplayID> disconnectedBySize, connectedBySize;
    for (const auto& id : disconnected) {
        if (isNamedByFrame(id)) disconnectedBySize.emplace(sizeInName(id), id);
    }
    for (const auto& id : connected) {
        if (isNamedByFrame(id)) connectedBySize.emplace(sizeInName(id), id);
    }
    std::map<DisplayID, DisplayID> newIDs;
    for (auto entry = disconnectedBySize.begin(); entry != disconnectedBySize.end();) {
        const auto [size, former] = *entry;
        const bool isOnlyOne = disconnectedBySize.count(size) == 1 && connectedBySize.count(size) == 1;
        entry = isOnlyOne ? disconnectedBySize.erase(entry) : std::next(entry);
        if (!isOnlyOne) continue;
        newIDs[former] = connectedBySize.find(size)->second;
        connectedBySize.erase(size);
    }
    if (disconnectedBySize.size() == 1 && connectedBySize.size() == 1) {
        newIDs[disconnectedBySize.begin()->second] = connectedBySize.begin()->second;
    }
    return newIDs;
}

void copyDisplay(WorkspaceProfile& profile, const DisplayID& displayID, const DisplayID& otherID) {
    const auto selection = profile.layoutSelectionsByDisplay.find(displayID);
    if (selection != profile.layoutSelectionsByDisplay.end()) {
        profile.layoutSelectionsByDisplay.insert_or_assign(otherID, DisplayLayoutSelection(selection->second));
    }
    const auto weights = profile.layoutWeightsByDisplay.find(displayID);
    if (weights != profile.layoutWeightsByDisplay.end()) {
        auto copied = weights->second;
        profile.layoutWeightsByDisplay.insert_or_assign(otherID, std::move(copied));
    }
}

void eraseDisplay(WorkspaceProfile& profile, const DisplayID& displayID) {
    profile.layoutSelectionsByDisplay.erase(displayID);
    profile.layoutWeightsByDisplay.erase(displayID);
}

} // namespace kova
