// The main menu, which is never shown: text fields of dialogs get Command-V and other key equivalents from it.
// Objective-C++ only; main thread.
#pragma once

namespace kova::macos {

/// Call before the application has finished launching.
void installEditMenu();

} // namespace kova::macos
