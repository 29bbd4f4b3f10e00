#include "platform/linux/LoginSession.h"
#include "tests/linux/LoopTime.h"
#include "tests/linux/PrivateBus.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>

namespace kova {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t kOtherUser = 4711;

std::string nameOf(SystemActivityEvent event) {
    using enum SystemActivityEvent;
    switch (event) {
    case systemWillSleep:
        return "asleep ";
    case systemDidWake:
        return "awake ";
    case screensDidSleep:
        return "dark ";
    case screensDidWake:
        return "lit ";
    case sessionDidResignActive:
        return "inactive ";
    case sessionDidBecomeActive:
        return "active ";
    case screenDidLock:
        return "locked ";
    case screenDidUnlock:
        return "unlocked ";
    }
    return {};
}

TEST(ActivityConditions, CauseAnEventOnlyIfTheResultingStateChanges) {
    using Facts = ActivityFacts;
    struct Step {
        const char* what;
        std::function<Facts(Facts)> received;
        const char* events;
    };
    const auto hint = [](bool isSet) { return [isSet](Facts f) { return afterLockedHint(f, isSet); }; };
    const auto saver = [](const char* name, bool isActive) {
        return [name, isActive](Facts f) { return afterScreenSaver(f, name, isActive); };
    };
    const std::vector<std::vector<Step>> sequences = {
        {{"a lock is requested, which the desktop confirms", afterLockSignal, "locked "},
         {"the desktop sets the hint", hint(true), ""},
         {"an unlock is requested", afterUnlockSignal, ""},
         {"the desktop has unlocked", hint(false), "unlocked "}},
        {{"a lock is requested, which the locker never confirms", afterLockSignal, "locked "},
         {"a lock is requested again", afterLockSignal, ""},
         {"an unlock is requested, or the timeout is over", afterUnlockSignal, "unlocked "}},
        {{"a screen saver is active", saver("a", true), "locked "},
         {"then the hint is set", hint(true), ""},
         {"a lock is requested while locked", afterLockSignal, ""},
         {"the screen saver ends first", saver("a", false), ""},
         {"the hint is reset", hint(false), "unlocked "}},
        {{"a lock is requested, which starts a screen saver", afterLockSignal, "locked "},
         {"the screen saver reports that it is not active yet", saver("a", false), ""},
         {"the screen saver reports that it is active", saver("a", true), ""},
         {"the screen saver ends", saver("a", false), "unlocked "}},
        {{"a screen saver with two names is active", saver("a", true), "locked "},
         {"its second name reports that", saver("b", true), ""},
         {"its second name reports that again", saver("b", true), ""},
         {"its first name reports the end", saver("a", false), ""},
         {"its second name reports the end", saver("b", false), "unlocked "}},
        {{"all conditions begin together",
          [](Facts f) {
              f.isPreparingForSleep = f.isLockedHintSet = true;
              f.isSessionActive = false;
              return f;
          },
          "asleep inactive locked "},
         {"logind disconnects", withoutLogind, "awake active unlocked "}},
    };
    for (const auto& sequence : sequences) {
        Facts facts;
        for (const Step& step : sequence) {
            const Facts next = step.received(facts);
            std::string events;
            for (const auto event : eventsBetween(facts, next)) events += nameOf(event);
            EXPECT_EQ(events, step.events) << sequence.front().what << ": " << step.what;
            facts = next;
        }
    }
}

/// A `LoginSession` on a private bus, and the events that it has reported.
class LoginSessionTest : public ::testing::Test {
  protected:
    void open(std::optional<std::string> sessionID, LoginSessionTimeouts timeouts = {}) {
        // The test may run in a real login session, so its environment is not used.
        session_ = std::make_unique<LoginSession>(loop_, BusAddresses{bus_.address(), bus_.address()},
                                                  SessionHints{sessionID, getpid(), getuid()}, timeouts);
        watch_ = session_->observeSystemActivity([this](SystemActivityEvent event) { reported_ += nameOf(event); });
    }
    bool runLoopUntil(const std::function<bool()>& condition) { return letPassUntil(loop_, condition); }
    void runLoop(Seconds duration) { letPass(loop_, duration); }
    std::string lineOf(const std::string& subject) const {
        for (const auto& line : session_->diagnose()) {
            if (line.subject == subject) return line.text;
        }
        return {};
    }
    bool isListening() const { return lineOf("login session").starts_with("logind tells"); }
    /// Waits for the expected events, and checks that exactly these were reported.
    void expectReported(const std::string& expected) {
        runLoopUntil([&] { return reported_.size() >= expected.size(); });
        EXPECT_EQ(std::exchange(reported_, {}), expected);
    }

