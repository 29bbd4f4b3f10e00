#include "ui/macos/MacPlatform.h"

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QPointer>
#include <QSurfaceFormat>

#import <AppKit/AppKit.h>
#import <IOKit/ps/IOPSKeys.h>
#import <IOKit/ps/IOPowerSources.h>

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace kova::ui {

namespace {

/// The native window of the view; created if it did not exist yet.
NSWindow* nativeWindow(WId view) {
    return ((__bridge NSView*)reinterpret_cast<void*>(view)).window;
}

NSWindow* nativeWindow(const QWindow& window) {
    return nativeWindow(window.winId());
}

/// The divider handles of the agent have the level `icons + 2`.
NSWindowLevel levelOf(Layer layer) {
    const NSWindowLevel icons = CGWindowLevelForKey(kCGDesktopIconWindowLevelKey);
    switch (layer) {
    case Layer::backdrop:
    case Layer::decoration:
    case Layer::emptyTile:
        return icons + 1;
    case Layer::divider:
    case Layer::footer:
        return icons + 3;
    case Layer::highlight:
    case Layer::message:
        return NSStatusWindowLevel;
    }
    return icons + 1;
}

void configure(NSWindow* window, NSWindowLevel level) {
    window.level = level;
    window.collectionBehavior = NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorStationary |
                                NSWindowCollectionBehaviorIgnoresCycle | NSWindowCollectionBehaviorFullScreenNone;
    window.styleMask |= NSWindowStyleMaskNonactivatingPanel;
    window.hidesOnDeactivate = NO;
    window.canHide = NO; // "Hide Others" of another application does not hide the window
    window.excludedFromWindowsMenu = YES;
    window.hasShadow = NO;
    window.animationBehavior = NSWindowAnimationBehaviorNone;
}

} // namespace

/// An invisible window over the part of an overlay window that receives clicks.
class MacPlatform::ClickArea final : public QWindow {
  public:
    explicit ClickArea(OverlayWindow& target) : target_(&target) {
        setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
        QSurfaceFormat transparent;
        transparent.setAlphaBufferSize(8); // without it the toolkit makes the window opaque, which shows as black
        setFormat(transparent);
        const auto follow = [this] { place(part_); };
        for (const auto moved : {&QWindow::xChanged, &QWindow::yChanged}) connect(&target, moved, this, follow);
    }
    /// `part` is in the target's coordinates.
    void place(const QRect& part) {
        part_ = part;
        setGeometry(part.translated(target_->geometry().topLeft()));
    }
    void present() {
        create();
        NSWindow* native = nativeWindow(*this);
        configure(native, std::max(levelOf(target_->layer()), levelOf(Layer::footer)) + 1);
        native.ignoresMouseEvents = NO; // set explicitly, so that the window receives clicks although nothing is drawn
        setVisible(true);
    }

  protected:
    bool event(QEvent* event) override {
        if (!target_) return QWindow::event(event);
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseMove: {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            const QPointF place = mouse->position() + part_.topLeft();
            QMouseEvent forwarded(mouse->type(), place, place, mouse->globalPosition(), mouse->button(),
                                  mouse->buttons(), mouse->modifiers());
            return QCoreApplication::sendEvent(target_, &forwarded);
        }
        case QEvent::Leave: {
            QEvent forwarded(QEvent::Leave);
            return QCoreApplication::sendEvent(target_, &forwarded);
        }
        default:
            return QWindow::event(event);
        }
    }

  private:
    QPointer<OverlayWindow> target_; // null if the target was destroyed before this area
    QRect part_;
};

void MacPlatform::RemoveLater::operator()(ClickArea* area) const {
    area->hide();
    area->deleteLater();
}

MacPlatform::MacPlatform() {
    // This activity lasts as long as this program runs. Without it, the system would slow this program down while its
    // windows are covered (App Nap), and windows and footers would be late.
    static const id<NSObject> activity =
        [NSProcessInfo.processInfo beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                     reason:@"Footers and windows follow the agent"];
    (void)activity;
}

MacPlatform::~MacPlatform() = default;

bool MacPlatform::isOnBattery() const {
    const id sources = CFBridgingRelease(IOPSCopyPowerSourcesInfo());
    if (!sources) return false;
    NSString* source = (__bridge NSString*)IOPSGetProvidingPowerSourceType((__bridge CFTypeRef)sources);
    return [source isEqualToString:@kIOPSBatteryPowerValue];
}

