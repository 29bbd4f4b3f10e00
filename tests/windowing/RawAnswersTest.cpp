#include "windowing/RawAnswers.h"
#include "windowing/ApplicationPatience.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

namespace kova {

namespace {

TEST(RawAnswers, AWindowOfTheListIsTakenOnlyWhole) {
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

TEST(RawAnswers, AWindowHasGoneOnlyWhenTheAnswerSaysSo) {
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

TEST(ApplicationPatience, OneThatHangsIsAskedLessOftenUntilItAnswers) {
    constexpr pid_t kHanging = 7, kWell = 8;
    constexpr auto kSilent = AccessibilityOutcome::silent;
    ApplicationPatience patience;
    Seconds now{100};
    const auto ask = [&](AccessibilityOutcome outcome, Seconds took) {
        const Seconds asked = std::exchange(now, now + took);
        patience.note(kHanging, outcome, asked, now);
    };
    const auto pollAsksAfter = [&](double seconds) {
        return patience.mayAsk(kHanging, AskingOccasion::poll, now + Seconds(seconds));
    };

    EXPECT_TRUE(patience.mayAsk(kHanging, AskingOccasion::mainThread, now));
    for (const double pause : {1, 2, 4, 8, 8}) {
        ask(kSilent, Seconds(0.25));
        EXPECT_FALSE(pollAsksAfter(pause - 0.01)) << pause;
        EXPECT_TRUE(pollAsksAfter(pause)) << pause;
        EXPECT_FALSE(patience.mayAsk(kHanging, AskingOccasion::mainThread, now + Seconds(3600))) << pause;
        EXPECT_TRUE(patience.mayAsk(kWell, AskingOccasion::mainThread, now)) << pause;
        now += Seconds(pause);
    }
    ask(AccessibilityOutcome::answered, Seconds(0.1));
    EXPECT_TRUE(patience.mayAsk(kHanging, AskingOccasion::mainThread, now));
    ask(kSilent, Seconds(0.25));
    EXPECT_TRUE(pollAsksAfter(1)) << "an answer makes up for what was before";

    // Out of reach at once is not the same as hanging: it may be about to show its first window.
    ask(kSilent, Seconds(0.01));
    EXPECT_TRUE(pollAsksAfter(0));
    ask(kSilent, Seconds(0.25));
    EXPECT_EQ(patience.silent(), std::vector<pid_t>{kHanging});
    ask(AccessibilityOutcome::gone, Seconds(0.25));
    EXPECT_TRUE(patience.silent().empty());
}

TEST(RawAnswers, ARefusalIsAnAnswer) {
    // As the accessibility interface numbers them.
    constexpr int kSuccess = 0, kFailure = -25200, kAttributeUnsupported = -25205, kDisabled = -25211,
                  kNoValue = -25212;
    for (const int error : {kSuccess, kFailure, kAttributeUnsupported, kDisabled, kNoValue}) {
        EXPECT_EQ(accessibilityOutcome(error), AccessibilityOutcome::answered) << error;
    }
    EXPECT_EQ(accessibilityOutcome(-25202), AccessibilityOutcome::gone);
    EXPECT_EQ(accessibilityOutcome(-25204), AccessibilityOutcome::silent);
}

} // namespace

} // namespace kova
