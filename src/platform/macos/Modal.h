// Dialogs of an application that has no windows and is rarely active. Objective-C++ only; main thread.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>
#include <string>

namespace kova::macos {

/// Runs the dialog from the run loop, not from the main queue: its modal loop would block the queue if it ran in one of
/// the queue's jobs.
void runDialogSoon(std::function<void()> dialog);

/// Activates KOVA and orders the dialog in front of all windows. Call before the dialog is shown. Takes
/// effect now, and again once the modal loop runs.
void bringToFront(NSWindow* dialog);

/// Shows the alert in front of all windows and waits for the user's answer; the agent can end while it waits.
NSModalResponse runAlert(NSAlert* alert);
/// Closes the alert that is shown; it counts as not answered.
void abandonAlert();

/// Whether a dialog of KOVA is open or about to open, or a window of it has the keyboard focus.
bool hasDialog();
/// Activates the application that was active before KOVA, if KOVA is active and has no dialog.
void returnActivation();
/// Lets the application with that bundle identifier become active in place of KOVA when it requests this.
void passActivationTo(const std::string& bundleIdentifier);
/// Calls `returnActivation` once menus and alerts have closed: the system leaves KOVA active then, and key presses
/// reach no window.
void returnActivationSoon();

} // namespace kova::macos
