// The particle decoration of all displays, and the one timer that moves the particles. The timer is stopped in each of
// these cases: windows cover the decoration, the workspace is suspended, the desktop has been idle for a minute, a
// battery powers the machine, or animations are switched off. While the timer is stopped, the particles stand still and
// the timer does not wake up the process.
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
    /// Shows the agent's new contents; shows nothing if `contents` is null.
    void show(const OverlayContents* contents, const StyleOf& styleOf);
    bool isMoving() const { return timer_.isActive(); }

  private:
    class ParticleWindow;
    void move();
    DesktopActivity::Time now() const { return DesktopActivity::Time(clock_.elapsed()); }

    OverlayPlatform& platform_;
    std::map<std::string, std::unique_ptr<ParticleWindow>> windows_; // by display
    Particles particles_;
    QTimer timer_;
    QElapsedTimer clock_;
    DesktopActivity activity_;
    int framesUntilPowerCheck_ = 0;
};

} // namespace kova::ui
