#include "workspace/WorkspaceParts.h"

#include "workspace/PollContext.h"

#include <utility>

namespace kova {

WorkspaceParts::WorkspaceParts(const WorkspaceServices& servicesOfAgent, Callbacks callbacks) :
    services(servicesOfAgent), windowService(std::make_shared<AccessibilityWindowService>(
                                   services.accessibility, services.applications, services.screens, services.queue)),
    messages(services.queue, state), displays(services.queue, std::move(callbacks.displaysSettled)),
    pointer(services.queue, std::move(callbacks.moveDivider), std::move(callbacks.pollsResumed)),
    session(services.queue, services.preferences, std::move(callbacks.describeSession)),
    arranger(services.queue, services.preferences) {}

void WorkspaceParts::renameWindow(const WindowID& formerID, const WindowID& newID) {
    const auto rename = [&](auto& part) {
        if constexpr (requires { part.rename(formerID, newID); }) part.rename(formerID, newID);
    };
    std::apply([&](auto&... part) { (rename(part), ...); }, all());
}

void WorkspaceParts::renameDisplay(const DisplayID& formerID, const DisplayID& newID) {
    const auto rename = [&](auto& part) {
        if constexpr (requires { part.renameDisplay(formerID, newID); }) part.renameDisplay(formerID, newID);
    };
    std::apply([&](auto&... part) { (rename(part), ...); }, all());
}

void WorkspaceParts::onPoll() {
    const PollContext poll{liveWindows.all(), services.queue.uptime(),
                           [this](const WindowID& id) { return liveWindows.find(id) != nullptr; },
                           [this](const WindowID& id) { return windowService->pendingFrame(id).has_value(); }};
    const auto notify = [&](auto& part) {
        if constexpr (requires { part.onPoll(poll); }) part.onPoll(poll);
    };
    std::apply([&](auto&... part) { (notify(part), ...); }, all());
}

bool WorkspaceParts::isWaiting() const {
    const auto waits = [](const auto& part) {
        if constexpr (requires { part.isWaiting(); }) return part.isWaiting();
        return false;
    };
    return std::apply([&](const auto&... part) { return (waits(part) || ...); }, all());
}

} // namespace kova
