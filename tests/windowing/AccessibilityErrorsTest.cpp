#include "windowing/AccessibilityErrors.h"
#include "windowing/ApplicationBackoff.h"
#include "windowing/WindowListParsing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

namespace kova {

namespace {

TEST(WindowListParsing, IncompleteWindowsOfTheListAreSkipped) {
    const WindowListEntry whole{.layer = 0, .ownerProcess = 501, .x = -20, .y = 30.5, .width = 800, .height = 600};
    const auto window = onScreenWindow(whole);
    ASSERT_TRUE(window);
    EXPECT_EQ(window->processIdentifier, 501);
    EXPECT_EQ(window->layer, 0);
    EXPECT_EQ(window->bounds, makeRect(-20, 30.5, 800, 600));

    using Field = std::optional<double> WindowListEntry::*;
    for (const Field field : {&WindowListEntry::layer, &WindowListEntry::ownerProcess, &WindowListEntry::x,
                              &WindowListEntry::y, &WindowListEntry::width, &WindowListEntry::height}) {
        for (const auto& wrong : {std::optional<double>(), std::optional(std::nan("")),
                                  std::optional(std::numeric_limits<double>::infinity())}) {
            auto entry = whole;
            entry.*field = wrong;
            EXPECT_FALSE(onScreenWindow(entry));
        }
    }
    auto tooLarge = whole;
    tooLarge.ownerProcess = 1e12;
    EXPECT_FALSE(onScreenWindow(tooLarge));
}

TEST(AccessibilityErrors, AWindowIsClosedOnlyIfTheErrorSaysSo) {
    using enum WindowPresence;
    const std::pair<int, WindowPresence> answers[] = {
        {0, present},       // success
        {-25205, present},  // attribute unsupported
        {-25212, present},  // no value
        {-25202, gone},     // invalid element
        {-25204, noAnswer}, // cannot complete
        {-25211, noAnswer}, // interface disabled
        {-25200, noAnswer}, // failure
    };
    for (const auto& [error, presence] : answers) EXPECT_EQ(windowPresence(error), presence) << error;
}

TEST(ApplicationBackoff, AHangingApplicationGetsFewerRequestsUntilItResponds) {
    constexpr pid_t kHanging = 7, kWell = 8;
    constexpr auto kSilent = AccessibilityOutcome::silent;
    ApplicationBackoff backoff;
    Seconds now{100};
    const auto ask = [&](AccessibilityOutcome outcome, Seconds took) {
        const Seconds asked = std::exchange(now, now + took);
        backoff.note(kHanging, outcome, asked, now);
    };
    const auto pollAsksAfter = [&](double seconds) {
        return backoff.mayAsk(kHanging, AskingOccasion::poll, now + Seconds(seconds));
    };

    EXPECT_TRUE(backoff.mayAsk(kHanging, AskingOccasion::mainThread, now));
    for (const double pause : {1, 2, 4, 8, 8}) {
        ask(kSilent, Seconds(0.25));
        EXPECT_FALSE(pollAsksAfter(pause - 0.01)) << pause;
        EXPECT_TRUE(pollAsksAfter(pause)) << pause;
        EXPECT_FALSE(backoff.mayAsk(kHanging, AskingOccasion::mainThread, now + Seconds(3600))) << pause;
        EXPECT_TRUE(backoff.mayAsk(kWell, AskingOccasion::mainThread, now)) << pause;
        now += Seconds(pause);
    }
    ask(AccessibilityOutcome::answered, Seconds(0.1));
    EXPECT_TRUE(backoff.mayAsk(kHanging, AskingOccasion::mainThread, now));
    ask(kSilent, Seconds(0.25));
    EXPECT_TRUE(pollAsksAfter(1)) << "a response resets the count of failures";

    // A failure without a delay is not a timeout: the application may be about to show its first window.
    ask(kSilent, Seconds(0.01));
    EXPECT_TRUE(pollAsksAfter(0));
    ask(kSilent, Seconds(0.25));
    EXPECT_EQ(backoff.silent(), std::vector<pid_t>{kHanging});
    ask(AccessibilityOutcome::gone, Seconds(0.25));
    EXPECT_TRUE(backoff.silent().empty());
}

TEST(AccessibilityErrors, ARefusalIsAResponse) {
    // As the accessibility interface numbers them.
    constexpr int kSuccess = 0, kFailure = -25200, kAttributeUnsupported = -25205, kDisabled = -25211,
                  kNoValue = -25212;
    for (const int error : {kSuccess, kFailure, kAttributeUnsupported, kDisabled, kNoValue}) {
        EXPECT_EQ(accessibilityOutcome(error), AccessibilityOutcome::answered) << error;
    }
    EXPECT_EQ(accessibilityOutcome(-25202), AccessibilityOutcome::gone);
    EXPECT_EQ(accessibilityOutcome(-25204), AccessibilityOutcome::silent);
}

TEST(AccessibilityErrors, AnElementAnnouncesIfItTakesOneRequest) {
    using enum AnnouncementAnswer;
    constexpr int kUnsupported = -25207, kRegisteredAlready = -25209, kCannotComplete = -25204, kDisabled = -25211;
    const std::pair<std::vector<int>, AnnouncementAnswer> cases[] = {
        {{0, 0, 0}, announces},
        {{kUnsupported, kRegisteredAlready}, announces},
        {{kUnsupported, kUnsupported}, refuses},
        {{0, kCannotComplete}, noAnswer},
        {{kDisabled, kDisabled}, noAnswer},
    };
    for (const auto& [errors, answer] : cases) EXPECT_EQ(announcementAnswer(errors), answer) << errors.front();
}

TEST(AccessibilityErrors, APermissionIsIgnoredWhenNoApplicationHonorsIt) {
    constexpr int kDisabled = -25211, kNoValue = -25212, kCannotComplete = -25204;
    IgnoredPermission permission;
    const auto polls = [&](int times, std::vector<std::pair<pid_t, int>> answers) {
        for (int i = 0; i < times; ++i) {
            for (const auto& [process, error] : answers) permission.note(process, error);
        }
        return permission.isIgnored();
    };
    EXPECT_FALSE(polls(9, {{7, kDisabled}})) << "the refusal of one application proves nothing";
    EXPECT_FALSE(polls(9, {{9, kNoValue}, {7, kDisabled}, {8, kDisabled}, {7, kDisabled}, {8, kDisabled}}))
        << "two refusals prove nothing while another application responds";
    EXPECT_TRUE(polls(3, {{7, kDisabled}, {8, kDisabled}, {9, kCannotComplete}}))
        << "a missing response proves nothing";
    EXPECT_FALSE(polls(1, {{9, kNoValue}}));
}

} // namespace

} // namespace kova
