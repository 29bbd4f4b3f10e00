#include "ui/overlay/Decoration.h"

#include "ui/overlay/PictureWindows.h"

#include <algorithm>

namespace kova::ui {

namespace {
constexpr int kFramesPerPowerCheck = 30'000 / kParticleFrameMilliseconds;
} // namespace

/// The window that shows the particles on one display.
class Decoration::ParticleWindow final : public OverlayWindow {
  public:
    ParticleWindow(OverlayPlatform& platform, const Particles& particles) :
        OverlayWindow(platform, Layer::decoration, "KOVA decoration"), particles_(particles) {}

    void show(const QRect& area, const QRect& backdrop, bool isCovered, const Style& style) {
        const bool isSame = drawsAlike(style, style_) && area == geometry();
        isCovered_ = isCovered;
        style_ = style;
        backdrop_ = backdrop.translated(-area.topLeft());
        present(area, QRect(QPoint(0, 0), area.size()), QRegion());
        if (!isSame) redraw();
    }
    bool isCovered() const { return isCovered_; }
    void paint(QPainter& painter) override {
        if (!backdrop_.isEmpty()) paintBackdrop(painter, backdrop_, style_);
        particles_.paint(painter, style_);
    }

  private:
    const Particles& particles_;
    Style style_;
    QRect backdrop_;
    bool isCovered_ = false;
};

Decoration::Decoration(OverlayPlatform& platform) : platform_(platform) {
    clock_.start();
    timer_.setInterval(kParticleFrameMilliseconds);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { move(); });
}

Decoration::~Decoration() = default;

void Decoration::show(const OverlayContents* contents, const StyleOf& styleOf) {
    if (!contents || !contents->appearance.showBrain) {
        windows_.clear();
        return timer_.stop();
    }
    bool isSeen = false, areAnimationsEnabled = true;
    std::map<std::string, std::unique_ptr<ParticleWindow>> kept;
    for (const DisplayContents& display : contents->displays) {
        const auto field = particleField(display);
        const Style style = styleOf(display.id);
        // Without a backdrop the window is translucent, which needs a compositor.
        const bool canBeShown = contents->appearance.useThemeBackground || style.isComposited;
        if (!field || !canBeShown || display.isFocusMode) continue;
        auto& window = kept[display.id];
        window = std::move(windows_[display.id]);
        if (!window) window = std::make_unique<ParticleWindow>(platform_, particles_);
        const bool isHidden = isCovered(*field, display, contents->tiles);
        const QRect backdrop = contents->appearance.useThemeBackground ? style.px(display.frame) : QRect();
        window->show(style.px(*field), backdrop, isHidden, style);
        isSeen = isSeen || !isHidden;
        areAnimationsEnabled = areAnimationsEnabled && style.areAnimationsEnabled;
    }
    windows_ = std::move(kept);
    activity_.update(*contents, now());
    if (!isSeen || !areAnimationsEnabled || contents->isSuspended || activity_.isIdle(now())) return timer_.stop();
    if (timer_.isActive()) return;
    framesUntilPowerCheck_ = 0;
    timer_.start();
}

void Decoration::move() {
    const bool isPowerCheckDue = framesUntilPowerCheck_-- <= 0;
    if (isPowerCheckDue) framesUntilPowerCheck_ = kFramesPerPowerCheck;
    if (activity_.isIdle(now()) || (isPowerCheckDue && platform_.isOnBattery())) return timer_.stop();
    particles_.step();
    for (const auto& [display, window] : windows_) {
        if (!window->isCovered()) window->redraw();
    }
}

} // namespace kova::ui
