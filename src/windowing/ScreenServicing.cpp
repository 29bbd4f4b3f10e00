#include "windowing/ScreenServicing.h"

#include <algorithm>
#include <cmath>

namespace kova {

namespace {

/// The integral part; a number that is not finite counts as 0.
std::string integralText(double points) {
    constexpr double kLargest = 1e15;
    if (!std::isfinite(points)) return "0";
    return std::to_string(static_cast<long long>(std::clamp(points, -kLargest, kLargest)));
}

} // namespace

DisplayID displayID(const Screen& screen) {
    if (!screen.knownID.empty()) return screen.knownID;
    if (screen.displayUUID) return DisplayID("display-" + *screen.displayUUID);
    return DisplayID("display-" + integralText(minX(screen.frame)) + "-" + integralText(minY(screen.frame)) + "-" +
                     integralText(screen.frame.size.width) + "x" + integralText(screen.frame.size.height));
}

} // namespace kova
