// When the Mac opens a URL of KOVA it also activates KOVA, a moment later and although KOVA shows no window. Says after
// which activations the former application is to be activated again. Main thread.
#pragma once

#include "support/MainQueue.h"

#include <optional>

namespace kova {

enum class OwnDialog { none, shown };

class ActivationReturn {
  public:
    /// The longest time between the opening of a URL and the activation.
    static constexpr Seconds kLongestDelay{0.5};

    /// `now` in uptime.
    void noteAddresses(Seconds now) { opened_ = now; }
    /// Whether an activation at `now` (uptime) came from a URL. False while a dialog of KOVA is open: it needs the
    /// keyboard.
    bool isDue(Seconds now, OwnDialog dialog) const {
        return opened_ && now - *opened_ <= kLongestDelay && dialog == OwnDialog::none;
    }

  private:
    std::optional<Seconds> opened_; // uptime of the last URLs
};

} // namespace kova
