#include "workspace/WorkspaceParts.h"

#include "workspace/PollContext.h"

#include <utility>

namespace kova {

WorkspaceParts::WorkspaceParts(const WorkspaceServices& servicesOfAgent, Callbacks callbacks) :
    services(servicesOfAgent), changeNotifications(std::make_shared<ChangeNotifications>(services.changes)),
    windowService(std::make_shared<AccessibilityWindowService>(services.accessibility, services.applications,
                                                               services.screens, changeNotifications, services.queue)),
    requests(services.accessibility), messages(services.queue, state, undo),
    displays(services.queue, std::move(callbacks.displaysSettled)),
    pointer(services.queue, std::move(callbacks.moveDivider), std::move(callbacks.pollsResumed)),
    session(services.queue, services.preferences, std::move(callbacks.describeSession)),
    arrangementMemory(services.queue, services.preferences) {}

void WorkspaceParts::renameWindow(const WindowID& formerID, const WindowID& newID) {
    assignments.rename(formerID, newID);
    std::apply([&](WorkspacePart auto&... part) { (part.rename(formerID, newID), ...); }, all(*this));
}

void WorkspaceParts::renameDisplay(const DisplayID& formerID, const DisplayID& newID) {
    assignments.renameDisplay(formerID, newID);
    std::apply([&](WorkspacePart auto&... part) { (part.renameDisplay(formerID, newID), ...); }, all(*this));
}

void WorkspaceParts::forgetPlaces() {
    session.dropStored(); // if the first poll restored the session, this would displace the scene's windows
    arrangementMemory.skipStartupArrangement();
    displays.forgetAllWindows();
    tileMemory.forgetRememberedLayouts();
    recovery.clear();
}

void WorkspaceParts::onPoll() {
    const PollContext poll{liveWindows.all(), services.queue.uptime(),
                           [this](const WindowID& id) { return liveWindows.find(id) != nullptr; },
                           [this](const WindowID& id) { return windowService->pendingFrame(id).has_value(); }};
    std::apply([&](WorkspacePart auto&... part) { (part.onPoll(poll), ...); }, all(*this));
}

bool WorkspaceParts::isWaiting() const {
    return std::apply([](const auto&... part) { return (part.isWaiting() || ...); }, all(*this));
}

} // namespace kova
