#include "app/KovaSettingsWindowController.h"

#include "app/UserInterfaceWindows.h"

#include <utility>

namespace kova {

KovaSettingsWindowController::KovaSettingsWindowController(OverlayBoard& board, UserInterfaceControl* userInterface,
                                                           std::function<void()> readSystem) :
    board_(board),
    userInterface_(userInterface), readSystem_(std::move(readSystem)) {
    board_.provide(OverlaySection::settingsWindow, [this](OverlayContents& out) { out.windows.settings = shown_; });
}

KovaSettingsWindowController::~KovaSettingsWindowController() {
    close();
    board_.close(OverlaySection::settingsWindow);
}

std::optional<std::string> KovaSettingsWindowController::show(const std::optional<std::string>& pane) {
    if (auto problem = ensureUserInterface(board_, userInterface_)) return problem;
    shown_ = {.pane = pane, .request = ++requests_};
    refresh();
    board_.refresh(OverlaySection::settingsWindow);
    return std::nullopt;
}

void KovaSettingsWindowController::refresh() {
    if (shown_ && readSystem_) readSystem_();
}

void KovaSettingsWindowController::close() {
    if (std::exchange(shown_, std::nullopt)) board_.refresh(OverlaySection::settingsWindow);
}

} // namespace kova
