#include "platform/macos/MacOnboarding.h"

#include "platform/macos/CoreFoundation.h"
#include "platform/macos/Modal.h"

#import <AppKit/AppKit.h>

#include <utility>

namespace kova::macos {

namespace {

constexpr CGFloat kOfferWidth = 260; // points

NSButton* checkbox(const OnboardingOffer& offer) {
    NSButton* box = [NSButton checkboxWithTitle:nsString(offer.title) target:nil action:nil];
    box.state = offer.isOn() ? NSControlStateValueOn : NSControlStateValueOff;
    return box;
}

/// Returns the check box with its explanation below. The height fits the text.
NSView* offerView(NSButton* box, const OnboardingOffer& offer) {
    NSTextField* label = [NSTextField wrappingLabelWithString:nsString(offer.text)];
    label.font = [NSFont systemFontOfSize:NSFont.smallSystemFontSize];
    label.preferredMaxLayoutWidth = kOfferWidth;
    NSStackView* view = [NSStackView stackViewWithViews:@[ box, label ]];
    view.orientation = NSUserInterfaceLayoutOrientationVertical;
    view.alignment = NSLayoutAttributeLeading;
    const CGFloat height = view.fittingSize.height;
    // The dialog lays out the view by its frame. Without this line a stack view ignores its frame.
    view.translatesAutoresizingMaskIntoConstraints = YES;
    view.frame = NSMakeRect(0, 0, kOfferWidth, height);
    return view;
}

} // namespace

void MacOnboarding::showOnboarding(std::optional<OnboardingOffer> offer, std::function<void()> askForPermission) {
    if (std::exchange(isShownOrPending_, true)) return;
    ++dialogNumber_;
    offer_ = std::move(offer);
    askForPermission_ = std::move(askForPermission);
    runDialogSoon(lifetime_.guard([this] {
        if (isShownOrPending_ && !isModalLoopRunning_) run();
    }));
}

void MacOnboarding::closeOnboarding() {
    isShownOrPending_ = false;
    offer_.reset();
    askForPermission_ = nullptr;
    if (isModalLoopRunning_) abandonAlert();
}

void MacOnboarding::openPermissionSettings() {
    NSString* page = @"x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";
    [NSWorkspace.sharedWorkspace openURL:[NSURL URLWithString:page]];
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
    NSButton* box = offer_ ? checkbox(*offer_) : nil;
    const NSControlStateValue before = box.state;
    if (box) dialog.accessoryView = offerView(box, *offer_);
    // If the agent ends while the dialog is open, this object is destroyed before the dialog returns.
    auto finishIfAlive = lifetime_.guard([this, box, before, number = dialogNumber_](NSModalResponse answer) {
        finish(number, answer == NSAlertFirstButtonReturn, box.state != before, box.state == NSControlStateValueOn);
    });
    isModalLoopRunning_ = true;
    const NSModalResponse answer = runAlert(dialog);
    finishIfAlive(answer);
}

void MacOnboarding::finish(std::uint64_t number, bool isContinued, bool isOfferChanged, bool isOfferOn) {
    isModalLoopRunning_ = false;
    if (!isShownOrPending_) return returnActivationSoon();
    if (number != dialogNumber_) return; // the dialog was closed and requested again; the run loop shows it next
    isShownOrPending_ = false;
    const auto offer = std::exchange(offer_, std::nullopt);
    const auto askForPermission = std::exchange(askForPermission_, nullptr);
    if (!isContinued) return returnActivationSoon();
    if (offer && isOfferChanged) offer->choose(isOfferOn);
    if (askForPermission) askForPermission(); // KOVA stays active for the system's permission prompt
}

} // namespace kova::macos
