// Reads and writes the workspace's preferences, with their keys and defaults.
#pragma once

#include "layout/AutoArrangeLearning.h"
#include "layout/WorkspaceProfile.h"
#include "persistence/PreferencesStore.h"
#include "persistence/WorkspaceProductDocument.h"

#include <string>

namespace kova {

/// The preferences that the controller reads once, when it is created.
struct WorkspacePreferences {
    WorkspaceProfile profile;
    AutoArrangeLearningModel learning;
    bool useThemeBackground = false;
    bool showBrain = false;
    bool showTileBackgrounds = true;
    bool continuousManagementEnabled = false;
    bool bringsNextForward = true;
    std::string accentColorID;
    WorkspaceProductDocument document;
};

/// Values that cannot be read or are out of range are reported to the store and treated as absent. At the first start,
/// writes the profile and the theme background at once. The defaults for existing users, which apply from the next
/// start on, are different; the stored values keep the appearance the same.
WorkspacePreferences loadWorkspacePreferences(PreferencesStore& store);

void saveProfile(PreferencesStore& store, const WorkspaceProfile& profile);
void saveLearning(PreferencesStore& store, const AutoArrangeLearningModel& model);

} // namespace kova
