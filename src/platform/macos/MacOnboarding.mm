#include "platform/macos/MacOnboarding.h"

#include "platform/macos/CoreFoundation.h"
#include "platform/macos/Modal.h"

#import <AppKit/AppKit.h>

#include <utility>

namespace kova::macos {

void MacOnboarding::showOnboarding() {
    if (std::exchange(isWanted_, true)) return;
    runDialogSoon(lifetime_.guard([this] {
        if (isWanted_ && !isRunning_) run();
    }));
}

void MacOnboarding::closeOnboarding() {
    isWanted_ = false;
    if (isRunning_) abandonAlert();
}

void MacOnboarding::run() {
    NSAlert* dialog = [[NSAlert alloc] init];
    dialog.messageText = @"Welcome to KOVA";
    dialog.informativeText =
        @"KOVA divides each display into tiles and keeps the windows of your applications in them. For that it needs "
        @"the Accessibility permission: allow KOVA under System Settings → Privacy & Security → Accessibility. Until "
        @"then it stays idle.";
    [dialog addButtonWithTitle:@"Continue"];
    [dialog addButtonWithTitle:@"Later"];
    // The agent may end while the dialog waits, and this with it.
    auto finish = lifetime_.guard([this](NSModalResponse answer) {
        isWanted_ = isRunning_ = false;
        if (answer == NSAlertFirstButtonReturn) (void)accessibility_.requestTrust(true);
    });
    isRunning_ = true;
    const NSModalResponse answer = runAlert(dialog);
    finish(answer);
}

} // namespace kova::macos
