// Driving the workspace by URL:
//
//   kova://action/arrange, undo, zoom, stack, stack/previous, float, tile    kova://scene/Deep%20Work
//   kova://action/focus/left, move/up, swap/right, …    kova://action/focus/display/next, move/display/previous, …
//   kova://action/place/2
//
// A URL comes from anywhere, a web page included. It runs an operation of the workspace or does nothing; all it can
// name is a direction, a step, the number of a tile or a scene that the user has captured.
#pragma once

#include "workspace/WindowCommand.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace kova {

/// The scene is looked up when the URL is handled.
struct OpenSceneNamed {
    std::string name;
};

using URLAction = std::variant<WorkspaceAction, WindowCommand, OpenSceneNamed>;

/// Longer URLs are none of ours.
inline constexpr std::size_t kLongestURL = 4096; // bytes

/// What the URL asks for; absent when it asks for nothing that there is. The scheme, the host and the words of actions
/// may be in any case; user, port, what follows the words that are used, query and fragment do not count. A word is
/// percent-decoded once, after the URL was split, and must then be UTF-8 without a NUL.
std::optional<URLAction> parseURLAction(std::string_view url);

} // namespace kova
