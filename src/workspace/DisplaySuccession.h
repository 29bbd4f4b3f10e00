// Displays that are named by their frame, and therefore have another id after every change of it: those of virtual
// machines, and monitors without identification.
#pragma once

#include "layout/WorkspaceProfile.h"

#include <map>
#include <set>
#include <string>

namespace kova {

/// Whether the display id is derived from the frame instead of the device.
bool isNamedByFrame(const DisplayID& displayID);

/// Matches disconnected displays to new ones; keys are the former ids. A pair matches if each is the only one of its
/// size, or if exactly one display remains on each side.
std::map<DisplayID, DisplayID> matchRenamedDisplays(const std::set<DisplayID>& gone, const std::set<DisplayID>& come);

/// Copies the chosen layout of the display, and its weights, to the other one.
void copyDisplay(WorkspaceProfile& profile, const DisplayID& displayID, const DisplayID& otherID);
void eraseDisplay(WorkspaceProfile& profile, const DisplayID& displayID);

} // namespace kova