void MacPlatform::adopt(OverlayWindow& window) {
    plain_.adopt(window);
    configure(nativeWindow(window), levelOf(window.layer()));
}

void MacPlatform::release(OverlayWindow& window) {
    clickAreas_.erase(&window);
    plain_.release(window);
}

void MacPlatform::conceal(OverlayWindow& window) {
    const auto found = clickAreas_.find(&window);
    if (found != clickAreas_.end()) found->second->hide(); // `stack` shows the area again
    OverlayPlatform::conceal(window);
}

void MacPlatform::stack(OverlayWindow& window) {
    const auto found = clickAreas_.find(&window);
    if (found != clickAreas_.end()) found->second->present();
}

void MacPlatform::shape(OverlayWindow& window, const QRegion& visible, const QRegion& clickable) {
    const bool isWhole = !clickable.isEmpty() && clickable == visible;
    nativeWindow(window).ignoresMouseEvents = isWhole ? NO : YES;
    if (isWhole || clickable.isEmpty()) {
        clickAreas_.erase(&window);
        return;
    }
    auto& area = clickAreas_[&window];
    const bool isNew = !area;
    if (isNew) area.reset(new ClickArea(window));
    area->place(clickable.boundingRect());
    if (isNew && window.isVisible()) area->present(); // else `stack` shows the area above the window
}

void MacPlatform::exposed(OverlayWindow& window) {
    // The toolkit may set its own level when it shows a window.
    NSWindow* native = nativeWindow(window);
    if (native.level != levelOf(window.layer())) configure(native, levelOf(window.layer()));
    if (window.layer() != Layer::divider) plain_.exposed(window);
}

namespace {

void activate(NSRunningApplication* application) {
    if (@available(macOS 14.0, *)) {
        [NSApp yieldActivationToApplication:application];
        [application activateFromApplication:NSRunningApplication.currentApplication
                                     options:NSApplicationActivationOptions(0)];
    } else {
        [application activateWithOptions:NSApplicationActivationOptions(0)];
    }
}

/// The application that owns the menu bar; nil if there is none. It is the active application, except while this
/// program is active: this program shows no menu there, so the application that was active before still owns the menu
/// bar.
NSRunningApplication* applicationInFront() {
    NSRunningApplication* front = NSWorkspace.sharedWorkspace.menuBarOwningApplication;
    return [front isEqual:NSRunningApplication.currentApplication] ? nil : front;
}

bool showsAnyWidget() {
    const auto widgets = QApplication::topLevelWidgets();
    return std::any_of(widgets.begin(), widgets.end(), [](const QWidget* each) { return each->isVisible(); });
}

/// Activates the previous application again if this program is active without a window, since pressed keys would reach
/// no window. On some systems a click on the overlay activates this program.
void returnUnusedActivation() {
    NSRunningApplication* front = applicationInFront();
    if (NSApp.active && front && !showsAnyWidget()) activate(front);
}

/// Activates this program and focuses the window. If the system declines the activation, the window is still in front.
void bringToFront(NSWindow* window) {
    // The newer `activate` is only a request, which the system often declines.
    [NSApp activateIgnoringOtherApps:YES];
    [window orderFrontRegardless];
    [window makeKeyWindow];
}

} // namespace

struct MacWindowFocus::Parts {
    NSRunningApplication* before = nil; // was in front before the window was opened; `restoreFocus` activates it
    bool wasOurs = false;               // another window of this program had the focus
    id activations = nil;
};

MacWindowFocus::MacWindowFocus() : parts_(std::make_unique<Parts>()) {
    parts_->activations =
        [NSNotificationCenter.defaultCenter addObserverForName:NSApplicationDidBecomeActiveNotification
                                                        object:nil
                                                         queue:nil
                                                    usingBlock:^(NSNotification*) {
                                                      // Checked later: a window that is being opened is not visible
                                                      // yet.
                                                      dispatch_async(dispatch_get_main_queue(), ^{
                                                        returnUnusedActivation();
                                                      });
                                                    }];
    // “Quit” in the toolkit's menu would end this program and remove the footers. It closes the window instead.
    for (NSMenuItem* item in NSApp.mainMenu.itemArray.firstObject.submenu.itemArray) {
        if (![item.keyEquivalent isEqualToString:@"q"]) continue;
        item.target = nil;
        item.action = @selector(performClose:);
    }
}

