// How scenes are stored, renamed, deleted and imported.
#include "tests/workspace/SceneSteps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace kova {

namespace {

TEST(SceneDocumentStories, ScenesAreFoundRenamedAndDeleted) {
    Scenario desk;
    desk.display(2560, 1440).start();
    auto& controller = desk.controller();
    for (const char* name : {"work", "Work", "Élan"}) controller.perform(action::CaptureScene{name});
    EXPECT_EQ(controller.findScene("Work"), desk.state().scenes->at(1).id);
    EXPECT_EQ(controller.findScene("WORK"), desk.state().scenes->at(0).id);
    EXPECT_EQ(controller.findScene("élan"), desk.state().scenes->at(2).id);
    EXPECT_EQ(controller.findScene("elan"), std::nullopt);
    const Uuid id = lastScene(desk);
    desk.advance(Seconds(60));
    EXPECT_FALSE(controller.perform(action::RenameScene{id, " \t "}));
    desk.expectMessage("A scene needs a name");
    EXPECT_TRUE(controller.perform(action::RenameScene{id, " Vacation "}));
    desk.expectMessage("Scene “Élan” renamed to “Vacation”");
    EXPECT_GT(desk.state().scenes->back().updatedAt, desk.state().scenes->back().createdAt);
    EXPECT_TRUE(controller.perform(action::DeleteScene{id}));
    desk.expectMessage("Scene “Vacation” deleted");
    EXPECT_EQ(*desk.state().activeSceneID, std::nullopt);
    EXPECT_FALSE(controller.perform(action::DeleteScene{id}));
    EXPECT_FALSE(controller.perform(action::RenameScene{id, "x"}));
    desk.restart();
    EXPECT_EQ(desk.state().scenes->size(), 2u);
}

TEST(SceneDocumentStories, AnImportAddsOnlyNewRecordsAndItsMessageCountsAllRecordsOfTheFile) {
    Scenario desk;
    desk.display(2560, 1440).opens("Mail").arrange();
    captureScene(desk, "Mine");
    WorkspaceRule rule;
    rule.name = "Mail floats";
    rule.bundleIdentifier = "sim.mail";
    WorkspaceProductDocument file;
    file.version = 3;
    file.scenes = {sceneOf({"Mail||focus-main|0"}), sceneOf({})};
    file.scenes.push_back(file.scenes.front());
    file.scenes.back().name = "Same identity";
    file.scenes.push_back(desk.state().scenes->front());
    file.scenes.back().name = "Theirs";
    file.rules = {rule, rule};
    file.activeSceneID = file.scenes.front().id;
    const auto mine = *desk.state().activeSceneID;
    for (int round = 0; round < 2; ++round) {
        (void)desk.controller().perform(action::ImportDocument{exportedText(file)});
        desk.expectMessage("Imported 4 scenes and 2 rules");
        ASSERT_EQ(desk.state().scenes->size(), 3u);
        EXPECT_EQ(desk.state().scenes->at(0).name, "Mine");
        EXPECT_EQ(desk.state().scenes->at(1).name, "Sample");
        EXPECT_EQ(desk.state().rules->size(), 1u);
        EXPECT_EQ(*desk.state().activeSceneID, mine);
    }
    EXPECT_EQ(storedDocument(desk).scenes, *desk.state().scenes);
    const auto exported = std::get<std::string>(desk.controller().exportWorkspaceDocument());
    const auto before = *desk.state().scenes;
    const auto failed = desk.controller().perform(action::ImportDocument{"{\"version\": 1, \"scenes\": [7]}"});
    ASSERT_FALSE(failed);
    EXPECT_EQ(failed.message(), "scenes[0]: expected an object");
    EXPECT_EQ(*desk.state().scenes, before);
    EXPECT_EQ(std::get<WorkspaceProductDocument>(decodeExportedDocument(exported)).rules, *desk.state().rules);
}

TEST(SceneDocumentStories, ASceneThatCouldNotBeReadBackIsRefused) {
    Scenario desk;
    desk.display(2560, 1440).opens("Mail").arrange();
    captureScene(desk, "Mine");
    auto scene = sceneOf({});
    // With these weights the display of the scene has as many values as are allowed. The drag below adds the values of
    // another split.
    scene.displays[0].layoutWeights.splits["of another layout"].assign(4089, 1.0);
    openScene(desk, importScene(desk, scene));
    const auto before = *desk.state().scenes;
    const auto divider = desk.controller().dividers().front();
    ASSERT_TRUE(desk.controller().perform(action::BeginDividerDrag{divider}));
    desk.controller().perform(action::UpdateDividerDrag{divider, 100});
    desk.controller().perform(action::EndDividerDrag{divider});
    desk.settle();
    EXPECT_FALSE(desk.controller().perform(action::CaptureScene{"Evening"}));
    desk.expectMessage(
        "Not changed, because it could not be stored: scenes[2].displays[0]: holds more than 4096 values");
    EXPECT_EQ(*desk.state().scenes, before);
    desk.restart().start();
    EXPECT_EQ(*desk.state().scenes, before);
}

TEST(SceneDocumentStories, AStoredDocumentThatCannotBeReadCountsAsAbsent) {
    for (const char* stored : {R"({"version":1,"scenes":[{}],"rules":[]})", "[", "{}"}) {
        Scenario desk;
        desk.preferences.setValue(preferenceKey::workspaceProduct, PreferenceData{stored});
        desk.display(2560, 1440).start();
        EXPECT_TRUE(desk.state().scenes->empty());
        desk.expectMessage("");
        EXPECT_EQ(desk.preferences.data(preferenceKey::workspaceProduct)->json, stored)
            << "the stored document is kept until the next change";
        captureScene(desk);
        EXPECT_EQ(storedDocument(desk).scenes.size(), 1u);
    }
    Scenario desk;
    desk.preferences.setValue(preferenceKey::workspaceProduct,
                              PreferenceData{R"({"version":7,"scenes":[],"rules":[],"activeSceneID":null})"});
    desk.display(2560, 1440).start();
    EXPECT_EQ(*desk.state().activeSceneID, std::nullopt);
}

} // namespace

} // namespace kova
