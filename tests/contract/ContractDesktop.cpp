#include "tests/contract/ContractDesktop.h"

#include <algorithm>
#include <cmath>
#include <ostream>

namespace kova::contract {

using Attribute = AccessibilityAttribute;

std::ostream& operator<<(std::ostream& stream, const Backend& backend) {
    return stream << backend.name;
}

std::string nameOf(const ::testing::TestParamInfo<Backend>& info) {
    return info.param.name;
}

void DesktopContract::SetUp() {
    if (!GetParam().missing.empty()) GTEST_SKIP() << GetParam().missing;
    desktop_ = GetParam().open();
    ASSERT_TRUE(desktop_) << "the desktop could not be opened";
}

void DesktopContract::TearDown() {
    if (!desktop_) return;
    for (const auto& error : desktop_->recordedErrors()) ADD_FAILURE() << error;
}

std::vector<AttributeValue> DesktopContract::read(const AccessibilityElement& element,
                                                  const std::vector<Attribute>& attributes) {
    std::vector<AttributeValue> values;
    desktop_->onPollingQueue([&] {
        static_cast<void>(applications().runningApplications());
        values = accessibility().readAttributes(element, attributes);
    });
    return values;
}

AttributeValue DesktopContract::read(const AccessibilityElement& element, Attribute attribute) {
    const auto values = read(element, std::vector<Attribute>{attribute});
    EXPECT_EQ(values.size(), 1u);
    return values.empty() ? AttributeValue{} : values.front();
}

std::optional<CGRect> DesktopContract::frameOf(const AccessibilityElement& element) {
    const auto values = read(element, {Attribute::position, Attribute::size});
    const auto* origin = std::get_if<CGPoint>(&values.at(0));
    const auto* size = std::get_if<CGSize>(&values.at(1));
    if (!origin || !size) return std::nullopt;
    return CGRect{*origin, *size};
}

bool DesktopContract::isTrue(const AccessibilityElement& element, Attribute attribute) {
    return read(element, attribute) == AttributeValue(true);
}

std::vector<RunningApplication> DesktopContract::poll() {
    std::vector<RunningApplication> running;
    desktop_->onPollingQueue([&] { running = applications().runningApplications(); });
    return running;
}

WindowEnumeration DesktopContract::enumeration() {
    WindowEnumeration found;
    for (const auto& application : applications().runningApplications()) {
        if (application.activationPolicy != ApplicationActivationPolicy::regular) continue;
        const pid_t process = application.processIdentifier;
        found.applications.push_back(process);
        const auto values = accessibility().readAttributes(accessibility().applicationElement(process),
                                                           std::vector{Attribute::windows});
        const auto* elements = std::get_if<std::vector<AccessibilityElement>>(&values.at(0));
        if (!elements) continue;
        for (const auto& element : *elements) {
            ManagedWindow window;
            window.id = windowID(process, element);
            window.element = element;
            window.processIdentifier = process;
            found.listed.push_back(std::move(window));
        }
    }
    return found;
}

std::optional<RunningApplication> DesktopContract::polled(pid_t process) {
    const auto running = poll();
    const auto found = std::ranges::find(running, process, &RunningApplication::processIdentifier);
    if (found == running.end()) return std::nullopt;
    return *found;
}

std::optional<AccessibilityElement> DesktopContract::find(const std::string& title) {
    std::optional<AccessibilityElement> found;
    desktop_->onPollingQueue([&] {
        for (const auto& application : applications().runningApplications()) {
            const auto process = accessibility().applicationElement(application.processIdentifier);
            const auto windows = accessibility().readAttributes(process, std::vector{Attribute::windows});
            const auto* elements = std::get_if<std::vector<AccessibilityElement>>(&windows.at(0));
            if (!elements) continue;
            for (const auto& candidate : *elements) {
                const auto values = accessibility().readAttributes(candidate, std::vector{Attribute::title});
                if (values.at(0) == AttributeValue(title)) found = candidate;
            }
        }
    });
    return found;
}

AccessibilityElement DesktopContract::element(const std::string& title) {
    std::optional<AccessibilityElement> found;
    EXPECT_TRUE(until([&] { return (found = find(title)).has_value(); })) << "no window has the title " << title;
    return found.value_or(AccessibilityElement{});
}

std::string DesktopContract::titleAt(CGPoint point) {
    auto under = accessibility().elementAtPosition(point);
    for (int depth = 0; under && depth < 20; ++depth) {
        const auto values =
            accessibility().readAttributes(*under, std::vector{Attribute::role, Attribute::title, Attribute::parent});
        if (values.at(0) == AttributeValue(std::string("AXWindow"))) {
            const auto* title = std::get_if<std::string>(&values.at(1));
            return title ? *title : "(untitled)";
        }
        const auto* parent = std::get_if<AccessibilityElement>(&values.at(2));
        under = parent ? std::optional(*parent) : std::nullopt;
    }
    return {};
}

std::vector<OnScreenWindow> DesktopContract::windowsOnScreen() {
    std::vector<OnScreenWindow> windows;
    std::vector<pid_t> regular;
    desktop_->onPollingQueue([&] {
        for (const auto& running : applications().runningApplications()) regular.push_back(running.processIdentifier);
        windows = accessibility().onScreenWindows();
    });
    std::erase_if(windows, [&](const OnScreenWindow& window) {
        return window.layer != 0 || std::ranges::find(regular, window.processIdentifier) == regular.end();
    });
    return windows;
}

void DesktopContract::write(const AccessibilityElement& element, const std::vector<AttributeWrite>& writes) {
    accessibility().writeAttributes(element, writes);
    accessibility().flush();
}

std::string text(const CGRect& r) {
    const auto number = [](double value) { return std::to_string(std::lround(value)); };
    return number(minX(r)) + "," + number(minY(r)) + " " + number(r.size.width) + "x" + number(r.size.height);
}

std::string text(const std::optional<CGRect>& r) {
    return r ? text(*r) : "absent";
}

} // namespace kova::contract
