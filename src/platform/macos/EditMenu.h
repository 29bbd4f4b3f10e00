// A main menu with an Edit menu. KOVA never shows it, but without it Command-V and other shortcuts would not work in
// text fields of dialogs. Main thread.
#pragma once

namespace kova::macos {

/// Call before the application has finished launching.
void installEditMenu();

} // namespace kova::macos
