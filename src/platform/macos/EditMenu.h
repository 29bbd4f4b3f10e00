// The main menu of an application that never shows one: text fields of dialogs take Command-V and its like from it.
// Objective-C++ only; main thread.
#pragma once

namespace kova::macos {

/// Before the application has finished launching.
void installEditMenu();

} // namespace kova::macos
