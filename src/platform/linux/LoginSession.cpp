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
    screenSavers_(addresses.session, loop, [this](const std::string& name, bool isActive) {
        update(afterScreenSaver(facts_, name, isActive));
    }) {}

Subscription LoginSession::observeSystemActivity(std::function<void(SystemActivityEvent)> observer) {
    return observers_.add(std::move(observer));
}

LogindClient::Listener LoginSession::listener() {
    const auto noteConnected = [this] {
        if (disconnectTimeout_) std::exchange(disconnectTimeout_, nullptr)->cancel();
    };
    LogindClient::Listener listener;
    listener.sleep = [this](bool isPreparing) {
        auto facts = facts_;
        facts.isPreparingForSleep = isPreparing;
        update(std::move(facts));
    };
    listener.active = [this, noteConnected](bool isActive) {
        noteConnected();
        auto facts = facts_;
        facts.isSessionActive = isActive;
        update(std::move(facts));
    };
    listener.lockedHint = [this, noteConnected](bool isSet) {
        noteConnected();
        update(afterLockedHint(facts_, isSet));
    };
    listener.lockSignal = [this] { update(afterLockSignal(facts_)); };
    listener.unlockSignal = [this] { update(afterUnlockSignal(facts_)); };
    listener.disconnected = [this] {
        if (disconnectTimeout_ || withoutLogind(facts_) == facts_) return;
        disconnectTimeout_ = loop_.after(timeouts_.disconnectedLogind, lifetime_.guard([this] {
            disconnectTimeout_.reset();
            update(withoutLogind(facts_));
        }));
    };
    return listener;
}

void LoginSession::update(ActivityFacts facts) {
    const auto before = std::exchange(facts_, std::move(facts));
    isLockedHintSet_ = facts_.isLockedHintSet;
    if (facts_.isLockAwaited != before.isLockAwaited) {
        if (lockTimeout_) std::exchange(lockTimeout_, nullptr)->cancel();
        if (facts_.isLockAwaited) {
            lockTimeout_ =
                loop_.after(timeouts_.unconfirmedLock, lifetime_.guard([this] { update(afterUnlockSignal(facts_)); }));
        }
    }
    if (reportedInARow_ < LoginSessionTimeouts::changesAtOnce) report();
}

/// Each change suspends or resumes the workspace. Therefore only the last state of a flood of changes is reported.
void LoginSession::report() {
    const auto events = eventsBetween(reported_, facts_);
    reported_ = facts_;
    if (events.empty()) return;
    ++reportedInARow_;
    if (!floodTimer_) {
        floodTimer_ = loop_.after(timeouts_.floodPeriod, lifetime_.guard([this] {
            floodTimer_.reset();
            reportedInARow_ = 0;
            report();
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
