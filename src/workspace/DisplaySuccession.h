// Displays whose only name is their frame, and which therefore have another name after every change of it: virtual
// machines, and monitors without a name of their own.
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

/// The layout that was chosen for the display, and its weights, are those of the other one as well.
void copyDisplay(WorkspaceProfile& profile, const std::string& displayID, const std::string& otherID);
void eraseDisplay(WorkspaceProfile& profile, const std::string& displayID);

} // namespace kova
