#include "windowing/AccessibilityErrors.h"
#include "windowing/ApplicationBackoff.h"
#include "windowing/WindowListParsing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

namespace kova {

namespace {

TEST(WindowListParsing, AnEntryWithANumberThatIsMissingOrOutOfRangeIsSkipped) {
    const WindowListEntry complete{.layer = 0, .ownerProcess = 501, .x = -20, .y = 30.5, .width = 800, .height = 600};
    const auto window = onScreenWindow(complete);
    ASSERT_TRUE(window);
    EXPECT_EQ(window->processIdentifier, 501);
    EXPECT_EQ(window->layer, 0);
    EXPECT_EQ(window->bounds, makeRect(-20, 30.5, 800, 600));

    using Field = std::optional<double> WindowListEntry::*;
    for (const Field field : {&WindowListEntry::layer, &WindowListEntry::ownerProcess, &WindowListEntry::x,
                              &WindowListEntry::y, &WindowListEntry::width, &WindowListEntry::height}) {
        for (const auto& wrong : {std::optional<double>(), std::optional(std::nan("")),
                                  std::optional(std::numeric_limits<double>::infinity())}) {
            auto entry = complete;
            entry.*field = wrong;
            EXPECT_FALSE(onScreenWindow(entry));
        }
    }
    auto tooLarge = complete;
    tooLarge.ownerProcess = 1e12;
    EXPECT_FALSE(onScreenWindow(tooLarge));
}

TEST(AccessibilityErrors, AWindowCountsAsClosedOnlyAfterTheErrorInvalidElement) {
    using enum WindowPresence;
    const std::pair<int, WindowPresence> cases[] = {
        {0, present},         // success
        {-25205, present},    // attribute unsupported
        {-25212, present},    // no value
        {-25202, closed},     // invalid element
        {-25204, noResponse}, // cannot complete
        {-25211, noResponse}, // interface disabled
        {-25200, noResponse}, // failure
    };
    for (const auto& [error, presence] : cases) EXPECT_EQ(windowPresence(error), presence) << error;
}

TEST(ApplicationBackoff, AHangingApplicationGetsFewerRequestsUntilItResponds) {
    constexpr pid_t kHanging = 7, kResponsive = 8;
    constexpr auto kNoResponse = AccessibilityOutcome::noResponse;
    ApplicationBackoff backoff;
    Seconds now{100};
    const auto request = [&](AccessibilityOutcome outcome, Seconds took) {
        const Seconds begun = std::exchange(now, now + took);
        backoff.note(kHanging, outcome, begun, now);
    };
    const auto pollMayRequestAfter = [&](double seconds) {
        return backoff.maySendRequest(kHanging, RequestOccasion::poll, now + Seconds(seconds));
    };

    EXPECT_TRUE(backoff.maySendRequest(kHanging, RequestOccasion::mainThread, now));
    for (const double pause : {1, 2, 4, 8, 8}) {
        request(kNoResponse, Seconds(0.25));
        EXPECT_FALSE(pollMayRequestAfter(pause - 0.01)) << pause;
        EXPECT_TRUE(pollMayRequestAfter(pause)) << pause;
        EXPECT_FALSE(backoff.maySendRequest(kHanging, RequestOccasion::mainThread, now + Seconds(3600))) << pause;
        EXPECT_TRUE(backoff.maySendRequest(kResponsive, RequestOccasion::mainThread, now)) << pause;
        now += Seconds(pause);
    }
    request(AccessibilityOutcome::responded, Seconds(0.1));
    EXPECT_TRUE(backoff.maySendRequest(kHanging, RequestOccasion::mainThread, now));
    request(kNoResponse, Seconds(0.25));
    EXPECT_TRUE(pollMayRequestAfter(1)) << "a response resets the interval to its shortest length";

    // A failure without a delay is not a timeout: the application may be about to show its first window.
    request(kNoResponse, Seconds(0.01));
    EXPECT_TRUE(pollMayRequestAfter(0));
    request(kNoResponse, Seconds(0.25));
    EXPECT_EQ(backoff.unresponsive(), std::vector<pid_t>{kHanging});
    request(AccessibilityOutcome::invalidElement, Seconds(0.25));
    EXPECT_TRUE(backoff.unresponsive().empty());
}

TEST(AccessibilityErrors, AnApplicationThatRefusesARequestCountsAsResponsive) {
    // The error numbers of the accessibility interface.
    constexpr int kSuccess = 0, kFailure = -25200, kAttributeUnsupported = -25205, kDisabled = -25211,
                  kNoValue = -25212;
    for (const int error : {kSuccess, kFailure, kAttributeUnsupported, kDisabled, kNoValue}) {
        EXPECT_EQ(accessibilityOutcome(error), AccessibilityOutcome::responded) << error;
    }
    EXPECT_EQ(accessibilityOutcome(-25202), AccessibilityOutcome::invalidElement);
    EXPECT_EQ(accessibilityOutcome(-25204), AccessibilityOutcome::noResponse);
}

TEST(AccessibilityErrors, AnElementAnnouncesChangesIfItAcceptsOneOfTheRequests) {
    using enum AnnouncementResponse;
    constexpr int kUnsupported = -25207, kRegisteredAlready = -25209, kCannotComplete = -25204, kDisabled = -25211;
    const std::pair<std::vector<int>, AnnouncementResponse> cases[] = {
        {{0, 0, 0}, announces},
        {{kUnsupported, kRegisteredAlready}, announces},
        {{kUnsupported, kUnsupported}, refuses},
        {{0, kCannotComplete}, noResponse},
        {{kDisabled, kDisabled}, noResponse},
    };
    for (const auto& [errors, answer] : cases) EXPECT_EQ(announcementResponse(errors), answer) << errors.front();
}

TEST(AccessibilityErrors, APermissionCountsAsIgnoredOnceSeveralApplicationsRefuseAndNoneResponds) {
    constexpr int kDisabled = -25211, kNoValue = -25212, kCannotComplete = -25204;
    IgnoredPermission permission;
    const auto isIgnoredAfterPolls = [&](int polls, std::vector<std::pair<pid_t, int>> errorsOfPoll) {
        for (int i = 0; i < polls; ++i) {
            for (const auto& [process, error] : errorsOfPoll) permission.note(process, error);
        }
        return permission.isIgnored();
    };
    EXPECT_FALSE(isIgnoredAfterPolls(9, {{7, kDisabled}})) << "refusals of a single application prove nothing";
    EXPECT_FALSE(
        isIgnoredAfterPolls(9, {{9, kNoValue}, {7, kDisabled}, {8, kDisabled}, {7, kDisabled}, {8, kDisabled}}))
        << "refusals of two applications prove nothing while a third one responds";
    EXPECT_TRUE(isIgnoredAfterPolls(3, {{7, kDisabled}, {8, kDisabled}, {9, kCannotComplete}}))
        << "a third application that times out has not responded";
    EXPECT_FALSE(isIgnoredAfterPolls(1, {{9, kNoValue}})) << "a response shows that the permission works";
}

} // namespace

} // namespace kova
