// Lets the system start KOVA.app at login, through SMAppService.
#pragma once

#include "app/LaunchAtLoginServicing.h"

namespace kova::macos {

class MainAppLoginItem final : public LaunchAtLoginServicing {
  public:
    LaunchAtLoginStatus status() const override;
    std::optional<std::string> registerAtLogin() override;
    std::optional<std::string> unregisterAtLogin() override;
};

} // namespace kova::macos
