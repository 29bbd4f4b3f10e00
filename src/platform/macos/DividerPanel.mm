#include "platform/macos/DividerPanel.h"

#include "platform/macos/Contained.h"

@interface KOVADesktopPanel : NSPanel
@end

@implementation KOVADesktopPanel

- (BOOL)canBecomeKeyWindow {
    return NO;
}

- (BOOL)canBecomeMainWindow {
    return NO;
}

/// The panel receives events while a dialog of KOVA is open, so that dividers can be dragged.
- (BOOL)worksWhenModal {
    return YES;
}

@end

namespace {

constexpr CGFloat kLineThickness = 3; // points
// How long a panel ignores events after it has posted an event again. The event then reaches the window below the
// panel.
constexpr int64_t kIgnoringTime = 200 * NSEC_PER_MSEC;

} // namespace

@implementation KOVAGuardView

- (BOOL)acceptsFirstMouse:(NSEvent*)__unused event {
    return YES;
}

/// Does nothing, so that the event does not reach the next responder.
- (void)mouseDown:(NSEvent*)__unused event {
}

/// Passes the event on, so that a right click between tiles opens the desktop's own menu.
- (void)rightMouseDown:(NSEvent*)event {
    [self passOn:event];
}

- (void)otherMouseDown:(NSEvent*)event {
    [self passOn:event];
}

- (void)passOn:(NSEvent*)event {
    const auto sent = kova::macos::Owned<CGEventRef>::adopt(event.CGEvent ? CGEventCreateCopy(event.CGEvent) : nullptr);
    NSWindow* panel = self.window;
    // The panel may receive the event that it has posted, although it ignores events. Posting the event again then
    // would never end.
    if (!sent || panel.ignoresMouseEvents) return;
    panel.ignoresMouseEvents = YES;
    CGEventPost(kCGHIDEventTap, sent.get());
    __weak NSWindow* weak = panel;
    dispatch_after(dispatch_time(DISPATCH_TIME_NOW, kIgnoringTime), dispatch_get_main_queue(), ^{
      weak.ignoresMouseEvents = NO;
    });
}

@end

@implementation KOVADividerView {
    kova::LayoutAxis _axis;
    NSCursor* _cursor;
    kova::macos::DividerPanelEvents _events;
    BOOL _isHovered;
    BOOL _isPressed;
}

- (instancetype)initWithAxis:(kova::LayoutAxis)axis events:(kova::macos::DividerPanelEvents)events {
    self = [super initWithFrame:NSZeroRect];
    if (self) {
        _axis = axis;
        _cursor = axis == kova::LayoutAxis::horizontal ? NSCursor.resizeLeftRightCursor : NSCursor.resizeUpDownCursor;
        _events = std::move(events);
        // ActiveAlways: nearly always another application is active, not KOVA.
        const NSTrackingAreaOptions options =
            NSTrackingMouseEnteredAndExited | NSTrackingCursorUpdate | NSTrackingActiveAlways | NSTrackingInVisibleRect;
        [self addTrackingArea:[[NSTrackingArea alloc] initWithRect:NSZeroRect options:options owner:self userInfo:nil]];
    }
    return self;
}

- (void)cursorUpdate:(NSEvent*)__unused event {
    [_cursor set];
}

- (void)mouseEntered:(NSEvent*)__unused event {
    [_cursor set];
    [self hover:YES];
}

- (void)mouseExited:(NSEvent*)__unused event {
    [NSCursor.arrowCursor set];
    [self hover:NO];
}

- (void)hover:(BOOL)isHovered {
    _isHovered = isHovered;
    self.needsDisplay = YES;
    kova::macos::contained([&] { self->_events.hoverChanged(isHovered != NO); });
}

/// Shows where the handle is. The resize cursor alone would not, since the system mostly shows the cursor of the active
/// application.
- (void)drawRect:(NSRect)__unused dirtyRect {
    if (!_isHovered && !_isPressed) return;
    const BOOL isUpright = _axis == kova::LayoutAxis::horizontal;
    const NSRect line = isUpright ? NSInsetRect(self.bounds, (NSWidth(self.bounds) - kLineThickness) / 2, 0)
                                  : NSInsetRect(self.bounds, 0, (NSHeight(self.bounds) - kLineThickness) / 2);
    [[NSColor.controlAccentColor colorWithAlphaComponent:_isPressed ? 0.9 : 0.6] setFill];
    [[NSBezierPath bezierPathWithRoundedRect:line xRadius:kLineThickness / 2 yRadius:kLineThickness / 2] fill];
}

- (void)mouseDown:(NSEvent*)event {
    _isPressed = YES;
    self.needsDisplay = YES;
    const auto count = static_cast<int>(event.clickCount);
    kova::macos::contained([&] { self->_events.pressed(count); });
}

- (void)mouseDragged:(NSEvent*)__unused event {
    kova::macos::contained([&] { self->_events.moved(); });
}

- (void)mouseUp:(NSEvent*)__unused event {
    _isPressed = NO;
    self.needsDisplay = YES;
    kova::macos::contained([&] { self->_events.released(); });
}

@end

NSPanel* makeDesktopPanel(KOVAGuardView* view) {
    const NSWindowStyleMask style = NSWindowStyleMaskBorderless | NSWindowStyleMaskNonactivatingPanel;
    NSPanel* panel = [[KOVADesktopPanel alloc] initWithContentRect:NSZeroRect
                                                         styleMask:style
                                                           backing:NSBackingStoreBuffered
                                                             defer:NO];
    panel.releasedWhenClosed = NO; // ARC owns it
    // The backdrop of kova-ui is below this level, its footers are above this level.
    panel.level = CGWindowLevelForKey(kCGDesktopIconWindowLevelKey) + 2;
    panel.collectionBehavior = NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorStationary |
                               NSWindowCollectionBehaviorIgnoresCycle;
    panel.opaque = NO;
    panel.hasShadow = NO;
    panel.hidesOnDeactivate = NO;
    panel.canHide = NO; // the panel stays visible after "Hide Others" in another application
    panel.excludedFromWindowsMenu = YES;
    panel.animationBehavior = NSWindowAnimationBehaviorNone;
    // Not fully transparent, since clicks pass through fully transparent windows.
    panel.backgroundColor = [NSColor colorWithWhite:0 alpha:0.01];
    panel.ignoresMouseEvents = NO;
    panel.contentView = view;
    return panel;
}
