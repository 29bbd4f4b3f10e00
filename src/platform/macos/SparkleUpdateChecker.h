// Checks for updates with Sparkle, if the program was built with Sparkle (KOVA_WITH_SPARKLE). The address of the feed
// and the public key for signatures are in the bundle's Info.plist. Main thread only.
#pragma once

#include "app/UpdateChecker.h"

#include <memory>

namespace kova::macos {

/// Starts Sparkle with the user's settings. Returns null if the program was built without Sparkle, or if the Info.plist
/// names no feed.
std::unique_ptr<UpdateChecker> makeUpdateChecker();

} // namespace kova::macos
