// Reads and writes the workspace's preferences, with their keys and defaults.
#pragma once

#include "layout/AutoArrangeLearning.h"
#include "layout/WorkspaceProfile.h"
#include "persistence/PreferencesStore.h"
#include "persistence/WorkspaceProductDocument.h"

#include <string>

namespace kova {

/// Everything the controller reads once, when it is created.
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

/// A value that cannot be read or is out of range counts as absent and is reported to the store. On the first start
/// with an empty store the profile and the theme background are written at once, so that the next start finds an
/// existing user with the same appearance.
WorkspacePreferences loadWorkspacePreferences(PreferencesStore& store);

void saveProfile(PreferencesStore& store, const WorkspaceProfile& profile);
void saveLearning(PreferencesStore& store, const AutoArrangeLearningModel& model);

} // namespace kova
