// Finds out on Linux whether a battery powers the machine.
#pragma once

#include <string>

namespace kova::ui {

/// Reads a few small files of the system. False if there are no such files.
bool runsOnBattery(const std::string& powerSupplyFolder = "/sys/class/power_supply");

} // namespace kova::ui
