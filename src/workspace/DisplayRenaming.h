// Finds displays whose id has changed. The id of some displays, such as those of virtual machines and monitors without
// identification, is made of the frame and changes with it.
#pragma once

#include "layout/WorkspaceProfile.h"

#include <map>
#include <set>
#include <string>

namespace kova {

/// Whether the display id is derived from the frame instead of the device.
bool isNamedByFrame(const DisplayID& displayID);

/// Matches disconnected displays to newly connected displays: the new ids, by former id. Only displays that are named
/// by their frame are matched. Two displays match if they have the same size and no other display of either set has it,
/// or if each is the only one of its set that is left.
std::map<DisplayID, DisplayID> matchRenamedDisplays(const std::set<DisplayID>& disconnected,
                                                    const std::set<DisplayID>& connected);

/// Copies the layout selection and the weights from one display to the other.
void copyDisplay(WorkspaceProfile& profile, const DisplayID& displayID, const DisplayID& otherID);
/// Erases the layout selection and the weights of the display.
void eraseDisplay(WorkspaceProfile& profile, const DisplayID& displayID);

} // namespace kova
