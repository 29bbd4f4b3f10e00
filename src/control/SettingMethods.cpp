#include "control/SettingMethods.h"

#include "control/Refusal.h"

namespace kova {

namespace {

using nlohmann::json;

constexpr const char* kNoSetting = "This desktop has no such setting";

json record(const SystemSetting::State& state) {
    return {{"isOn", state.isOn}, {"problem", orNull(state.problem)}, {"guidance", orNull(state.guidance)}};
}

} // namespace

ControlReply settingStatus(const std::optional<SystemSetting>& setting) {
    if (!setting) return refusal(kNoSetting);
    const auto state = setting->state();
    if (state.unavailableReason) return refusal(*state.unavailableReason);
    return record(state);
}

ControlReply switchSetting(const std::optional<SystemSetting>& setting, bool isOn) {
    if (!setting) return refusal(kNoSetting);
    setting->set(isOn);
    const auto state = setting->state();
    if (state.unavailableReason) return refusal(*state.unavailableReason);
    if (state.problem) return refusal(*state.problem);
    return record(state);
}

} // namespace kova
