#include "workspace/PresentationRequests.h"

namespace kova {

namespace {

void present(ManagedWindow& window, WindowPresentation presentation) {
    if (presentation != WindowPresentation::hidden) window.isMinimized = presentation == WindowPresentation::minimized;
    window.isVisible = presentation == WindowPresentation::shown;
}

bool isPresented(const ManagedWindow& window, WindowPresentation presentation) {
    ManagedWindow presented = window;
    present(presented, presentation);
    return presented.isMinimized == window.isMinimized && presented.isVisible == window.isVisible;
}

} // namespace

void PresentationRequests::request(ManagedWindow& window, WindowPresentation presentation, Seconds now) {
    present(window, presentation);
    requests_[window.id] = {presentation, now};
}

void PresentationRequests::overrule(std::vector<ManagedWindow>& windows, Seconds begun) {
    if (requests_.empty()) return;
    for (ManagedWindow& window : windows) {
        const auto found = requests_.find(window.id);
        if (found == requests_.end()) continue;
        const Request& request = found->second;
        const bool isOlder = begun <= request.requestedAt; // what the poll has read says nothing about the request
        const bool isTooOld = begun >= request.requestedAt + kValidity;
        if (window.isElsewhere || (!isOlder && (isTooOld || isPresented(window, request.presentation)))) {
            requests_.erase(found);
        } else {
            present(window, request.presentation);
        }
    }
    std::erase_if(requests_, [&](const auto& entry) { return begun >= entry.second.requestedAt + kValidity; });
}

bool PresentationRequests::isComingBack(const std::string& windowID) const {
    const auto found = requests_.find(windowID);
    return found != requests_.end() && found->second.presentation == WindowPresentation::shown;
}

void PresentationRequests::rename(const std::string& windowID, const std::string& newID) {
    if (auto request = requests_.extract(windowID)) {
        request.key() = newID;
        requests_.insert(std::move(request));
    }
}

} // namespace kova
