// The base class of the overlay's windows, and the interface to the window system. An overlay window never takes the
// focus, is in no list of windows, and keeps its place in the stacking order (see `Layer`). Areas are in pixels.
#pragma once

#include <QPainter>
#include <QRegion>
#include <QVariantAnimation>
#include <QWindow>

#include <string>
#include <string_view>

namespace kova::ui {

/// The layers, bottom first. Layers up to `footer` are above the desktop's icons and below all applications; the layers
/// `highlight` and `message` are above all applications.
enum class Layer { backdrop, decoration, emptyTile, divider, footer, highlight, message };
constexpr bool isBelowApplications(Layer layer) {
    return layer <= Layer::footer;
}

class OverlayWindow;

class OverlayPlatform {
  public:
    virtual ~OverlayPlatform() = default;
    /// Whether translucent windows are blended with the windows below them.
    virtual bool isComposited() const = 0;
    /// Whether a battery powers the machine; may read small files.
    virtual bool isOnBattery() const { return false; }
    /// The top left corner of the first display, in pixels on the screen.
    virtual QPoint firstDisplay() const { return {}; }
    virtual Qt::WindowType windowType() const { return Qt::Window; }
    /// Prepares the window for its place in the overlay. Call after the window was created and before it is shown.
    virtual void adopt(OverlayWindow& window) = 0;
    /// Frees the resources that the platform has allocated for the window. Call before the window is destroyed.
    virtual void release(OverlayWindow& window) = 0;
    /// Moves the window to its place in the stacking order. Call before the window is shown.
    virtual void stack(OverlayWindow& window) = 0;
    /// Takes a window off the screen; it will be shown again.
    virtual void conceal(OverlayWindow& window);
    /// Shows a concealed window again. It is already drawn.
    virtual void reveal(OverlayWindow& window);
    /// Sets the visible parts and the parts that receive clicks; clicks elsewhere reach the window below. Call again
    /// after each move of the window.
    virtual void shape(OverlayWindow& window, const QRegion& visible, const QRegion& clickable) = 0;
    /// Draws the region of the window and shows it on the screen.
    virtual void draw(OverlayWindow& window, const QRegion& dirty) = 0;
    /// Sends changes that the toolkit would otherwise buffer until its next event.
    virtual void flush() {}
    /// Called when the system needs the window's contents drawn.
    virtual void exposed(OverlayWindow& window) = 0;
};

class OverlayWindow : public QWindow {
  public:
    OverlayWindow(OverlayPlatform& platform, Layer layer, std::string_view title);
    ~OverlayWindow() override;

    Layer layer() const { return layer_; }
    /// If `isGradual`, the window fades in when it is shown next. No effect without a compositor.
    void setAppearsGradually(bool isGradual) { appearsGradually_ = isGradual; }
    /// Shows the window, or changes it if it is shown. Draws it if it was not shown or its size has changed.
    void present(const QRect& area, const QRegion& visible, const QRegion& clickable);
    /// Takes the window off the screen, until it is presented again.
    void retire();
    /// Draws the window, or a part of it, again; no-op while the window is not shown.
    void redraw();
    void redraw(const QRegion& dirty);

    /// Draws the contents; the origin is the window's top left.
    virtual void paint(QPainter& painter) = 0;

  protected:
    void exposeEvent(QExposeEvent* event) override;
    /// Called when the window is retired. Drops its contents and the state of the pointer.
    virtual void forget() {}

  private:
    OverlayPlatform& platform_;
    const Layer layer_;
    QRegion visible_, clickable_;
    bool isPresented_ = false, isRetired_ = false, appearsGradually_ = false;
    QVariantAnimation appearing_;
};

} // namespace kova::ui
