#include "workspace/StatusMessages.h"

namespace kova {

namespace {

constexpr Seconds kDuration{4};

} // namespace

void StatusMessages::show(const std::string& text) {
    state_.lastActionMessage.set(text);
    // Compares serials instead of texts, so that a repeated message is shown for its full time.
    const auto serial = ++serial_;
    queue_.after(kDuration, lifetime_.guard([this, serial] {
        if (serial == serial_) state_.lastActionMessage.set(std::nullopt);
    }));
}

} // namespace kova
