// Diagnostics: facts about the desktop that explain why KOVA may not be able to move windows.
#include "platform/x11/TilingManagers.h"
#include "platform/x11/X11Parts.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace kova {

using namespace x11;

namespace {

std::string sizeText(const CGRect& r) {
    return std::to_string(static_cast<int>(r.size.width)) + "x" + std::to_string(static_cast<int>(r.size.height));
}

DiagnosticLine describeManager(const WindowManager& manager) {
    const std::string subject = "window manager";
    if (manager.publishesNoClientList) {
        return {subject, DiagnosticVerdict::wrong,
                "One that does not speak EWMH: its windows cannot be told apart. Use another, or none."};
    }
    if (!manager.isPresent) {
        return {subject, DiagnosticVerdict::note,
                "None that speaks EWMH: KOVA places, hides and focuses windows itself."};
    }
    const std::string name = manager.name.empty() ? "One without a name" : manager.name;
    if (!manager.announcesDecorations) {
        return {subject, DiagnosticVerdict::note,
                name + "; it does not tell how wide its decorations are, so they are measured."};
    }
    return {subject, DiagnosticVerdict::fine, name};
}

} // namespace

std::optional<std::string> X11Desktop::placingManager() const {
    const MutexLock lock(parts_->mutex);
    const WindowManager& manager = parts_->model.windowManager();
    return manager.isPresent && isTilingManager(manager.name) ? std::optional(manager.name) : std::nullopt;
}

std::optional<std::string> X11Desktop::limitation() const {
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    const char* sessionType = std::getenv("XDG_SESSION_TYPE");
    // A service of the session may have only one of these variables.
    const bool isWayland = (wayland && *wayland) || (sessionType && std::string_view(sessionType) == "wayland");
    if (!isWayland) return std::nullopt;
    return "This is a Wayland session: only windows of X11 programs can be seen and moved. Choose a session on X11 "
           "(“Xorg”) in the login screen to manage all windows.";
}

std::vector<DiagnosticLine> X11Desktop::diagnose() const {
    std::vector<DiagnosticLine> lines;
    const std::string& display = parts_->connection->displayName();
    if (parts_->isLost) {
        lines.push_back(
            {"connection", DiagnosticVerdict::wrong,
             "The connection to the X display " + display + " is lost; start the agent again in a session."});
        return lines;
    }
    lines.push_back({"connection", DiagnosticVerdict::fine, "X display " + display});
    if (const auto limited = limitation()) lines.push_back({"session", DiagnosticVerdict::note, *limited});
    const MutexLock lock(parts_->mutex);
    parts_->assertInputMutexHeld();
    if (!parts_->input.isConnected()) {
        lines.push_back(
            {"keys and dividers", DiagnosticVerdict::wrong,
             "Their connection to the X display " + display +
                 " is lost: shortcuts, dividers and dragging do nothing until the agent is started again."});
    }
    lines.push_back(describeManager(parts_->model.windowManager()));
    std::string displays;
    for (const Screen& screen : parts_->displays.arrangement().screens) {
        if (!displays.empty()) displays += ", ";
        displays +=
            screen.localizedName + " " + sizeText(screen.frame) + " (" + sizeText(screen.visibleFrame) + " visible)";
    }
    if (const double scale = parts_->displays.space().scale(); scale != 1) {
        std::array<char, 16> number{};
        std::snprintf(number.data(), number.size(), "%g", scale);
        displays += std::string(", in points of ") + number.data() + " pixels";
    }
    if (!displays.empty()) lines.push_back({"displays", DiagnosticVerdict::fine, displays});
    lines.push_back(parts_->screenPower.isKnown()
                        ? DiagnosticLine{"dark screens", DiagnosticVerdict::fine,
                                         "Dark screens are noticed: the X server is asked whenever its screen saver "
                                         "begins or ends."}
                        : DiagnosticLine{"dark screens", DiagnosticVerdict::note,
                                         "This X server does not switch screens off (no DPMS), so none are dark."});
    std::size_t managed = 0;
    for (const xcb_window_t window : parts_->model.clientOrder()) {
        const ClientWindow* client = parts_->model.client(window);
        managed += client && client->isManaged() ? 1 : 0;
    }
    lines.push_back(
        {"windows", DiagnosticVerdict::fine,
         std::to_string(managed) + " to manage, of " + std::to_string(parts_->model.clientOrder().size()) + " listed"});
    const HiddenWindows& hidden = parts_->hider.record();
    if (!hidden.problem().empty()) {
        lines.push_back({"hidden windows", DiagnosticVerdict::wrong,
                         hidden.problem() + ". The windows are shown again when KOVA quits, but not if it is killed."});
    } else if (!hidden.all().empty()) {
        lines.push_back(
            {"hidden windows", DiagnosticVerdict::note,
             std::to_string(hidden.all().size()) + " were hidden by KOVA and are shown again when it ends"});
    }
    return lines;
}

} // namespace kova
