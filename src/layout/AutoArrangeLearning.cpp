#include "layout/AutoArrangeLearning.h"

#include "support/JsonDecoding.h"
#include "support/text/Text.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>
#include <utility>

namespace kova {

namespace {

using Words = std::span<const std::string_view>;

constexpr std::string_view kCodingAgentBundles[] = {"com.openai.codex", "com.todesktop.230313mzl4w4u92",
                                                    "com.anthropic.claudefordesktop", "com.anthropic.claude-code",
                                                    "com.anthropic.claudecode"};
constexpr std::string_view kCodingAgentBundleParts[] = {"codex", "cursor", "claude-code", "claudecode", "claude_code"};
constexpr std::string_view kCodingAgentNameParts[] = {"codex", "claude code", "cursor"};

constexpr std::string_view kBrowserBundles[] = {"com.apple.safari",         "com.google.chrome",
                                                "com.google.chrome.canary", "org.mozilla.firefox",
                                                "com.microsoft.edgemac",    "company.thebrowser.browser",
                                                "com.brave.browser",        "com.operasoftware.opera",
                                                "com.vivaldi.vivaldi",      "com.kagi.orion"};
constexpr std::string_view kBrowserNameParts[] = {"safari", "chrome", "firefox", "microsoft edge", "arc",
                                                  "brave",  "opera",  "vivaldi", "orion",          "zen browser"};

constexpr std::string_view kUtilityBundles[] = {
    "com.apple.systempreferences", "com.apple.activitymonitor", "com.apple.console",       "com.apple.diskutility",
    "com.apple.colorsyncutility",  "com.apple.fontbook",        "com.apple.keychainaccess"};
// Tools that are part of macOS, by their English and their German names.
constexpr std::string_view kUtilityNameParts[] = {"system settings",
                                                  "system preferences",
                                                  "systemeinstellungen",
                                                  "activity monitor",
                                                  "aktivitätsanzeige",
                                                  "console",
                                                  "konsole",
                                                  "disk utility",
                                                  "festplattendienstprogramm",
                                                  "colorsync utility",
                                                  "font book",
                                                  "schriftensammlung",
                                                  "keychain access",
                                                  "schlüsselbundverwaltung"};

constexpr std::string_view kProductivityBundleParts[] = {
    "xcode", "visualstudiocode", "vscode", "zed",      "sublime", "jetbrains",       "iterm",   "wezterm",
    "warp",  "terminal",         "notion", "obsidian", "slack",   "microsoft.teams", "discord", "mail",
    "notes", "calendar",         "pages",  "numbers",  "keynote", "figma",           "linear"};
constexpr std::string_view kProductivityNameParts[] = {
    "xcode",  "visual studio code", "code",  "terminal", "iterm",   "warp", "zed",   "sublime",  "android studio",
    "notion", "obsidian",           "slack", "teams",    "discord", "mail", "notes", "calendar", "figma",
    "linear"};

bool isOneOf(std::string_view text, Words words) {
    return std::find(words.begin(), words.end(), text) != words.end();
}

/// Searches for plain substrings, so that a word also matches within a longer name.
bool containsAny(std::string_view text, Words words) {
    return std::any_of(words.begin(), words.end(),
                       [text](std::string_view word) { return text.find(word) != std::string_view::npos; });
}

constexpr std::array<std::pair<std::string_view, std::string_view>, 8> kCanonicalSlotIDs{{
    {"focus-right-top", "secondary-1"},
    {"focus-utility", "secondary-3"},
    {"focus-right-bottom", "secondary-2"},
    {"ultrawide-left-top", "secondary-1"},
    {"ultrawide-left-bottom", "secondary-2"},
    {"ultrawide-center", "focus-main"},
    {"ultrawide-right-top", "secondary-3"},
    {"ultrawide-right-bottom", "secondary-4"},
}};

constexpr double kFadePerPlacement = 0.7;
constexpr double kForgottenWeight = 0.001;
constexpr double kOtherLayoutsShare = 0.5;

/// The weight that is used for a stored one: at most a habit, unless the user chose the slot; 0 for an invalid number.
double learnedWeight(double stored) {
    if (stored == AutoArrangeLearningModel::kUserWeight) return stored;
    return stored > 0 ? std::min(stored, AutoArrangeLearningModel::kHabitWeight) : 0;
}

} // namespace

std::string_view describe(AutoArrangeAppRole role) {
    switch (role) {
    case AutoArrangeAppRole::utility:
        return "utility";
    case AutoArrangeAppRole::other:
        return "other";
    case AutoArrangeAppRole::productivity:
        return "productivity";
    case AutoArrangeAppRole::browser:
        return "browser";
    case AutoArrangeAppRole::codingAgent:
        return "coding agent";
    }
    return "other";
}

AutoArrangeAppRole classifyApplication(std::string_view name, const std::optional<BundleID>& bundleIdentifier) {
    const std::string lowerName = lowercased(name);
    const std::string bundle = bundleIdentifier ? lowercased(bundleIdentifier->text()) : "";
    // If several roles match, the application has the one that is checked first.
    if (isOneOf(bundle, kCodingAgentBundles) || containsAny(bundle, kCodingAgentBundleParts) ||
        containsAny(lowerName, kCodingAgentNameParts)) {
        return AutoArrangeAppRole::codingAgent;
    }
    if (isOneOf(bundle, kBrowserBundles) || containsAny(lowerName, kBrowserNameParts)) {
        return AutoArrangeAppRole::browser;
    }
    if (isOneOf(bundle, kUtilityBundles) || containsAny(lowerName, kUtilityNameParts)) {
        return AutoArrangeAppRole::utility;
    }
    if (containsAny(bundle, kProductivityBundleParts) || containsAny(lowerName, kProductivityNameParts)) {
        return AutoArrangeAppRole::productivity;
    }
    return AutoArrangeAppRole::other;
}

std::string applicationKey(std::string_view name, const std::optional<BundleID>& bundleIdentifier) {
    if (bundleIdentifier && !bundleIdentifier->empty()) return lowercased(bundleIdentifier->text());
    return "name:" + lowercased(name);
}

std::string_view canonicalSlotID(const SlotID& slotID) {
    for (const auto& [id, canonical] : kCanonicalSlotIDs) {
        if (id == slotID.text()) return canonical;
    }
    return slotID.text();
}

double AutoArrangeLearningModel::preference(const std::string& layoutID, const std::string& applicationKey,
                                            const SlotID& slotID) const {
    double matchingHere = 0, totalHere = 0, matchingElsewhere = 0, totalElsewhere = 0;
    for (const auto& [id, layout] : layouts) {
        const auto application = layout.applications.find(applicationKey);
        if (application == layout.applications.end()) continue;
        for (const auto& [slot, stored] : application->second.slotWeights) {
            const double weight = learnedWeight(stored);
            if (weight < kHabitWeight) continue;
            if (id == layoutID) {
                totalHere += weight;
                if (slot == slotID) matchingHere += weight;
            } else {
                totalElsewhere += weight;
                if (canonicalSlotID(slot) == canonicalSlotID(slotID)) matchingElsewhere += weight;
            }
        }
    }
    if (totalHere > 0) return matchingHere / totalHere;
    return totalElsewhere > 0 ? kOtherLayoutsShare * matchingElsewhere / totalElsewhere : 0;
}

bool AutoArrangeLearningModel::isPlacedByUser(const std::string& layoutID, const std::string& applicationKey,
                                              const SlotID& slotID) const {
    const auto layout = layouts.find(layoutID);
    if (layout == layouts.end()) return false;
    const auto application = layout->second.applications.find(applicationKey);
    if (application == layout->second.applications.end()) return false;
    const auto slot = application->second.slotWeights.find(slotID);
    return slot != application->second.slotWeights.end() && slot->second == kUserWeight;
}

void AutoArrangeLearningModel::learnArrangement(const std::string& layoutID, const std::string& applicationKey,
                                                const std::set<SlotID>& slotIDs) {
    AppLearning& learning = layouts[layoutID].applications[applicationKey];
    for (auto& [slot, weight] : learning.slotWeights) {
        weight = learnedWeight(weight);
        if (!slotIDs.contains(slot) && weight != kUserWeight) weight *= kFadePerPlacement;
    }
    for (const auto& slot : slotIDs) {
        double& weight = learning.slotWeights[slot];
        if (weight < kHabitWeight) weight = std::min(weight + 1, kHabitWeight);
    }
    learning.forgetFaded();
    learning.count(slotIDs.size());
}

void AutoArrangeLearningModel::learnPlacementByUser(const std::string& layoutID, const std::string& applicationKey,
                                                    const SlotID& slotID) {
    AppLearning& learning = layouts[layoutID].applications[applicationKey];
    for (auto& [slot, weight] : learning.slotWeights) {
        weight = std::min(learnedWeight(weight), kHabitWeight) * kFadePerPlacement;
    }
    learning.slotWeights[slotID] = kUserWeight;
    learning.forgetFaded();
    learning.count(1);
}

void AutoArrangeLearningModel::forget(const std::string& applicationKey) {
    for (auto& [layoutID, layout] : layouts) layout.applications.erase(applicationKey);
}

void AutoArrangeLearningModel::AppLearning::forgetFaded() {
    std::erase_if(slotWeights, [](const auto& entry) { return entry.second < kForgottenWeight; });
}

void AutoArrangeLearningModel::AppLearning::count(std::size_t placements) {
    const auto more = static_cast<std::int64_t>(placements);
    placementCount =
        placementCount > std::numeric_limits<std::int64_t>::max() - more ? placementCount : placementCount + more;
}

std::string encodeLearningModel(const AutoArrangeLearningModel& model) {
    nlohmann::json layouts = nlohmann::json::object();
    for (const auto& [layoutID, layout] : model.layouts) {
        nlohmann::json applications = nlohmann::json::object();
        for (const auto& [key, learning] : layout.applications) {
            nlohmann::json slotWeights = nlohmann::json::object();
            for (const auto& [slot, weight] : learning.slotWeights) slotWeights[slot.text()] = learnedWeight(weight);
            applications[key] = {{"slotWeights", slotWeights}, {"placementCount", learning.placementCount}};
        }
        layouts[layoutID] = {{"applications", applications}};
    }
    return nlohmann::json{{"layouts", layouts}}.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

Decoded<AutoArrangeLearningModel> decodeLearningModel(std::string_view json) {
    return decodeJson(json, [](const JsonCursor& at) {
        AutoArrangeLearningModel model;
        for (const auto& [layoutID, layout] : at.required("layouts").members()) {
            auto& applications = model.layouts[layoutID].applications;
            for (const auto& [key, learning] : layout.required("applications").members()) {
                auto& application = applications[key];
                for (const auto& [slot, weight] : learning.required("slotWeights").members()) {
                    application.slotWeights[SlotID(slot)] = weight.number();
                }
                application.placementCount = learning.required("placementCount").integer();
            }
        }
        return model;
    });
}

} // namespace kova
