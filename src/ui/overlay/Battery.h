// Finds out on Linux whether a battery powers the machine.
#pragma once

#include <string>

namespace kova::ui {

/// Reads a few small files of the system. Returns false if these files do not exist.
bool runsOnBattery(const std::string& powerSupplyFolder = "/sys/class/power_supply");

} // namespace kova::ui
