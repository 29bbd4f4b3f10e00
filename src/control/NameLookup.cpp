#include "control/NameLookup.h"

#include "control/Refusal.h"
#include "control/client/ControlCodes.h"
#include "support/Quoted.h"
#include "support/Spelling.h"
#include "support/text/Text.h"

#include <algorithm>
#include <charconv>
#include <set>

namespace kova {

namespace {

constexpr std::size_t kLongestQuotation = 80; // bytes
constexpr std::size_t kEndOfPlaces = 100;     // smaller numbers mean a place in a list

std::string quotedForMessage(std::string_view wanted) {
    return quoted(textForMessage(wanted));
}

ControlFailure failureWithChoices(std::string message, std::string_view wanted, std::span<const NamedThing> things,
                                  const std::vector<std::size_t>& listed) {
    nlohmann::json known = nlohmann::json::array();
    for (const std::size_t i : listed) {
        message += "\n  " + things[i].description;
        known.push_back(things[i].id);
    }
    return {controlCode::refused, std::move(message), {{"wanted", validUtf8(wanted)}, {"choices", std::move(known)}}};
}

/// The indexes of the things whose id or a name, in lower case, satisfies the predicate.
std::vector<std::size_t> matching(std::span<const NamedThing> things, const auto& predicate) {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i < things.size(); ++i) {
        const auto folded = [&](const std::string& name) { return predicate(lowercased(name)); };
        if (folded(things[i].id) || std::any_of(things[i].names.begin(), things[i].names.end(), folded)) {
            found.push_back(i);
        }
    }
    return found;
}

std::vector<std::size_t> everyIndex(std::size_t count) {
    std::vector<std::size_t> all(count);
    for (std::size_t i = 0; i < count; ++i) all[i] = i;
    return all;
}

std::string suggestionAmong(std::span<const NamedThing> things, std::string_view wanted) {
    std::vector<std::string> names;
    for (const NamedThing& thing : things) {
        for (const auto& name : thing.names) names.push_back(name);
        names.push_back(thing.id);
    }
    return suggestionFor(wanted, names);
}

ControlFailure notFound(std::string_view kind, std::string_view wanted, std::span<const NamedThing> things) {
    const std::string what(kind);
    const std::string none = "There is no " + what + " " + quotedForMessage(wanted);
    if (things.empty()) return failureWithChoices(none + "; there is no " + what + " at all", wanted, things, {});
    const std::string suggestion = suggestionAmong(things, wanted);
    const std::string message = none + (suggestion.empty() ? "." : suggestion) + " There is:";
    return failureWithChoices(message, wanted, things, everyIndex(things.size()));
}

} // namespace

std::string suggestionFor(std::string_view wanted, const std::vector<std::string>& names) {
    std::vector<std::string> folded;
    for (const auto& name : names) folded.push_back(lowercased(name));
    const auto nearest = nearestWord(lowercased(wanted.substr(0, kLongestQuotation)), folded);
    return nearest ? ". Did you mean " + quotedForMessage(names[*nearest]) + "?" : "";
}

std::string textForMessage(std::string_view wanted) {
    return validUtf8(wanted.substr(0, kLongestQuotation)) + (wanted.size() > kLongestQuotation ? "…" : "");
}

ControlResult<std::size_t> lookUp(std::string_view kind, std::string_view wanted, std::span<const NamedThing> things,
                                  Numbered numbered) {
    const auto exact =
        std::find_if(things.begin(), things.end(), [&](const auto& thing) { return thing.id == wanted; });
    if (exact != things.end()) return static_cast<std::size_t>(exact - things.begin());

    std::size_t number = 0;
    const auto [end, error] = std::from_chars(wanted.data(), wanted.data() + wanted.size(), number);
    const bool isNumber = error == std::errc{} && end == wanted.data() + wanted.size();
    if (numbered == Numbered::yes && isNumber && number >= 1 && number <= things.size()) return number - 1;

    const std::string folded = lowercased(wanted);
    auto found = matching(things, [&](const std::string& name) { return name == folded; });
    // A small number means a place in the list, never a part of an id: if there is only one display, “2” is an error.
    const bool isPlace = numbered == Numbered::yes && isNumber && number < kEndOfPlaces;
    if (found.empty() && !folded.empty() && !isPlace) {
        found = matching(things, [&](const std::string& name) { return name.find(folded) != std::string::npos; });
    }
    if (found.size() == 1) return found.front();

    const std::string what(kind);
    if (found.size() > 1) {
        return failureWithChoices(quotedForMessage(wanted) + " is the name of more than one " + what + ":", wanted,
                                  things, found);
    }
    return notFound(kind, wanted, things);
}

