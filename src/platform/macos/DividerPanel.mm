#include "platform/macos/DividerPanel.h"

#include "platform/macos/Contained.h"

@interface KOVADividerPanel : NSPanel
@end

@implementation KOVADividerPanel

- (BOOL)canBecomeKeyWindow {
    return NO;
}

- (BOOL)canBecomeMainWindow {
    return NO;
}

/// Tiles go on while a dialog of ours waits.
- (BOOL)worksWhenModal {
    return YES;
}

@end

@implementation KOVADividerView {
    NSCursor* _cursor;
    kova::macos::DividerPanelEvents _events;
}

- (instancetype)initWithAxis:(kova::LayoutAxis)axis events:(kova::macos::DividerPanelEvents)events {
    self = [super initWithFrame:NSZeroRect];
    if (self) {
        _cursor = axis == kova::LayoutAxis::horizontal ? NSCursor.resizeLeftRightCursor : NSCursor.resizeUpDownCursor;
        _events = std::move(events);
        // Also while another application is active, which is as good as always.
        const NSTrackingAreaOptions options =
            NSTrackingMouseEnteredAndExited | NSTrackingCursorUpdate | NSTrackingActiveAlways | NSTrackingInVisibleRect;
        [self addTrackingArea:[[NSTrackingArea alloc] initWithRect:NSZeroRect options:options owner:self userInfo:nil]];
    }
    return self;
}

- (BOOL)acceptsFirstMouse:(NSEvent*)__unused event {
    return YES;
}

- (void)cursorUpdate:(NSEvent*)__unused event {
    [_cursor set];
}

- (void)mouseEntered:(NSEvent*)__unused event {
    [_cursor set];
    kova::macos::contained([&] { self->_events.entered(); });
}

- (void)mouseExited:(NSEvent*)__unused event {
    [NSCursor.arrowCursor set];
    kova::macos::contained([&] { self->_events.left(); });
}

- (void)mouseDown:(NSEvent*)event {
    const auto count = static_cast<int>(event.clickCount);
    kova::macos::contained([&] { self->_events.pressed(count); });
}

- (void)mouseDragged:(NSEvent*)__unused event {
    kova::macos::contained([&] { self->_events.moved(); });
}

- (void)mouseUp:(NSEvent*)__unused event {
    kova::macos::contained([&] { self->_events.released(); });
}

@end

NSPanel* makeDividerPanel(KOVADividerView* view) {
    const NSWindowStyleMask style = NSWindowStyleMaskBorderless | NSWindowStyleMaskNonactivatingPanel;
    NSPanel* panel = [[KOVADividerPanel alloc] initWithContentRect:NSZeroRect
                                                         styleMask:style
                                                           backing:NSBackingStoreBuffered
                                                             defer:NO];
    panel.releasedWhenClosed = NO; // ARC owns it
    panel.level = CGWindowLevelForKey(kCGDesktopIconWindowLevelKey) + 1;
    panel.collectionBehavior = NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorStationary |
                               NSWindowCollectionBehaviorIgnoresCycle;
    panel.opaque = NO;
    panel.hasShadow = NO;
    panel.hidesOnDeactivate = NO;
    panel.excludedFromWindowsMenu = YES;
    panel.animationBehavior = NSWindowAnimationBehaviorNone;
    // Not quite clear: through what is, clicks fall to what lies below.
    panel.backgroundColor = [NSColor colorWithWhite:0 alpha:0.01];
    panel.ignoresMouseEvents = NO;
    panel.contentView = view;
    return panel;
}
