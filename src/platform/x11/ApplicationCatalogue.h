// Finds the installed application to which an X11 window belongs.
#pragma once

#include "support/Identifiers.h"

#include <compare>
#include <optional>
#include <string>

namespace kova {

struct ApplicationIdentity {
    BundleID bundleIdentifier;  // the desktop entry's id, else the class in lower case
    std::string localizedName;  // the entry's name, else the class
    std::string bundlePath;     // the entry's file; empty when there is none
    std::string iconName;       // the icon's name in the entry; empty when there is none
    bool isFileManager = false; // the entry belongs to the category of file managers
    bool operator==(const ApplicationIdentity&) const = default;
};

/// Properties of a window that identify its application; each may be empty.
struct ApplicationTraces {
    std::string instanceName{}, className{}; // the two halves of WM_CLASS
    std::string applicationID{};             // _GTK_APPLICATION_ID: the name of the desktop entry
    auto operator<=>(const ApplicationTraces&) const = default;
};

class ApplicationCatalogue {
  public:
    virtual ~ApplicationCatalogue() = default;
    /// Any thread. Reads files at the first call and when their folders have changed. Other calls use the values in
    /// memory.
    virtual ApplicationIdentity identify(const ApplicationTraces& traces) = 0;
};

} // namespace kova
