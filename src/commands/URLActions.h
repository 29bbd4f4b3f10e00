// URLs that control the workspace:
//
//   kova://action/arrange, undo, zoom, stack, stack/previous, float, tile    kova://scene/Deep%20Work
//   kova://action/focus/left, move/up, swap/right, …    kova://action/focus/display/next, move/display/previous, …
//   kova://action/place/2
//
// A URL may come from any source, for example from a web page. So a URL can only name an operation, and a direction, a
// step, the number of a tile, or a scene that the user has captured.
#pragma once

#include "workspace/WorkspaceAction.h"

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

using URLAction = std::variant<WorkspaceAction, OpenSceneNamed>;

/// Longer URLs are ignored.
inline constexpr std::size_t kLongestURL = 4096; // bytes

/// The action that the URL names; absent if it names none. Scheme, host and words of actions may be in any case; user,
/// port, additional path parts, query and fragment are ignored. Each part is percent-decoded once, after the URL was
/// split, and must then be UTF-8 without NUL.
std::optional<URLAction> parseURLAction(std::string_view url);

} // namespace kova
