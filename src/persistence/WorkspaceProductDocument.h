// The stored record of the user's scenes and window rules. It is part of the preferences, and is exported and imported
// as a file.
#pragma once

#include "layout/LayoutTree.h"
#include "support/Dates.h"
#include "support/Identifiers.h"
#include "support/Limits.h"
#include "support/Uuid.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kova {

/// How a window is recognized in another session.
struct WorkspaceWindowReference {
    std::optional<BundleID> bundleIdentifier;
    std::string applicationName;
    std::optional<std::string> titleHint; // the title when the scene was captured; absent if the title was empty
    bool operator==(const WorkspaceWindowReference&) const = default;
};

struct WorkspaceScenePlacement {
    Uuid id = Uuid::random();
    WorkspaceWindowReference window;
    std::int64_t displayOrdinal = 0;
    SlotID slotID; // for a span, the slot of its anchor
    std::int64_t stackIndex = 0;
    std::optional<std::vector<SlotID>> claimedSlotIDs; // sorted
    std::optional<bool> isActive;                      // the window was the front window of its tile
    bool operator==(const WorkspaceScenePlacement&) const = default;
};

struct WorkspaceSceneDisplay {
    std::int64_t ordinal = 0; // index in the list of displays at capture
    std::string name;
    double aspectRatio = 1; // width by height of the visible frame
    std::string layoutID;
    LayoutWeightOverrides layoutWeights;
    bool operator==(const WorkspaceSceneDisplay&) const = default;
};

struct WorkspaceScene {
    Uuid id = Uuid::random(); // never changes
    std::string name;
    Date createdAt{};
    Date updatedAt{};
    std::string themeID;
    std::string accentColorID;
    double tileInset = kDefaultTileInset; // points
    std::vector<WorkspaceSceneDisplay> displays;
    std::vector<WorkspaceScenePlacement> placements;
    bool operator==(const WorkspaceScene&) const = default;
};

namespace disposition {
struct Tile {
    SlotID slotID;
    bool operator==(const Tile&) const = default;
};
struct Float {
    bool operator==(const Float&) const = default;
};
struct Ignore {
    bool operator==(const Ignore&) const = default;
};
} // namespace disposition

/// What happens to a window that a rule matches.
using WorkspaceRuleDisposition = std::variant<disposition::Tile, disposition::Float, disposition::Ignore>;

struct WorkspaceRule {
    Uuid id = Uuid::random();
    std::string name;
    bool isEnabled = true;
    // The criteria: a window matches if it meets all that are present. A rule without criteria matches no window.
    std::optional<BundleID> bundleIdentifier;
    std::optional<std::string> applicationName;
    std::optional<std::string> titleContains;
    WorkspaceRuleDisposition disposition = disposition::Float{};
    bool operator==(const WorkspaceRule&) const = default;
};

struct WorkspaceProductDocument {
    std::int64_t version = 1;           // always written as 1, ignored when read
    std::vector<WorkspaceScene> scenes; // the newest last
    std::vector<WorkspaceRule> rules;   // the first rule that matches a window decides
    std::optional<Uuid> activeSceneID;
    bool operator==(const WorkspaceProductDocument&) const = default;
};

/// The number that is shown for an index: the first index is 0, the first number 1. The largest integer, which an
/// imported document may contain, stays unchanged.
inline std::int64_t countedFromOne(std::int64_t index) {
    return index == std::numeric_limits<std::int64_t>::max() ? index : index + 1;
}

} // namespace kova
