// Displays that are named by their frame, such as those of virtual machines and monitors without identification. Their
// id changes with the frame.
#pragma once

#include "layout/WorkspaceProfile.h"

#include <map>
#include <set>
#include <string>

namespace kova {

/// Whether the display id is derived from the frame instead of the device.
bool isNamedByFrame(const DisplayID& displayID);

/// Matches disconnected displays to new displays; the keys are the former ids. A disconnected and a new display match
/// if no other display of either set has their size, or if they are the last two without a match.
std::map<DisplayID, DisplayID> matchRenamedDisplays(const std::set<DisplayID>& disconnected,
                                                    const std::set<DisplayID>& connected);

/// Copies the chosen layout of the display, and its weights, to the other one.
void copyDisplay(WorkspaceProfile& profile, const DisplayID& displayID, const DisplayID& otherID);
void eraseDisplay(WorkspaceProfile& profile, const DisplayID& displayID);

} // namespace kova
