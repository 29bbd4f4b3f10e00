// Updates through Sparkle, if the program was built with it (KOVA_WITH_SPARKLE); the feed and the key that signs
// updates are in the bundle's Info.plist. Main thread only.
#pragma once

#include "app/UpdateChecker.h"

#include <memory>

namespace kova::macos {

/// Starts Sparkle with the user's settings; null in a program that was built without Sparkle, or whose bundle names no
/// feed.
std::unique_ptr<UpdateChecker> makeUpdateChecker();

} // namespace kova::macos
