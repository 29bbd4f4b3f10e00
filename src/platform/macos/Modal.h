// Dialogs of our own, from an application that has no window and is hardly ever active. Objective-C++ only; main
// thread.
#pragma once

#import <AppKit/AppKit.h>

#include <functional>

namespace kova::macos {

/// Runs the dialog soon. It waits in a loop of its own, which is entered from the run loop and not from the main queue:
/// the queue does not run while one of its own jobs waits.
void runDialogSoon(std::function<void()> dialog);

/// Makes KOVA the active application and puts the dialog before the windows of all others. Call it before the dialog is
/// shown: it takes effect now, and again once the dialog's own loop runs.
void bringToFront(NSWindow* dialog);

/// Shows the alert in front and waits for its answer; the agent can be ended meanwhile.
NSModalResponse runAlert(NSAlert* alert);
/// Takes away the alert that is shown, unanswered.
void abandonAlert();

/// Whether a dialog of KOVA waits, or a window of it has the keyboard.
bool hasDialog();
/// Makes the application active from which KOVA took the activation, if KOVA is active and has no dialog.
void returnActivation();
/// The same once menus and alerts have ended: the system leaves KOVA active when its last window closes, and what is
/// typed goes nowhere.
void returnActivationSoon();

} // namespace kova::macos
