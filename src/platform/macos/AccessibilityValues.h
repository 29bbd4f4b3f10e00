// Converts between the objects of the Mac's accessibility interface and the values of the platform interface. Every
// conversion checks the type of the object. Objective-C++ only.
#pragma once

#include "platform/macos/CoreFoundation.h"
#include "windowing/AccessibilityServicing.h"

#import <ApplicationServices/ApplicationServices.h>

namespace kova::macos {

/// Returns the element with its process and its hash; absent if the system does not report the process.
std::optional<AccessibilityElement> interfaceElement(AXUIElementRef element);
/// Returns the system's object of an element. An application's element has no object, so a new one is created. It gets
/// the timeout of requests.
Owned<AXUIElementRef> systemElement(const AccessibilityElement& element);

/// Returns monostate for objects of other types, and for the placeholder of an error.
AttributeValue interfaceValue(CFTypeRef value);
/// Null for values that cannot be written.
Owned<CFTypeRef> systemValue(const AttributeValue& value);

} // namespace kova::macos
