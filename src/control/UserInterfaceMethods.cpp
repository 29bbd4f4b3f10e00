#include "control/UserInterfaceMethods.h"

#include "control/OnboardingWindowControl.h"
#include "control/OverlayBroadcast.h"
#include "control/Refusal.h"
#include "control/SettingsWindowControl.h"

#include <algorithm>
#include <initializer_list>

namespace kova {

namespace {

using nlohmann::json;

constexpr const char* kNoInterface = "This agent has no program that draws the overlay";
constexpr std::size_t kLongestProblem = 1000; // bytes of UTF-8, since the agent keeps it
constexpr const char* kNoMenu = "This agent has no menu";

const char* word(MenuEntry::Kind kind) {
    switch (kind) {
    case MenuEntry::Kind::command:
        return "command";
    case MenuEntry::Kind::submenu:
        return "submenu";
    case MenuEntry::Kind::separator:
        return "separator";
    case MenuEntry::Kind::heading:
        return "heading";
    }
    return "";
}

json recordOf(const std::vector<MenuEntry>& entries, const ShortcutTexts& textOf) {
    json out = json::array();
    for (const MenuEntry& entry : entries) {
        out.push_back({{"kind", word(entry.kind)},
                       {"id", entry.id},
                       {"title", entry.title},
                       {"isEnabled", entry.isEnabled},
                       {"isChecked", entry.isChecked},
                       {"shortcut", entry.shortcut ? json(textOf(*entry.shortcut)) : json(nullptr)},
                       {"entries", recordOf(entry.entries, textOf)}});
    }
    return out;
}

json recordOf(const UserInterfaceStatus& status) {
    return {{"isOn", status.isOn},
            {"isRunning", status.process.has_value()},
            {"process", status.process ? json(*status.process) : json(nullptr)},
            {"problem", status.problem ? json(*status.problem) : json(nullptr)}};
}

} // namespace

ControlReply listMenu(const MenuServing* menu, const ShortcutTexts& textOf) {
    if (!menu) return refusal(kNoMenu);
    return json{{"entries", recordOf(menu->entries(), textOf)}};
}

ControlReply chooseFromMenu(MenuServing* menu, const WorkspaceController& controller, const JsonCursor& parameters) {
    if (!menu) return refusal(kNoMenu);
    const std::string id = parameters.required("id").string();
    const auto messagesBefore = controller.messagesShown();
    if (!menu->choose(id)) return refusal("The menu has no such entry, or it is not enabled now");
    const auto& said = *controller.state().lastActionMessage;
    const bool isNew = said && controller.messagesShown() != messagesBefore;
    return json{{"id", id}, {"message", isNew ? json(*said) : json(nullptr)}};
}

ControlReply noteUserInterfaceProblem(UserInterfaceControl* interface, const JsonCursor& parameters,
                                      const std::shared_ptr<ControlPeer>& reporter) {
    const JsonCursor given = parameters.required("problem");
    const std::string problem = given.string();
    if (problem.size() > kLongestProblem)
        given.fail("expected a text of at most " + std::to_string(kLongestProblem) + " bytes");
    if (!interface) return refusal(kNoInterface);
    interface->reportProblem(problem, reporter);
    return recordOf(interface->status());
}

ControlReply userInterfaceStatus(const UserInterfaceControl* interface) {
    if (!interface) return refusal(kNoInterface);
    if (const auto reason = interface->unavailableReason()) return refusal(*reason);
    return recordOf(interface->status());
}

ControlReply switchUserInterface(UserInterfaceControl* interface, UserInterfaceSwitch change) {
    if (!interface) return refusal(kNoInterface);
    if (const auto reason = interface->unavailableReason()) return refusal(*reason);
    if (change == UserInterfaceSwitch::restart) {
        if (!interface->restart()) return refusal("kova-ui is switched off. Switch it on with “kova ui on”");
    } else {
        interface->setOn(change == UserInterfaceSwitch::on);
    }
    return recordOf(interface->status());
}

namespace {

/// The value of "what", which must be one of `words`.
std::string wordIn(const JsonCursor& parameters, std::initializer_list<std::string_view> words) {
    const JsonCursor what = parameters.required("what");
    std::string wanted = what.string();
    if (std::ranges::find(words, wanted) == words.end()) {
        std::string listed;
        for (const std::string_view word : words) listed += (listed.empty() ? "“" : ", “") + std::string(word) + "”";
        what.fail("expected one of " + listed);
    }
    return wanted;
}

} // namespace

ControlReply showInUserInterface(const UserInterfaceWindows& windows, const JsonCursor& parameters) {
    const std::string what = wordIn(parameters, {"menu", "settings", "onboarding"});
    if (what == "settings") {
        const json withoutPane = json::object();
        auto shown = showSettings(windows, JsonCursor(withoutPane, ""));
        return shown ? ControlReply(json{{"what", what}}) : shown;
    }
    if (what == "onboarding") {
        if (!windows.onboarding) return refusal(kNoInterface);
        if (windows.overlay) windows.overlay->hasPeers(); // forgets clients that are gone
        if (auto problem = windows.onboarding->show()) return refusal(*problem);
        return json{{"what", what}};
    }
    if (!windows.overlay || !windows.overlay->show(what)) {
        return refusal("No program that could show it is connected. Start it with “kova ui restart”");
    }
    return json{{"what", what}};
}

ControlReply hideInUserInterface(const UserInterfaceWindows& windows, const JsonCursor& parameters) {
    const std::string what = wordIn(parameters, {"settings", "onboarding"});
    if (what == "settings" && windows.settings) windows.settings->close();
    if (what == "onboarding" && windows.onboarding) windows.onboarding->close();
    return json{{"what", what}};
}

ControlReply showSettings(const UserInterfaceWindows& windows, const JsonCursor& parameters) {
    std::optional<std::string> pane;
    if (const auto given = parameters.optional("pane")) {
        pane = given->string();
        if (std::ranges::find(kSettingsPanes, *pane) == kSettingsPanes.end()) given->fail("there is no such pane");
    }
    if (!windows.settings) return refusal(kNoInterface);
    if (windows.overlay) windows.overlay->hasPeers(); // forgets clients that are gone
    if (auto problem = windows.settings->show(pane)) return refusal(*problem);
    return json{{"pane", orNull(pane)}};
}

} // namespace kova
