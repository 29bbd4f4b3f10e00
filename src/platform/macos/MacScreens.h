// The Mac's displays, and whether its login session is locked.
#pragma once

#include "windowing/ScreenServicing.h"

namespace kova::macos {

class MacScreens final : public ScreenServicing {
  public:
    std::vector<Screen> screens() const override;
    Subscription observeScreens(std::function<void()> changed) override;
    std::optional<CGPoint> pointerLocation() const override;
};

class MacSession final : public SessionServicing {
  public:
    bool isLoginSessionScreenLocked() const override;
};

} // namespace kova::macos