ControlResult<DisplayID> lookUpDisplay(const WorkspaceController& controller, std::string_view wanted) {
    std::vector<NamedThing> displays;
    for (const Screen& screen : *controller.state().screens) {
        const DisplayID id = displayID(screen);
        const std::string number = std::to_string(displays.size() + 1);
        displays.push_back(
            {id.text(), {screen.localizedName}, number + "  " + screen.localizedName + "  " + id.text()});
    }
    const auto found = lookUp("display", wanted, displays, Numbered::yes);
    if (!found) return found.error();
    return DisplayID(displays[*found].id);
}

ControlResult<DisplayID> wantedDisplay(const WorkspaceController& controller, const JsonCursor& parameters) {
    if (const auto named = parameters.optional("display")) return lookUpDisplay(controller, named->string());
    if (auto current = controller.currentDisplayID()) return *std::move(current);
    return refusal("No display is connected");
}

ControlResult<TileSlot> lookUpSlot(const WorkspaceController& controller, const DisplayID& displayID,
                                   std::string_view wanted) {
    const LayoutDefinition* layout = controller.resolvedLayout(displayID);
    if (!layout) return refusal("The display is no longer connected");
    std::vector<NamedThing> tiles;
    for (const TileSlot& slot : layout->slots) {
        const std::string number = std::to_string(tiles.size() + 1);
        tiles.push_back({slot.id.text(), {slot.name}, number + "  " + slot.name + "  " + slot.id.text()});
    }
    const auto found = lookUp("tile", wanted, tiles, Numbered::yes);
    if (!found) return found.error();
    return layout->slots[*found];
}

ControlResult<SlotID> lookUpSlotOfAnyLayout(const WorkspaceController& controller, const std::string& wanted) {
    for (const LayoutDefinition& layout : controller.catalogue()) {
        for (const TileSlot& slot : layout.slots) {
            if (slot.id.text() == wanted) return slot.id;
        }
    }
    const auto display = controller.currentDisplayID();
    if (!display) return refusal("No display is connected");
    const auto slot = lookUpSlot(controller, *display, wanted);
    if (!slot) return slot.error();
    return slot->id;
}

ControlResult<std::string> lookUpLayout(const WorkspaceController& controller, std::string_view wanted) {
    if (findLayout(controller.catalogue(), std::string(wanted))) return std::string(wanted);
    std::vector<NamedThing> layouts;
    for (const LayoutDefinition& layout : controller.catalogue()) {
        // “six-grid” means jarvis.six-grid, although the names of other layouts begin with it, too.
        const std::string lastComponent = layout.id.substr(layout.id.rfind('.') + 1);
        layouts.push_back({layout.id, {layout.name, lastComponent}, layout.id + "  " + layout.name});
    }
    const auto found = lookUp("layout", wanted, layouts, Numbered::no);
    if (!found) return found.error();
    return layouts[*found].id;
}

ControlResult<ManagedWindow> lookUpWindow(const WorkspaceController& controller, std::string_view wanted) {
    std::vector<NamedThing> windows;
    for (const ManagedWindow& window : controller.liveWindows()) {
        windows.push_back({window.id.text(),
                           {window.applicationName, window.title},
                           window.id.text() + "  " + window.applicationName + "  " + window.title});
    }
    const auto found = lookUp("window", wanted, windows, Numbered::no);
    if (!found) return found.error();
    return controller.liveWindows()[*found];
}

