// The decoration of the backdrop: particles that drift, with lines between those that are near each other. A value that
// is stepped; positions are in points, from the top left of a square of `kParticleFieldPoints`.
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
    /// Moves all by one frame.
    void step();
    void paint(QPainter& painter, const Style& style) const;

  private:
    struct Particle {
        double x, y;   // points
        double dx, dy; // points in a frame
        double radius; // points
    };
    std::vector<Particle> particles_;
};

/// Where the decoration lies on the display: in the middle of what panels leave free. Absent on displays that are too
/// small.
std::optional<CGRect> particleField(const DisplayContents& display);

/// Whether windows in tiles cover so much of the field that its motion would hardly be visible.
bool isCovered(const CGRect& field, const std::vector<TileContents>& tiles, const std::string& display);

/// True when the machine runs on battery. Reads a few small files of the system.
bool runsOnBattery(const std::string& powerSupplyFolder = "/sys/class/power_supply");

} // namespace kova::ui
