#include "control/UserInterfaceMethods.h"

#include "control/MenuServing.h"
#include "control/MethodTable.h"
#include "control/OnboardingWindowControl.h"
#include "control/OverlayBroadcast.h"
#include "control/Refusal.h"
#include "control/SettingsWindowControl.h"
#include "control/UserInterfaceControl.h"
#include "control/UserInterfaceDialogs.h"
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <array>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kova {

namespace {

using nlohmann::json;

constexpr const char* kNoInterface = "This agent has no program that draws the overlay";
constexpr std::size_t kLongestProblem = 1000; // bytes of UTF-8; limited, since the agent keeps the text
constexpr const char* kNoMenu = "This agent has no menu";
/// The panes of the settings window, in their order.
constexpr std::array<std::string_view, 8> kSettingsPanes = {"general", "layouts",    "shortcuts",    "rules",
                                                            "scenes",  "appearance", "applications", "about"};

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

ControlReply listMenu(const MenuServing* menu, const ShortcutTexts& textOf) {
    if (!menu) return refusal(kNoMenu);
    return json{{"entries", recordOf(menu->entries(), textOf)}};
}

ControlReply chooseFromMenu(MenuServing* menu, const WorkspaceController& controller, const JsonCursor& parameters) {
    if (!menu) return refusal(kNoMenu);
    const std::string id = parameters.required("id").string();
    const auto messagesBefore = controller.messagesShown();
    if (!menu->choose(id)) return refusal("The menu has no such entry, or it is not enabled now");
    const auto& message = *controller.state().lastActionMessage;
    const bool isNew = message && controller.messagesShown() != messagesBefore;
    return json{{"id", id}, {"message", isNew ? json(*message) : json(nullptr)}};
}

/// Receives a report of kova-ui that it cannot show the overlay.
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

enum class UserInterfaceSwitch { on, off, restart };

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

/// Returns the parameter "what". Throws `DecodingError` unless it is one of `words`.
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

ControlReply showSettings(const UserInterfaceParts& parts, const JsonCursor& parameters) {
    std::optional<std::string> pane;
    if (const auto given = parameters.optional("pane")) {
        pane = given->string();
        if (std::ranges::find(kSettingsPanes, *pane) == kSettingsPanes.end()) given->fail("there is no such pane");
    }
    SettingsWindowControl* settings = parts.settings();
    if (!settings) return refusal(kNoInterface);
    if (parts.overlay) parts.overlay->hasSubscribers(); // removes disconnected subscribers
    if (auto problem = settings->show(pane)) return refusal(*problem);
    return json{{"pane", orNull(pane)}};
}

ControlReply showInUserInterface(const UserInterfaceParts& parts, const JsonCursor& parameters) {
    const std::string what = wordIn(parameters, {"menu", "settings", "onboarding"});
    if (what == "settings") {
        const json withoutPane = json::object();
        auto shown = showSettings(parts, JsonCursor(withoutPane, ""));
        return shown ? ControlReply(json{{"what", what}}) : shown;
    }
    if (what == "onboarding") {
        OnboardingWindowControl* onboarding = parts.onboarding();
        if (!onboarding) return refusal(kNoInterface);
        if (parts.overlay) parts.overlay->hasSubscribers(); // removes disconnected subscribers
        if (auto problem = onboarding->show()) return refusal(*problem);
        return json{{"what", what}};
    }
    if (!parts.overlay || !parts.overlay->show(what)) {
        return refusal("The program that draws the overlay is not connected. Start it with “kova ui restart”");
    }
    return json{{"what", what}};
}

void closeSettings(const UserInterfaceParts& parts) {
    if (SettingsWindowControl* settings = parts.settings()) settings->close();
}

void closeOnboarding(const UserInterfaceParts& parts) {
    if (OnboardingWindowControl* onboarding = parts.onboarding()) onboarding->close();
}

ControlReply hideInUserInterface(const UserInterfaceParts& parts, const JsonCursor& parameters) {
    const std::string what = wordIn(parameters, {"settings", "onboarding"});
    if (what == "settings") closeSettings(parts);
    if (what == "onboarding") closeOnboarding(parts);
    return json{{"what", what}};
}

} // namespace

void addUserInterfaceMethods(MethodTable& methods, UserInterfaceParts partsOfAgent) {
    const auto parts = std::make_shared<const UserInterfaceParts>(std::move(partsOfAgent));
    MenuServing* menu = parts->menu;
    UserInterfaceControl* interface = parts->interface;
    methods.add("menu", {}, [parts](const MethodCall&) { return listMenu(parts->menu, parts->textOf); });
    methods.addSaved("menu.choose", {"id"}, [menu, parts](const MethodCall& call) {
        return chooseFromMenu(menu, parts->controller, call.parameters);
    });
    methods.add("ui.status", {}, [interface](const MethodCall&) { return userInterfaceStatus(interface); });
    methods.add("ui.report", {"problem"}, [interface](const MethodCall& call) {
        return noteUserInterfaceProblem(interface, call.parameters, call.peer);
    });
    methods.add("ui.restart", {}, [interface](const MethodCall&) {
        return switchUserInterface(interface, UserInterfaceSwitch::restart);
    });
    methods.addSaved("ui.on", {}, [interface](const MethodCall&) {
        return switchUserInterface(interface, UserInterfaceSwitch::on);
    });
    methods.addSaved("ui.off", {}, [interface, parts](const MethodCall&) {
        closeSettings(*parts);
        closeOnboarding(*parts);
        return switchUserInterface(interface, UserInterfaceSwitch::off);
    });
    methods.add("ui.show", {"what"},
                [parts](const MethodCall& call) { return showInUserInterface(*parts, call.parameters); });
    methods.add("ui.hide", {"what"},
                [parts](const MethodCall& call) { return hideInUserInterface(*parts, call.parameters); });
    methods.add("ui.answer", {"id", "isConfirmed"}, [parts](const MethodCall& call) -> ControlReply {
        if (!parts->dialogs) return refusal("This agent shows its alerts itself");
        return parts->dialogs->answer(call.parameters);
    });
    methods.add("settings.show", {"pane"},
                [parts](const MethodCall& call) { return showSettings(*parts, call.parameters); });
}

} // namespace kova
