// The sentences for the user that say why a window is not moved to its tile, or not moved by an arrangement.
#pragma once

#include "workspace/LeftAloneReason.h"
#include "workspace/ReflowPolicy.h"

#include <optional>
#include <string>
#include <vector>

namespace kova {

/// The facts from which the reasons follow.
struct WindowSituation {
    std::optional<std::string> obstacle{}; // why no window is moved now, as a sentence without its full stop
    bool isDragUnderWay = false;           // a drag of any window or divider
    bool hasTile = false;                  // the window is in front in a tile
    std::optional<LeftAloneReason> leftAlone{};
    const Refusal* refusal = nullptr; // null without a refusal
    int attempts = 0;                 // the number of requests for one frame
    bool isPlacementPending = false;
    bool isOffScreen = false;             // no display shows the window although it is neither minimized nor hidden
    std::optional<std::string> manager{}; // why the window manager refuses placements, as a sentence
    bool isFloating = false;              // made floating by a command
    std::optional<std::string> rule{}; // the rule that keeps the window out of arrangements: “Notes float” says float
    bool isWaitingForItsDisplay = false; // its display was just disconnected
    bool isAwaitedByLaunch = false;      // a tile waits for a window of its application
    bool isAwaitedByScene = false;       // a scene waits for a window of its application
};

/// Empty if the window is in its tile or will get a request for its frame.
std::vector<std::string> whyItStays(const WindowSituation& situation);

} // namespace kova
