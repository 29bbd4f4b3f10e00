#include "platform/macos/MacAlerts.h"

#include "platform/macos/CoreFoundation.h"
#include "platform/macos/Modal.h"

#import <AppKit/AppKit.h>

namespace kova::macos {

namespace {

/// Shows the alert and waits. Returns true if the user chose the confirm button. The Return key chooses the only button
/// of an alert that just informs; Escape chooses the cancel button of a question.
bool isConfirmed(const Alert& alert, NSAlertStyle style) {
    NSAlert* dialog = [[NSAlert alloc] init];
    dialog.alertStyle = style;
    dialog.messageText = nsString(alert.title);
    dialog.informativeText = nsString(textWithApplications(alert));
    [dialog addButtonWithTitle:nsString(alert.confirmButton)];
    if (!alert.cancelButton.empty()) {
        [dialog addButtonWithTitle:nsString(alert.cancelButton)].keyEquivalent = @"\033";
        // In a question the Return key must not choose the confirm button, since its action may be destructive.
        dialog.buttons.firstObject.hasDestructiveAction = YES;
        dialog.buttons.firstObject.keyEquivalent = @"";
    }
    const NSModalResponse answer = runAlert(dialog);
    returnActivationSoon();
    return answer == NSAlertFirstButtonReturn;
}

} // namespace

void MacAlerts::inform(const Alert& alert) {
    runDialogSoon([alert] { (void)isConfirmed(alert, NSAlertStyleInformational); });
}

void MacAlerts::confirm(const Alert& alert, std::function<void(bool isConfirmed)> answer) {
    const auto finish = std::make_shared<std::function<void(bool)>>(lifetime_.guard(std::move(answer)));
    runDialogSoon([alert, finish] { (*finish)(isConfirmed(alert, NSAlertStyleWarning)); });
}

} // namespace kova::macos
