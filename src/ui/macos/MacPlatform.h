// Overlay windows on a Mac: panels above the desktop's icons or above all windows, on every Space, in no list of
// windows, that never make this program active. Main thread only.
#pragma once

#include "ui/overlay/PlainPlatform.h"
#include "ui/windows/WindowFocus.h"

#include <QPixmap>

#include <map>
#include <memory>
#include <string>

namespace kova::ui {

class MacPlatform final : public OverlayPlatform {
  public:
    MacPlatform();
    ~MacPlatform() override;

    bool isComposited() const override { return true; }
    /// Overlay windows are panels.
    Qt::WindowType windowType() const override { return Qt::Tool; }
    void adopt(OverlayWindow& window) override;
    void leave(OverlayWindow& window) override;
    /// Its click area goes with it.
    void conceal(OverlayWindow& window) override;
    void stack(OverlayWindow& window) override;
    /// A window takes clicks everywhere or nowhere. Where a part of it takes some, an invisible window lies over that
    /// part and passes them on.
    void shape(OverlayWindow& window, const QRegion& seen, const QRegion& clickable) override;
    /// The agent's handle draws the line of a divider itself.
    void draw(OverlayWindow& window, const QRegion& dirty) override {
        if (window.layer() != Layer::divider) plain_.draw(window, dirty);
    }
    void exposed(OverlayWindow& window) override;

  private:
    class ClickArea;
    /// A click may cause the removal of its own area.
    struct RemoveLater {
        void operator()(ClickArea* area) const;
    };

    PlainPlatform plain_;
    std::map<OverlayWindow*, std::unique_ptr<ClickArea, RemoveLater>> clickAreas_;
};

/// This program is hardly ever active: a window gets the focus only with its program, a panel without a title bar also
/// by itself. An activation while no window is open is given back.
class MacWindowFocus final : public WindowFocus {
  public:
    MacWindowFocus();
    ~MacWindowFocus() override;
    void prepare(QWidget& window) override;
    void take(QWidget& window) override;
    void giveBack() override;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

/// Null when no application has the bundle identifier.
QPixmap applicationIcon(const std::string& bundleIdentifier, int sizePoints);

/// Ends this program when the agent that started it ends, however that happens. Nothing when the user started it.
void endWithAgent();

} // namespace kova::ui
