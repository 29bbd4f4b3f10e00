// Platform interfaces to displays and to the login session.
#pragma once

#include "support/Geometry.h"
#include "support/Identifiers.h"
#include "support/Published.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kova {

/// A display. Both frames are in screen space: points, origin at the bottom left of the first screen, y growing
/// upwards.
struct Screen {
    std::optional<std::string> displayUUID; // the same for the same device; absent if unknown
    std::string localizedName;
    CGRect frame{};
    CGRect visibleFrame{}; // the frame without panels, docks and menu bars
    double scale = 1;      // pixels per point; for drawing only, as all frames are in points
    DisplayID knownID{};   // if not empty, `displayID` returns it
    bool operator==(const Screen&) const = default;
};

DisplayID displayID(const Screen& screen);

class ScreenServicing {
  public:
    virtual ~ScreenServicing() = default;
    /// In the platform's order, the primary display first. Main thread; never waits.
    virtual std::vector<Screen> screens() const = 0;
    /// Calls back on the main queue after displays were connected, disconnected or moved, or changed size or visible
    /// frame.
    [[nodiscard]] virtual Subscription observeScreens(std::function<void()> changed) = 0;
    /// The pointer's position in screen space; absent if unknown. Main thread; never waits.
    virtual std::optional<CGPoint> pointerLocation() const = 0;
};

class SessionServicing {
  public:
    virtual ~SessionServicing() = default;
    /// Whether the login session's screen is locked; false when that is unknown. Any thread.
    virtual bool isLoginSessionScreenLocked() const = 0;
};

} // namespace kova
