#include "ui/overlay/Particles.h"

#include <QRandomGenerator>
#include <QRegion>

#include <algorithm>
#include <cmath>

namespace kova::ui {

namespace {

constexpr int kParticleCount = 42;
constexpr double kLineLengthPoints = 64; // a line connects two particles whose distance is smaller
constexpr double kCoveredShare = 0.9;    // the decoration counts as covered if at least this share of its area is

} // namespace

Particles::Particles() {
    QRandomGenerator random(20260); // a fixed seed, so that the picture is the same at every start
    const double middle = kParticleFieldPoints / 2;
    for (int i = 0; i < kParticleCount; ++i) {
        const double angle = random.generateDouble() * 2 * M_PI,
                     distance = std::sqrt(random.generateDouble()) * (middle - 12);
        const double course = random.generateDouble() * 2 * M_PI, speed = 0.15 + random.generateDouble() * 0.35;
        particles_.push_back({middle + distance * std::cos(angle), middle + distance * std::sin(angle),
                              speed * std::cos(course), speed * std::sin(course), 1 + random.generateDouble() * 1.5});
    }
}

void Particles::step() {
    const double middle = kParticleFieldPoints / 2, radius = middle - 12;
    for (Particle& particle : particles_) {
        particle.x += particle.dx;
        particle.y += particle.dy;
        const double x = particle.x - middle, y = particle.y - middle, distance = std::hypot(x, y);
        const double outward = (particle.dx * x + particle.dy * y) / std::max(distance, 1.0);
        if (distance < radius || outward < 0) continue;
        // The particle is reflected at the edge of the circle.
        particle.dx -= 2 * outward * x / distance;
        particle.dy -= 2 * outward * y / distance;
    }
}

void Particles::paint(QPainter& painter, const Style& style) const {
    painter.setRenderHint(QPainter::Antialiasing);
    QColor color = style.palette.particle;
    const float opacity = color.alphaF();
    for (std::size_t i = 0; i < particles_.size(); ++i) {
        const Particle& one = particles_[i];
        for (std::size_t j = 0; j < i; ++j) {
            const Particle& other = particles_[j];
            const double distance = std::hypot(one.x - other.x, one.y - other.y);
            if (distance >= kLineLengthPoints) continue;
            color.setAlphaF(opacity * static_cast<float>(0.45 * (1 - distance / kLineLengthPoints)));
            painter.setPen(QPen(color, style.scale));
            painter.drawLine(QPointF(one.x, one.y) * style.scale, QPointF(other.x, other.y) * style.scale);
        }
    }
    color.setAlphaF(opacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    for (const Particle& particle : particles_) {
        const double radius = particle.radius * style.scale;
        painter.drawEllipse(QPointF(particle.x, particle.y) * style.scale, radius, radius);
    }
}

std::optional<CGRect> particleField(const DisplayContents& display) {
    const CGRect& area = display.visibleFrame;
    if (area.size.width < kParticleFieldPoints || area.size.height < kParticleFieldPoints) return std::nullopt;
    const CGPoint middle = center(area);
    return makeRect(middle.x - kParticleFieldPoints / 2, middle.y - kParticleFieldPoints / 2, kParticleFieldPoints,
                    kParticleFieldPoints);
}

bool isCovered(const CGRect& field, const DisplayContents& display, const std::vector<TileContents>& tiles) {
    const auto pixels = [](const CGRect& rect) {
        return QRectF(minX(rect), minY(rect), rect.size.width, rect.size.height).toAlignedRect();
    };
    QRegion covering; // windows may overlap
    for (const TileContents& tile : tiles) {
        if (tile.display == display.id && !tile.isEmpty) covering += pixels(tile.frame);
    }
    for (const CGRect& frame : display.floatingFrames) covering += pixels(frame);
    double covered = 0;
    for (const QRect& part : covering& pixels(field)) covered += static_cast<double>(part.width()) * part.height();
    return covered >= kCoveredShare * field.size.width * field.size.height;
}

} // namespace kova::ui
