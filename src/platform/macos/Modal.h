// Dialogs of our own, from an application that has no window and is hardly ever active. Objective-C++ only; main
// thread.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>

namespace kova::macos {

/// Runs the dialog soon. It waits in a loop of its own, which is entered from the run loop and not from the main queue:
/// the queue does not run while one of its own jobs waits.
void runDialogSoon(std::function<void()> dialog);

/// A dialog that nobody sees is no use: it comes before the windows of other applications.
void comeToFront();

/// Shows the alert in front and waits for its answer; the agent can be ended meanwhile.
NSModalResponse runAlert(NSAlert* alert);
/// Takes away the alert that is waited for, unanswered.
void abandonAlert();

} // namespace kova::macos
