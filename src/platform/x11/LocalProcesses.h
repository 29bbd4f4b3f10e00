// Processes of this machine: which of them belong to the desktop itself, and ending one for good.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova::x11 {

/// Whether the program of that name (as in /proc/PID/comm, cut after 15 bytes) is a panel, a window manager, a file
/// manager, a session or another part of a known desktop. `windowManager` is what the one that runs calls itself.
bool isDesktopProgram(std::string_view program, std::string_view windowManager);
/// The name of the process's program; empty when there is no such process.
std::string programOf(pid_t process);
/// When the process started, on which start of the machine: no other process has the same. Absent when there is no such
/// process.
std::optional<std::string> startOf(pid_t process);
/// This process and those that it descends from: with them it would end, too.
std::vector<pid_t> ownLine();

/// Ends the process at once with SIGKILL. Never init, a process group, ourselves or a process of another user, and
/// never one that comes to bear the number meanwhile. Absent when it was signalled, otherwise why not.
[[nodiscard]] std::optional<std::string> killProcess(pid_t process);

} // namespace kova::x11
