#include "platform/x11/KnownApplications.h"

#include "platform/x11/LocalProcesses.h"

#include <algorithm>

namespace kova::x11 {

namespace {

/// The class of KOVA's own windows: settings and launcher must not be tiled, and force quit must not list them.
constexpr std::string_view kOwnInterface = "kova-ui";

} // namespace

std::vector<ApplicationEvidence> evidenceIn(const WindowModel& model) {
    std::vector<ApplicationEvidence> found;
    std::unordered_map<pid_t, std::size_t> places;
    for (const xcb_window_t window : model.clientOrder()) {
        const ClientWindow* client = model.client(window);
        if (!client || client->processIdentifier == 0 || client->isInputOnly) continue;
        const auto [place, isNew] = places.try_emplace(client->processIdentifier, found.size());
        if (isNew) found.push_back({.processIdentifier = client->processIdentifier, .traces = {}});
        ApplicationEvidence& evidence = found[place->second];
        // The class of a managed window is preferred to that of a panel or palette.
        const bool tellsMore = evidence.traces.className.empty() || (client->isManaged() && !evidence.isRegular);
        if (tellsMore) evidence.traces = {client->instanceName, client->className, client->applicationID};
        evidence.isRegular |= client->isManaged() && client->className != kOwnInterface;
        evidence.drawsDesktop |= client->kind() == WindowKind::desktop || client->kind() == WindowKind::dock;
    }
    return found;
}

KnownApplications::KnownApplications(ApplicationCatalogue& catalogue) :
    catalogue_(catalogue), ownProcesses_(ownProcessAndAncestors()) {}

std::optional<X11Application> KnownApplications::find(pid_t process) const {
    const MutexLock lock(mutex_);
    const auto found = std::ranges::find(applications_, process, &X11Application::processIdentifier);
    return found == applications_.end() ? std::nullopt : std::optional(*found);
}

bool KnownApplications::contains(pid_t process) const {
    const MutexLock lock(mutex_);
    return std::ranges::find(applications_, process, &X11Application::processIdentifier) != applications_.end();
}

void KnownApplications::identify(const std::vector<ApplicationEvidence>& evidence, const std::string& windowManager) {
    std::vector<X11Application> identified;
    identified.reserve(evidence.size());
    for (const ApplicationEvidence& each : evidence) {
        auto identity = catalogue_.identify(each.traces); // reads the disk the first time
        const bool isPart = isPartOfDesktop(each, identity, windowManager);
        identified.push_back({each.processIdentifier, std::move(identity), each.isRegular, isPart});
    }
    const MutexLock lock(mutex_);
    applications_ = std::move(identified);
}

bool KnownApplications::isPartOfDesktop(const ApplicationEvidence& evidence, const ApplicationIdentity& identity,
                                        const std::string& windowManager) const {
    if (evidence.drawsDesktop || identity.isFileManager) return true;
    const pid_t process = evidence.processIdentifier;
    if (std::ranges::find(ownProcesses_, process) != ownProcesses_.end()) return true;
    return isDesktopProgram(programOf(process), windowManager);
}

} // namespace kova::x11
