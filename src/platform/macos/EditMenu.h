// KOVA's main menu, which is never shown. Without it Command-V and other shortcuts would not work in text fields of
// dialogs. Objective-C++ only; main thread.
#pragma once

namespace kova::macos {

/// Call before the application has finished launching.
void installEditMenu();

} // namespace kova::macos
