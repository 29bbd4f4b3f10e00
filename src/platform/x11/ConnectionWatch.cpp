#include "platform/x11/ConnectionWatch.h"

namespace kova::x11 {

void ConnectionWatch::begin(DescriptorWatch watch, std::function<void()> readable) {
    watch_ = std::move(watch);
    readable_ = std::move(readable);
    resume();
}

void ConnectionWatch::resume() {
    if (pauseEnd_) pauseEnd_->cancel();
    pauseEnd_.reset();
    isPaused_ = isPausedForPoll_ = false;
    if (!watching_ && watch_) watching_ = watch_(descriptor_, readable_);
}

void ConnectionWatch::pause(Seconds pause) {
    if (!watch_) return;
    isPaused_ = true;
    watching_.reset();
    if (pauseEnd_) pauseEnd_->cancel();
    if (isPausedForPoll_) return; // the end of the poll calls `resume`
    pauseEnd_ = queue_.after(pause, lifetime_.guard([this] { readable_(); }));
}

bool ConnectionWatch::isReadDue(Seconds now) {
    constexpr Seconds kReadInterval{0.001};
    if (!isPaused_ || now - lastRead_ < kReadInterval) return false;
    lastRead_ = now;
    return true;
}

} // namespace kova::x11
