// Tells the user what became of each window of an opened scene. Windows and applications are listed by name.
#pragma once

#include "persistence/WorkspaceProductDocument.h"

#include <string>
#include <string_view>
#include <vector>

namespace kova {

struct SceneReport {
    enum class State {
        waiting,   // for windows that have not appeared
        finished,  // every window was placed or did not appear in time
        abandoned, // another scene was opened, the opening was undone, or management ended
    };
    Uuid opening = Uuid::random(); // identifies this opening
    State state = State::waiting;
    std::vector<std::string> adopted;     // windows that were open already, as "Mail “Inbox”"
    std::vector<std::string> launched;    // names of applications
    std::vector<std::string> placed;      // windows that appeared later
    std::vector<std::string> withoutTile; // windows whose tile the layout in force lacks
    std::vector<std::string> missing;     // windows that did not appear in time
    bool operator==(const SceneReport&) const = default;
};

/// "waiting", "finished", "abandoned".
std::string_view describe(SceneReport::State state);

} // namespace kova
