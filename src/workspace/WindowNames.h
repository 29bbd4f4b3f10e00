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

inline std::string nameOf(const WorkspaceWindowReference& window) {
    return window.titleHint ? window.applicationName + " " + quoted(*window.titleHint) : window.applicationName;
}

} // namespace kova
