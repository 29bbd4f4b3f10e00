#include "platform/simulated/SimulatedWindow.h"

#include "support/Overloaded.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace kova {

namespace {

/// The number with at most two decimals, and with none if it is whole.
std::string describeNumber(double number) {
    std::ostringstream text;
    text.precision(12);
    text << std::round(number * 100) / 100 + 0.0; // turns -0 into 0
    return text.str();
}

double wholeIncrements(double length, double increment) {
    return increment > 0 ? std::floor(length / increment) * increment : length;
}

double limitedLength(double requested, double minimum, double maximum) {
    return std::min(std::max(requested, minimum), maximum);
}

double limitedOrigin(double requested, double length, double low, double high) {
    return std::max(low, std::min(requested, high - length));
}

} // namespace

SimulatedWindow::SimulatedWindow(std::uint64_t number, pid_t processIdentifier, std::string label,
                                 WindowTraits traits) :
    title(traits.title.value_or(label)),
    isMinimized(traits.isMinimized), virtualDesktop(traits.virtualDesktop.value_or(0)),
    springsBackTimes(traits.springsBackTimes), number_(number), processIdentifier_(processIdentifier),
    label_(std::move(label)), traits_(std::move(traits)) {
    if (traits_.frame) frame = *traits_.frame;
}

bool SimulatedWindow::isObedient() const {
    return leastSize() && !traits_.minimumSize && !traits_.unannouncedMinimumSize && !traits_.maximumSize &&
           traits_.sizeIncrement == CGSize{};
}

std::optional<CGSize> SimulatedWindow::leastSize() const {
    const bool isPlain = traits_.role == "AXWindow" && traits_.unreadable.empty() && !traits_.refusesToMove &&
                         !traits_.refusesToResize && !traits_.clampsToDisplay && !traits_.aspect &&
                         traits_.writeDelay <= Seconds(0) && traits_.springsBackTimes == 0 &&
                         traits_.vanishesAtWrite == 0;
    if (!isPlain) return std::nullopt;
    const CGSize announced = traits_.minimumSize.value_or(CGSize{});
    const CGSize unannounced = traits_.unannouncedMinimumSize.value_or(CGSize{});
    return CGSize{std::max(announced.width, unannounced.width), std::max(announced.height, unannounced.height)};
}

CGRect SimulatedWindow::frameMovedTo(CGPoint origin, const CGRect& displayFrame) const {
    if (traits_.refusesToMove || isFullScreen) return frame;
    if (!traits_.clampsToDisplay) return {origin, frame.size};
    return {{limitedOrigin(origin.x, frame.size.width, minX(displayFrame), maxX(displayFrame)),
             limitedOrigin(origin.y, frame.size.height, minY(displayFrame), maxY(displayFrame))},
            frame.size};
}

CGRect SimulatedWindow::frameResizedTo(CGSize size, const CGRect& displayFrame) const {
    if (traits_.refusesToResize || isFullScreen) return frame;
    if (traits_.clampsToDisplay) {
        size = {std::min(size.width, maxX(displayFrame) - minX(frame)),
                std::min(size.height, maxY(displayFrame) - minY(frame))};
    }
    const CGSize announced = traits_.minimumSize.value_or(CGSize{1, 1});
    const CGSize unannounced = traits_.unannouncedMinimumSize.value_or(CGSize{1, 1});
    const CGSize maximum = traits_.maximumSize.value_or(CGSize{1e6, 1e6});
    CGSize taken = {limitedLength(wholeIncrements(size.width, traits_.sizeIncrement.width),
                                  std::max(announced.width, unannounced.width), maximum.width),
                    limitedLength(wholeIncrements(size.height, traits_.sizeIncrement.height),
                                  std::max(announced.height, unannounced.height), maximum.height)};
    if (traits_.aspect) taken.height = std::round(taken.width / *traits_.aspect);
    return {frame.origin, taken};
}

std::optional<WindowSizeHints> SimulatedWindow::sizeHints() const {
    if (!traits_.tellsSizeHints) return std::nullopt;
    const double aspect = traits_.aspect.value_or(0);
    return WindowSizeHints{.minimum = traits_.minimumSize.value_or(CGSize{}),
                           .maximum = traits_.maximumSize.value_or(CGSize{}),
                           .increment = traits_.sizeIncrement,
                           .leastAspect = aspect,
                           .mostAspect = aspect};
}

std::string describeFrame(const CGRect& frame) {
    return describeNumber(minX(frame)) + "," + describeNumber(minY(frame)) + " " + describeNumber(frame.size.width) +
           "x" + describeNumber(frame.size.height);
}

std::string describeWrite(const AttributeWrite& write) {
    const std::string value = std::visit(
        Overloaded{[](std::monostate) { return std::string("nothing"); },
                   [](bool isTrue) { return std::string(isTrue ? "true" : "false"); },
                   [](const std::string& text) { return text; },
                   [](const CGPoint& point) { return describeNumber(point.x) + "," + describeNumber(point.y); },
                   [](const CGSize& size) { return describeNumber(size.width) + "x" + describeNumber(size.height); },
                   [](const AccessibilityElement& element) { return "element " + std::to_string(element.hash); },
                   [](const std::vector<AccessibilityElement>& elements) {
                       return std::to_string(elements.size()) + " elements";
                   }},
        write.value);
    return std::string(attributeName(write.attribute)) + " " + value;
}

} // namespace kova
