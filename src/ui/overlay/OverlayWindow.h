// A window of the overlay, and what a window system has to do for it. Such a window never takes the focus, is in no
// list of windows, and keeps its place among the others: see `Layer`. Areas and regions are pixels.
#pragma once

#include <QPainter>
#include <QRegion>
#include <QVariantAnimation>
#include <QWindow>

#include <string>
#include <string_view>

namespace kova::ui {

/// Bottom first. Layers up to `footer` are above the desktop's icons and below all applications; the others are above
/// all applications.
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
    /// The top left corner of the first display, in pixels on the screen.
    virtual QPoint firstDisplay() const { return {}; }
    virtual Qt::WindowType windowType() const { return Qt::Window; }
    /// The window has been created and is not yet shown.
    virtual void adopt(OverlayWindow& window) = 0;
    /// The window will be destroyed.
    virtual void leave(OverlayWindow& window) = 0;
    /// Call before the window is shown: puts it into its place in the stacking order.
    virtual void stack(OverlayWindow& window) = 0;
    /// Takes a window off the screen that will be shown again.
    virtual void conceal(OverlayWindow& window);
    /// Shows a concealed window; it has been drawn.
    virtual void reveal(OverlayWindow& window);
    /// The visible parts, and those that take clicks; a click elsewhere reaches the window below. Also called after
    /// each move.
    virtual void shape(OverlayWindow& window, const QRegion& seen, const QRegion& clickable) = 0;
    /// Draws the region of the window and shows it on the screen.
    virtual void draw(OverlayWindow& window, const QRegion& dirty) = 0;
    /// Flushes changes of windows that the toolkit keeps until its next event.
    virtual void flush() {}
    /// The system wants the window's contents.
    virtual void exposed(OverlayWindow& window) = 0;
};

class OverlayWindow : public QWindow {
  public:
    OverlayWindow(OverlayPlatform& platform, Layer layer, std::string_view role);
    ~OverlayWindow() override;

    Layer layer() const { return layer_; }
    /// Whether the window, when it is shown next, becomes opaque over a short time. Only a compositor can show that.
    void setAppearsGradually(bool isGradual) { appearsGradually_ = isGradual; }
    /// Shows the window there, or changes it. Draws it if any of this has changed.
    void present(const QRect& area, const QRegion& seen, const QRegion& clickable);
    /// Takes the window off the screen, until it is presented again.
    void retire();
    /// Draws a part, or all of it, again; nothing while it is not shown.
    void redraw();
    void redraw(const QRegion& dirty);

    /// Draws the contents; the origin is the window's top left.
    virtual void paint(QPainter& painter) = 0;

  protected:
    void exposeEvent(QExposeEvent* event) override;
    /// Called when the window is retired: its contents and the state of the pointer in it are dropped.
    virtual void forget() {}

  private:
    OverlayPlatform& platform_;
    const Layer layer_;
    QRegion seen_, clickable_;
    bool isPresented_ = false, isRetired_ = false, appearsGradually_ = false;
    QVariantAnimation appearing_;
};

} // namespace kova::ui
