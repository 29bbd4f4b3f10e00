#include "control/ApplicationMethods.h"

#include "control/JsonRpc.h"
#include "control/LaunchCounts.h"
#include "control/MethodTable.h"
#include "control/NameLookup.h"
#include "control/Refusal.h"
#include "control/WindowCommandMethods.h"
#include "workspace/ForceQuitting.h"
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <memory>

namespace kova {

namespace {

using nlohmann::json;

json idAndName(const LaunchableApplication& application) {
    return {{"id", application.identifier}, {"name", application.name}};
}

/// Finds an application that menus show by its id or name, and an application that menus do not show only by its id.
ControlResult<LaunchableApplication> lookUpApplication(const WorkspaceController& controller,
                                                       const std::string& wanted) {
    const auto applications = controller.launchableApplications();
    std::vector<NamedThing> things;
    for (const auto& application : applications) {
        things.push_back(
            {application.identifier, {application.name}, application.identifier + "  " + application.name});
    }
    const auto found = lookUp("application", wanted, things, Numbered::no);
    if (found) return applications[*found];
    if (auto hidden = controller.launchableApplication(BundleID(wanted))) return *std::move(hidden);
    return found.error();
}

/// Process id, name and bundle identifier: if the process id is reused for another application, the others differ.
json identityOf(const RunningApplication& application) {
    return {{"process", application.processIdentifier},
            {"name", orNull(application.localizedName)},
            {"bundleIdentifier", orNull(application.bundleIdentifier)}};
}

json identitiesOf(const std::vector<RunningApplication>& applications) {
    json out = json::array();
    for (const auto& application : applications) out.push_back(identityOf(application));
    return out;
}

/// The `candidates` that the client listed in “confirmed”.
std::vector<RunningApplication> confirmedAmong(const std::vector<RunningApplication>& candidates,
                                               const JsonCursor& confirmed) {
    std::vector<RunningApplication> chosen;
    for (const JsonCursor& element : confirmed.elements()) {
        (void)element.required("process").integer();
        const auto found = std::find_if(candidates.begin(), candidates.end(), [&](const auto& candidate) {
            return identityOf(candidate) == element.value();
        });
        if (found != candidates.end()) chosen.push_back(*found);
    }
    return chosen;
}

ControlReply listApplications(const WorkspaceController& controller, const LaunchCounts& counts) {
    json applications = json::array();
    for (const auto& application : controller.launchableApplications()) {
        applications.push_back({{"id", application.identifier},
                                {"name", application.name},
                                {"bundleIdentifier", orNull(application.bundleIdentifier)},
                                {"location", application.location},
                                {"icon", application.icon.name.empty() ? json(nullptr) : json(application.icon.name)},
                                {"launches", counts.of(application.identifier)}});
    }
    return json{{"applications", std::move(applications)}};
}

/// Starts the launch and counts it. The client gets a “launched” notification once the launch has succeeded or failed.
ControlReply launchIntoTile(WorkspaceController& controller, LaunchCounts& counts, const JsonCursor& parameters,
                            const std::shared_ptr<ControlPeer>& peer) {
    const std::string wantedApplication = parameters.required("application").string();
    const auto named = wantedTile(controller, parameters, parameters.required("tile").string(), std::nullopt);
    if (!named) return named.error();
    const auto& target = *named;
    const auto tiles = controller.tiles();
    const auto tile = std::ranges::find(tiles, target, &WorkspaceTile::target);
    if (tile == tiles.end()) return refusal("There is no such tile any more");
    const auto found = lookUpApplication(controller, wantedApplication);
    if (!found) return found.error();

    const auto& application = *found;
    const auto notify = [peer = std::weak_ptr(peer), application = idAndName(application),
                         target](const LaunchResult& launched) {
        const auto client = peer.lock();
        if (!client) return;
        const json process = launched.processIdentifier ? json(*launched.processIdentifier) : json(nullptr);
        client->send(jsonrpc::line(jsonrpc::notification("launched", {{"application", application},
                                                                      {"tile", target},
                                                                      {"process", process},
                                                                      {"error", orNull(launched.error)}})));
    };
    const auto outcome =
        controller.perform(action::LaunchApplication{application, tile->displayID, tile->slot.id, notify});
    if (!outcome) return failureOf(outcome);
    counts.countLaunch(application.identifier);
    return json{{"application", idAndName(application)},
                {"display", tile->displayID},
                {"tile", {{"id", target}, {"name", tile->slot.name}}}};
}

enum class Ending { quit, forceQuit };

ControlReply endApplication(WorkspaceController& controller, const JsonCursor& parameters, Ending ending) {
    if (auto failure = permissionFailure(controller)) return *failure;
    const auto found = lookUpWindowOfApplication(controller, parameters.required("window").string());
    if (!found) return found.error();
    const auto& window = *found;
    const auto outcome = ending == Ending::quit ? controller.perform(action::QuitApplication{window.id})
                                                : controller.perform(action::ForceQuitApplication{window.id});
    if (!outcome) return failureOf(outcome);
    return json{{"window", window.id},
                {"application", window.applicationName},
                {"process", window.processIdentifier},
                {"message", orNull(outcome.message())}};
}

/// Force quits the applications in "confirmed". Without that parameter, returns the question with which the
/// client asks the user for confirmation.
ControlReply forceQuitAll(WorkspaceController& controller, const JsonCursor& parameters) {
    const auto candidates = controller.regularApplicationsToForceQuit();
    const auto confirmed = parameters.optional("confirmed");
    if (!confirmed) {
        const Alert alert = candidates.empty() ? noOpenApplicationsAlert() : forceQuitAllAlert(candidates);
        return json{{"isDone", false},
                    {"question",
                     {{"title", alert.title}, {"text", textWithApplications(alert)}, {"confirm", alert.confirmButton}}},
                    {"applications", identitiesOf(candidates)},
                    {"refused", json::array()}};
    }
    const auto chosen = confirmedAmong(candidates, *confirmed);
    const auto performed = controller.perform(action::ForceQuit{chosen});
    const ForceQuitOutcome& outcome = *performed.details<ForceQuitOutcome>();
    if (outcome.ended.empty()) {
        auto failure = refusal(controller, "No open applications were force quit");
        for (const std::string& refusal : outcome.refusals) failure.message += "\n" + refusal;
        return failure;
    }
    return json{{"isDone", true},
                {"question", nullptr},
                {"applications", identitiesOf(outcome.ended)},
                {"refused", outcome.refusals}};
}

} // namespace

void addApplicationMethods(MethodTable& methods, WorkspaceController& controller, LaunchCounts& launches) {
    methods.add("launch", {"application", "tile", "display"}, [&controller, &launches](const MethodCall& call) {
        return launchIntoTile(controller, launches, call.parameters, call.peer);
    });
    methods.add("app.list", {},
                [&controller, &launches](const MethodCall&) { return listApplications(controller, launches); });
    methods.add("app.quit", {"window"}, [&controller](const MethodCall& call) {
        return endApplication(controller, call.parameters, Ending::quit);
    });
    methods.add("app.forceQuit", {"window"}, [&controller](const MethodCall& call) {
        return endApplication(controller, call.parameters, Ending::forceQuit);
    });
    methods.add("forceQuitAll", {"confirmed"},
                [&controller](const MethodCall& call) { return forceQuitAll(controller, call.parameters); });
}

} // namespace kova
