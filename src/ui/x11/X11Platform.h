// Overlay windows on X11. Window managers do not manage them (override-redirect), so this class keeps their order: on a
// separate connection it follows the order of the root window's children, and moves the overlay below the applications
// again after a change. The X server keeps the drawn pictures as window backgrounds. Main thread only.
#pragma once

#include "ui/overlay/Battery.h"
#include "ui/overlay/OverlayWindow.h"
#include "ui/x11/ApplicationAreas.h"
#include "ui/x11/RestackBudget.h"
#include "ui/x11/StackOrder.h"

#include <QAbstractNativeEventFilter>
#include <QSocketNotifier>
#include <QTimer>

#include <functional>
#include <map>
#include <memory>
#include <string_view>
#include <vector>

struct xcb_connection_t;
struct xcb_screen_t;

namespace kova::ui {

class X11Platform final : public OverlayPlatform, private QAbstractNativeEventFilter {
  public:
    /// `connection` is the toolkit's connection. Returns null if a second connection cannot be opened.
    static std::unique_ptr<X11Platform> create(xcb_connection_t* connection);
    ~X11Platform() override;

    void whenCompositingChanges(std::function<void()> call) { compositingChanged_ = std::move(call); }
    void whenFirstDisplayMoves(std::function<void()> call) { firstDisplayMoved_ = std::move(call); }
    /// Whether a system tray window exists.
    bool hasTray() const { return hasTray_; }
    void whenTrayChanges(std::function<void(bool hasTray)> call) { trayChanged_ = std::move(call); }

    bool isComposited() const override { return isComposited_; }
    bool isOnBattery() const override { return runsOnBattery(); }
    QPoint firstDisplay() const override { return firstDisplay_; }
    void adopt(OverlayWindow& window) override;
    void release(OverlayWindow& window) override;
    void stack(OverlayWindow& window) override;
    void conceal(OverlayWindow& window) override;
    void reveal(OverlayWindow& window) override;
    void shape(OverlayWindow& window, const QRegion& visible, const QRegion& clickable) override;
    void draw(OverlayWindow& window, const QRegion& dirty) override;
    void flush() override;
    void exposed(OverlayWindow&) override {} // the server paints backgrounds itself

  private:
    struct Picture {
        std::uint32_t pixmap = 0;
        std::uint32_t context = 0;
        QSize size;
        std::uint8_t depth = 0;
        QRegion visible, shaped; // the visible part as requested, and after cutting out the applications
        bool isShaped = false, isConcealed = false;
    };

    X11Platform(xcb_connection_t* connection, xcb_connection_t* watch, int screen);
    bool nativeEventFilter(const QByteArray& kind, void* event, qintptr* result) override;
    void dropPixmap(Picture& picture);
    void watchSelections();
    void readSelections();
    void watchMonitors();
    void readMonitors();
    void readEvents();
    void readOrder();
    void classify(WindowNumber window);
    RootChild kindOf(WindowNumber window) const;
    bool isDesktopType(WindowNumber window) const;
    bool isGuard(WindowNumber window) const;
    WindowNumber clientOf(WindowNumber window, int depth) const;
    void keepOrder();
    void endContestIfOrderIsKept();
    void updateCutOut();
    std::vector<WindowNumber> windowsBelowApplications() const; // of the overlay, bottom first
    bool drawsUnmanagedWindowsOnTop() const;
    QRect drawnArea(WindowNumber window, const QRect& frame) const;
    void readArea(WindowNumber window);
    void cutOutApplications();
    void reshapeLowerWindows(Layer layer);
    void applyShape(OverlayWindow& window, Picture& picture);
    void putPart(const Picture& picture, OverlayWindow& window, const QRect& part);
    std::uint32_t atom(std::string_view name) const;
    bool hasOwner(std::uint32_t selection) const;

    xcb_connection_t* const connection_; // the toolkit's
    xcb_connection_t* const watch_;      // the second one, for events of other windows and for queries
    xcb_screen_t* screen_ = nullptr;
    std::function<void()> compositingChanged_;
    std::function<void()> firstDisplayMoved_;
    std::function<void(bool)> trayChanged_;
    std::unique_ptr<QSocketNotifier> readable_;
    std::uint32_t windowType_, typeDesktop_, typeNotification_, wmState_, frameExtents_, shadowExtents_,
        compositorSelection_, traySelection_;
    std::uint8_t firstXFixesEvent_ = 0, firstRandrEvent_ = 0; // 0: the server lacks the extension
    QPoint firstDisplay_;
    bool isComposited_ = false, hasTray_ = false;
    bool isCutOut_ = false; // applications are cut out, since the overlay may be above them
    StackOrder order_;
    RestackBudget restackBudget_;
    bool isContested_ = false; // the window manager has restored another order again and again
    QTimer contestPause_;      // while it runs, the order is left to the window manager
    QTimer contestCheck_;      // ends the contest if the order is kept by then
    ApplicationAreas areas_;
    QRegion covered_;                                   // the area that applications cover; empty unless `isCutOut_`
    std::map<WindowNumber, WindowNumber> clients_;      // by the window manager's frame around the client
    std::map<Layer, std::vector<WindowNumber>> layers_; // the overlay's windows below applications
    std::map<OverlayWindow*, Picture> pictures_;
};

} // namespace kova::ui
