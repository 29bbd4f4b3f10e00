// Processes of this machine: finds out which of them belong to the desktop itself, and kills a process safely.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova::x11 {

/// True if the program is a panel, a window manager, a file manager, a session manager or another part of a known
/// desktop. `program`: its name as in /proc/PID/comm, which is cut after 15 bytes. `windowManager`: the name of the
/// running window manager.
bool isDesktopProgram(std::string_view program, std::string_view windowManager);
/// The name of the process's program; empty when there is no such process.
std::string programOf(pid_t process);
/// A text made from the machine's boot id and the start time of the process. Another process that gets the same number
/// later has a different text. Absent if there is no such process.
std::optional<std::string> startOf(pid_t process);
/// This process and its ancestors. If an ancestor is killed, this process may end, too.
std::vector<pid_t> ownProcessAndAncestors();

/// Kills the process with SIGKILL, but never init, a process group, this process, a process of another user, or a new
/// process with the same number. Returns the reason if the process was not signaled.
[[nodiscard]] std::optional<std::string> killProcess(pid_t process);

} // namespace kova::x11
