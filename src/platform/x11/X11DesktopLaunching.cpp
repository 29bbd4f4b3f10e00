// Starting applications and ending them.
#include "platform/x11/X11Parts.h"

namespace kova {

std::vector<LaunchableApplication> X11Desktop::launchableApplications() const {
    return {};
}

std::optional<LaunchableApplication> X11Desktop::launchableApplication(const std::string&) const {
    return std::nullopt;
}

void X11Desktop::launch(const LaunchableApplication& application, LaunchActivation, LaunchCompletion completion) {
    parts_->queue.post([text = application.name + " cannot be launched here", completion = std::move(completion)] {
        completion({.error = text, .processIdentifier = std::nullopt});
    });
}

bool X11Desktop::terminate(pid_t) {
    return false;
}

bool X11Desktop::forceTerminate(pid_t) {
    return false;
}

} // namespace kova
