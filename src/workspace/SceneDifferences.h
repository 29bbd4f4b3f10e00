// Compares a scene with the present state.
#pragma once

#include "layout/LayoutCatalogue.h"
#include "persistence/WorkspaceProductDocument.h"
#include "support/Limits.h"
#include "windowing/ManagedWindow.h"
#include "workspace/SceneCapture.h"

#include <string>
#include <vector>

namespace kova {

struct SceneDifference {
    std::string what;    // "theme", "layout of Display 1", "Mail “Inbox”"
    std::string inScene; // the value in the scene, by the name that the user sees
    std::string now;     // the present value, by the name that the user sees
    bool operator==(const SceneDifference&) const = default;
};

/// The present state, as a capture would record it.
struct WorkspaceNow {
    std::string themeID;
    std::string accentColorID;
    double tileInset = kDefaultTileInset; // points
    std::vector<WorkspaceSceneDisplay> displays;
    std::vector<CapturedPlacement> placements;
    const std::vector<ManagedWindow>& windows;    // in the order in which they were enumerated
    const std::vector<LayoutDefinition>& layouts; // of the scene's theme
};

/// Lists theme, accent color and inset first, then displays, the windows of the scene in the scene's order, and windows
/// that are not in the scene. Matches windows in the same way as opening the scene. Empty if opening the scene would
/// change nothing.
std::vector<SceneDifference> sceneDifferences(const WorkspaceScene& scene, const WorkspaceNow& now);

} // namespace kova
