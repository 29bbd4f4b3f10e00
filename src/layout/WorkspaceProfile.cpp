#include "layout/WorkspaceProfile.h"

#include "layout/LayoutCoding.h"

namespace kova {

const LayoutWeightOverrides& WorkspaceProfile::weights(const DisplayID& displayID,
                                                       const std::string& layoutIdentifier) const {
    static const LayoutWeightOverrides kNone;
    const auto display = layoutWeightsByDisplay.find(displayID);
    if (display == layoutWeightsByDisplay.end()) return kNone;
    const auto layout = display->second.find(layoutIdentifier);
    return layout == display->second.end() ? kNone : layout->second;
}

void WorkspaceProfile::setWeights(const DisplayID& displayID, const std::string& layoutIdentifier,
                                  LayoutWeightOverrides weights) {
    if (!weights.splits.empty()) {
        layoutWeightsByDisplay[displayID][layoutIdentifier] = std::move(weights);
        return;
    }
    const auto layouts = layoutWeightsByDisplay.find(displayID);
    if (layouts == layoutWeightsByDisplay.end()) return;
    layouts->second.erase(layoutIdentifier);
    if (layouts->second.empty()) layoutWeightsByDisplay.erase(layouts);
}

std::string encodeWorkspaceProfile(const WorkspaceProfile& profile) {
    return encode(profile).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

Decoded<WorkspaceProfile> decodeWorkspaceProfile(std::string_view json) {
    return decodeJson(json, [](const JsonCursor& at) { return decodeWorkspaceProfile(at); });
}

} // namespace kova
