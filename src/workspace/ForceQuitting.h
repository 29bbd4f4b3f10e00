// The applications that "force quit all" ends, and its texts for the user.
#pragma once

#include "windowing/AlertServicing.h"
#include "windowing/ApplicationServicing.h"

#include <span>
#include <string>
#include <vector>

namespace kova {

/// Applications that belong to the desktop, such as the file manager; the message says that they stay open.
bool isKeptOpen(const RunningApplication& application);

/// The regular applications that run and are neither this program nor kept open, in their order.
std::vector<RunningApplication> forceQuitCandidates(const std::vector<RunningApplication>& running,
                                                    pid_t ownProcessIdentifier);
/// Sorted by name as people sort; those without one come last.
void sortByName(std::vector<RunningApplication>& applications);

/// The result for the applications that were to be ended by force.
struct ForceQuitOutcome {
    std::vector<RunningApplication> ended;
    std::vector<std::string> refusals; // a sentence for each that got no signal
};

/// The sentence for an application that was not ended; `reason` is a sentence without its end.
std::string notForceQuitMessage(const std::string& applicationName, const std::string& reason);

/// "Unknown Application" for one without a name.
std::string displayedName(const RunningApplication& application);

/// The message when there is nothing to end.
Alert noOpenApplicationsAlert();
/// The confirmation question.
Alert forceQuitAllAlert(std::span<const RunningApplication> candidates);

} // namespace kova
