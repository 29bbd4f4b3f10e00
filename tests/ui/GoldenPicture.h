// Compares pictures with those under golden/. After a change of the drawing look at the new pictures, then replace the
// stored ones: KOVA_RENEW_GOLDEN=1 ui_tests --gtest_filter='Golden*'
#pragma once

#include <QImage>

#include <string>

namespace kova::ui::testing {

/// Whether one is the other, but for letters that are drawn up to two pixels beside; a single sign that is missing
/// makes a difference. `scale`: pixels in a point.
bool looksAlike(const QImage& one, const QImage& other, double scale);
/// Fails the test when the picture differs from the kept one of that name, and says where the new one is.
void compareWithGolden(const QImage& seen, const std::string& name, double scale);

} // namespace kova::ui::testing
