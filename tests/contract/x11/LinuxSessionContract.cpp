// The contract tests of the login session on Linux, with a simulated logind on a private bus.
#include "platform/linux/LoginSession.h"
#include "tests/contract/SessionContract.h"
#include "tests/linux/LoopTime.h"
#include "tests/linux/PrivateBus.h"

#include <unistd.h>

namespace kova::contract {
namespace {

class LinuxSessionStage final : public SessionStage {
  public:
    LinuxSessionStage() {
        bus_.start();
        bus_.startLogind();
        bus_.addSession("c1", getuid(), "x11");
        session_ = std::make_unique<LoginSession>(loop_, BusAddresses{bus_.address(), bus_.address()},
                                                  SessionHints{"c1", getpid(), getuid()});
        EXPECT_TRUE(runUntil([&] { return isListening(); }));
    }
    SystemActivityServicing& activity() override { return *session_; }
    SessionServicing& session() override { return *session_; }
    /// The desktop back end reports that the screens sleep or wake; logind does not.
    bool canSimulate(SystemActivityEvent event) const override {
        return event != SystemActivityEvent::screensDidSleep && event != SystemActivityEvent::screensDidWake;
    }
    void simulate(SystemActivityEvent event) override {
        using enum SystemActivityEvent;
        switch (event) {
        case systemWillSleep:
        case systemDidWake:
            return bus_.emit("PrepareForSleep", "b", {sdbus::Variant(event == systemWillSleep)});
        case screensDidSleep:
        case screensDidWake:
            return;
        case sessionDidResignActive:
        case sessionDidBecomeActive:
            return bus_.set("c1", "Active", sdbus::Variant(event == sessionDidBecomeActive));
        case screenDidLock:
        case screenDidUnlock:
            return bus_.set("c1", "LockedHint", sdbus::Variant(event == screenDidLock));
        }
    }
    bool runUntil(const std::function<bool()>& condition) override { return letPassUntil(loop_, condition); }
    void runFor(Seconds time) override { letPass(loop_, time); }

  private:
    bool isListening() const {
        for (const auto& line : session_->diagnose()) {
            if (line.subject == "login session" && line.text.starts_with("logind tells")) return true;
        }
        return false;
    }

    PrivateBus bus_;
    EventLoop loop_;
    std::unique_ptr<LoginSession> session_;
};

INSTANTIATE_TEST_SUITE_P(Linux, SessionContract,
                         ::testing::Values(SessionBackend{"Logind", "",
                                                          [] { return std::make_unique<LinuxSessionStage>(); }}),
                         [](const auto& chosen) { return chosen.param.name; });

} // namespace
} // namespace kova::contract
