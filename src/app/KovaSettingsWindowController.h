// Decides when the settings window is shown: only on request, until the user closes it or the agent ends. A section of
// the overlay's contents says whether the window is shown, so that a kova-ui that starts later shows it. Main thread
// only.
#pragma once

#include "app/OverlayBoard.h"
#include "control/SettingsWindowControl.h"
#include "control/UserInterfaceControl.h"

#include <cstdint>
#include <functional>

namespace kova {

class KovaSettingsWindowController final : public SettingsWindowControl {
  public:
    /// `userInterface` is null where no program draws windows. `readSystem` reads settings that may have been
    /// changed in the system's own settings. Board and interface outlive the controller.
    KovaSettingsWindowController(OverlayBoard& board, UserInterfaceControl* userInterface,
                                 std::function<void()> readSystem);
    ~KovaSettingsWindowController() override;
    KovaSettingsWindowController(const KovaSettingsWindowController&) = delete;
    KovaSettingsWindowController& operator=(const KovaSettingsWindowController&) = delete;

    std::optional<std::string> show(const std::optional<std::string>& pane) override;
    /// Reads the system's own settings again if the window is shown.
    void refresh();
    void close() override;
    bool isShown() const { return shown_.has_value(); }

  private:
    OverlayBoard& board_;
    UserInterfaceControl* userInterface_;
    std::function<void()> readSystem_;
    std::optional<OverlayShownWindow> shown_;
    std::uint64_t requests_ = 0; // count since the agent's start
};

} // namespace kova