ControlResult<ManagedWindow> lookUpWindowOfApplication(const WorkspaceController& controller, std::string_view wanted) {
    std::vector<NamedThing> applications; // one for each process, with the id of its first window
    std::vector<pid_t> processes;
    for (const ManagedWindow& window : controller.liveWindows()) {
        if (window.id.text() == wanted) return window;
        const auto known = std::find(processes.begin(), processes.end(), window.processIdentifier);
        if (known != processes.end()) {
            applications[static_cast<std::size_t>(known - processes.begin())].names.push_back(window.title);
            continue;
        }
        processes.push_back(window.processIdentifier);
        applications.push_back({window.id.text(),
                                {window.applicationName, window.title},
                                window.id.text() + "  " + window.applicationName + "  " + window.title});
    }
    const auto found = lookUp("window", wanted, applications, Numbered::no);
    if (!found) return found.error();
    return lookUpWindow(controller, applications[*found].id);
}

ControlResult<ManagedWindow> lookUpWindowOrDialog(const WorkspaceController& controller, std::string_view wanted) {
    auto found = lookUpWindow(controller, wanted);
    if (found) return found;
    std::vector<NamedThing> dialogs;
    for (const ManagedWindow& dialog : controller.dialogs().all()) {
        dialogs.push_back({dialog.id.text(), {dialog.title}, dialog.id.text() + "  " + dialog.title});
    }
    const auto dialog = lookUp("window", wanted, dialogs, Numbered::no);
    if (dialog) return controller.dialogs().all()[*dialog];
    return found;
}

const UnmanagedWindow* findUnmanagedWindow(const WorkspaceController& controller, std::string_view wanted) {
    std::vector<NamedThing> windows;
    for (const UnmanagedWindow& window : controller.unmanagedWindows()) {
        windows.push_back({window.id.text(), {window.applicationName, window.title}, window.id.text()});
    }
    const auto found = lookUp("window", wanted, windows, Numbered::no);
    return found ? &controller.unmanagedWindows()[*found] : nullptr;
}

ControlResult<WorkspaceScene> lookUpScene(const WorkspaceController& controller, std::string_view wanted) {
    const auto& scenes = *controller.state().scenes;
    auto id = controller.findScene(std::string(wanted));
    if (!id) id = Uuid::parse(wanted);
    const auto found = std::find_if(scenes.begin(), scenes.end(), [&](const auto& scene) { return scene.id == id; });
    if (found != scenes.end()) return *found;
    std::vector<NamedThing> things;
    for (const auto& scene : scenes) {
        things.push_back({scene.id.string(), {scene.name}, scene.name + "  " + scene.id.string()});
    }
    return notFound("scene", wanted, things);
}

ControlResult<std::size_t> lookUpRule(const WorkspaceController& controller, std::string_view wanted) {
    std::vector<NamedThing> rules;
    for (const auto& rule : *controller.state().rules) {
        rules.push_back({rule.id.string(), {rule.name}, std::to_string(rules.size() + 1) + "  " + rule.name});
    }
    return lookUp("rule", wanted, rules, Numbered::yes);
}

ControlResult<NamedApplication> lookUpApplicationForRule(const WorkspaceController& controller,
                                                         std::string_view wanted) {
    std::vector<NamedApplication> applications;
    std::vector<NamedThing> things;
    std::set<std::string> ids;
    const auto add = [&](const std::string& name, const std::optional<BundleID>& bundleIdentifier) {
        const std::string id = bundleIdentifier ? bundleIdentifier->text() : name;
        if (!ids.insert(id).second) return;
        applications.push_back({name, bundleIdentifier});
        things.push_back({id, {name}, id + "  " + name});
    };
    for (const auto& window : controller.liveWindows()) add(window.applicationName, window.bundleIdentifier);
    for (const auto& each : controller.launchableApplications()) {
        if (each.bundleIdentifier) add(each.name, each.bundleIdentifier);
    }
    const auto found = lookUp("application", wanted, things, Numbered::no);
    if (found) return applications[*found];
    if (const auto hidden = controller.launchableApplication(BundleID(wanted)); hidden && hidden->bundleIdentifier) {
        return NamedApplication{hidden->name, hidden->bundleIdentifier};
    }
    return found.error();
}

} // namespace kova
