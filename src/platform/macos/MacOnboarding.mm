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

/// The check box with its explanation below, as high as the text requires.
NSView* offerView(NSButton* box, const OnboardingOffer& offer) {
    NSTextField* label = [NSTextField wrappingLabelWithString:nsString(offer.text)];
    label.font = [NSFont systemFontOfSize:NSFont.smallSystemFontSize];
    label.preferredMaxLayoutWidth = kOfferWidth;
    NSStackView* view = [NSStackView stackViewWithViews:@[ box, label ]];
    view.orientation = NSUserInterfaceLayoutOrientationVertical;
    view.alignment = NSLayoutAttributeLeading;
    const CGFloat height = view.fittingSize.height;
    // The dialog uses the frame, which a stack view ignores unless this is set.
    view.translatesAutoresizingMaskIntoConstraints = YES;
    view.frame = NSMakeRect(0, 0, kOfferWidth, height);
    return view;
}

} // namespace

void MacOnboarding::showOnboarding(std::optional<OnboardingOffer> offer, std::function<void()> askForPermission) {
    if (std::exchange(isWanted_, true)) return;
    ++showing_;
    offer_ = std::move(offer);
    askForPermission_ = std::move(askForPermission);
    runDialogSoon(lifetime_.guard([this] {
        if (isWanted_ && !isRunning_) run();
    }));
}

void MacOnboarding::closeOnboarding() {
    isWanted_ = false;
    offer_.reset();
    askForPermission_ = nullptr;
    if (isRunning_) abandonAlert();
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
    // The agent may end while the dialog is open, and this object is then destroyed.
    auto finishUnlessGone = lifetime_.guard([this, box, before, showing = showing_](NSModalResponse answer) {
        finish(showing, answer == NSAlertFirstButtonReturn, box.state != before, box.state == NSControlStateValueOn);
    });
    isRunning_ = true;
    const NSModalResponse answer = runAlert(dialog);
    finishUnlessGone(answer);
}

void MacOnboarding::finish(std::uint64_t showing, bool isContinued, bool isOfferChanged, bool isOfferOn) {
    isRunning_ = false;
    if (!isWanted_) return returnActivationSoon();
    if (showing != showing_) return; // closed and requested again: the run loop shows the dialog again next
    isWanted_ = false;
    const auto offer = std::exchange(offer_, std::nullopt);
    const auto askForPermission = std::exchange(askForPermission_, nullptr);
    if (!isContinued) return returnActivationSoon(); // otherwise the system shows its permission prompt next
    if (offer && isOfferChanged) offer->choose(isOfferOn);
    if (askForPermission) askForPermission();
}

} // namespace kova::macos
