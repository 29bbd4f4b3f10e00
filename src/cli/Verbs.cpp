#include "cli/Verbs.h"

#include "cli/LayoutVerbTable.h"
#include "cli/SceneVerbTable.h"
#include "cli/SettingVerbTable.h"
#include "cli/WindowVerbTable.h"

#include <algorithm>
#include <array>

namespace kova::cli {

namespace {

/// The rows of all tables, in the order of the overview.
template <std::size_t... Counts>
constexpr auto joined(const std::array<Verb, Counts>&... tables) {
    std::array<Verb, (Counts + ...)> all{};
    std::size_t count = 0;
    const auto append = [&](const auto& table) {
        for (const Verb& verb : table) all.at(count++) = verb;
    };
    (append(tables), ...);
    return all;
}

constexpr std::array kVerbs = joined(kWindowVerbs, kLayoutVerbs, kSceneVerbs, kSettingVerbs);

constexpr std::string_view kIntroduction = "kova: puts the windows of a desktop into the tiles of a layout.\n"
                                           "\n"
                                           "usage: kova VERB [ARGUMENTS] [--json]\n"
                                           "\n";

constexpr std::string_view kClosing = "  help [VERB]          show this, or all about one verb\n"
                                      "\n"
                                      "  --json               print the agent's answer as JSON\n"
                                      "  --help               like help\n"
                                      "  --version            print the version\n"
                                      "\n"
                                      "Exit codes: 0 done, 1 refused, 2 wrong usage, 3 no agent, 4 no permission.\n";

std::string listed(const Verb& verb) {
    constexpr std::size_t kNameColumn = 21;
    std::string line = "  " + std::string(verb.name);
    line.append(line.size() < kNameColumn + 2 ? kNameColumn + 2 - line.size() : 1, ' ');
    return line + std::string(verb.summary) + "\n";
}

} // namespace

std::span<const Verb> verbs() {
    return kVerbs;
}

const Verb* verbNamed(std::string_view name) {
    const auto all = verbs();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Verb& verb) { return verb.name == name; });
    return found == all.end() ? nullptr : &*found;
}

std::string overview() {
    std::string text(kIntroduction);
    for (const Verb& verb : kVerbs) text += listed(verb);
    return text + std::string(kClosing);
}

std::string groupOverview(std::string_view group) {
    std::string text;
    for (const Verb& verb : kVerbs) {
        if (verb.name.starts_with(group) && verb.name.substr(group.size()).starts_with(' ')) text += listed(verb);
    }
    return text;
}

} // namespace kova::cli
