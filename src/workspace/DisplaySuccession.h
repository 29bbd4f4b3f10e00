// Displays that are named by their frame, and therefore have another id after every change of it: those of virtual
// machines, and monitors without identification.
#pragma once

#include "layout/WorkspaceProfile.h"

#include <map>
#include <set>
#include <string>

namespace kova {

/// Whether the display id is derived from the frame instead of the device.
bool isNamedByFrame(const std::string& displayID);

/// Matches disconnected displays to new ones; keys are the former ids. A pair matches if each is the only one of its
/// size, or if exactly one display remains on each side.
std::map<std::string, std::string> successorsOfDisplays(const std::set<std::string>& gone,
                                                        const std::set<std::string>& come);

/// Copies the chosen layout of the display, and its weights, to the other one.
void copyDisplay(WorkspaceProfile& profile, const std::string& displayID, const std::string& otherID);
void eraseDisplay(WorkspaceProfile& profile, const std::string& displayID);

} // namespace kova
