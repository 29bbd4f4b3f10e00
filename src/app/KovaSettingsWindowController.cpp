#include "app/KovaSettingsWindowController.h"

#include <utility>

namespace kova {

KovaSettingsWindowController::KovaSettingsWindowController(OverlayBoard& board, UserInterfaceControl* userInterface,
                                                           std::function<void()> readSystem) :
    board_(board),
    userInterface_(userInterface), readSystem_(std::move(readSystem)) {
    board_.show(OverlaySection::windows, [this](OverlayContents& out) { out.windows.settings = shown_; });
}

KovaSettingsWindowController::~KovaSettingsWindowController() {
    close();
    board_.close(OverlaySection::windows);
}

std::optional<std::string> KovaSettingsWindowController::show(const std::optional<std::string>& pane) {
    if (auto problem = startUserInterface()) return problem;
    shown_ = {.pane = pane, .request = ++requests_};
    refresh();
    board_.refresh(OverlaySection::windows);
    return std::nullopt;
}

/// A program that is starting finds the window among the contents, so there is nothing to wait for.
std::optional<std::string> KovaSettingsWindowController::startUserInterface() {
    if (board_.isWatched()) return std::nullopt;
    if (!userInterface_) return "No program that shows windows belongs to KOVA here. Use “kova help” for the settings";
    if (auto absence = userInterface_->absence()) return absence;
    const UserInterfaceStatus status = userInterface_->status();
    if (!status.isOn) return "kova-ui is switched off. Switch it on with “kova ui on”";
    if (!status.process && !userInterface_->restart()) return "kova-ui is not running, and KOVA has not started yet";
    return std::nullopt;
}

void KovaSettingsWindowController::refresh() {
    if (shown_ && readSystem_) readSystem_();
}

void KovaSettingsWindowController::close() {
    if (std::exchange(shown_, std::nullopt)) board_.refresh(OverlaySection::windows);
}

} // namespace kova
