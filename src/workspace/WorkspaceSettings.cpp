#include "workspace/WorkspaceSettings.h"

#include "persistence/PreferenceKeys.h"
#include "workspace/WorkspaceParts.h"

namespace kova {

namespace {

/// Changes and stores the setting; false if it had the value already.
bool change(Published<bool>& setting, bool value, PreferencesStore& preferences, std::string_view key) {
    if (*setting == value) return false;
    setting.set(value);
    preferences.setValue(key, value);
    return true;
}

} // namespace

WorkspaceSettings::WorkspaceSettings(WorkspaceParts& parts, RefreshCycle& refreshCycle, TileGeometry& geometry,
                                     TileKeeper& keeper) :
    services_(parts.services),
    state_(parts.state), refreshCycle_(refreshCycle), geometry_(geometry), keeper_(keeper) {}

void WorkspaceSettings::setSetting(action::Setting setting, bool isOn) {
    PreferencesStore& preferences = services_.preferences;
    switch (setting) {
    case action::Setting::isPaused:
        state_.isPaused.set(isOn);
        return;
    case action::Setting::continuousManagement:
        // The next poll evaluates the rules for the present windows.
        if (change(state_.continuousManagementEnabled, isOn, preferences, preferenceKey::continuousManagement))
            refreshCycle_.refresh();
        return;
    case action::Setting::autoArrangeOnLaunch: {
        WorkspaceProfile profile = *state_.profile;
        profile.autoArrangeOnLaunch = isOn;
        keeper_.setProfile(std::move(profile));
        return;
    }
    case action::Setting::bringsNextForward:
        (void)change(state_.bringsNextForward, isOn, preferences, preferenceKey::bringNextForward);
        return;
    case action::Setting::useThemeBackground:
        (void)change(state_.useThemeBackground, isOn, preferences, preferenceKey::useThemeBackground);
        return;
    case action::Setting::showBrain:
        (void)change(state_.showBrain, isOn, preferences, preferenceKey::showBrain);
        return;
    case action::Setting::showTileBackgrounds:
        (void)change(state_.showTileBackgrounds, isOn, preferences, preferenceKey::showTileBackgrounds);
        return;
    }
}

Outcome WorkspaceSettings::selectTheme(const std::string& id) {
    if (!geometry_.registry().contains(id)) return Outcome::refused("There is no such theme");
    WorkspaceProfile profile = *state_.profile;
    profile.themeID = id;
    keeper_.setProfile(std::move(profile));
    return Outcome::done();
}

void WorkspaceSettings::setPreferredApplication(const SlotID& slotID,
                                                const std::optional<std::string>& applicationKey) {
    WorkspaceProfile profile = *state_.profile;
    if (applicationKey) {
        profile.preferredApplications[slotID] = *applicationKey;
    } else {
        profile.preferredApplications.erase(slotID);
    }
    keeper_.setProfile(std::move(profile));
}

void WorkspaceSettings::selectAccentColor(const std::string& id) {
    std::string known = normalizedAccentColorID(id);
    if (known == *state_.accentColorID) return;
    services_.preferences.setValue(preferenceKey::accentColor, known);
    state_.accentColorID.set(std::move(known));
}

} // namespace kova
