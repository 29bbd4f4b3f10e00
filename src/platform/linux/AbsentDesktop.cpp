#include "platform/linux/AbsentDesktop.h"

#include <unistd.h>

namespace kova {

AccessibilityElement AbsentDesktop::applicationElement(pid_t processIdentifier) const {
    return {.processIdentifier = processIdentifier, .hash = 0, .object = nullptr};
}

std::vector<AttributeValue> AbsentDesktop::readAttributes(const AccessibilityElement&,
                                                          std::span<const AccessibilityAttribute> attributes) const {
    return std::vector<AttributeValue>(attributes.size());
}

pid_t AbsentDesktop::ownProcessIdentifier() const {
    return getpid();
}

void AbsentDesktop::launch(const LaunchableApplication& application, LaunchActivation, LaunchCompletion completion) {
    queue_.post([text = application.name + " cannot be launched here", completion = std::move(completion)] {
        completion({.error = text, .processIdentifier = std::nullopt});
    });
}

std::vector<DiagnosticLine> AbsentDesktop::diagnose() const {
    return {{"connection", DiagnosticVerdict::wrong, reason_}};
}

} // namespace kova