    PrivateBus bus_;
    EventLoop loop_;
    std::unique_ptr<LoginSession> session_;
    std::string reported_;
    Subscription watch_;
};

TEST_F(LoginSessionTest, ReportsEventsOfLogind) {
    bus_.start();
    bus_.startLogind();
    bus_.addSession("c1", getuid(), "x11");
    bus_.addSession("c2", getuid(), "tty");
    bus_.set("c1", "LockedHint", sdbus::Variant(true));
    open("c1");
    EXPECT_FALSE(session_->isLoginSessionScreenLocked()) << "nothing is known before the loop runs";
    expectReported("locked ");
    EXPECT_TRUE(session_->isLoginSessionScreenLocked());

    bus_.set("c1", "LockedHint", sdbus::Variant(false));
    expectReported("unlocked ");
    EXPECT_FALSE(session_->isLoginSessionScreenLocked());

    bus_.emit("PrepareForSleep", "b", {sdbus::Variant(true)});
    bus_.emit("PrepareForSleep", "b", {sdbus::Variant(false)});
    expectReported("asleep awake ");
    bus_.set("c1", "Active", sdbus::Variant(false));
    bus_.set("c1", "Active", sdbus::Variant(true));
    expectReported("inactive active ");

    bus_.call("c2", "Lock"); // events of another session are not reported
    bus_.set("c2", "LockedHint", sdbus::Variant(true));
    bus_.set("c1", "IdleHint", sdbus::Variant(true));
    bus_.call("c1", "Lock");
    bus_.set("c1", "LockedHint", sdbus::Variant(true));
    bus_.call("c1", "Unlock");
    bus_.set("c1", "LockedHint", sdbus::Variant(false));
    bus_.call("c1", "Lock");
    bus_.call("c1", "Unlock");
    expectReported("locked unlocked locked unlocked ");
    EXPECT_EQ(lineOf("login session"),
              "logind tells of sleep, the lock and a switch to another user; this is session c1 (x11).");
}

TEST_F(LoginSessionTest, FindsItsSessionByEnvironmentProcessOrUser) {
    struct Case {
        const char* name;
        std::optional<std::string> id;
        std::vector<std::tuple<std::string, std::uint32_t, std::string>> sessions;
        const char* found; // expected part of the description
    };
    const std::uint32_t me = getuid();
    const std::vector<Case> cases = {
        {"the environment names a session", "c2", {{"c1", me, "x11"}, {"c2", me, "x11"}}, "session c2 (x11)"},
        {"the named session has ended", "c9", {{"c1", me, "wayland"}}, "session c1 (wayland)"},
        {"the named session is on a terminal", "c2", {{"c1", me, "x11"}, {"c2", me, "tty"}}, "session c1 (x11)"},
        {"only a session on a terminal, as with startx", "c1", {{"c1", me, "tty"}}, "session c1 (tty)"},
        {"the environment names no session", {}, {{"c1", kOtherUser, "x11"}, {"c2", me, "x11"}}, "session c2 (x11)"},
        {"only a session of another user", "c1", {{"c1", kOtherUser, "x11"}}, "logind knows no session of this user"},
    };
    bus_.start();
    for (const Case& c : cases) {
        bus_.startLogind();
        for (const auto& [id, user, type] : c.sessions) bus_.addSession(id, user, type);
        open(c.id);
        EXPECT_TRUE(runLoopUntil([&] { return lineOf("login session").find(c.found) != std::string::npos; }))
            << c.name << ": " << lineOf("login session");
        session_.reset();
        bus_.stopLogind();
    }
}

TEST_F(LoginSessionTest, SurvivesARestartOfLogind) {
    bus_.start();
    bus_.startLogind("{\"PreparingForSleep\": true}");
    bus_.addSession("c1", getuid(), "x11");
    bus_.set("c1", "LockedHint", sdbus::Variant(true));
    open("c1");
    expectReported("asleep locked ");
    bus_.stopLogind();
    bus_.startLogind(); // the restarted logind knows no session yet
    expectReported("awake ");
    bus_.addSession("c1", getuid(), "x11");
    bus_.emit(
        "SessionNew", "so",
        {sdbus::Variant(std::string("c1")), sdbus::Variant(sdbus::ObjectPath("/org/freedesktop/login1/session/c1"))});
    expectReported("unlocked ");
}

TEST_F(LoginSessionTest, StatesEndWhenTheyAreNotConfirmedOrTheirServiceDisconnects) {
    bus_.start();
    bus_.startLogind();
    bus_.addSession("c1", getuid(), "x11");
    open("c1", {.unconfirmedLock = 50ms, .disconnectedLogind = 50ms});
    ASSERT_TRUE(runLoopUntil([&] { return isListening(); }));
    bus_.call("c1", "Lock");
    expectReported("locked unlocked "); // the lock is never confirmed
    bus_.startScreenSaver();
    bus_.setScreenSaver(true);
    expectReported("locked ");
    bus_.stopScreenSaver();
    expectReported("unlocked ");
    bus_.set("c1", "Active", sdbus::Variant(false));
    expectReported("inactive ");
    bus_.stopLogind();
    expectReported("active ");
}

TEST_F(LoginSessionTest, SignalsOfOtherSendersAreIgnored) {
    const std::string session = "/org/freedesktop/login1/session/c1";
    bus_.start();
    bus_.startLogind();
    bus_.addSession("c1", getuid(), "x11");
    open("c1");
    ASSERT_TRUE(runLoopUntil([&] { return isListening(); }));
    bus_.forgeScreenSaver(true); // no service owns the name of the screen saver
    bus_.startScreenSaver();
    bus_.forgeScreenSaver(true);
    bus_.setScreenSaver(true);
    expectReported("locked ");
    bus_.forgeScreenSaver(false);
    bus_.forgeOwner("org.gnome.ScreenSaver", "");
    runLoop(100ms);
    expectReported("");
    bus_.setScreenSaver(false);
    expectReported("unlocked ");
    bus_.forgeOwner("org.gnome.ScreenSaver", bus_.forgerName());
    bus_.forgeScreenSaver(true);
    bus_.forge("/org/freedesktop/login1", PrivateBus::kManager, "PrepareForSleep", true);
    bus_.forge(session, PrivateBus::kSession, "Lock");
    bus_.forge(session, "org.freedesktop.DBus.Properties", "PropertiesChanged", std::string(PrivateBus::kSession),
               std::map<std::string, sdbus::Variant>{{"Active", sdbus::Variant(false)}}, std::vector<std::string>());
    bus_.forgeOwner("org.freedesktop.login1", "");
    runLoop(200ms);
    expectReported("");
    EXPECT_TRUE(isListening());
    bus_.call("c1", "Lock"); // signals of logind itself are still handled
    expectReported("locked ");
}

TEST_F(LoginSessionTest, AnUnconfirmedSignalOfAScreenSaverDoesNotKeepTheSessionLocked) {
    bus_.start();
    bus_.startLogind();
    bus_.addSession("c1", getuid(), "x11");
    open("c1");
    ASSERT_TRUE(runLoopUntil([&] { return isListening(); }));
    bus_.startScreenSaverWithoutState("org.mate.ScreenSaver");
    expectReported("locked unlocked ");
}

TEST_F(LoginSessionTest, AFloodOfChangesIsReportedInFewEventsAndEndsWithTheLastState) {
    constexpr int kChanges = 1501;
    bus_.start();
    bus_.startLogind();
    bus_.addSession("c1", getuid(), "x11");
    open("c1", {.floodPeriod = 200ms});
    ASSERT_TRUE(runLoopUntil([&] { return isListening(); }));
    // The loop does not run during these calls, so that all signals are queued before the first one is handled.
    for (int i = 0; i < kChanges; ++i) bus_.set("c1", "LockedHint", sdbus::Variant(i % 2 == 0));
    // Measures how long the signals delay other work of the loop.
    Seconds longestPause{0}, before = loop_.uptime();
    std::function<void()> tick = [&] {
        const Seconds now = loop_.uptime();
        longestPause = std::max(longestPause, now - before);
        before = now;
        loop_.post(tick);
    };
    tick();
    ASSERT_TRUE(runLoopUntil([&] { return reported_.size() > 100; })) << reported_;
    runLoop(1500ms);
    EXPECT_TRUE(reported_.ends_with("locked ") && !reported_.ends_with("unlocked ")) << reported_;
    EXPECT_LT(std::ranges::count(reported_, ' '), kChanges / 10)
        << "too many events: each one suspends or resumes the workspace";
    EXPECT_LT(longestPause, 250ms);
}

TEST_F(LoginSessionTest, WorksWithoutABusAndConnectsWheneverABusStarts) {
    open("c1", {.unconfirmedLock = 50ms, .disconnectedLogind = 50ms});
    ASSERT_TRUE(runLoopUntil([&] { return lineOf("login session").find("not connected yet") == std::string::npos; }));
    EXPECT_TRUE(lineOf("login session").starts_with("There is no system bus (")) << lineOf("login session");
    EXPECT_TRUE(lineOf("screen saver").starts_with("There is no session bus (")) << lineOf("screen saver");
    for (int round = 0; round < 2; ++round) {
        bus_.start();
        bus_.startLogind();
        bus_.addSession("c1", getuid(), "x11");
        bus_.startScreenSaver();
        bus_.setScreenSaver(true);
        bus_.set("c1", "Active", sdbus::Variant(false));
        ASSERT_TRUE(runLoopUntil([&] { return reported_.size() >= std::string("inactive locked ").size(); }))
            << reported_;
        reported_.clear();
        bus_.stop();
        ASSERT_TRUE(runLoopUntil([&] { return reported_.size() >= std::string("active unlocked ").size(); }))
            << reported_;
        EXPECT_FALSE(isListening());
        reported_.clear();
    }
}

} // namespace
} // namespace kova
