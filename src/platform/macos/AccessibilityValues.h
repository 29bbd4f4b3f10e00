// What the accessibility interface gives and takes, as values of the seam. Every type is looked at before it is
// believed. Objective-C++ only.
#pragma once

#include "platform/macos/CoreFoundation.h"
#include "windowing/AccessibilityServicing.h"

#import <ApplicationServices/ApplicationServices.h>

namespace kova::macos {

/// The element with its process and its hash; absent when it does not tell its process.
std::optional<AccessibilityElement> seamElement(AXUIElementRef element);
/// The system's object of an element; for an application without one a new one, which gives up after the deadline.
Owned<AXUIElementRef> systemElement(const AccessibilityElement& element);

/// monostate for a type that the seam does not know, and for the placeholder of an error.
AttributeValue seamValue(CFTypeRef value);
/// Empty for what cannot be written.
Owned<CFTypeRef> systemValue(const AttributeValue& value);

} // namespace kova::macos
