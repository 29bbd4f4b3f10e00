#include "workspace/PresentationRequests.h"

#include "workspace/Renaming.h"

namespace kova {

namespace {

void apply(ManagedWindow& window, WindowPresentation presentation) {
    if (presentation != WindowPresentation::hidden) window.isMinimized = presentation == WindowPresentation::minimized;
    window.isVisible = presentation == WindowPresentation::shown;
}

void apply(ManagedWindow& window, bool maximized) {
    window.isMaximized = maximized;
}

bool hasState(const ManagedWindow& window, WindowPresentation presentation) {
    const bool isMinimized =
        presentation == WindowPresentation::hidden ? window.isMinimized : presentation == WindowPresentation::minimized;
    return window.isMinimized == isMinimized && window.isVisible == (presentation == WindowPresentation::shown);
}

bool hasState(const ManagedWindow& window, bool maximized) {
    return window.isMaximized == maximized;
}

} // namespace

void PresentationRequests::request(ManagedWindow& window, WindowPresentation presentation, Seconds now) {
    apply(window, presentation);
    presentations_[window.id] = {presentation, now};
}

void PresentationRequests::requestMaximized(ManagedWindow& window, bool maximized, Seconds now) {
    apply(window, maximized);
    maximizations_[window.id] = {maximized, now};
}

template <class State>
void PresentationRequests::overrule(Requests<State>& requests, std::vector<ManagedWindow>& windows, Seconds begun) {
    if (requests.empty()) return;
    for (ManagedWindow& window : windows) {
        const auto found = requests.find(window.id);
        if (found == requests.end()) continue;
        const Request<State>& request = found->second;
        const bool isPollOlder = begun <= request.requestedAt; // the poll read the window before the request
        const bool hasTimedOut = begun >= request.requestedAt + kValidity;
        if (window.isElsewhere || (!isPollOlder && (hasTimedOut || hasState(window, request.state)))) {
            requests.erase(found);
        } else {
            apply(window, request.state);
        }
    }
    std::erase_if(requests, [&](const auto& entry) { return begun >= entry.second.requestedAt + kValidity; });
}

void PresentationRequests::overrule(std::vector<ManagedWindow>& windows, Seconds begun) {
    overrule(presentations_, windows, begun);
    overrule(maximizations_, windows, begun);
}

bool PresentationRequests::isShowRequested(const WindowID& windowID) const {
    const auto found = presentations_.find(windowID);
    return found != presentations_.end() && found->second.state == WindowPresentation::shown;
}

void PresentationRequests::rename(const WindowID& windowID, const WindowID& newID) {
    renameKey(presentations_, windowID, newID);
    renameKey(maximizations_, windowID, newID);
}

void PresentationRequests::clear() {
    presentations_.clear();
    maximizations_.clear();
}

} // namespace kova
