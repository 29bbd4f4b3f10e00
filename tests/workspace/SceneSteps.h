// Functions that several tests of scenes share.
#pragma once

#include "persistence/PreferenceKeys.h"
#include "persistence/WorkspaceDocumentCoding.h"
#include "support/text/Text.h"
#include "tests/harness/Scenario.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>
#include <vector>

namespace kova {

inline Uuid lastScene(Scenario& desk) {
    return desk.state().scenes->back().id;
}

inline Scenario& captureScene(Scenario& desk, const char* name = "Work") {
    desk.controller().perform(action::CaptureScene{name});
    return desk.advance(Seconds(0)); // a capture moves no window, so nothing has to settle
}

inline Scenario& openScene(Scenario& desk, const Uuid& id) {
    return desk.perform(action::ActivateScene{id});
}

inline WorkspaceProductDocument storedDocument(Scenario& desk) {
    const auto data = desk.preferences.data(preferenceKey::workspaceProduct);
    if (!data) return {};
    return std::get<WorkspaceProductDocument>(decodeStoredDocument(data->json));
}

/// A scene with one display; its windows are written as "application|title|slot|stack index".
inline WorkspaceScene sceneOf(const std::vector<std::string>& windows,
                              const std::string& layoutID = "jarvis.dual-split") {
    WorkspaceScene scene;
    scene.name = "Sample";
    scene.themeID = "kova.native";
    scene.accentColorID = "system-blue";
    scene.displays.push_back(
        {.ordinal = 0, .name = "A", .aspectRatio = 1.8, .layoutID = layoutID, .layoutWeights = {}});
    for (const auto& window : windows) {
        std::vector<std::string> parts(1);
        for (const char c : window) {
            if (c == '|') {
                parts.emplace_back();
            } else {
                parts.back() += c;
            }
        }
        WorkspaceScenePlacement placement;
        placement.window.applicationName = parts[0];
        placement.window.bundleIdentifier = BundleID("sim." + lowercased(parts[0]));
        if (!parts[1].empty()) placement.window.titleHint = parts[1];
        placement.slotID = SlotID(parts[2]);
        placement.stackIndex = std::stoi(parts[3]);
        scene.placements.push_back(placement);
    }
    return scene;
}

inline std::string exportedText(const WorkspaceProductDocument& document) {
    return std::get<std::string>(encodeExportedDocument(document));
}

inline Uuid importScene(Scenario& desk, const WorkspaceScene& scene) {
    WorkspaceProductDocument document;
    document.scenes.push_back(scene);
    const auto imported = desk.controller().perform(action::ImportDocument{exportedText(document)});
    EXPECT_TRUE(imported.details<WorkspaceImportCounts>());
    return scene.id;
}

} // namespace kova
