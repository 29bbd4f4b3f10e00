// The particle decoration of all displays and the one timer that moves it. It stands still, without a wake-up, while it
// is covered by windows or the workspace is suspended, when nothing happened on the desktop for a minute, on battery,
// and where animations are switched off.
#pragma once

#include "ui/overlay/DesktopActivity.h"
#include "ui/overlay/OverlayWindow.h"
#include "ui/overlay/Particles.h"

#include <QElapsedTimer>
#include <QTimer>

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace kova::ui {

class Decoration {
  public:
    explicit Decoration(OverlayPlatform& platform);
    ~Decoration();

    using StyleOf = std::function<Style(const std::string& display)>;
    /// Shows the agent's new contents. Null: shows nothing.
    void show(const OverlayContents* contents, const StyleOf& styleOf);
    bool isMoving() const { return timer_.isActive(); }

  private:
    class Field;
    void move();
    DesktopActivity::Time now() const { return DesktopActivity::Time(clock_.elapsed()); }

    OverlayPlatform& platform_;
    std::map<std::string, std::unique_ptr<Field>> fields_; // by display
    Particles particles_;
    QTimer timer_;
    QElapsedTimer clock_;
    DesktopActivity activity_;
    int framesUntilPowerCheck_ = 0;
};

} // namespace kova::ui
