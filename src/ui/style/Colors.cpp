#include "ui/style/Colors.h"

#include <algorithm>
#include <cmath>

namespace kova::ui {

namespace {

double linear(double component) {
    return component <= 0.03928 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double leastContrast(const QColor& color, std::initializer_list<QColor> backgrounds) {
    double least = 21;
    for (const QColor& background : backgrounds) least = std::min(least, contrast(color, background));
    return least;
}

} // namespace

QColor colorOf(const RGBAColor& color) {
    const auto part = [](double component) { return static_cast<float>(std::clamp(component, 0.0, 1.0)); };
    return QColor::fromRgbF(part(color.red), part(color.green), part(color.blue), part(color.alpha));
}

QColor mixed(const QColor& background, const QColor& other, double share) {
    const auto part = [&](int one, int two) { return static_cast<int>(std::lround(one + (two - one) * share)); };
    return {part(background.red(), other.red()), part(background.green(), other.green()),
            part(background.blue(), other.blue())};
}

QColor withAlpha(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

QColor over(const QColor& background, const QColor& foreground) {
    return mixed(background, foreground, foreground.alphaF());
}

double contrast(const QColor& one, const QColor& other) {
    const double a = luminance(one), b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor legible(const QColor& wanted, std::initializer_list<QColor> backgrounds, double ratio) {
    if (leastContrast(wanted, backgrounds) >= ratio) return wanted;
    const QColor white(Qt::white), black(Qt::black);
    const QColor extreme = leastContrast(white, backgrounds) >= leastContrast(black, backgrounds) ? white : black;
    for (double share = 0.02; share < 1; share += 0.02) {
        const QColor candidate = mixed(wanted, extreme, share);
        if (leastContrast(candidate, backgrounds) >= ratio) return candidate;
    }
    return extreme;
}

} // namespace kova::ui
