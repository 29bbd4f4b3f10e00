// Overlay windows that use only the toolkit, for window systems that have no platform class of their own. Each window
// has a backing store for its contents; the stacking order is left to the system.
#pragma once

#include "ui/overlay/Battery.h"
#include "ui/overlay/OverlayWindow.h"

#include <QBackingStore>

#include <map>
#include <memory>

namespace kova::ui {

class PlainPlatform final : public OverlayPlatform {
  public:
    bool isComposited() const override { return true; }
    bool isOnBattery() const override { return runsOnBattery(); }
    void adopt(OverlayWindow& window) override;
    void release(OverlayWindow& window) override;
    void stack(OverlayWindow& window) override;
    void shape(OverlayWindow& window, const QRegion& visible, const QRegion& clickable) override;
    void draw(OverlayWindow& window, const QRegion& dirty) override;
    void exposed(OverlayWindow& window) override;

  private:
    std::map<OverlayWindow*, std::unique_ptr<QBackingStore>> stores_;
};

} // namespace kova::ui
