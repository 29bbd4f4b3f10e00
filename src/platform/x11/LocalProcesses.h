// Processes of this machine: which belong to the desktop itself, and killing one safely.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova::x11 {

/// Whether the program of that name (as in /proc/PID/comm, cut after 15 bytes) is a panel, a window manager, a file
/// manager, a session or another part of a known desktop. `windowManager` is the name of the one that runs.
bool isDesktopProgram(std::string_view program, std::string_view windowManager);
/// The name of the process's program; empty when there is no such process.
std::string programOf(pid_t process);
/// Identifies the process by its start time and the machine's start, so that no other process has the same text. Absent
/// when there is no such process.
std::optional<std::string> startOf(pid_t process);
/// This process and its ancestors, with which it would end.
std::vector<pid_t> ownLine();

/// Kills the process with SIGKILL. Never init, a process group, this process, a process of another user, or a new
/// process with the same number. Absent when it was signaled, otherwise the reason.
[[nodiscard]] std::optional<std::string> killProcess(pid_t process);

} // namespace kova::x11
