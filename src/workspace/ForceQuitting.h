// Chooses the applications that "force quit all" ends, and words its texts for the user.
#pragma once

#include "windowing/AlertServicing.h"
#include "windowing/ApplicationServicing.h"

#include <span>
#include <string>
#include <vector>

namespace kova {

/// Whether the application belongs to the desktop, such as the file manager. The confirmation says that it stays open.
bool isKeptOpen(const RunningApplication& application);

/// The running regular applications in their order, except this program and those that are kept open.
std::vector<RunningApplication> forceQuitCandidates(const std::vector<RunningApplication>& running,
                                                    pid_t ownProcessIdentifier);
/// Sorts by name without regard to case; applications without a name come last.
void sortByName(std::vector<RunningApplication>& applications);

struct ForceQuitOutcome {
    std::vector<RunningApplication> ended;
    std::vector<std::string> refusals; // one sentence for each application that was not ended
};

/// The sentence for an application that was not ended; `reason` is a sentence without its full stop.
std::string notForceQuitMessage(const std::string& applicationName, const std::string& reason);

/// The name, or "Unknown Application" without one.
std::string displayedName(const RunningApplication& application);

/// The message when there is nothing to end.
Alert noOpenApplicationsAlert();
/// The confirmation question.
Alert forceQuitAllAlert(std::span<const RunningApplication> candidates);

} // namespace kova
