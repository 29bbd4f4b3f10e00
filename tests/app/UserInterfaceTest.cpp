// Starts and restarts of kova-ui, the program that draws the overlay. The tests run in virtual time with a fake
// program.
#include "app/UserInterfaceController.h"
#include "persistence/MemoryPreferencesStore.h"
#include "persistence/PreferenceKeys.h"
#include "platform/simulated/VirtualTime.h"

#include <gtest/gtest.h>

#include <utility>

namespace kova {
namespace {

class FakeUserInterface final : public UserInterfaceServicing {
  public:
    std::optional<std::string> unavailableReason() const override { return missing; }
    void start(std::function<void(UserInterfaceEnd)> ended) override {
        if (process_) return;
        ++starts;
        process_ = 1000 + starts;
        ended_ = std::move(ended);
    }
    void end() override {
        process_.reset();
        ended_ = nullptr;
    }
    std::optional<pid_t> process() const override { return process_; }
    void simulateEnd(UserInterfaceEnd how) {
        process_.reset();
        std::exchange(ended_, nullptr)(how);
    }

    std::optional<std::string> missing;
    int starts = 0;

  private:
    std::optional<pid_t> process_;
    std::function<void(UserInterfaceEnd)> ended_;
};

class UserInterface : public ::testing::Test {
  protected:
    int startsWithin(double seconds) {
        const int before = program.starts;
        queue.advance(Seconds(seconds));
        return program.starts - before;
    }
    std::string finding() {
        const auto lines = controller->diagnose();
        return lines.size() == 1 ? lines[0].text : "";
    }
    DiagnosticVerdict verdict() { return controller->diagnose().at(0).verdict; }

    VirtualMainQueue queue;
    MemoryPreferencesStore preferences;
    FakeUserInterface program;
    std::optional<UserInterfaceController> controller{std::in_place, program, preferences, queue};
};

class Reporter final : public ControlPeer {
  public:
    void send(const std::string&) override {}
    bool isConnected() const override { return hasConnection; }
    void whenDisconnected(std::function<void()>) override {}
    bool hasConnection = true;
};

using enum UserInterfaceEnd;

TEST_F(UserInterface, RunsWhileTheWorkspaceIsStartedAndTheUserInterfaceIsSwitchedOn) {
    EXPECT_EQ(program.process(), std::nullopt);
    controller->start();
    EXPECT_EQ(controller->status(), (UserInterfaceStatus{true, program.process(), std::nullopt}));
    EXPECT_EQ(verdict(), DiagnosticVerdict::fine);
    controller->setOn(true);
    EXPECT_EQ(program.starts, 1);
    controller->setOn(false);
    EXPECT_EQ(controller->status(), UserInterfaceStatus{});
    EXPECT_FALSE(controller->restart()) << "a user interface that is switched off is not restarted";
    controller->stop();
    controller.emplace(program, preferences, queue);
    controller->start();
    EXPECT_EQ(program.process(), std::nullopt) << "the user interface was switched off before";
    controller->setOn(true);
    EXPECT_NE(program.process(), std::nullopt);
    controller.reset();
    EXPECT_EQ(program.process(), std::nullopt) << "the user interface ends with the agent";
    EXPECT_EQ(startsWithin(100), 0);
}

TEST_F(UserInterface, CrashesDelayTheNextStartAndTheFifthWithinAMinutePreventsIt) {
    controller->start();
    for (const double delay : {1.0, 2.0, 4.0, 8.0}) {
        program.simulateEnd(unexpectedly);
        EXPECT_EQ(startsWithin(delay - 0.01), 0) << delay;
        EXPECT_EQ(verdict(), DiagnosticVerdict::wrong);
        EXPECT_EQ(startsWithin(0.02), 1) << delay;
        EXPECT_EQ(verdict(), DiagnosticVerdict::fine);
    }
    program.simulateEnd(unexpectedly);
    EXPECT_EQ(startsWithin(600), 0);
    EXPECT_NE(finding().find("5 times within a minute"), std::string::npos) << finding();
    EXPECT_TRUE(controller->restart());
    EXPECT_EQ(controller->status().problem, std::nullopt);
    program.simulateEnd(unexpectedly);
    EXPECT_EQ(startsWithin(1.01), 1) << "a restart by the user resets the count";
    // Crashes that are at least a minute apart are not counted together.
    for (int i = 0; i < 10; ++i) {
        queue.advance(Seconds(60));
        program.simulateEnd(unexpectedly);
        EXPECT_EQ(startsWithin(1.01), 1) << i;
    }
}

TEST_F(UserInterface, AReportedProblemHoldsUntilTheReporterDisconnectsOrIsRestarted) {
    controller->start();
    const auto reporter = std::make_shared<Reporter>();
    const auto report = [&] {
        controller->reportProblem("kova-ui 2 does not fit kova-agent 1", reporter);
        EXPECT_EQ(finding(), "kova-ui 2 does not fit kova-agent 1.");
        EXPECT_EQ(verdict(), DiagnosticVerdict::wrong);
        EXPECT_EQ(controller->status().problem, "kova-ui 2 does not fit kova-agent 1");
        EXPECT_TRUE(controller->status().process);
    };
    report();
    EXPECT_TRUE(controller->restart());
    EXPECT_EQ(verdict(), DiagnosticVerdict::fine);
    report();
    reporter->hasConnection = false;
    EXPECT_EQ(verdict(), DiagnosticVerdict::fine);
    EXPECT_EQ(controller->status().problem, std::nullopt);
    controller->reportProblem("older", std::make_shared<Reporter>());
    EXPECT_EQ(verdict(), DiagnosticVerdict::fine) << "the reporting client has disconnected";
}

TEST_F(UserInterface, IsNotStartedIfItIsClosedMissingOrSwitchedOff) {
    controller->start();
    program.simulateEnd(byItself);
    EXPECT_EQ(startsWithin(100), 0);
    EXPECT_NE(finding().find("“kova ui restart”"), std::string::npos) << finding();
    EXPECT_TRUE(controller->restart());
    program.simulateEnd(notStarted);
    EXPECT_EQ(startsWithin(100), 0);
    EXPECT_EQ(verdict(), DiagnosticVerdict::wrong);
    EXPECT_TRUE(controller->restart());
    program.simulateEnd(unexpectedly);
    controller->setOn(false);
    EXPECT_EQ(startsWithin(100), 0);
    controller->setOn(true);
    EXPECT_EQ(program.starts, 4);
    program.simulateEnd(unexpectedly);
    EXPECT_TRUE(controller->restart()) << "possible while a delayed start is scheduled";
    EXPECT_EQ(startsWithin(100), 0) << "it is not started twice";

    program.missing = "kova-ui is not installed";
    program.end();
    controller->stop();
    controller->start();
    EXPECT_EQ(program.process(), std::nullopt);
    EXPECT_EQ(finding(), "kova-ui is not installed.");
    EXPECT_EQ(verdict(), DiagnosticVerdict::note);
}

} // namespace
} // namespace kova
