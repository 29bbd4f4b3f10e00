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

/// Dividers can be dragged while a dialog of KOVA is open.
- (BOOL)worksWhenModal {
    return YES;
}

@end

namespace {

constexpr CGFloat kLineThickness = 3; // points
// How long the panel ignores events, so that an event that is posted again reaches the window below.
constexpr int64_t kPassingTime = 200 * NSEC_PER_MSEC;

} // namespace

@implementation KOVAGuardView

- (BOOL)acceptsFirstMouse:(NSEvent*)__unused event {
    return YES;
}

/// Swallows the event: does not pass it on to the next responder.
- (void)mouseDown:(NSEvent*)__unused event {
}

/// Passed on so that the desktop's own menu also opens between tiles.
- (void)rightMouseDown:(NSEvent*)event {
    [self passOn:event];
}

- (void)otherMouseDown:(NSEvent*)event {
    [self passOn:event];
}

- (void)passOn:(NSEvent*)event {
    const auto sent = kova::macos::Owned<CGEventRef>::adopt(event.CGEvent ? CGEventCreateCopy(event.CGEvent) : nullptr);
    NSWindow* panel = self.window;
    // If the panel gets its own posted event although it ignores events, posting the event again would never end.
    if (!sent || panel.ignoresMouseEvents) return;
    panel.ignoresMouseEvents = YES;
    CGEventPost(kCGHIDEventTap, sent.get());
    __weak NSWindow* weak = panel;
    dispatch_after(dispatch_time(DISPATCH_TIME_NOW, kPassingTime), dispatch_get_main_queue(), ^{
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
        // Also while another application is active, which is nearly always the case.
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
    kova::macos::contained([&] { self->_events.crossed(isHovered != NO); });
}

/// The system mostly shows the cursor of the active application, so only the line shows where the handle is.
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
    // Between the levels of kova-ui: its backdrop is below this level, its footers are above.
    panel.level = CGWindowLevelForKey(kCGDesktopIconWindowLevelKey) + 2;
    panel.collectionBehavior = NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorStationary |
                               NSWindowCollectionBehaviorIgnoresCycle;
    panel.opaque = NO;
    panel.hasShadow = NO;
    panel.hidesOnDeactivate = NO;
    panel.canHide = NO; // "Hide Others" of another application leaves it where it is
    panel.excludedFromWindowsMenu = YES;
    panel.animationBehavior = NSWindowAnimationBehaviorNone;
    // Not fully transparent, since clicks pass through fully transparent windows.
    panel.backgroundColor = [NSColor colorWithWhite:0 alpha:0.01];
    panel.ignoresMouseEvents = NO;
    panel.contentView = view;
    return panel;
}
