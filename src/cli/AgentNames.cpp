#include "cli/AgentNames.h"

#include "cli/Agent.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string_view>

namespace kova::cli {

namespace {

using nlohmann::json;

/// Short enough that the user does not notice how long the completion takes.
constexpr std::chrono::milliseconds kNamesTimeout{300};

std::string textOf(const json& value) {
    if (value.is_string()) return value.get<std::string>();
    return value.is_number_integer() ? std::to_string(value.get<std::int64_t>()) : "";
}

/// The list of records that the method's result has under `recordsKey`. Empty without an agent and after the timeout.
json recordsFrom(std::string_view method, const char* recordsKey) {
    auto agent = Agent::connect();
    if (!agent) return json::array();
    auto result = agent->ask(method, json::object(), kNamesTimeout);
    return result && result->contains(recordsKey) ? (*result)[recordsKey] : json::array();
}

std::vector<Candidate> namesFrom(std::string_view method, const char* recordsKey, const char* nameKey,
                                 const char* descriptionKey) {
    std::vector<Candidate> names;
    for (const json& record : recordsFrom(method, recordsKey)) {
        names.push_back({textOf(record.value(nameKey, json())), textOf(record.value(descriptionKey, json()))});
    }
    return names;
}

} // namespace

std::vector<Candidate> layoutNames() {
    auto names = namesFrom("layout.list", "layouts", "id", "name");
    // The part of a layout's id after the last dot is enough.
    for (Candidate& name : names) name.text.erase(0, name.text.rfind('.') + 1);
    return names;
}

std::vector<Candidate> layoutChoices() {
    auto choices = layoutNames();
    choices.push_back({"automatic", "the display's shape decides"});
    return choices;
}

std::vector<Candidate> windowNames() {
    const json windows = recordsFrom("query.windows", "windows");
    std::vector<Candidate> names;
    for (const json& window : windows) {
        // A window is named by its application, or by its title if the application has several windows.
        const auto hasSameApplication = [&](const json& other) {
            return other.at("application") == window.at("application");
        };
        const bool isOnlyWindow = std::count_if(windows.begin(), windows.end(), hasSameApplication) == 1;
        const std::string application = textOf(window.at("application"));
        const std::string title = textOf(window.at("title"));
        names.push_back(isOnlyWindow ? Candidate{application, title} : Candidate{title, application});
    }
    return names;
}

std::vector<Candidate> displayNames() {
    return namesFrom("query.displays", "displays", "name", "id");
}

std::vector<Candidate> tileNames() {
    return namesFrom("query.tiles", "tiles", "slot", "name");
}

std::vector<Candidate> splitNames() {
    return namesFrom("divider.list", "dividers", "split", "axis");
}

std::vector<Candidate> boundaryNames() {
    return namesFrom("divider.list", "dividers", "boundary", "split");
}

std::vector<Candidate> applicationNames() {
    return namesFrom("app.list", "applications", "id", "name");
}

std::vector<Candidate> learnedApplicationNames() {
    return namesFrom("app.learned", "applications", "name", "key");
}

std::vector<Candidate> sceneNames() {
    return namesFrom("scene.list", "scenes", "name", "createdAt");
}

std::vector<Candidate> ruleNames() {
    return namesFrom("rule.list", "rules", "name", "disposition");
}

std::vector<Candidate> themeNames() {
    return namesFrom("theme.list", "themes", "id", "displayName");
}

std::vector<Candidate> accentColorNames() {
    return namesFrom("accent.list", "accentColors", "id", "displayName");
}

std::vector<Candidate> shortcutActionNames() {
    return namesFrom("shortcut.list", "shortcuts", "action", "title");
}

} // namespace kova::cli
