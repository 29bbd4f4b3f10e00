#include "workspace/WorkspacePreferences.h"

#include "persistence/PreferenceKeys.h"
#include "persistence/StoredValues.h"
#include "persistence/WorkspaceDocumentCoding.h"
#include "support/Quoted.h"
#include "themes/ThemeRegistry.h"
#include "workspace/StoredProfile.h"

#include <algorithm>

namespace kova {

namespace {

constexpr std::string_view kExistingUserThemeID = "jarvis.neon-cyan";

bool isExistingUser(const PreferencesStore& store) {
    return std::any_of(preferenceKey::existingUserKeys.begin(), preferenceKey::existingUserKeys.end(),
                       [&](std::string_view key) { return store.contains(key); });
}

WorkspaceProfile loadProfile(PreferencesStore& store, bool existingUser) {
    const auto decode = [](std::string_view json) { return decodeWorkspaceProfile(json); };
    WorkspaceProfile fresh;
    if (existingUser) fresh.themeID = kExistingUserThemeID;
    auto profile = storedRecord<WorkspaceProfile>(store, preferenceKey::workspaceProfile, decode);
    if (!profile) return fresh;
    for (const auto& line : correctStoredProfile(*profile, ThemeRegistry(), fresh.themeID)) {
        store.noteUnusable(preferenceKey::workspaceProfile, line);
    }
    return *std::move(profile);
}

std::string loadAccentColorID(PreferencesStore& store) {
    const auto stored = storedString(store, preferenceKey::accentColor);
    std::string id = normalizedAccentColorID(stored.value_or(std::string(kDefaultAccentColorID)));
    if (stored && id != *stored) {
        store.noteUnusable(preferenceKey::accentColor,
                           "there is no accent color " + quoted(*stored) + "; " + quoted(id) + " is used");
    }
    return id;
}

} // namespace

WorkspacePreferences loadWorkspacePreferences(PreferencesStore& store) {
    const bool existingUser = isExistingUser(store);
    WorkspacePreferences out;
    out.profile = loadProfile(store, existingUser);
    out.learning =
        storedRecord<AutoArrangeLearningModel>(store, preferenceKey::autoArrangeLearning, decodeLearningModel)
            .value_or(AutoArrangeLearningModel{});
    out.useThemeBackground = storedBoolean(store, preferenceKey::useThemeBackground).value_or(existingUser);
    out.showBrain = storedBoolean(store, preferenceKey::showBrain).value_or(false);
    out.showTileBackgrounds = storedBoolean(store, preferenceKey::showTileBackgrounds).value_or(true);
    out.accentColorID = loadAccentColorID(store);
    out.document = storedRecord<WorkspaceProductDocument>(store, preferenceKey::workspaceProduct, decodeStoredDocument)
                       .value_or(WorkspaceProductDocument{});
    out.continuousManagementEnabled = storedBoolean(store, preferenceKey::continuousManagement).value_or(false);
    out.bringsNextForward = storedBoolean(store, preferenceKey::bringNextForward).value_or(true);
    if (!existingUser) {
        saveProfile(store, out.profile);
        store.setValue(preferenceKey::useThemeBackground, false);
    }
    return out;
}

void saveProfile(PreferencesStore& store, const WorkspaceProfile& profile) {
    store.setValueLater(preferenceKey::workspaceProfile,
                        [profile]() -> PreferenceValue { return PreferenceData{encodeWorkspaceProfile(profile)}; });
}

void saveLearning(PreferencesStore& store, const AutoArrangeLearningModel& model) {
    store.setValue(preferenceKey::autoArrangeLearning, PreferenceData{encodeLearningModel(model)});
}

} // namespace kova
