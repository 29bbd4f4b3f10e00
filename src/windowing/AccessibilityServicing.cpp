#include "windowing/AccessibilityServicing.h"

namespace kova {

std::string_view attributeName(AccessibilityAttribute attribute) {
    switch (attribute) {
    case AccessibilityAttribute::windows:
        return "AXWindows";
    case AccessibilityAttribute::focusedWindow:
        return "AXFocusedWindow";
    case AccessibilityAttribute::frontmost:
        return "AXFrontmost";
    case AccessibilityAttribute::role:
        return "AXRole";
    case AccessibilityAttribute::subrole:
        return "AXSubrole";
    case AccessibilityAttribute::title:
        return "AXTitle";
    case AccessibilityAttribute::minimized:
        return "AXMinimized";
    case AccessibilityAttribute::position:
        return "AXPosition";
    case AccessibilityAttribute::size:
        return "AXSize";
    case AccessibilityAttribute::minSize:
        return "AXMinSize";
    case AccessibilityAttribute::minimumSize:
        return "AXMinimumSize";
    case AccessibilityAttribute::parent:
        return "AXParent";
    case AccessibilityAttribute::main:
        return "AXMain";
    case AccessibilityAttribute::focused:
        return "AXFocused";
    case AccessibilityAttribute::fullScreen:
        return "AXFullScreen";
    case AccessibilityAttribute::maximized:
        return "AXMaximized";
    case AccessibilityAttribute::enhancedUserInterface:
        return "AXEnhancedUserInterface";
    }
    return {};
}

std::string_view actionName(AccessibilityAction action) {
    switch (action) {
    case AccessibilityAction::raise:
        return "AXRaise";
    }
    return {};
}

} // namespace kova
