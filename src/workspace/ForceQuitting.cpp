#include "workspace/ForceQuitting.h"

#include "support/text/Text.h"

#include <algorithm>

namespace kova {

namespace {

const BundleID kFileManagerOfTheMac = "com.apple.finder";

/// Puts the name on one line. A name of several lines would look like several applications in the list.
std::string onOneLine(std::string name) {
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return name;
}

} // namespace

bool isKeptOpen(const RunningApplication& application) {
    return application.isPartOfDesktop || application.bundleIdentifier == kFileManagerOfTheMac;
}

std::vector<RunningApplication> forceQuitCandidates(const std::vector<RunningApplication>& running,
                                                    pid_t ownProcessIdentifier) {
    std::vector<RunningApplication> candidates;
    std::copy_if(
        running.begin(), running.end(), std::back_inserter(candidates), [&](const RunningApplication& application) {
            return !application.isTerminated && application.processIdentifier != ownProcessIdentifier &&
                   application.activationPolicy == ApplicationActivationPolicy::regular && !isKeptOpen(application);
        });
    return candidates;
}

void sortByName(std::vector<RunningApplication>& applications) {
    std::stable_sort(applications.begin(), applications.end(),
                     [](const RunningApplication& a, const RunningApplication& b) {
                         if (!a.localizedName || !b.localizedName) return a.localizedName && !b.localizedName;
                         return localizedCaseInsensitiveCompare(*a.localizedName, *b.localizedName) < 0;
                     });
}

std::string displayedName(const RunningApplication& application) {
    return application.localizedName.value_or("Unknown Application");
}

std::string notForceQuitMessage(const std::string& applicationName, const std::string& reason) {
    return applicationName + " was not force quit: " + reason;
}

Alert noOpenApplicationsAlert() {
    return {.title = "No Open Applications",
            .text = "There are no regular applications to close. KOVA and Finder are always kept open.",
            .confirmButton = "OK",
            .cancelButton = {}};
}

Alert forceQuitAllAlert(std::span<const RunningApplication> candidates) {
    std::string text = "This immediately closes " + std::to_string(candidates.size()) +
                       " applications. Unsaved changes will be lost. KOVA and Finder will stay open.";
    std::vector<AlertApplication> listed;
    for (const auto& candidate : candidates)
        listed.push_back({onOneLine(displayedName(candidate)), candidate.bundleIdentifier.value_or("")});
    return {.title = "Force Quit All Open Applications?",
            .text = std::move(text),
            .confirmButton = "Force Quit All",
            .cancelButton = "Cancel",
            .applications = std::move(listed)};
}

} // namespace kova
