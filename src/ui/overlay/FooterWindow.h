// The window of one tile's footer: draws it and reports clicks, the wheel and drags.
#pragma once

#include "ui/overlay/Footer.h"
#include "ui/overlay/OverlayActions.h"
#include "ui/overlay/OverlayWindow.h"

#include <QTimer>

#include <functional>
#include <optional>

namespace kova::ui {

class FooterWindow final : public OverlayWindow {
  public:
    enum class DragEvent { moved, dropped, canceled };
    /// Called while the entry of `window` is dragged; `at` is the pointer's position on the screen, in pixels.
    using DragHandler = std::function<void(const std::string& window, QPoint at, DragEvent dragEvent)>;

    FooterWindow(OverlayPlatform& platform, OverlayActions& actions, DragHandler dragHandler);

    void show(const TileContents& tile, const QRect& area, const Style& style);
    void setDropTarget(bool isDropTarget);
    /// Whether an entry of this footer is being dragged. Removing the footer or the entry ends the drag.
    bool isDragging() const { return !dragged_.empty(); }
    /// No-op unless an entry is being dragged.
    void cancelDrag();
    /// Turns the launch indicator; `turn` is from 0 to 1.
    void turnSpinner(double turn);
    const FooterLayout& layoutInWindow() const { return layout_; }

    void paint(QPainter& painter) override;

  protected:
    bool event(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void forget() override;

  private:
    void hover(FooterHit hit);
    void setState(const FooterState& state);
    const StackEntry* entryAt(FooterHit hit) const;
    void click(FooterHit hit, QPoint at);

    OverlayActions& actions_;
    DragHandler dragHandler_;
    TileContents tile_;
    Style style_;
    FooterLayout layout_;
    FooterState state_;
    std::optional<QPoint> pressedAt_;
    FooterHit pressed_;
    std::string dragged_; // the window whose entry is dragged; empty if there is none
    QTimer noticePartTimer_;
    int wheelAngle_ = 0; // by which the wheel was turned since the last step, in eighths of a degree
};

} // namespace kova::ui
