// All reasons why a window is not moved to its tile or by an arrangement, as sentences.
#pragma once

#include "workspace/LeftAlone.h"
#include "workspace/ReflowPolicy.h"

#include <optional>
#include <string>
#include <vector>

namespace kova {

/// The facts from which the reasons follow.
struct WindowSituation {
    std::optional<std::string> obstacle{}; // why no window is moved now, as a sentence without its full stop
    bool isDragUnderWay = false;           // of any window or divider
    bool hasTile = false;                  // it is in front of one
    std::optional<LeftAlone> leftAlone{};
    const Refusal* refusal = nullptr; // null without a refusal
    int attempts = 0;                 // the number of requests for one frame
    bool isPlacementPending = false;
    bool isOffScreen = false;             // it is shown nowhere although it is neither minimized nor hidden
    std::optional<std::string> manager{}; // why windows do not go where they are sent, as a sentence
    bool isFloating = false;              // by command
    std::optional<std::string> rule{};    // that excludes it from arrangements, as in: “Notes float” says float
    bool isDisplayAwaited = false;        // its display was just disconnected
    bool isAwaitedByLaunch = false;       // a tile waits for a window of its application
    bool isAwaitedByScene = false;        // a scene waits for one
};

/// Empty if the window is in its tile, or will get a request for its frame.
std::vector<std::string> whyItStays(const WindowSituation& situation);

} // namespace kova
