#include "platform/macos/Modal.h"

#include "platform/macos/Contained.h"

namespace kova::macos {

namespace {

int pendingDialogs = 0; // dialogs that were passed to `runDialogSoon` and have not ended

} // namespace

void runDialogSoon(std::function<void()> dialog) {
    ++pendingDialogs;
    [NSRunLoop.mainRunLoop performInModes:@[ NSDefaultRunLoopMode ]
                                    block:^{
                                      contained(dialog);
                                      --pendingDialogs;
                                    }];
    CFRunLoopWakeUp(CFRunLoopGetMain()); // the run loop may be asleep
}

void bringToFront(NSWindow* dialog) {
    dialog.level = NSModalPanelWindowLevel;
    // Not the newer `activate`, since the system refuses its request when the user opens the dialog from the menu bar.
    [NSApp activateIgnoringOtherApps:YES];
    __weak NSWindow* shown = dialog;
    [NSRunLoop.mainRunLoop performInModes:@[ NSModalPanelRunLoopMode, NSDefaultRunLoopMode ]
                                    block:^{
                                      NSWindow* window = shown;
                                      if (!window.visible) return; // the user has already closed the dialog
                                      [NSApp activateIgnoringOtherApps:YES];
                                      [window orderFrontRegardless];
                                      [window makeKeyWindow];
                                    }];
    CFRunLoopWakeUp(CFRunLoopGetMain());
}

NSModalResponse runAlert(NSAlert* alert) {
    // By default an open modal dialog prevents the application from quitting, and so prevents a logout.
    alert.window.preventsApplicationTerminationWhenModal = NO;
    bringToFront(alert.window);
    return [alert runModal];
}

void abandonAlert() {
    // Not `abortModal`, whose exception `contained` would catch. The modal loop stops only after its next event, so an
    // event is posted.
    [NSApp stopModalWithCode:NSModalResponseAbort];
    NSEvent* event = [NSEvent otherEventWithType:NSEventTypeApplicationDefined
                                        location:NSZeroPoint
                                   modifierFlags:NSEventModifierFlags(0)
                                       timestamp:0
                                    windowNumber:0
                                         context:nil
                                         subtype:0
                                           data1:0
                                           data2:0];
    [NSApp postEvent:event atStart:NO];
}

bool hasDialog() {
    return pendingDialogs > 0 || NSApp.modalWindow || NSApp.keyWindow;
}

void returnActivation() {
    if (!NSApp.active || hasDialog()) return;
    // KOVA has no menu in the menu bar, so the menu bar still belongs to the application that was active before.
    NSRunningApplication* before = NSWorkspace.sharedWorkspace.menuBarOwningApplication;
    if (!before || [before isEqual:NSRunningApplication.currentApplication]) return;
    if (@available(macOS 14.0, *)) {
        [NSApp yieldActivationToApplication:before];
        [before activateFromApplication:NSRunningApplication.currentApplication
                                options:NSApplicationActivationOptions(0)];
    } else {
        [before activateWithOptions:NSApplicationActivationOptions(0)];
    }
}

void passActivationTo(const std::string& bundleIdentifier) {
    // Before macOS 14 an application can become active without the consent of the active application.
    if (@available(macOS 14.0, *)) {
        [NSApp yieldActivationToApplicationWithBundleIdentifier:nsString(bundleIdentifier)];
    }
}

void returnActivationSoon() {
    [NSRunLoop.mainRunLoop performInModes:@[ NSDefaultRunLoopMode ]
                                    block:^{
                                      returnActivation();
                                    }];
    CFRunLoopWakeUp(CFRunLoopGetMain());
}

} // namespace kova::macos
