#include "workspace/WorkspacePreferences.h"

#include "persistence/PreferenceKeys.h"
#include "persistence/WorkspaceDocumentCoding.h"
#include "themes/ThemeRegistry.h"

#include <algorithm>

namespace kova {

namespace {

constexpr std::string_view kExistingUserThemeID = "jarvis.neon-cyan";

bool isExistingUser(const PreferencesStore& store) {
    return std::any_of(preferenceKey::existingUserKeys.begin(), preferenceKey::existingUserKeys.end(),
                       [&](std::string_view key) { return store.contains(key); });
}

/// The stored record; absent when there is none or it cannot be decoded.
template <class Record, class Decode>
std::optional<Record> stored(const PreferencesStore& store, std::string_view key, Decode decode) {
    const auto data = store.data(key);
    if (!data) return std::nullopt;
    auto decoded = decode(data->json);
    if (!std::holds_alternative<Record>(decoded)) return std::nullopt;
    return std::get<Record>(std::move(decoded));
}

WorkspaceProfile loadProfile(const PreferencesStore& store, bool existingUser) {
    const auto decode = [](std::string_view json) { return decodeWorkspaceProfile(json); };
    if (auto profile = stored<WorkspaceProfile>(store, preferenceKey::workspaceProfile, decode)) return *profile;
    WorkspaceProfile fresh;
    if (existingUser) fresh.themeID = kExistingUserThemeID;
    return fresh;
}

} // namespace

WorkspacePreferences loadWorkspacePreferences(PreferencesStore& store) {
    const bool existingUser = isExistingUser(store);
    WorkspacePreferences out;
    out.profile = loadProfile(store, existingUser);
    out.learning = stored<AutoArrangeLearningModel>(store, preferenceKey::autoArrangeLearning, decodeLearningModel)
                       .value_or(AutoArrangeLearningModel{});
    out.useThemeBackground = store.boolean(preferenceKey::useThemeBackground).value_or(existingUser);
    out.showBrain = store.boolean(preferenceKey::showBrain).value_or(false);
    out.showTileBackgrounds = store.boolean(preferenceKey::showTileBackgrounds).value_or(true);
    out.accentColorID =
        normalizedAccentColorID(store.string(preferenceKey::accentColor).value_or(std::string(kDefaultAccentColorID)));
    out.document = stored<WorkspaceProductDocument>(store, preferenceKey::workspaceProduct, decodeStoredDocument)
                       .value_or(WorkspaceProductDocument{});
    out.continuousManagementEnabled = store.boolean(preferenceKey::continuousManagement).value_or(false);
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
