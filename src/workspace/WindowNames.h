// Windows as texts for the user name them.
#pragma once

#include "persistence/WorkspaceProductDocument.h"
#include "windowing/ManagedWindow.h"

#include <string>
#include <string_view>

namespace kova {

inline std::string quotedName(std::string_view name) {
    return "“" + std::string(name) + "”";
}

/// "Mail “Inbox”"; just "Mail" for a window without a title.
inline std::string nameOf(const ManagedWindow& window) {
    return window.title.empty() ? window.applicationName : window.applicationName + " “" + window.title + "”";
}

inline std::string nameOf(const WorkspaceWindowReference& window) {
    return window.titleHint ? window.applicationName + " “" + *window.titleHint + "”" : window.applicationName;
}

} // namespace kova
