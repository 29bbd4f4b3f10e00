#include "control/UpdateMethods.h"

#include "control/MenuServing.h"
#include "control/MethodTable.h"
#include "control/Refusal.h"

#include <optional>
#include <string_view>
#include <vector>

namespace kova {

namespace {

using nlohmann::json;

constexpr std::string_view kNow = "update", kChecks = "update-automatically", kDownloads = "update-download";

std::optional<MenuEntry> entryIn(const std::vector<MenuEntry>& entries, std::string_view id) {
    for (const MenuEntry& entry : entries) {
        if (entry.kind == MenuEntry::Kind::command && entry.id == id) return entry;
        if (auto inside = entryIn(entry.entries, id)) return inside;
    }
    return std::nullopt;
}

std::optional<MenuEntry> entryIn(const MenuServing* menu, std::string_view id) {
    return menu ? entryIn(menu->entries(), id) : std::nullopt;
}

ControlReply noUpdates() {
    return refusal("This KOVA does not update itself; update its package instead");
}

ControlReply updatesStatus(const MenuServing* menu) {
    const auto now = entryIn(menu, kNow), checks = entryIn(menu, kChecks), downloads = entryIn(menu, kDownloads);
    if (!now || !checks || !downloads) return noUpdates();
    return json{{"isChecking", !now->isEnabled},
                {"checksAutomatically", checks->isChecked},
                {"downloadsAutomatically", downloads->isChecked}};
}

ControlReply checkForUpdates(MenuServing* menu) {
    if (!entryIn(menu, kNow)) return noUpdates();
    (void)menu->choose(kNow); // no-op while a check is running
    return updatesStatus(menu);
}

enum class UpdateSwitch { checks, downloads };

/// Downloads cannot be switched while automatic checks are off.
ControlReply switchUpdates(MenuServing* menu, UpdateSwitch which, const JsonCursor& parameters) {
    const bool isOn = parameters.required("isOn").boolean();
    const std::string_view id = which == UpdateSwitch::checks ? kChecks : kDownloads;
    const auto entry = entryIn(menu, id);
    if (!entry) return noUpdates();
    if (entry->isChecked != isOn && !menu->choose(id))
        return refusal("Updates are downloaded only if KOVA checks for them automatically");
    return updatesStatus(menu);
}

} // namespace

void addUpdateMethods(MethodTable& methods, MenuServing* menu) {
    methods.add("updates.status", {}, [menu](const MethodCall&) { return updatesStatus(menu); });
    methods.add("updates.check", {}, [menu](const MethodCall&) { return checkForUpdates(menu); });
    methods.add("updates.automatic", {"isOn"},
                [menu](const MethodCall& call) { return switchUpdates(menu, UpdateSwitch::checks, call.parameters); });
    methods.add("updates.download", {"isOn"}, [menu](const MethodCall& call) {
        return switchUpdates(menu, UpdateSwitch::downloads, call.parameters);
    });
}

} // namespace kova
