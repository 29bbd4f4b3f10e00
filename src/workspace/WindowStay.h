// The sentences that tell the user why KOVA does not move a window to its tile, or why arrangements do not move it.
#pragma once

#include "workspace/LeftAloneReason.h"
#include "workspace/RefusedFrame.h"

#include <optional>
#include <string>
#include <vector>

namespace kova {

/// The facts from which the reasons follow.
struct WindowSituation {
    std::optional<std::string> obstacle{}; // why no window is moved now: a sentence without a full stop
    bool isDragUnderWay = false;           // true while any window or divider is dragged
    bool hasTile = false;                  // the window is the front window of a tile
    std::optional<LeftAloneReason> leftAlone{};
    const RefusedFrame* refusal = nullptr; // null if the window has not refused its frame
    int attempts = 0;                      // the number of requests after which a frame counts as refused
    bool isPlacementPending = false;       // the requested frame is still being verified
    bool isOffScreen = false;              // no display shows the window although it is neither minimized nor hidden
    std::optional<std::string> manager{};  // why the window manager refuses placements: a sentence
    bool isFloating = false;               // made floating by a command
    std::optional<std::string> rule{};   // the rule that excludes the window, for example: “Notes float” says float
    bool isWaitingForItsDisplay = false; // its display was just disconnected
    bool isAwaitedByLaunch = false;      // a tile waits for a window of its application
    bool isAwaitedByScene = false;       // a scene waits for a window of its application
};

/// One sentence for each reason. Empty if the window is in its tile, or will get a request for its frame.
std::vector<std::string> whyItStays(const WindowSituation& situation);

} // namespace kova
