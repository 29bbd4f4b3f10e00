#include "control/ThemeMethods.h"

#include "control/MethodTable.h"
#include "control/NameLookup.h"
#include "control/Refusal.h"
#include "themes/ThemeCoding.h"
#include "workspace/WorkspaceController.h"

#include <string>
#include <utility>
#include <vector>

namespace kova {

namespace {

using nlohmann::json;

json themeRecord(const WorkspaceController& controller, const ThemeDescriptor& theme) {
    const ThemeRegistry& registry = controller.registry();
    const WorkspaceState& state = controller.state();
    return {{"id", theme.id},
            {"displayName", theme.displayName},
            {"visualStyle", rawValue(theme.visualStyle)},
            {"palette", encode(registry.palette(theme.id, *state.accentColorID))},
            {"isActive", registry.theme(state.profile->themeID).id == theme.id}};
}

json accentRecord(const WorkspaceController& controller, const AccentColorOption& option) {
    return {{"id", option.id},
            {"displayName", option.displayName},
            {"accent", encode(option.accent)},
            {"secondaryAccent", encode(option.secondaryAccent)},
            {"isActive", *controller.state().accentColorID == option.id}};
}

NamedThing thingNamed(const std::string& id, const std::string& displayName) {
    return {id, {displayName}, id + "  " + displayName};
}

/// Lists the themes, each with the palette that it has with the active accent color.
ControlReply listThemes(const WorkspaceController& controller) {
    json themes = json::array();
    for (const auto& theme : controller.registry().themes()) {
        themes.push_back(themeRecord(controller, theme->descriptor()));
    }
    const WorkspaceState& state = controller.state();
    return json{{"themes", std::move(themes)},
                {"useThemeBackground", *state.useThemeBackground},
                {"showBrain", *state.showBrain},
                {"showTileBackgrounds", *state.showTileBackgrounds}};
}

ControlReply selectTheme(WorkspaceController& controller, const JsonCursor& parameters) {
    const std::string wanted = parameters.required("theme").string();
    const auto& themes = controller.registry().themes();
    std::vector<NamedThing> things;
    for (const auto& theme : themes)
        things.push_back(thingNamed(theme->descriptor().id, theme->descriptor().displayName));
    const auto found = lookUp("theme", wanted, things, Numbered::no);
    if (!found) return found.error();
    const ThemeDescriptor& theme = themes[*found]->descriptor();
    if (!controller.perform(action::SelectTheme{theme.id})) return refusal("The theme was not selected");
    return json{{"theme", themeRecord(controller, theme)}};
}

ControlReply listAccentColors(const WorkspaceController& controller) {
    json options = json::array();
    for (const auto& option : accentColorOptions()) options.push_back(accentRecord(controller, option));
    return json{{"accentColors", std::move(options)}};
}

ControlReply selectAccentColor(WorkspaceController& controller, const JsonCursor& parameters) {
    const std::string wanted = parameters.required("accentColor").string();
    std::vector<NamedThing> things;
    for (const auto& option : accentColorOptions()) things.push_back(thingNamed(option.id, option.displayName));
    const auto found = lookUp("accent color", wanted, things, Numbered::no);
    if (!found) return found.error();
    const AccentColorOption& option = accentColorOptions()[*found];
    controller.perform(action::SelectAccentColor{option.id});
    return json{{"accentColor", accentRecord(controller, option)}};
}

struct PreferenceSwitch {
    const char* method;
    action::Setting setting;
    bool (*isOn)(const WorkspaceState& state);
};

/// Switches the setting on or off if there is the parameter "isOn". Returns whether it is on then.
ControlReply switchPreference(WorkspaceController& controller, const JsonCursor& parameters,
                              const PreferenceSwitch& preference) {
    if (const auto isOn = parameters.optional("isOn"))
        controller.perform(action::Switch{preference.setting, isOn->boolean()});
    return json{{"isOn", preference.isOn(controller.state())}};
}

} // namespace

void addThemeMethods(MethodTable& methods, WorkspaceController& controller, std::function<bool()> isDrawn) {
    const auto marked = [isDrawn = std::move(isDrawn)](ControlReply reply) {
        if (reply) (*reply)["isDrawn"] = isDrawn();
        return reply;
    };
    methods.add("theme.list", {}, [&controller, marked](const MethodCall&) { return marked(listThemes(controller)); });
    methods.addSaved("theme.select", {"theme"}, [&controller, marked](const MethodCall& call) {
        return marked(selectTheme(controller, call.parameters));
    });
    methods.add("accent.list", {}, [&controller](const MethodCall&) { return listAccentColors(controller); });
    methods.addSaved("accent.select", {"accentColor"}, [&controller, marked](const MethodCall& call) {
        return marked(selectAccentColor(controller, call.parameters));
    });
    using State = WorkspaceState;
    static constexpr PreferenceSwitch kOverlaySwitches[] = {
        {"theme.background", action::Setting::useThemeBackground, [](const State& s) { return *s.useThemeBackground; }},
        {"theme.brain", action::Setting::showBrain, [](const State& s) { return *s.showBrain; }},
        {"theme.tileBackgrounds", action::Setting::showTileBackgrounds,
         [](const State& s) { return *s.showTileBackgrounds; }}};
    for (const PreferenceSwitch& preference : kOverlaySwitches) {
        methods.addSaved(preference.method, {"isOn"}, [&controller, marked, &preference](const MethodCall& call) {
            return marked(switchPreference(controller, call.parameters, preference));
        });
    }
    static constexpr PreferenceSwitch kOtherSwitches[] = {
        {"bringForward", action::Setting::bringsNextForward, [](const State& s) { return *s.bringsNextForward; }},
        {"arrangeAfterLaunch", action::Setting::autoArrangeOnLaunch,
         [](const State& s) { return s.profile->autoArrangeOnLaunch; }}};
    for (const PreferenceSwitch& preference : kOtherSwitches) {
        methods.addSaved(preference.method, {"isOn"}, [&controller, &preference](const MethodCall& call) {
            return switchPreference(controller, call.parameters, preference);
        });
    }
}

} // namespace kova
