#include "platform/macos/Modal.h"

#include "platform/macos/Contained.h"

#import <AppKit/AppKit.h>

namespace kova::macos {

void runDialogSoon(std::function<void()> dialog) {
    [NSRunLoop.mainRunLoop performInModes:@[ NSDefaultRunLoopMode ]
                                    block:^{
                                      contained(dialog);
                                    }];
    CFRunLoopWakeUp(CFRunLoopGetMain()); // it may be asleep
}

void comeToFront() {
    if (@available(macOS 14.0, *)) {
        [NSApp activate];
    } else {
        [NSApp activateIgnoringOtherApps:YES];
    }
}

} // namespace kova::macos
