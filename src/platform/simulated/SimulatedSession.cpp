// Session, permission and pointer of the simulated desktop.
#include "platform/simulated/SimulatedDesktop.h"

#include <utility>

namespace kova {

void SimulatedDesktop::setLocked(bool locked) {
    isLocked_ = locked;
    changed();
}

void SimulatedDesktop::simulate(SystemActivityEvent event) {
    if (event == SystemActivityEvent::screenDidLock) setLocked(true);
    if (event == SystemActivityEvent::screenDidUnlock) setLocked(false);
    queue_.post(lifetime_.guard([this, event] { systemActivityObservers_.notify(event); }));
}

void SimulatedDesktop::setUnavailableReason(std::string reason) {
    unavailableReason_ = std::move(reason);
    setTrusted(false);
}

void SimulatedDesktop::setTrusted(bool trusted) {
    isTrusted_ = trusted;
    if (!trusted) announcements_.endAll();
    changed();
}

void SimulatedDesktop::movePointer(std::optional<CGPoint> pointOnDesktop) {
    pointerOnDesktop_ = pointOnDesktop;
}

void SimulatedDesktop::setAnnouncesAllChanges(bool announcesAll) {
    announcesAllChanges_ = announcesAll;
    // Polls may be idle. The notification causes a poll, which finds that changes are not announced any more.
    if (!announcesAll) announceChange();
}

} // namespace kova
