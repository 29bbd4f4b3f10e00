#include "tests/ui/GoldenPicture.h"

#include <QDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace kova::ui::testing {

namespace {

constexpr int kSameWithin = 12;         // of 255, each component
constexpr double kMostOtherPoints = 60; // less than a name or an icon has; in points, so that it counts at each scale

/// Whether the pixel lies within the colors that the picture has there and one pixel around: edges of letters drift
/// between versions of fonts, by no more than that.
bool isWithin(const QImage& picture, QPoint at, QRgb pixel) {
    int least[3] = {255, 255, 255}, most[3] = {};
    for (int y = std::max(0, at.y() - 1); y <= std::min(picture.height() - 1, at.y() + 1); ++y) {
        for (int x = std::max(0, at.x() - 1); x <= std::min(picture.width() - 1, at.x() + 1); ++x) {
            const QRgb near = picture.pixel(x, y);
            const int parts[3] = {qRed(near), qGreen(near), qBlue(near)};
            for (int i = 0; i < 3; ++i) {
                least[i] = std::min(least[i], parts[i]);
                most[i] = std::max(most[i], parts[i]);
            }
        }
    }
    const int parts[3] = {qRed(pixel), qGreen(pixel), qBlue(pixel)};
    for (int i = 0; i < 3; ++i) {
        if (parts[i] < least[i] - kSameWithin || parts[i] > most[i] + kSameWithin) return false;
    }
    return true;
}

/// Pixels of each picture that the other has not; both are of one size.
int otherPixels(const QImage& one, const QImage& other) {
    int others = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y), b = other.pixel(x, y);
            if (a != b) others += !isWithin(other, {x, y}, a) || !isWithin(one, {x, y}, b);
        }
    }
    return others;
}

} // namespace

bool looksAlike(const QImage& one, const QImage& other, double scale) {
    return one.size() == other.size() && otherPixels(one, other) <= kMostOtherPoints * scale * scale;
}

void compareWithGolden(const QImage& seen, const std::string& name, double scale) {
    SCOPED_TRACE(name);
    const QString path = QStringLiteral(KOVA_GOLDEN "/") + QString::fromStdString(name) + QStringLiteral(".png");
    if (std::getenv("KOVA_RENEW_GOLDEN")) {
        ASSERT_TRUE(seen.save(path, "PNG", 0));
        return;
    }
    const QImage golden(path);
    ASSERT_FALSE(golden.isNull()) << path.toStdString() << " is missing";
    if (looksAlike(seen, golden, scale)) return;
    const QString kept =
        QDir::tempPath() + QStringLiteral("/kova-ui-") + QString::fromStdString(name) + QStringLiteral(".png");
    seen.save(kept);
    ADD_FAILURE() << "differs from the golden picture; see " << kept.toStdString();
}

} // namespace kova::ui::testing
