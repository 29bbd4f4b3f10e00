// Displays whose only name is their frame, and which therefore have another name after every change of it: virtual
// machines, and monitors that say nothing of themselves.
#pragma once

#include "layout/WorkspaceProfile.h"

#include <map>
#include <set>
#include <string>

namespace kova {

/// Whether the display id tells a frame rather than a device.
bool isNamedByFrame(const std::string& displayID);

/// Which of the displays that came is which of those that went, by the ids of the latter: the one of the same size,
/// where there is one on either side only; and then the one that is left, where one is left on either side.
std::map<std::string, std::string> successorsOfDisplays(const std::set<std::string>& gone,
                                                        const std::set<std::string>& come);

/// The layout that was chosen for the display, and its weights, are those of the other one as well.
void copyDisplay(WorkspaceProfile& profile, const std::string& displayID, const std::string& otherID);
void eraseDisplay(WorkspaceProfile& profile, const std::string& displayID);

} // namespace kova
