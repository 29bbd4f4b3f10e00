// The colors, fonts and sizes for drawing. Sizes are in points, on a grid of 4; only `Style::px` converts them to
// pixels.
#pragma once

#include "ui/style/Palette.h"

#include <QFont>
#include <QPixmap>
#include <QPoint>
#include <QRect>

#include <cmath>
#include <functional>

namespace kova::ui {

namespace points {
inline constexpr double footerPanelHeight = 26, footerRadius = 8;
inline constexpr double entryHeight = 20, entryRadius = 6, entryPadding = 8, entryGap = 4, iconSize = 16, iconGap = 6;
inline constexpr double hiddenChip = 28; // shows the number of entries that do not fit into a footer
inline constexpr double widestEntryText = 160, leastEntryText = 56;
inline constexpr double tileRadius = 10, buttonHeight = 32, cardPadding = 20;
inline constexpr double messageHeight = 44, messageMargin = 12, widestMessage = 640;
inline constexpr double gridStep = 60, dividerLine = 3;
inline constexpr double smallText = 12, largeText = 14;
} // namespace points

/// The icon of the application, `sizePixels` wide and high; null if there is none.
using IconSource = std::function<QPixmap(const ApplicationName& application, int sizePixels)>;

struct Style {
    Palette palette{};
    double scale = 1;      // pixels per point
    QPoint firstDisplay{}; // pixel position of its top left corner, the origin of the agent's coordinates
    QString fontFamily{};
    IconSource icon{};
    bool isComposited = false;
    bool areAnimationsEnabled = true;

    int px(double sizePoints) const { return static_cast<int>(std::lround(sizePoints * scale)); }
    /// Converts a point or a rectangle of the agent to pixels on the screen.
    QPoint px(const CGPoint& point) const { return firstDisplay + QPoint(px(point.x), px(point.y)); }
    QRect px(const CGRect& rect) const { return {px(rect.origin), px(CGPoint{maxX(rect), maxY(rect)}) - QPoint(1, 1)}; }
    /// The width of a line in whole pixels, at least one.
    double line(double widthPoints) const { return std::max(1.0, std::round(widthPoints * scale)); }
    QFont font(double sizePoints, QFont::Weight weight = QFont::Normal) const {
        QFont font(fontFamily);
        font.setPixelSize(std::max(1, px(sizePoints)));
        font.setWeight(weight);
        return font;
    }
};

} // namespace kova::ui
