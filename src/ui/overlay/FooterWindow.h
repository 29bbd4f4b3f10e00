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
    enum class Carry { over, dropped, cancelled };
    /// The window's entry is dragged; `at` is the pointer's position on the screen, in pixels.
    using CarryEntry = std::function<void(const std::string& window, QPoint at, Carry how)>;

    FooterWindow(OverlayPlatform& platform, OverlayActions& actions, CarryEntry carry);

    void show(const TileContents& tile, const QRect& area, const Style& style);
    void setDropTarget(bool isDropTarget);
    /// Whether an entry of this footer is being dragged. The drag ends with the footer and with the entry.
    bool isCarrying() const { return !carried_.empty(); }
    /// No-op unless an entry is being dragged.
    void cancelCarry();
    /// The launch indicator, 0 to 1.
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
    CarryEntry carry_;
    TileContents tile_;
    Style style_;
    FooterLayout layout_;
    FooterState state_;
    std::optional<QPoint> pressedAt_;
    FooterHit pressed_;
    std::string carried_; // the window whose entry is dragged; empty: none
    QTimer noticePartEnd_;
    int wheelRest_ = 0;
};

} // namespace kova::ui
