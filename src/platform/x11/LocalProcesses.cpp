#include "platform/x11/LocalProcesses.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <csignal>
#include <fstream>
#include <optional>
#include <sstream>

namespace kova::x11 {

namespace {

constexpr std::size_t kMostAncestors = 64; // more would be a cycle

/// Names as the kernel truncates them.
constexpr auto kDesktopPrograms = std::to_array<std::string_view>({
    // sessions
    "gnome-session",
    "gnome-session-b",
    "gnome-session-s",
    "plasma_session",
    "ksmserver",
    "startplasma-x11",
    "xfce4-session",
    "mate-session",
    "cinnamon-sessio",
    "lxsession",
    "lxqt-session",
    "budgie-session",
    // shells, panels and docks
    "gnome-shell",
    "plasmashell",
    "xfce4-panel",
    "mate-panel",
    "cinnamon",
    "lxpanel",
    "lxqt-panel",
    "budgie-panel",
    "tint2",
    "polybar",
    "plank",
    "latte-dock",
    "cairo-dock",
    "vala-panel",
    "wbar",
    "fbpanel",
    "gnome-panel",
    // file managers and other programs that draw the desktop
    "xfdesktop",
    "pcmanfm",
    "pcmanfm-qt",
    "pcmanfm-desktop",
    "nautilus",
    "nautilus-deskto",
    "caja",
    "nemo",
    "nemo-desktop",
    "dolphin",
    "thunar",
    "Thunar",
    "rox",
    "idesk",
    // window managers
    "openbox",
    "fluxbox",
    "blackbox",
    "i3",
    "awesome",
    "bspwm",
    "herbstluftwm",
    "icewm",
    "icewm-session",
    "jwm",
    "fvwm",
    "fvwm2",
    "fvwm3",
    "xfwm4",
    "marco",
    "metacity",
    "mutter",
    "muffin",
    "kwin",
    "kwin_x11",
    "compiz",
    "enlightenment",
    "e16",
    "wmaker",
    "twm",
    "ctwm",
    "cwm",
    "dwm",
    "xmonad",
    "qtile",
    "spectrwm",
    "sawfish",
    "lwm",
    // settings and helpers of sessions
    "xfsettingsd",
    "gsd-xsettings",
    "mate-settings-d",
    "csd-xsettings",
    "polkit-gnome-au",
    "lxpolkit",
    "xfce-polkit",
    "light-locker",
    "xscreensaver",
});

/// Letters and digits only, in lower case: "GNOME Shell" and "gnome-shell" are the same program.
std::string folded(std::string_view name) {
    std::string out;
    for (const char c : name) {
        if (c >= 'A' && c <= 'Z') out += static_cast<char>(c - 'A' + 'a');
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) out += c;
    }
    return out;
}

/// The number after "NAME:" in /proc/PID/status.
std::optional<long> statusNumber(pid_t process, std::string_view name) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (!line.starts_with(name) || line.size() <= name.size() || line[name.size()] != ':') continue;
        const auto digits = line.find_first_of("0123456789");
        if (digits == std::string::npos) return std::nullopt;
        long value = 0;
        std::from_chars(line.data() + digits, line.data() + line.size(), value);
        return value;
    }
    return std::nullopt;
}

} // namespace

bool isDesktopProgram(std::string_view program, std::string_view windowManager) {
    if (program.empty()) return false;
    if (std::ranges::find(kDesktopPrograms, program) != kDesktopPrograms.end()) return true;
    return !windowManager.empty() && folded(program) == folded(windowManager);
}

std::string programOf(pid_t process) {
    std::ifstream comm("/proc/" + std::to_string(process) + "/comm");
    std::string name;
    std::getline(comm, name);
    return name;
}

std::optional<std::string> startOf(pid_t process) {
    static const std::string bootId = [] {
        std::ifstream file("/proc/sys/kernel/random/boot_id");
        std::string id;
        std::getline(file, id);
        return id;
    }();
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string line;
    if (!std::getline(file, line)) return std::nullopt;
    // The program's name, in parentheses, may contain spaces; the start time is the 20th word after it.
    constexpr int kWordsBefore = 19;
    std::istringstream words(line.substr(std::min(line.rfind(')') + 1, line.size())));
    std::string word;
    for (int skipped = 0; skipped < kWordsBefore; ++skipped) words >> word;
    if (!(words >> word)) return std::nullopt;
    return bootId + "/" + word;
}

std::vector<pid_t> ownProcessAndAncestors() {
    std::vector<pid_t> line{getpid()};
    for (auto parent = getppid(); parent > 1 && line.size() < kMostAncestors;) {
        line.push_back(parent);
        parent = static_cast<pid_t>(statusNumber(parent, "PPid").value_or(0));
    }
    return line;
}

std::optional<std::string> killProcess(pid_t process) {
    if (process <= 1 || process == getpid()) return "it is part of the system";
    // The descriptor refers to this process even if another process gets the same number.
    const int handle = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
    if (handle < 0) return "there is no such process";
    const auto owner = statusNumber(process, "Uid");
    const bool isOurs = owner && *owner == static_cast<long>(getuid());
    const bool isKilled = isOurs && syscall(SYS_pidfd_send_signal, handle, SIGKILL, nullptr, 0) == 0;
    close(handle);
    if (isKilled) return std::nullopt;
    return isOurs ? "the system does not let KOVA end it" : "its process belongs to another user";
}

} // namespace kova::x11
