// Processes of this machine: tells which belong to the desktop itself, and kills a process safely.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova::x11 {

/// Whether the program of that name (as in /proc/PID/comm, cut after 15 bytes) is a panel, a window manager, a file
/// manager, a session or another part of a known desktop. `windowManager`: name of the running window manager.
bool isDesktopProgram(std::string_view program, std::string_view windowManager);
/// The name of the process's program; empty when there is no such process.
std::string programOf(pid_t process);
/// A text from the start times of machine and process that no other process with this number has. Absent if there is no
/// such process.
std::optional<std::string> startOf(pid_t process);
/// This process and its ancestors: it could end together with them.
std::vector<pid_t> ownProcessAndAncestors();

/// Kills the process with SIGKILL, but never init, a process group, this process, a process of another user, or a new
/// process with the same number. Returns the reason if the process was not signaled.
[[nodiscard]] std::optional<std::string> killProcess(pid_t process);

} // namespace kova::x11
