#include "ui/macos/MacPlatform.h"

#include <QCoreApplication>
#include <QImage>
#include <QMouseEvent>

#import <AppKit/AppKit.h>

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace kova::ui {

namespace {

NSWindow* nativeWindow(const QWindow& window) {
    return ((__bridge NSView*)reinterpret_cast<void*>(window.winId())).window;
}

/// Between the levels of the agent's divider handles and the windows of applications; the backdrop below the handles.
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
    window.canHide = NO; // "Hide Others" of another application leaves it where it is
    window.excludedFromWindowsMenu = YES;
    window.hasShadow = NO;
    window.animationBehavior = NSWindowAnimationBehaviorNone;
}

} // namespace

/// Invisible, over the part of a window that takes clicks.
class MacPlatform::ClickArea final : public QWindow {
  public:
    explicit ClickArea(OverlayWindow& target) : target_(target) {
        setFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
        const auto follow = [this] { place(part_); };
        for (const auto moved : {&QWindow::xChanged, &QWindow::yChanged}) connect(&target_, moved, this, follow);
    }
    /// `part` is in the target's coordinates.
    void place(const QRect& part) {
        part_ = part;
        setGeometry(part.translated(target_.geometry().topLeft()));
    }
    void present() {
        create();
        NSWindow* native = nativeWindow(*this);
        configure(native, std::max(levelOf(target_.layer()), levelOf(Layer::footer)) + 1);
        native.opaque = NO;
        // Not fully transparent: clicks fall through windows that are.
        native.backgroundColor = [NSColor colorWithWhite:0 alpha:0.01];
        setVisible(true);
    }

  protected:
    bool event(QEvent* event) override {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseMove: {
            const auto* mouse = static_cast<QMouseEvent*>(event);
            const QPointF place = mouse->position() + part_.topLeft();
            QMouseEvent told(mouse->type(), place, place, mouse->globalPosition(), mouse->button(), mouse->buttons(),
                             mouse->modifiers());
            return QCoreApplication::sendEvent(&target_, &told);
        }
        case QEvent::Leave: {
            QEvent told(QEvent::Leave);
            return QCoreApplication::sendEvent(&target_, &told);
        }
        default:
            return QWindow::event(event);
        }
    }

  private:
    OverlayWindow& target_;
    QRect part_;
};

MacPlatform::MacPlatform() = default;

MacPlatform::~MacPlatform() = default;

void MacPlatform::adopt(OverlayWindow& window) {
    plain_.adopt(window);
    // The agent's handle draws the line of a divider itself.
    if (window.layer() == Layer::divider) nativeWindow(window).alphaValue = 0;
    configure(nativeWindow(window), levelOf(window.layer()));
}

void MacPlatform::leave(OverlayWindow& window) {
    clickAreas_.erase(&window);
    plain_.leave(window);
}

void MacPlatform::stack(OverlayWindow& window) {
    const auto found = clickAreas_.find(&window);
    if (found != clickAreas_.end()) found->second->present();
}

void MacPlatform::shape(OverlayWindow& window, const QRegion& seen, const QRegion& clickable) {
    const bool isWhole = !clickable.isEmpty() && clickable == seen;
    nativeWindow(window).ignoresMouseEvents = isWhole ? NO : YES;
    if (isWhole || clickable.isEmpty()) {
        clickAreas_.erase(&window);
        return;
    }
    auto& area = clickAreas_[&window];
    const bool isNew = !area;
    if (isNew) area = std::make_unique<ClickArea>(window);
    area->place(clickable.boundingRect());
    if (isNew && window.isVisible()) area->present(); // else `stack` does, over the window
}

void MacPlatform::exposed(OverlayWindow& window) {
    // The toolkit has levels of its own, and may set them when it shows a window.
    NSWindow* native = nativeWindow(window);
    if (native.level != levelOf(window.layer())) configure(native, levelOf(window.layer()));
    plain_.exposed(window);
}

struct MacWindowFocus::Before {
    NSRunningApplication* application = nil;
};

MacWindowFocus::MacWindowFocus() : before_(std::make_unique<Before>()) {}

MacWindowFocus::~MacWindowFocus() = default;

void MacWindowFocus::prepare(QWidget&) {
    // Not the active application: that may be the agent, which has no window, after KOVA was opened once more.
    NSRunningApplication* front = NSWorkspace.sharedWorkspace.menuBarOwningApplication;
    if (![front isEqual:NSRunningApplication.currentApplication]) before_->application = front;
}

void MacWindowFocus::take(QWidget& window) {
    // The newer call without the argument is only a request, which the system may decline.
    [NSApp activateIgnoringOtherApps:YES];
    WindowFocus::take(window);
}

void MacWindowFocus::giveBack() {
    NSRunningApplication* application = std::exchange(before_->application, nil);
    if (!application || application.terminated || !NSApp.active) return;
    if (@available(macOS 14.0, *)) {
        [NSApp yieldActivationToApplication:application];
        [application activateFromApplication:NSRunningApplication.currentApplication
                                     options:NSApplicationActivationOptions(0)];
    } else {
        [application activateWithOptions:NSApplicationActivationOptions(0)];
    }
}

QPixmap applicationIcon(const std::string& bundleIdentifier, int sizePoints) {
    @autoreleasepool {
        NSString* identifier = [NSString stringWithUTF8String:bundleIdentifier.c_str()];
        NSURL* bundle = identifier.length > 0
                            ? [NSWorkspace.sharedWorkspace URLForApplicationWithBundleIdentifier:identifier]
                            : nil;
        if (!bundle) return {};
        NSImage* icon = [NSWorkspace.sharedWorkspace iconForFile:bundle.path];
        const int pixels = 2 * sizePoints; // sharp on every display
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
    if (getppid() != agent) return end(); // the agent was faster
    // Held for as long as this program runs.
    static dispatch_source_t source = dispatch_source_create(DISPATCH_SOURCE_TYPE_PROC, static_cast<uintptr_t>(agent),
                                                             DISPATCH_PROC_EXIT, dispatch_get_main_queue());
    dispatch_source_set_event_handler(source, ^{
      end();
    });
    dispatch_resume(source);
}

} // namespace kova::ui
