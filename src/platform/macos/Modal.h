// Dialogs of our own, from an application that has no window and is hardly ever active. Objective-C++ only; main
// thread.
#pragma once

#include <functional>

namespace kova::macos {

/// Runs the dialog soon. It waits in a loop of its own, which is entered from the run loop and not from the main queue:
/// the queue does not run while one of its own jobs waits.
void runDialogSoon(std::function<void()> dialog);

/// A dialog that nobody sees is no use: it comes before the windows of other applications.
void comeToFront();

} // namespace kova::macos
