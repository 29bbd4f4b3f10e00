#include "workspace/WorkspacePreferences.h"
#include "persistence/MemoryPreferencesStore.h"
#include "persistence/PreferenceKeys.h"

#include <gtest/gtest.h>

#include <utility>

namespace kova {

namespace {

TEST(WorkspacePreferences, TheAppearanceOfTheFirstStartIsKept) {
    MemoryPreferencesStore store;
    const auto first = loadWorkspacePreferences(store);
    EXPECT_EQ(first.profile.themeID, "kova.native");
    EXPECT_EQ(first.accentColorID, "system-blue");
    EXPECT_FALSE(first.useThemeBackground);
    EXPECT_TRUE(first.showTileBackgrounds);
    EXPECT_FALSE(first.showBrain);
    EXPECT_FALSE(first.continuousManagementEnabled);
    EXPECT_EQ(store.values().size(), 2u);
    const auto second = loadWorkspacePreferences(store);
    EXPECT_EQ(second.profile, first.profile);
    EXPECT_FALSE(second.useThemeBackground);
}

TEST(WorkspacePreferences, AnyOldKeyMarksAnExistingUser) {
    for (const std::string_view key :
         {"KOVA.workspaceProfile.v1", "KOVA.useThemeBackground.v1", "KOVA.showBrain.v1", "KOVA.showTileBackgrounds.v1",
          "KOVA.accentColor.v1", "KOVA.autoArrangeLearning.v1"}) {
        MemoryPreferencesStore store;
        store.setValue(key, false); // a value of the wrong type counts as well
        const auto loaded = loadWorkspacePreferences(store);
        EXPECT_EQ(loaded.profile.themeID, "jarvis.neon-cyan") << key;
        EXPECT_EQ(loaded.useThemeBackground, key != preferenceKey::useThemeBackground) << key;
        EXPECT_EQ(store.values().size(), 1u) << "nothing is written for an existing user";
    }
    struct Store final : MemoryPreferencesStore {
        // The key has a number, which another program may have written.
        bool contains(std::string_view key) const override { return key == preferenceKey::showBrain; }
    } store;
    EXPECT_EQ(loadWorkspacePreferences(store).profile.themeID, "jarvis.neon-cyan");
}

TEST(WorkspacePreferences, TheKeysOfStoredValuesDoNotChange) {
    using namespace preferenceKey;
    const std::pair<std::string_view, std::string_view> keys[] = {
        {workspaceProfile, "KOVA.workspaceProfile.v1"},
        {autoArrangeLearning, "KOVA.autoArrangeLearning.v1"},
        {workspaceProduct, "KOVA.workspaceProduct.v1"},
        {preferenceKey::accentColor, "KOVA.accentColor.v1"},
        {useThemeBackground, "KOVA.useThemeBackground.v1"},
        {showBrain, "KOVA.showBrain.v1"},
        {showTileBackgrounds, "KOVA.showTileBackgrounds.v1"},
        {continuousManagement, "KOVA.continuousManagement.v1"},
        {workspaceSession, "KOVA.workspaceSession.v1"},
        {keyboardShortcuts, "KOVA.keyboardShortcuts.v1"},
        {startAtLogin, "KOVA.startAtLogin.v1"},
        {hideSystemDock, "KOVA.hideSystemDock.v2"},
        {onboardingCompleted, "KOVA.onboarding.completed.v1"},
        {hiddenApplications, "KOVA.hiddenApplications.v1"},
        {bringNextForward, "KOVA.bringNextForward.v1"},
    };
    for (const auto& [key, literal] : keys) EXPECT_EQ(key, literal);
}

TEST(WorkspacePreferences, UnreadableValuesCountAsAbsent) {
    MemoryPreferencesStore store;
    store.setValue(preferenceKey::workspaceProfile, PreferenceData{R"({"id": 7})"});
    store.setValue(preferenceKey::autoArrangeLearning, PreferenceData{"["});
    store.setValue(preferenceKey::showTileBackgrounds, std::string("false"));
    store.setValue(preferenceKey::accentColor, std::string("no such color"));
    const auto loaded = loadWorkspacePreferences(store);
    EXPECT_EQ(loaded.profile.name, "My Workspace");
    EXPECT_EQ(loaded.learning, AutoArrangeLearningModel{});
    EXPECT_TRUE(loaded.showTileBackgrounds);
    EXPECT_EQ(loaded.accentColorID, "system-blue");
    const auto problems = store.problems();
    ASSERT_EQ(problems.size(), 4U) << "each unreadable value is reported";
    EXPECT_NE(problems[0].find("workspaceProfile.v1 is not used as stored: id: expected a string"), std::string::npos)
        << problems[0];
    EXPECT_NE(problems[3].find("there is no accent color “no such color”; “system-blue” is used"), std::string::npos)
        << problems[3];
    store.setValue(preferenceKey::showTileBackgrounds, false);
    EXPECT_FALSE(loadWorkspacePreferences(store).showTileBackgrounds);
}

TEST(WorkspacePreferences, EachValueOutOfRangeIsReplacedAndReported) {
    WorkspaceProfile profile;
    profile.themeID = "plaid";
    profile.layoutID = "jarvis.nope";
    profile.layoutSelectionsByDisplay = {{"A", DisplayLayoutSelection::layout("jarvis.gone")},
                                         {"B", DisplayLayoutSelection::layout("jarvis.quad-grid")}};
    profile.tileInset = 5000;
    profile.applicationMinimumSizes = {{"good", {600, 0}}, {"low", {-1, 100}}, {"vast", {1e9, 100}}};
    // Weights are limited only when their layout is used.
    profile.layoutWeightsByDisplay["A"]["jarvis.gone"].splits["root"] = {0, -1};
    MemoryPreferencesStore store;
    saveProfile(store, profile);
    const auto loaded = loadWorkspacePreferences(store).profile;
    const std::string prefix = "KOVA.workspaceProfile.v1 is not used as stored: ";
    std::string lines;
    for (const auto& problem : store.problems()) {
        const auto reason = problem.substr(std::min(prefix.size(), problem.size()));
        lines += reason.substr(0, reason.find(". A copy")) + "\n";
    }
    EXPECT_EQ(lines, "themeID: there is no theme “plaid”; “jarvis.neon-cyan” is used\n"
                     "layoutID: there is no layout “jarvis.nope”; “jarvis.command-center” is used\n"
                     "layoutSelectionsByDisplay.A: there is no layout “jarvis.gone”; the automatic one is used\n"
                     "tileInset: 5000 is not between 0 and 100; 5 is used\n"
                     "applicationMinimumSizes.low: -1 x 100 is no size of a window; it is not used\n"
                     "applicationMinimumSizes.vast: 1e+09 x 100 is no size of a window; it is not used\n");
    profile.themeID = "jarvis.neon-cyan";
    profile.layoutID = "jarvis.command-center";
    profile.layoutSelectionsByDisplay["A"] = DisplayLayoutSelection::automatic();
    profile.tileInset = 5;
    profile.applicationMinimumSizes = {{"good", {600, 0}}};
    EXPECT_EQ(loaded, profile) << "all other values are used";
}

} // namespace

} // namespace kova
