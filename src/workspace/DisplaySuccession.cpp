#include "workspace/DisplaySuccession.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kova {

namespace {

/// "1920x1080" for "display-0-0-1920x1080"; empty for an id derived from the device.
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

std::map<DisplayID, DisplayID> matchRenamedDisplays(const std::set<DisplayID>& gone, const std::set<DisplayID>& come) {
    std::multimap<std::string, DisplayID> goneBySize, comeBySize;
    for (const auto& id : gone) {
        if (isNamedByFrame(id)) goneBySize.emplace(sizeInName(id), id);
    }
    for (const auto& id : come) {
        if (isNamedByFrame(id)) comeBySize.emplace(sizeInName(id), id);
    }
    std::map<DisplayID, DisplayID> successors;
    for (auto entry = goneBySize.begin(); entry != goneBySize.end();) {
        const auto [size, former] = *entry;
        const bool isOnlyOne = goneBySize.count(size) == 1 && comeBySize.count(size) == 1;
        entry = isOnlyOne ? goneBySize.erase(entry) : std::next(entry);
        if (!isOnlyOne) continue;
        successors[former] = comeBySize.find(size)->second;
        comeBySize.erase(size);
    }
    if (goneBySize.size() == 1 && comeBySize.size() == 1) {
        successors[goneBySize.begin()->second] = comeBySize.begin()->second;
    }
    return successors;
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
