// Whether a battery powers the machine, on Linux.
#pragma once

#include <string>

namespace kova::ui {

/// Reads a few small files of the system. False where there are none.
bool runsOnBattery(const std::string& powerSupplyFolder = "/sys/class/power_supply");

} // namespace kova::ui
