#include "platform/linux/LoginSession.h"

#include <cstdlib>
#include <utility>

namespace kova {

namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

} // namespace

BusAddresses BusAddresses::fromEnvironment() {
    BusAddresses addresses{environment("DBUS_SYSTEM_BUS_ADDRESS"), environment("DBUS_SESSION_BUS_ADDRESS")};
    if (addresses.system.empty()) {
        addresses.system = "unix:path=/run/dbus/system_bus_socket;unix:path=/var/run/dbus/system_bus_socket";
    }
    if (const auto runtime = environment("XDG_RUNTIME_DIR"); addresses.session.empty() && !runtime.empty()) {
        addresses.session = "unix:path=" + runtime + "/bus";
    }
    return addresses;
}

LoginSession::LoginSession(EventLoop& loop, const BusAddresses& addresses, SessionHints hints,
                           LoginSessionTimeouts timeouts) :
    loop_(loop),
    timeouts_(timeouts), logind_(addresses.system, std::move(hints), loop, listener()),
    screenSavers_(addresses.session, loop,
                  [this](const std::string& name, bool isActive) { hear(afterScreenSaver(facts_, name, isActive)); }) {}

Subscription LoginSession::observeSystemActivity(std::function<void(SystemActivityEvent)> observer) {
    return observers_.add(std::move(observer));
}

LogindClient::Listener LoginSession::listener() {
    const auto known = [this] {
        if (silenceTimeout_) std::exchange(silenceTimeout_, nullptr)->cancel();
    };
    LogindClient::Listener listener;
    listener.sleep = [this](bool isPreparing) {
        auto facts = facts_;
        facts.isPreparingForSleep = isPreparing;
        hear(std::move(facts));
    };
    listener.active = [this, known](bool isActive) {
        known();
        auto facts = facts_;
        facts.isSessionActive = isActive;
        hear(std::move(facts));
    };
    listener.lockedHint = [this, known](bool isSet) {
        known();
        hear(afterLockedHint(facts_, isSet));
    };
    listener.lockSignal = [this] { hear(afterLockSignal(facts_)); };
    listener.unlockSignal = [this] { hear(afterUnlockSignal(facts_)); };
    listener.silence = [this] {
        if (silenceTimeout_ || withoutLogind(facts_) == facts_) return;
        silenceTimeout_ = loop_.after(timeouts_.withSilence, lifetime_.guard([this] {
            silenceTimeout_.reset();
            hear(withoutLogind(facts_));
        }));
    };
    return listener;
}

void LoginSession::hear(ActivityFacts facts) {
    const auto before = std::exchange(facts_, std::move(facts));
    isLockedHintSet_ = facts_.isLockedHintSet;
    if (facts_.isLockAwaited != before.isLockAwaited) {
        if (lockTimeout_) std::exchange(lockTimeout_, nullptr)->cancel();
        if (facts_.isLockAwaited) {
            lockTimeout_ =
                loop_.after(timeouts_.withLock, lifetime_.guard([this] { hear(afterUnlockSignal(facts_)); }));
        }
    }
    if (reportedInARow_ < LoginSessionTimeouts::changesAtOnce) tell();
}

/// Each change suspends or resumes the workspace, so of a flood of changes only the last state is reported.
void LoginSession::tell() {
    const auto events = eventsBetween(reported_, facts_);
    reported_ = facts_;
    if (events.empty()) return;
    ++reportedInARow_;
    if (!floodTimer_) {
        floodTimer_ = loop_.after(timeouts_.withFlood, lifetime_.guard([this] {
            floodTimer_.reset();
            reportedInARow_ = 0;
            tell();
        }));
    }
    for (const auto event : events) observers_.notify(event);
}

std::vector<DiagnosticLine> LoginSession::diagnose() const {
    const auto verdict = [](bool isObserved) { return isObserved ? DiagnosticVerdict::fine : DiagnosticVerdict::note; };
    return {{"login session", verdict(logind_.hasSession()), logind_.description()},
            {"screen saver", verdict(screenSavers_.hasScreenSaver()), screenSavers_.description()}};
}

} // namespace kova
