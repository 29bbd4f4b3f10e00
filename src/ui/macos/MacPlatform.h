// Overlay windows on a Mac: panels above the desktop's icons or above all windows. They are on every Space and in no
// list of windows, and never activate this program. Main thread only.
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
    bool isOnBattery() const override;
    /// Overlay windows are panels.
    Qt::WindowType windowType() const override { return Qt::Tool; }
    void adopt(OverlayWindow& window) override;
    void release(OverlayWindow& window) override;
    /// Also hides the click area of the window (see `shape`).
    void conceal(OverlayWindow& window) override;
    void stack(OverlayWindow& window) override;
    /// A Mac window receives clicks either everywhere or nowhere. If only a part must receive clicks, an invisible
    /// window over that part, its click area, receives them and passes them on.
    void shape(OverlayWindow& window, const QRegion& visible, const QRegion& clickable) override;
    /// Draws no divider line: the agent draws it in the divider's handle.
    void draw(OverlayWindow& window, const QRegion& dirty) override {
        if (window.layer() != Layer::divider) plain_.draw(window, dirty);
    }
    void exposed(OverlayWindow& window) override;

  private:
    class ClickArea;
    /// Destroys the area later, since a click in it may cause its removal.
    struct RemoveLater {
        void operator()(ClickArea* area) const;
    };

    PlainPlatform plain_;
    std::map<OverlayWindow*, std::unique_ptr<ClickArea, RemoveLater>> clickAreas_;
};

/// On a Mac, a window gets the focus only while its program is active, and kova-ui is usually not active. Panels
/// without a title bar are the exception. If kova-ui becomes active while it shows no window, it activates the previous
/// application again.
class MacWindowFocus final : public WindowFocus {
  public:
    MacWindowFocus();
    ~MacWindowFocus() override;
    void prepare(QWidget& window) override;
    void giveFocusTo(QWidget& window) override;
    void restoreFocus() override;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

/// The icon of the application; null if no application has the bundle identifier.
QPixmap applicationIcon(const std::string& bundleIdentifier, int sizePoints);

/// Makes this program quit when the agent that started it ends for any reason. No-op if the user started this program.
void endWithAgent();

} // namespace kova::ui
