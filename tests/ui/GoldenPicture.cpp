#include "tests/ui/GoldenPicture.h"

#include <QDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace kova::ui::testing {

namespace {

constexpr int kColorTolerance = 12; // of 255, for each component
// These sizes are in points, so the comparison is the same at every scale. The smallest shape of the overlay, a plus,
// covers 17 square points.
constexpr double kBlockPoints = 12, kBlockStepPoints = 4, kMostDifferentSquarePoints = 8;

/// Whether the pixel's color lies between the colors that the picture has at that position and one pixel around it.
/// Edges of letters differ no more than that between versions of a font.
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
        if (parts[i] < least[i] - kColorTolerance || parts[i] > most[i] + kColorTolerance) return false;
    }
    return true;
}

/// The number of pixels that differ between `block` of `one` and the block of `other` whose position differs by
/// `shift`.
int differentPixels(const QImage& one, const QImage& other, const QRect& block, QPoint shift) {
    const QRect compared = block & one.rect() & one.rect().translated(-shift);
    int count = 0;
    for (int y = compared.top(); y <= compared.bottom(); ++y) {
        for (int x = compared.left(); x <= compared.right(); ++x) {
            const QPoint at(x, y), there = at + shift;
            const QRgb a = one.pixel(at), b = other.pixel(there);
            if (a != b) count += !isWithin(other, there, a) || !isWithin(one, at, b);
        }
    }
    return count;
}

} // namespace

/// Compares each block with the block at the same position and with the blocks one pixel to the left and right, since
/// letters may move within a line.
bool looksAlike(const QImage& one, const QImage& other, double scale) {
    if (one == other) return true;
    if (one.size() != other.size()) return false;
    const int side = static_cast<int>(kBlockPoints * scale), step = static_cast<int>(kBlockStepPoints * scale);
    for (int y = 0; y < one.height(); y += step) {
        for (int x = 0; x < one.width(); x += step) {
            const QRect block(x, y, side, side);
            const auto isLike = [&](int shift) {
                return differentPixels(one, other, block, {shift, 0}) <= kMostDifferentSquarePoints * scale * scale;
            };
            if (!isLike(0) && !isLike(-1) && !isLike(1)) return false;
        }
    }
    return true;
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
