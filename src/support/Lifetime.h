// Disables callbacks once their owner is destroyed. Declare it as the owner's last member, so that it is destroyed
// first.
#pragma once

#include <memory>
#include <utility>

namespace kova {

class Lifetime {
  public:
    Lifetime() = default;
    Lifetime(const Lifetime&) = delete;
    Lifetime& operator=(const Lifetime&) = delete;

    /// Wraps the callback so that it does nothing after the owner was destroyed. On the owner's thread only.
    template <class Callback>
    auto guard(Callback callback) const {
        return
            [alive = std::weak_ptr<const bool>(alive_), callback = std::move(callback)](auto&&... arguments) mutable {
                if (alive.lock()) callback(std::forward<decltype(arguments)>(arguments)...);
            };
    }

  private:
    std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

} // namespace kova
