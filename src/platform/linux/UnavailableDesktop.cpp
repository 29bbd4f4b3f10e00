#include "platform/linux/UnavailableDesktop.h"

#include <unistd.h>

namespace kova {

AccessibilityElement UnavailableDesktop::applicationElement(pid_t processIdentifier) const {
    return {.processIdentifier = processIdentifier, .hash = 0, .object = nullptr};
}

std::vector<AttributeValue>
UnavailableDesktop::readAttributes(const AccessibilityElement&,
                                   std::span<const AccessibilityAttribute> attributes) const {
    return std::vector<AttributeValue>(attributes.size());
}

pid_t UnavailableDesktop::ownProcessIdentifier() const {
    return getpid();
}

void UnavailableDesktop::launch(const LaunchableApplication& application, LaunchActivation,
                                LaunchCompletion completion) {
    queue_.post([text = application.name + " cannot be launched here", completion = std::move(completion)] {
        completion({.error = text, .processIdentifier = std::nullopt});
    });
}

std::vector<DiagnosticLine> UnavailableDesktop::diagnose() const {
    return {{"connection", DiagnosticVerdict::wrong, reason_}};
}

} // namespace kova
