// The decoration of the backdrop: drifting particles, with lines between particles that are near each other. Positions
// are in points from the top left of a square with sides of `kParticleFieldPoints`.
#pragma once

#include "ui/client/Contents.h"
#include "ui/style/Style.h"

#include <QPainter>

#include <vector>

namespace kova::ui {

inline constexpr double kParticleFieldPoints = 360;
inline constexpr int kParticleFrameMilliseconds = 66; // 15 frames a second

class Particles {
  public:
    Particles();
    /// Moves all particles by one frame.
    void step();
    void paint(QPainter& painter, const Style& style) const;

  private:
    struct Particle {
        double x, y;   // points
        double dx, dy; // points per frame
        double radius; // points
    };
    std::vector<Particle> particles_;
};

/// The area of the decoration, in the middle of the display's visible frame. Absent if the display is too small.
std::optional<CGRect> particleField(const DisplayContents& display);

/// Whether windows cover so much of the field that the motion of the particles would hardly be visible.
bool isCovered(const CGRect& field, const DisplayContents& display, const std::vector<TileContents>& tiles);

} // namespace kova::ui
