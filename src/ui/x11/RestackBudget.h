// Notices that the overlay and the window manager restore different stacking orders again and again.
#pragma once

#include <algorithm>
#include <chrono>

namespace kova::ui {

class RestackBudget {
  public:
    using Time = std::chrono::steady_clock::time_point;
    /// This many changes of the order may follow each other immediately; after that one per `kPause`.
    static constexpr int kBurst = 30;
    static constexpr std::chrono::seconds kPause{1};

    /// Takes one change from the budget; false if none is left. `now` must not decrease from call to call.
    bool take(Time now) {
        freeAt_ = std::max(freeAt_, now - kBurst * kPause);
        if (freeAt_ + kPause > now) return false;
        freeAt_ += kPause;
        return true;
    }

  private:
    Time freeAt_ = Time::min(); // the budget is full if this time is at least `kBurst * kPause` ago
};

} // namespace kova::ui
