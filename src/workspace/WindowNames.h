// The names of windows in texts for the user.
#pragma once

#include "persistence/WorkspaceProductDocument.h"
#include "support/Quoted.h"
#include "windowing/ManagedWindow.h"

#include <string>

namespace kova {

/// For example "Mail “Inbox”", or "Mail" for a window without a title.
inline std::string nameOf(const ManagedWindow& window) {
    return window.title.empty() ? window.applicationName : window.applicationName + " " + quoted(window.title);
}

/// Why a command that starts at a tile cannot start at this window, which is in front of no tile.
inline std::string notInFrontMessage(const ManagedWindow& window, bool isStacked) {
    return window.applicationName +
           (isStacked ? " waits behind another window. Bring it to the front with “kova focus window”"
                      : " is in no tile. Put it into one with “kova tile” or “kova place”");
}

inline std::string nameOf(const WorkspaceWindowReference& window) {
    return window.titleHint ? window.applicationName + " " + quoted(*window.titleHint) : window.applicationName;
}

} // namespace kova
