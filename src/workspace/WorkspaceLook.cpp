// Settings that move no window: theme, accent colour, what the overlay shows, and what later arrangements do.
#include "workspace/WorkspaceController.h"

#include "persistence/PreferenceKeys.h"

namespace kova {

namespace {

void change(Published<bool>& setting, bool value, PreferencesStore& preferences, std::string_view key) {
    if (*setting == value) return;
    setting.set(value);
    preferences.setValue(key, value);
}

} // namespace

bool WorkspaceController::selectTheme(const std::string& id) {
    if (!registry_.contains(id)) return false;
    WorkspaceProfile profile = *state_.profile;
    profile.themeID = id;
    setProfile(std::move(profile));
    return true;
}

void WorkspaceController::setAutoArrangeOnLaunch(bool arranges) {
    WorkspaceProfile profile = *state_.profile;
    profile.autoArrangeOnLaunch = arranges;
    setProfile(std::move(profile));
}

void WorkspaceController::setPreferredApplication(const std::string& slotID,
                                                  const std::optional<std::string>& applicationKey) {
    WorkspaceProfile profile = *state_.profile;
    if (applicationKey) {
        profile.preferredApplications[slotID] = *applicationKey;
    } else {
        profile.preferredApplications.erase(slotID);
    }
    setProfile(std::move(profile));
}

void WorkspaceController::selectAccentColor(const std::string& id) {
    std::string known = normalizedAccentColorID(id);
    if (known == *state_.accentColorID) return;
    services_.preferences.setValue(preferenceKey::accentColor, known);
    state_.accentColorID.set(std::move(known));
}

void WorkspaceController::setUseThemeBackground(bool use) {
    change(state_.useThemeBackground, use, services_.preferences, preferenceKey::useThemeBackground);
}

void WorkspaceController::setShowBrain(bool show) {
    change(state_.showBrain, show, services_.preferences, preferenceKey::showBrain);
}

void WorkspaceController::setShowTileBackgrounds(bool show) {
    change(state_.showTileBackgrounds, show, services_.preferences, preferenceKey::showTileBackgrounds);
}

} // namespace kova