MacWindowFocus::~MacWindowFocus() {
    [NSNotificationCenter.defaultCenter removeObserver:parts_->activations];
}

void MacWindowFocus::prepare(QWidget& window) {
    parts_->wasOurs = NSApp.active && NSApp.keyWindow != nil;
    // The owner of the menu bar is remembered and not the active application. The agent, which has no window, may be
    // active, for example after the user opened KOVA again.
    if (NSRunningApplication* front = applicationInFront()) parts_->before = front;
    // A nonactivating panel gets the focus although its application is not active.
    NSWindow* native = nativeWindow(window.winId());
    const bool isPanel = [native isKindOfClass:NSPanel.class] && window.windowFlags().testFlag(Qt::FramelessWindowHint);
    if (isPanel) native.styleMask |= NSWindowStyleMaskNonactivatingPanel;
}

void MacWindowFocus::giveFocusTo(QWidget& window) {
    WindowFocus::giveFocusTo(window);
    NSWindow* native = nativeWindow(window.winId());
    bringToFront(native);
    // Repeats `bringToFront` after the system has carried out or declined the activation.
    __weak NSWindow* shown = native;
    dispatch_async(dispatch_get_main_queue(), ^{
      if (shown.visible && !shown.keyWindow) bringToFront(shown);
    });
}

void MacWindowFocus::restoreFocus() {
    if (std::exchange(parts_->wasOurs, false)) return; // the system focuses that window
    NSRunningApplication* before = std::exchange(parts_->before, nil);
    if (!NSApp.active) return; // the user or an action has already activated another application
    if (!before || before.terminated) before = applicationInFront();
    if (before) activate(before);
}

QPixmap applicationIcon(const std::string& bundleIdentifier, int sizePoints) {
    @autoreleasepool {
        NSString* identifier = [NSString stringWithUTF8String:bundleIdentifier.c_str()];
        NSURL* bundle = identifier.length > 0
                            ? [NSWorkspace.sharedWorkspace URLForApplicationWithBundleIdentifier:identifier]
                            : nil;
        if (!bundle) return {};
        NSImage* icon = [NSWorkspace.sharedWorkspace iconForFile:bundle.path];
        const int pixels = 2 * sizePoints; // enough for displays of scale 2
        QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        CGColorSpaceRef colors = CGColorSpaceCreateWithName(kCGColorSpaceSRGB);
        CGContextRef context =
            CGBitmapContextCreate(image.bits(), static_cast<std::size_t>(pixels), static_cast<std::size_t>(pixels), 8,
                                  static_cast<std::size_t>(image.bytesPerLine()), colors,
                                  static_cast<uint32_t>(kCGImageAlphaPremultipliedFirst) | kCGBitmapByteOrder32Host);
        CGColorSpaceRelease(colors);
        if (!context) return {};
        [NSGraphicsContext saveGraphicsState];
        NSGraphicsContext.currentContext = [NSGraphicsContext graphicsContextWithCGContext:context flipped:NO];
        [icon drawInRect:NSMakeRect(0, 0, pixels, pixels)];
        [NSGraphicsContext restoreGraphicsState];
        CGContextRelease(context);
        QPixmap pixmap = QPixmap::fromImage(image);
        pixmap.setDevicePixelRatio(2);
        return pixmap;
    }
}

void endWithAgent() {
    const char* named = std::getenv("KOVA_AGENT_PROCESS");
    if (!named) return;
    const pid_t agent = std::atoi(named);
    const auto end = [] {
        QMetaObject::invokeMethod(
            qApp, [] { QCoreApplication::quit(); }, Qt::QueuedConnection);
    };
    if (getppid() != agent) return end(); // the agent has already ended
    // The source observes the agent as long as this program runs.
    static dispatch_source_t source = dispatch_source_create(DISPATCH_SOURCE_TYPE_PROC, static_cast<uintptr_t>(agent),
                                                             DISPATCH_PROC_EXIT, dispatch_get_main_queue());
    dispatch_source_set_event_handler(source, ^{
      end();
    });
    dispatch_resume(source);
}

} // namespace kova::ui
