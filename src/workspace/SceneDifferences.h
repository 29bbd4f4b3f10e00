// Compares a scene with the present state.
#pragma once

#include "layout/LayoutCatalogue.h"
#include "persistence/WorkspaceProductDocument.h"
#include "windowing/ManagedWindow.h"
#include "workspace/SceneCapture.h"

#include <string>
#include <vector>

namespace kova {

struct SceneDifference {
    std::string what;    // "theme", "layout of Display 1", "Mail “Inbox”"
    std::string inScene; // in the names that the user sees, each
    std::string now;
    bool operator==(const SceneDifference&) const = default;
};

/// The present state, as a capture would record it.
struct WorkspaceNow {
    std::string themeID;
    std::string accentColorID;
    double tileInset = 5; // points
    std::vector<WorkspaceSceneDisplay> displays;
    std::vector<CapturedPlacement> placements;
    const std::vector<ManagedWindow>& windows;    // in the order in which they were enumerated
    const std::vector<LayoutDefinition>& layouts; // that the scene's theme has
};

/// Theme, accent color and inset first, then displays, windows of the scene in its order, and windows that are not in
/// it. Windows are matched as opening the scene would match them. Empty if opening it would change nothing.
std::vector<SceneDifference> sceneDifferences(const WorkspaceScene& scene, const WorkspaceNow& now);

} // namespace kova
