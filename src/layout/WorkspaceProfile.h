// The user's persisted workspace setup.
#pragma once

#include "layout/LayoutTree.h"
#include "support/Decoded.h"
#include "support/Identifiers.h"
#include "support/Limits.h"
#include "support/Uuid.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace kova {

/// The layout chosen for a display: automatic, by the display's class, or a certain layout.
struct DisplayLayoutSelection {
    std::optional<std::string> layoutID; // absent: automatic

    static DisplayLayoutSelection automatic() { return {}; }
    static DisplayLayoutSelection layout(std::string id) { return {std::move(id)}; }
    bool operator==(const DisplayLayoutSelection&) const = default;
};

struct WorkspaceProfile {
    Uuid id = Uuid::random();
    std::string name = "My Workspace";
    std::string themeID = "kova.native";
    std::string layoutID = "jarvis.command-center"; // for displays without a selection of their own
    std::map<DisplayID, DisplayLayoutSelection> layoutSelectionsByDisplay;
    double tileInset = kDefaultTileInset; // points on each side between a tile's cell and the window in it
    bool autoArrangeOnLaunch = false;
    std::map<SlotID, std::string> preferredApplications;
    std::map<std::string, CGSize> applicationMinimumSizes;                                    // by application key
    std::map<DisplayID, std::map<std::string, LayoutWeightOverrides>> layoutWeightsByDisplay; // then by layout id

    /// The weights stored for the display and layout; empty when there are none.
    const LayoutWeightOverrides& weights(const DisplayID& displayID, const std::string& layoutIdentifier) const;
    /// Weights without splits are not stored: the layout's own weights hold then.
    void setWeights(const DisplayID& displayID, const std::string& layoutIdentifier, LayoutWeightOverrides weights);
    bool operator==(const WorkspaceProfile&) const = default;
};

std::string encodeWorkspaceProfile(const WorkspaceProfile& profile);
Decoded<WorkspaceProfile> decodeWorkspaceProfile(std::string_view json);

} // namespace kova
