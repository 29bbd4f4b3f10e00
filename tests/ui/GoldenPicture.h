// Compares pictures with those under golden/. After a change of the drawing, check the new pictures, then replace the
// stored ones: KOVA_RENEW_GOLDEN=1 ui_tests --gtest_filter='Golden*'
#pragma once

#include <QImage>

#include <string>

namespace kova::ui::testing {

/// Whether the pictures show the same shapes: letters may be drawn up to two pixels to the side, but no shape may be
/// missing. `scale`: pixels per point.
bool looksAlike(const QImage& one, const QImage& other, double scale);
/// Fails the test if the picture differs from the stored one of that name, and saves the new picture for inspection.
void compareWithGolden(const QImage& seen, const std::string& name, double scale);

} // namespace kova::ui::testing
