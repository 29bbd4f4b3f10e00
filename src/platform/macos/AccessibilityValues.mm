#include "platform/macos/AccessibilityValues.h"

#include "support/Overloaded.h"
#include "windowing/ApplicationBackoff.h"

namespace kova::macos {

namespace {

template <class Record>
AttributeValue structure(AXValueRef value, AXValueType type) {
    Record record{};
    if (!AXValueGetValue(value, type, &record)) return {};
    return record;
}

AttributeValue structure(AXValueRef value) {
    switch (AXValueGetType(value)) {
    case kAXValueTypeCGPoint:
        return structure<CGPoint>(value, kAXValueTypeCGPoint);
    case kAXValueTypeCGSize:
        return structure<CGSize>(value, kAXValueTypeCGSize);
    case kAXValueTypeAXError: // stands for an attribute that could not be read
    default:
        return {};
    }
}

AttributeValue elements(CFArrayRef array) {
    std::vector<AccessibilityElement> found;
    for (CFIndex i = 0; i < CFArrayGetCount(array); ++i) {
        CFTypeRef each = CFArrayGetValueAtIndex(array, i);
        if (!each || CFGetTypeID(each) != AXUIElementGetTypeID()) continue;
        if (auto element = interfaceElement(static_cast<AXUIElementRef>(each))) found.push_back(std::move(*element));
    }
    return found;
}

} // namespace

std::optional<AccessibilityElement> interfaceElement(AXUIElementRef element) {
    pid_t process = 0;
    if (AXUIElementGetPid(element, &process) != kAXErrorSuccess) return std::nullopt;
    const auto application = Owned<AXUIElementRef>::adopt(AXUIElementCreateApplication(process));
    if (CFEqual(element, application.get())) return AccessibilityElement{process, 0, nullptr};
    return AccessibilityElement{process, CFHash(element), shared(element)};
}

Owned<AXUIElementRef> systemElement(const AccessibilityElement& element) {
    if (element.object) return Owned<AXUIElementRef>::retain(static_cast<AXUIElementRef>(element.object.get()));
    auto application = Owned<AXUIElementRef>::adopt(AXUIElementCreateApplication(element.processIdentifier));
    AXUIElementSetMessagingTimeout(application.get(), static_cast<float>(ApplicationBackoff::kDeadline.count()));
    return application;
}

AttributeValue interfaceValue(CFTypeRef value) {
    if (!value) return {};
    const CFTypeID type = CFGetTypeID(value);
    if (type == CFBooleanGetTypeID()) return CFBooleanGetValue(static_cast<CFBooleanRef>(value)) != 0;
    if (type == CFStringGetTypeID()) return text((__bridge NSString*)value);
    if (type == AXValueGetTypeID()) return structure(static_cast<AXValueRef>(value));
    if (type == CFArrayGetTypeID()) return elements(static_cast<CFArrayRef>(value));
    if (type == AXUIElementGetTypeID()) {
        if (auto element = interfaceElement(static_cast<AXUIElementRef>(value))) return std::move(*element);
    }
    return {};
}

Owned<CFTypeRef> systemValue(const AttributeValue& value) {
    using Value = Owned<CFTypeRef>;
    return std::visit(
        Overloaded{[](std::monostate) { return Value(); },
                   [](bool flag) { return Value::retain(flag ? kCFBooleanTrue : kCFBooleanFalse); },
                   [](const std::string& word) { return Value::adopt(CFBridgingRetain(nsString(word))); },
                   [](const CGPoint& point) { return Value::adopt(AXValueCreate(kAXValueTypeCGPoint, &point)); },
                   [](const CGSize& size) { return Value::adopt(AXValueCreate(kAXValueTypeCGSize, &size)); },
                   [](const AccessibilityElement& element) { return Value::retain(systemElement(element).get()); },
                   [](const std::vector<AccessibilityElement>&) { return Value(); }},
        value);
}

} // namespace kova::macos
