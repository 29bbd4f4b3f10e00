// Converts between the accessibility interface's objects and the values of the platform interface. The type of each
// object is checked. Objective-C++ only.
#pragma once

#include "platform/macos/CoreFoundation.h"
#include "windowing/AccessibilityServicing.h"

#import <ApplicationServices/ApplicationServices.h>

namespace kova::macos {

/// The element with its process and its hash; absent when its process cannot be read.
std::optional<AccessibilityElement> interfaceElement(AXUIElementRef element);
/// The system's object of an element. If an application's element has none, creates one with the timeout for requests.
Owned<AXUIElementRef> systemElement(const AccessibilityElement& element);

/// Returns monostate for objects of other types, and for the placeholder of an error.
AttributeValue interfaceValue(CFTypeRef value);
/// Null for values that cannot be written.
Owned<CFTypeRef> systemValue(const AttributeValue& value);

} // namespace kova::macos
