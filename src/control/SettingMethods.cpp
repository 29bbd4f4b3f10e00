#include "control/SettingMethods.h"

#include "control/MethodTable.h"
#include "control/Refusal.h"

#include <string>

namespace kova {

namespace {

using nlohmann::json;

constexpr const char* kNoSetting = "This desktop has no such setting";

json record(const SystemSetting::State& state) {
    return {{"isOn", state.isOn}, {"problem", orNull(state.problem)}, {"guidance", orNull(state.guidance)}};
}

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

} // namespace

void addSettingMethods(MethodTable& methods, const std::string& name, const std::optional<SystemSetting>& setting) {
    methods.add(name + ".status", {}, [&setting](const MethodCall&) { return settingStatus(setting); });
    methods.addSaved(name + ".on", {}, [&setting](const MethodCall&) { return switchSetting(setting, true); });
    methods.addSaved(name + ".off", {}, [&setting](const MethodCall&) { return switchSetting(setting, false); });
}

} // namespace kova
