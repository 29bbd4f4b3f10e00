// Contract tests of applications, displays, announcements of changes, and the pointer.
#include "tests/contract/ContractDesktop.h"

#include <algorithm>

namespace kova::contract {
namespace {

using Attribute = AccessibilityAttribute;

TEST_P(DesktopContract, ApplicationsKeepTheirOrderAndIdentity) {
    const pid_t editor = desktop().open(kPlan);
    ASSERT_TRUE(until([&] { return polled(editor).has_value(); }));
    const auto own = applications().ownProcessIdentifier();
    const auto indexesOf = [&](std::vector<pid_t> processes) {
        std::vector<std::ptrdiff_t> indexes;
        const auto running = poll();
        for (const pid_t process : processes) {
            const auto found = std::ranges::find(running, process, &RunningApplication::processIdentifier);
            indexes.push_back(found == running.end() ? -1 : found - running.begin());
        }
        return indexes;
    };
    const pid_t mail = desktop().open(kInbox);
    ASSERT_TRUE(until([&] { return polled(mail).has_value(); }));
    EXPECT_NE(editor, mail);
    const auto before = indexesOf({editor, mail});
    applications().activate(editor);
    desktop().retitle("Inbox", "Sent");
    desktop().open({"Editor", "Draft", makeRect(600, 50, 400, 300)});
    element("Draft");
    EXPECT_EQ(indexesOf({editor, mail}), before);
    const auto known = polled(editor);
    ASSERT_TRUE(known);
    EXPECT_EQ(applications().runningApplication(editor), known);
    EXPECT_EQ(known->localizedName, "Editor");
    EXPECT_TRUE(known->bundleIdentifier && !known->bundleIdentifier->empty());
    EXPECT_EQ(known->activationPolicy, ApplicationActivationPolicy::regular);
    EXPECT_FALSE(known->isTerminated || known->isHidden || known->isPartOfDesktop);
    EXPECT_NE(own, editor);
    EXPECT_EQ(applications().runningApplication(-7), std::nullopt);
    EXPECT_EQ(applications().processStartIdentity(-7), std::nullopt);
    desktop().crash("Editor");
    EXPECT_TRUE(until([&] { return !polled(editor); }));
    EXPECT_TRUE(polled(mail));
}

TEST_P(DesktopContract, EachLaunchReportsItsResultOnceAfterTheCallHasReturned) {
    if (!desktop().can(Ability::launching)) GTEST_SKIP() << "nothing can be launched here";
    desktop().open(kPlan);
    element("Plan");
    const auto zebra = desktop().install("Zebra"), abacus = desktop().install("Abacus"),
               uninstalled = desktop().install("Gone");
    std::vector<std::string> names;
    for (const auto& application : applications().launchableApplications()) names.push_back(application.name);
    EXPECT_TRUE(std::ranges::is_sorted(names));
    EXPECT_TRUE(std::ranges::count(names, "Zebra") == 1 && std::ranges::count(names, "Abacus") == 1);
    ASSERT_TRUE(abacus.bundleIdentifier);
    EXPECT_EQ(applications().launchableApplication(*abacus.bundleIdentifier), abacus);
    EXPECT_EQ(applications().launchableApplication("no.such.application"), std::nullopt);

    desktop().uninstall("Gone");
    std::vector<LaunchResult> results;
    int failures = 0;
    applications().launch(uninstalled, LaunchActivation::activates, [&](const LaunchResult& result) {
        ++failures;
        EXPECT_TRUE(result.error && !result.error->empty());
        EXPECT_FALSE(result.processIdentifier);
    });
    applications().launch(abacus, LaunchActivation::inBackground,
                          [&](const LaunchResult& result) { results.push_back(result); });
    EXPECT_TRUE(results.empty() && failures == 0) << "a completion was called before `launch` returned";
    ASSERT_TRUE(until([&] { return results.size() == 1 && failures == 1; }));
    EXPECT_EQ(results[0].error, std::nullopt);
    ASSERT_TRUE(results[0].processIdentifier);
    const auto window = element("Abacus");
    EXPECT_EQ(window.processIdentifier, *results[0].processIdentifier);

    EXPECT_TRUE(applications().terminate(window.processIdentifier));
    EXPECT_TRUE(until([&] { return !polled(window.processIdentifier); }));
    applications().launch(zebra, LaunchActivation::activates, [](const LaunchResult&) {});
    const pid_t process = element("Zebra").processIdentifier;
    const bool canForce = desktop().can(Ability::forceTerminating);
    EXPECT_EQ(applications().forceTerminate(process).has_value(), !canForce);
    EXPECT_TRUE(canForce || applications().terminate(process));
    EXPECT_TRUE(until([&] { return !polled(process); }));
    for (const pid_t invalid : {process, pid_t{0}, pid_t{-1}, applications().ownProcessIdentifier()}) {
        EXPECT_NE(applications().forceTerminate(invalid).value_or(""), "") << invalid;
    }
    EXPECT_EQ(results.size(), 1u);
    EXPECT_EQ(failures, 1);
}

TEST_P(DesktopContract, ADestroyedDesktopCallsNoCallbacks) {
    if (!desktop().can(Ability::destroyingDesktop) || !desktop().can(Ability::launching))
        GTEST_SKIP() << "this desktop cannot be destroyed before its queue, or nothing can be launched here";
    desktop().open(kPlan);
    element("Plan");
    const auto late = desktop().install("Late"), uninstalled = desktop().install("Gone");
    desktop().uninstall("Gone");
    int calls = 0;
    for (const auto& application : {late, uninstalled}) {
        applications().launch(application, LaunchActivation::inBackground, [&](const LaunchResult&) { ++calls; });
    }
    const auto count = desktop().changes().changeCount();
    if (count) desktop().changes().notifyWhenChanged(*count - 1, [&] { ++calls; });
    const auto keys = desktop().keys().addGlobalMonitor([&](const KeyPress&) { ++calls; });
    const auto pointer = desktop().pointer().observePointer([&](const PointerEvent&) { ++calls; });
    desktop().destroyDesktop();
    desktop().retitle("Plan", "Plan B");
    desktop().runFor(Seconds(1));
    EXPECT_EQ(calls, 0);
}

TEST_P(DesktopContract, TheFirstDisplayIsThePrimaryDisplayAndChangesAreReported) {
    const auto screens = [&] { return desktop().screens().screens(); };
    ASSERT_FALSE(screens().empty());
    const auto expectValidScreens = [&] {
        EXPECT_EQ(screens().front().frame.origin, (CGPoint{0, 0})) << "the first display is the origin of screen space";
        std::vector<DisplayID> ids;
        for (const Screen& screen : screens()) {
            EXPECT_TRUE(containsWithin(screen.frame, screen.visibleFrame, 0)) << screen.localizedName;
            EXPECT_FALSE(screen.localizedName.empty());
            ids.push_back(displayID(screen));
        }
        std::ranges::sort(ids);
        EXPECT_EQ(std::ranges::adjacent_find(ids), ids.end()) << "two displays share an id";
    };
    expectValidScreens();
    EXPECT_EQ(displayID(screens().front()), displayID(screens().front()));
    if (!desktop().can(Ability::pluggingInDisplays)) return;
    desktop().open(kPlan);
    const auto plan = element("Plan");

    int calls = 0, callsOnce = 0, callsDropped = 0;
    bool isInsideCall = false;
    const auto subscription = desktop().screens().observeScreens([&] {
        EXPECT_FALSE(isInsideCall) << "the observer was called inside plugInPrimaryDisplay";
        ++calls;
    });
    Subscription once = desktop().screens().observeScreens([&] {
        ++callsOnce;
        once = Subscription();
    });
    {
        const auto dropped = desktop().screens().observeScreens([&] { ++callsDropped; });
    }
    const auto before = screens();
    isInsideCall = true;
    desktop().plugInPrimaryDisplay();
    isInsideCall = false;
    EXPECT_TRUE(until([&] {
        poll();
        return calls > 0 && screens().size() > before.size() &&
               displayID(screens().front()) != displayID(before.front());
    }));
    expectValidScreens();
    // The frames of windows are now relative to the new first display.
    EXPECT_TRUE(until([&] { return text(frameOf(plan)) == text(desktop().frame("Plan")); }))
        << "read " << text(frameOf(plan)) << ", actual frame " << text(desktop().frame("Plan"));
    EXPECT_EQ(callsOnce, 1);
    EXPECT_EQ(callsDropped, 0);
}

TEST_P(DesktopContract, EveryChangeThatAPollCouldSeeIsCountedAndAnnouncedOnce) {
    if (!desktop().changes().changeCount()) GTEST_SKIP() << "this desktop does not announce changes";
    desktop().open(kPlan);
    const pid_t mail = desktop().open(kInbox);
    const auto plan = element("Plan");
    element("Inbox");
    auto& changes = desktop().changes();
    std::uint64_t last = 0;
    ChangeAnnouncements announcements(changes);
    const auto allAnnounceChanges = [&] {
        if (changes.announcesWithoutRequest()) return true;
        bool allAnnounce = false;
        desktop().onPollingQueue([&] { allAnnounce = announcements.follow(enumeration(), Seconds(0)); });
        return allAnnounce;
    };
    const auto becomesIdle = [&] {
        return until([&] {
            poll();
            last = *changes.changeCount();
            if (!allAnnounceChanges()) return false;
            desktop().runFor(Seconds(0.3));
            poll();
            return *changes.changeCount() == last;
        });
    };
    struct Change {
        const char* name;
        std::function<void()> cause;
        bool isCausedByCall = false;
    };
    const std::vector<Change> cases = {
        {"a changed title", [&] { desktop().retitle("Plan", "Plan B"); }},
        {"a changed frame", [&] { desktop().userMoves("Plan B", makeRect(90, 110, 430, 330)); }},
        {"the focus on another window",
         [&] {
             write(plan, {{Attribute::main, true}});
             accessibility().performAction(plan, AccessibilityAction::raise);
             applications().activate(plan.processIdentifier);
             accessibility().flush();
         },
         true},
        {"a new window",
         [&] {
             desktop().open({"Editor", "Draft", makeRect(600, 50, 400, 300)});
         }},
        {"a closed window", [&] { desktop().close("Draft"); }},
        {"a hidden application", [&] { applications().hide(mail); }, true},
        {"an unhidden application", [&] { applications().unhide(mail); }, true},
        {"a requested frame",
         [&] {
             write(plan, {{Attribute::position, CGPoint{130, 140}}, {Attribute::size, CGSize{460, 340}}});
         },
         true},
        {"a crash", [&] { desktop().crash("Mail"); }},
    };
    for (const auto& [name, cause, isCausedByCall] : cases) {
        ASSERT_TRUE(becomesIdle()) << "before " << name;
        int calls = 0, callsOfReplaced = 0;
        changes.notifyWhenChanged(last, [&] { ++callsOfReplaced; });
        changes.notifyWhenChanged(last, [&] { ++calls; });
        cause();
        EXPECT_TRUE(calls == 0 || !isCausedByCall) << name << " was announced inside the call that caused it";
        EXPECT_TRUE(until([&] { return calls == 1 && *changes.changeCount() > last; })) << name;
        ASSERT_TRUE(becomesIdle()) << "after " << name;
        EXPECT_EQ(calls, 1) << name << " was announced twice";
        EXPECT_EQ(callsOfReplaced, 0) << name << " was announced to a replaced callback";
    }
    int calls = 0;
    changes.notifyWhenChanged(last, [&] { ++calls; });
    changes.notifyWhenChanged(last, {});
    desktop().retitle("Plan B", "Plan C");
    EXPECT_TRUE(until([&] { return *changes.changeCount() > last; }));
    ASSERT_TRUE(becomesIdle());
    EXPECT_EQ(calls, 0);
    // If the count has already changed, the callback is posted at once and runs after the call has returned.
    changes.notifyWhenChanged(last - 1, [&] { ++calls; });
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(until([&] { return calls == 1; }));
}

TEST_P(DesktopContract, APressedHandleGetsAllPointerEventsUntilTheRelease) {
    if (!desktop().can(Ability::usingTheMouse)) GTEST_SKIP() << "there is no mouse to move";
    desktop().open({"Editor", "Plan", makeRect(40, 50, 300, 300)});
    element("Plan");
    const double height = desktop().screens().screens().front().frame.size.height;
    std::string handleEvents, pointerEvents;
    const char* const words[] = {"press", "move", "release", "cancel", "double"};
    const auto word = [&](auto kind) { return std::string(words[static_cast<int>(kind)]) + " "; };
    const auto handles = desktop().handles().observeHandles([&](const DividerHandleEvent& event) {
        using Kind = DividerHandleEvent::Kind;
        if (event.kind == Kind::entered || event.kind == Kind::left) return;
        if (handleEvents.ends_with(word(event.kind)) && event.kind == DividerHandleEvent::Kind::moved) return;
        handleEvents += (handleEvents.empty() ? event.handleID + ": " : "") + word(event.kind);
    });
    CGPoint last{};
    Subscription pointer = desktop().pointer().observePointer([&](const PointerEvent& event) {
        last = event.location;
        if (pointerEvents.ends_with(word(event.kind)) && event.kind == PointerEvent::Kind::moved) return;
        pointerEvents += word(event.kind);
    });
    // The handle of a thin divider is wider than the divider. The window covers part of the handle.
    desktop().handles().showHandles({{"divider", flipped(makeRect(199, 60, 2, 600), height), LayoutAxis::horizontal}});
    desktop().runFor(Seconds(0.2));
    desktop().movePointer({197, 500});
    desktop().press({197, 500});
    EXPECT_TRUE(until([&] { return handleEvents == "divider: press "; })) << handleEvents;
    for (const double x : {260.0, 700.0}) desktop().movePointer({x, 420});
    EXPECT_TRUE(until([&] { return handleEvents == "divider: press move "; })) << handleEvents;
    desktop().releaseButton();
    EXPECT_TRUE(until([&] { return handleEvents == "divider: press move release "; })) << handleEvents;

    // A window in front of the handle gets the press. The pointer monitor reports movements only while the button is
    // down, and locations in screen space.
    handleEvents.clear();
    EXPECT_TRUE(until([&] { return pointerEvents.ends_with("release "); })) << pointerEvents;
    pointerEvents.clear();
    desktop().movePointer({150, 150});
    desktop().movePointer({199, 200});
    desktop().press({199, 200});
    EXPECT_TRUE(until([&] { return pointerEvents == "press "; })) << pointerEvents;
    EXPECT_EQ(text({last, {}}), text({flipped(CGPoint{199, 200}, height), {}}));
    pointer = Subscription();
    desktop().releaseButton();

    // The new handles replace the old ones: a press at the position of the old handle is not reported.
    desktop().handles().showHandles({{"other", flipped(makeRect(450, 499, 200, 2), height), LayoutAxis::vertical}});
    desktop().runFor(Seconds(0.2));
    for (const double x : {200.0, 500.0}) {
        desktop().movePointer({x, 500});
        desktop().press({x, 500});
        desktop().releaseButton();
    }
    EXPECT_TRUE(until([&] { return handleEvents == "other: press release "; })) << handleEvents;
    handleEvents.clear();
    desktop().handles().showHandles({});
    desktop().runFor(Seconds(0.1));
    desktop().movePointer({500, 600});
    desktop().movePointer({200, 500});
    desktop().press({200, 500});
    desktop().releaseButton();
    desktop().runFor(Seconds(0.3));
    EXPECT_EQ(pointerEvents, "press ") << "an event was reported after the subscription was dropped";
    EXPECT_EQ(handleEvents, "");
}

} // namespace
} // namespace kova::contract
