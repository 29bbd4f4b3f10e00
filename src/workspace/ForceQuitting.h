// Chooses the applications that "force quit all" ends, and words its texts for the user.
#pragma once

#include "windowing/AlertServicing.h"
#include "windowing/ApplicationServicing.h"

#include <span>
#include <string>
#include <vector>

namespace kova {

/// Whether the application is part of the desktop, as the file manager is. Such an application is never ended, as the
/// confirmation question says.
bool isKeptOpen(const RunningApplication& application);

/// The regular applications in `running`, in the same order. Leaves out this program and applications that are kept
/// open.
std::vector<RunningApplication> forceQuitCandidates(const std::vector<RunningApplication>& running,
                                                    pid_t ownProcessIdentifier);
/// Sorts by name without regard to case; applications without a name come last.
void sortByName(std::vector<RunningApplication>& applications);

struct ForceQuitOutcome {
    std::vector<RunningApplication> ended;
    std::vector<std::string> refusals; // one sentence for each application that was not ended
};

/// The message for an application that was not ended. `reason` is a sentence without its full stop.
std::string notForceQuitMessage(const std::string& applicationName, const std::string& reason);

/// The application's name, or "Unknown Application" if it has none.
std::string displayedName(const RunningApplication& application);

/// The message when there is no application to end.
Alert noOpenApplicationsAlert();
/// The question whether the candidates may be ended.
Alert forceQuitAllAlert(std::span<const RunningApplication> candidates);

} // namespace kova
