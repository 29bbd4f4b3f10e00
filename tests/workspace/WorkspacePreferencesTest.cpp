#include "workspace/WorkspacePreferences.h"
#include "persistence/MemoryPreferencesStore.h"
#include "persistence/PreferenceKeys.h"

#include <gtest/gtest.h>

namespace kova {

namespace {

TEST(WorkspacePreferences, AFirstStartLeavesAnExistingUserWithTheSameLook) {
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
    for (const auto key : preferenceKey::existingUserKeys) {
        MemoryPreferencesStore store;
        store.setValue(key, false); // of the wrong type for some: it is there all the same
        const auto loaded = loadWorkspacePreferences(store);
        EXPECT_EQ(loaded.profile.themeID, "jarvis.neon-cyan") << key;
        EXPECT_EQ(loaded.useThemeBackground, key != preferenceKey::useThemeBackground) << key;
        EXPECT_EQ(store.values().size(), 1u) << "nothing is written for an existing user";
    }
}

TEST(WorkspacePreferences, WhatCannotBeReadCountsAsAbsent) {
    MemoryPreferencesStore store;
    store.setValue(preferenceKey::workspaceProfile, PreferenceData{R"({"id": 7})"});
    store.setValue(preferenceKey::autoArrangeLearning, PreferenceData{"["});
    store.setValue(preferenceKey::showTileBackgrounds, std::string("false"));
    store.setValue(preferenceKey::accentColor, std::string("no such colour"));
    const auto loaded = loadWorkspacePreferences(store);
    EXPECT_EQ(loaded.profile.name, "My Workspace");
    EXPECT_EQ(loaded.learning, AutoArrangeLearningModel{});
    EXPECT_TRUE(loaded.showTileBackgrounds);
    EXPECT_EQ(loaded.accentColorID, "system-blue");
    store.setValue(preferenceKey::showTileBackgrounds, false);
    EXPECT_FALSE(loadWorkspacePreferences(store).showTileBackgrounds);
}

} // namespace

} // namespace kova
