// Shows KOVA's dialogs and gives the activation back afterwards. KOVA has no ordinary windows and is rarely active.
// Objective-C++ only; main thread.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>
#include <string>

namespace kova::macos {

/// Calls `dialog` from the run loop, soon. `dialog` may run a modal loop, which would block the main queue if it ran in
/// one of the queue's jobs.
void runDialogSoon(std::function<void()> dialog);

/// Activates KOVA and orders the dialog in front of all windows: now, and once more when the dialog's modal loop runs.
/// Call before the dialog is shown.
void bringToFront(NSWindow* dialog);

/// Shows the alert in front of all windows and waits for the user's answer. The agent can end while this function
/// waits.
NSModalResponse runAlert(NSAlert* alert);
/// Closes the alert that is shown. `runAlert` then returns NSModalResponseAbort.
void abandonAlert();

/// Whether a dialog of KOVA is open or about to open, or a window of KOVA has the keyboard focus.
bool hasDialog();
/// Activates the application that was active before KOVA, if KOVA is active and has no dialog.
void returnActivation();
/// Allows the application with that bundle identifier to become active in place of KOVA, when it requests to be
/// activated.
void passActivationTo(const std::string& bundleIdentifier);
/// Calls `returnActivation` after menus and alerts have closed. The system leaves KOVA active then, and without this
/// call key presses would reach no window.
void returnActivationSoon();

} // namespace kova::macos
