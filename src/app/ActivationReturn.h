// An address that is opened brings KOVA to the front, a moment later and although nothing of it is to be seen. Says
// which activations are to be given back to the application in front. Main thread.
#pragma once

#include "support/MainQueue.h"

#include <optional>

namespace kova {

enum class OwnDialog { none, shown };

class ActivationReturn {
  public:
    /// The system activates an application this long after it has opened an address, at most.
    static constexpr Seconds kLongestDelay{0.5};

    /// `now` in uptime.
    void noteAddresses(Seconds now) { opened_ = now; }
    /// Whether KOVA, being active at `now` in uptime, became so by an address and shows nothing that needs it. A dialog
    /// keeps the keyboard.
    bool isDue(Seconds now, OwnDialog dialog) const {
        return opened_ && now - *opened_ <= kLongestDelay && dialog == OwnDialog::none;
    }

  private:
    std::optional<Seconds> opened_; // uptime at which addresses were last opened
};

} // namespace kova
