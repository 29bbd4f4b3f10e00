#include "platform/macos/Modal.h"

#include "platform/macos/Contained.h"

namespace kova::macos {

void runDialogSoon(std::function<void()> dialog) {
    [NSRunLoop.mainRunLoop performInModes:@[ NSDefaultRunLoopMode ]
                                    block:^{
                                      contained(dialog);
                                    }];
    CFRunLoopWakeUp(CFRunLoopGetMain()); // it may be asleep
}

void bringToFront(NSWindow* dialog) {
    dialog.level = NSModalPanelWindowLevel;
    // The newer call without the argument is only a request, which the system declines when it comes from the menu bar.
    [NSApp activateIgnoringOtherApps:YES];
    __weak NSWindow* shown = dialog;
    [NSRunLoop.mainRunLoop performInModes:@[ NSModalPanelRunLoopMode, NSDefaultRunLoopMode ]
                                    block:^{
                                      NSWindow* window = shown;
                                      if (!window.visible) return; // answered already
                                      [NSApp activateIgnoringOtherApps:YES];
                                      [window orderFrontRegardless];
                                      [window makeKeyWindow];
                                    }];
    CFRunLoopWakeUp(CFRunLoopGetMain());
}

NSModalResponse runAlert(NSAlert* alert) {
    // Usually nothing ends an application while such a dialog waits, neither its own command nor a logout.
    alert.window.preventsApplicationTerminationWhenModal = NO;
    bringToFront(alert.window);
    return [alert runModal];
}

void abandonAlert() {
    // Asks the loop to end instead of throwing out of it: what is thrown here would not get past our own callbacks. It
    // looks after the next event, so there has to be one.
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
    return NSApp.modalWindow || NSApp.keyWindow;
}

void returnActivation() {
    if (!NSApp.active || hasDialog()) return;
    // KOVA has no menu in the menu bar, which therefore still belongs to the application before.
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

void returnActivationSoon() {
    [NSRunLoop.mainRunLoop performInModes:@[ NSDefaultRunLoopMode ]
                                    block:^{
                                      returnActivation();
                                    }];
    CFRunLoopWakeUp(CFRunLoopGetMain());
}

} // namespace kova::macos
