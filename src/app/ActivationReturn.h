// Decides whether KOVA passes its activation to another application. When the user opens KOVA or one of its URLs, the
// Mac activates KOVA a moment later. KOVA itself shows no window, so key presses would be lost. Main thread.
#pragma once

#include "support/MainQueue.h"

#include <optional>

namespace kova {

enum class OwnDialog { none, shown };
/// The window that appears when the user opens KOVA: none, or a window of kova-ui, which is another application.
enum class OpenedWindow { none, ofUserInterface };
/// `giveBack` activates the application that was active before.
enum class ActivationUse { keep, giveBack, passToUserInterface };

class ActivationReturn {
  public:
    /// The longest time between an opening and the activation.
    static constexpr Seconds kLongestDelay{0.5};

    /// Call when the user opened KOVA or one of its URLs. `now` in uptime.
    void noteOpened(Seconds now, OpenedWindow window) {
        opened_ = now;
        window_ = window;
    }
    /// What to do about an activation at `now` (uptime). KOVA keeps an activation that does not follow an opening
    /// within `kLongestDelay`. KOVA also keeps any activation while a dialog of KOVA, which needs the keyboard, is open
    /// or about to open.
    ActivationUse use(Seconds now, OwnDialog dialog) const {
        if (!opened_ || now - *opened_ > kLongestDelay || dialog == OwnDialog::shown) return ActivationUse::keep;
        return window_ == OpenedWindow::none ? ActivationUse::giveBack : ActivationUse::passToUserInterface;
    }

  private:
    std::optional<Seconds> opened_; // uptime of the last opening
    OpenedWindow window_ = OpenedWindow::none;
};

} // namespace kova
