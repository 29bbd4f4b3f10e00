#include "control/LearningMethods.h"

#include "control/ControlRecords.h"
#include "control/MethodTable.h"
#include "control/NameLookup.h"
#include "control/Refusal.h"
#include "control/client/ControlCodes.h"
#include "layout/AutoArrangeLearning.h"
#include "layout/SlotNames.h"
#include "support/text/Text.h"

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kova {

namespace {

using nlohmann::json;

constexpr std::string_view kNamePrefix = "name:";

struct KnownApplication {
    std::string name;
    json places = json::array();
    json preferredSlots = json::array(), preferredTiles = json::array();
};

/// Finds the name of an application by its key: the name of its windows' application, else that of the installed
/// application, else the key.
class ApplicationNames {
  public:
    explicit ApplicationNames(const WorkspaceController& controller) : controller_(controller) {
        for (const auto& window : controller.liveWindows()) {
            names_.try_emplace(applicationKey(window.applicationName, window.bundleIdentifier), window.applicationName);
        }
    }
    std::string of(const std::string& key) {
        if (const auto found = names_.find(key); found != names_.end()) return found->second;
        if (!std::exchange(hasReadInstalled_, true)) {
            for (const auto& each : controller_.launchableApplications()) {
                names_.try_emplace(applicationKey(each.name, each.bundleIdentifier), each.name);
            }
        }
        const auto found = names_.find(key);
        if (found != names_.end()) return found->second;
        return key.starts_with(kNamePrefix) ? key.substr(kNamePrefix.size()) : key;
    }

  private:
    const WorkspaceController& controller_;
    std::map<std::string, std::string> names_; // by application key
    bool hasReadInstalled_ = false;            // installed applications are read only if no window has a searched key
};

json nameOfSlot(const LayoutDefinition* layout, const SlotID& slotID) {
    if (!layout) return nullptr;
    const auto slot = std::ranges::find(layout->slots, slotID, &TileSlot::id);
    return slot == layout->slots.end() ? json(nullptr) : json(slot->name);
}

std::map<std::string, KnownApplication> knownApplications(const WorkspaceController& controller) {
    const AutoArrangeLearningModel& learning = **controller.learning();
    const WorkspaceProfile& profile = *controller.state().profile;
    std::map<std::string, KnownApplication> known; // by application key
    for (const auto& [layoutID, layout] : learning.layouts) {
        const LayoutDefinition* definition = findLayout(controller.catalogue(), layoutID);
        for (const auto& [key, learned] : layout.applications) {
            for (const auto& [slotID, weight] : learned.slotWeights) {
                known[key].places.push_back(
                    {{"layout", {{"id", layoutID}, {"name", definition ? definition->name : layoutID}}},
                     {"slot", slotID},
                     {"name", nameOfSlot(definition, slotID)},
                     {"isUsual", weight >= AutoArrangeLearningModel::kHabitWeight},
                     {"isByUser", learning.isPlacedByUser(layoutID, key, slotID)}});
            }
        }
    }
    for (const auto& [key, minimum] : profile.applicationMinimumSizes) (void)known[key];
    for (const auto& [slotID, key] : profile.preferredApplications) {
        known[key].preferredSlots.push_back(slotID);
        known[key].preferredTiles.push_back(slotName(controller.catalogue(), slotID));
    }
    return known;
}

/// Lists the applications for which KOVA has learned data or the user preferred a slot, sorted by name.
ControlReply listLearned(const WorkspaceController& controller) {
    auto known = knownApplications(controller);
    ApplicationNames names(controller);
    for (auto& [key, application] : known) application.name = names.of(key);
    std::vector<std::pair<std::string, KnownApplication>> sorted(known.begin(), known.end());
    std::ranges::stable_sort(sorted, [](const auto& a, const auto& b) {
        return localizedCaseInsensitiveCompare(a.second.name, b.second.name) < 0;
    });
    const auto& minimums = controller.state().profile->applicationMinimumSizes;
    json applications = json::array();
    for (auto& [key, application] : sorted) {
        const bool hasIdentifier = !key.starts_with(kNamePrefix);
        const auto role =
            classifyApplication(application.name, hasIdentifier ? std::optional(BundleID(key)) : std::nullopt);
        const auto minimum = minimums.find(key);
        applications.push_back(
            {{"key", key},
             {"name", application.name},
             {"role", describe(role)},
             {"minimumSize", minimum == minimums.end() ? json(nullptr) : controlRecord::size(minimum->second)},
             {"places", std::move(application.places)},
             {"preferredSlots", std::move(application.preferredSlots)},
             {"preferredTiles", std::move(application.preferredTiles)}});
    }
    return json{{"applications", std::move(applications)}};
}

ControlReply forgetApplication(WorkspaceController& controller, const JsonCursor& parameters) {
    const std::string wanted = parameters.required("application").string();
    const Outcome outcome = controller.perform(action::ForgetApplication{wanted});
    const auto* forgotten = outcome.details<ForgottenApplications>();
    if (!forgotten) {
        ApplicationNames names(controller);
        std::vector<std::string> known;
        for (const auto& [key, application] : knownApplications(controller)) known.push_back(names.of(key));
        return ControlFailure{
            controlCode::refused, outcome.message().value_or("") + suggestionFor(wanted, known), {{"choices", known}}};
    }
    std::string names;
    for (const auto& name : forgotten->names) names += (names.empty() ? "" : ", ") + name;
    return json{{"applications", forgotten->names}, {"message", "Forgot the minimum sizes and tiles of " + names}};
}

} // namespace

void addLearningMethods(MethodTable& methods, WorkspaceController& controller) {
    methods.add("app.learned", {}, [&controller](const MethodCall&) { return listLearned(controller); });
    methods.addSaved("app.forget", {"application"},
                     [&controller](const MethodCall& call) { return forgetApplication(controller, call.parameters); });
}

} // namespace kova
