// All reasons why a window is not moved to its tile or by an arrangement, as sentences.
#pragma once

#include "workspace/LeftAlone.h"
#include "workspace/ReflowPolicy.h"

#include <optional>
#include <string>
#include <vector>

namespace kova {

/// What is known that can keep a window where it is.
struct WindowSituation {
    std::optional<std::string> obstacle{}; // why no window is moved now, as a sentence without its full stop
    bool isDragUnderWay = false;           // of any window or divider
    bool hasTile = false;                  // it is in front of one
    std::optional<LeftAlone> leftAlone{};
    const Refusal* refusal = nullptr; // null when it refuses nothing
    int attempts = 0;                 // how often a window is asked for the same frame
    bool isPlacementPending = false;
    bool isFloating = false;           // by command
    std::optional<std::string> rule{}; // that keeps it out of arrangements: “its name” says what
    bool isDisplayAwaited = false;     // its display was unplugged a moment ago
    bool isAwaitedByLaunch = false;    // a tile waits for a window of its application
    bool isAwaitedByScene = false;     // so does a scene
};

/// Empty when nothing keeps the window: then it is where it belongs, or will be asked to go there.
std::vector<std::string> whyItStays(const WindowSituation& situation);

} // namespace kova
