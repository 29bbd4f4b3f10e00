// Applications, displays, the pointer, and announcements of changes.
#include "tests/contract/ContractDesktop.h"

#include <algorithm>

namespace kova::contract {
namespace {

using Attribute = AccessibilityAttribute;

TEST_P(DesktopContract, ApplicationsKeepTheirOrderAndIdentity) {
    const pid_t editor = stage().open(kPlan);
    ASSERT_TRUE(until([&] { return polled(editor).has_value(); }));
    const auto own = applications().ownProcessIdentifier();
    const auto places = [&](std::vector<pid_t> wanted) {
        std::vector<std::ptrdiff_t> found;
        const auto running = poll();
        for (const pid_t process : wanted) {
            const auto place = std::ranges::find(running, process, &RunningApplication::processIdentifier);
            found.push_back(place == running.end() ? -1 : place - running.begin());
        }
        return found;
    };
    const pid_t mail = stage().open(kInbox);
    ASSERT_TRUE(until([&] { return polled(mail).has_value(); }));
    EXPECT_NE(editor, mail);
    const auto before = places({editor, mail});
    applications().activate(editor);
    stage().retitle("Inbox", "Sent");
    stage().open({"Editor", "Draft", makeRect(600, 50, 400, 300)});
    element("Draft");
    EXPECT_EQ(places({editor, mail}), before);
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
    stage().crash("Editor");
    EXPECT_TRUE(until([&] { return !polled(editor); }));
    EXPECT_TRUE(polled(mail));
}

TEST_P(DesktopContract, LaunchesReportTheirOutcomeOnceAndAsynchronously) {
    if (!stage().can(Ability::launching)) GTEST_SKIP() << "nothing can be launched here";
    stage().open(kPlan);
    element("Plan");
    const auto zebra = stage().install("Zebra"), abacus = stage().install("Abacus"), gone = stage().install("Gone");
    std::vector<std::string> names;
    for (const auto& application : applications().launchableApplications()) names.push_back(application.name);
    EXPECT_TRUE(std::ranges::is_sorted(names));
    EXPECT_TRUE(std::ranges::count(names, "Zebra") == 1 && std::ranges::count(names, "Abacus") == 1);
    ASSERT_TRUE(abacus.bundleIdentifier);
    EXPECT_EQ(applications().launchableApplication(*abacus.bundleIdentifier), abacus);
    EXPECT_EQ(applications().launchableApplication("no.such.application"), std::nullopt);

    stage().uninstall("Gone");
    std::vector<LaunchResult> results;
    int failures = 0;
    applications().launch(gone, LaunchActivation::activates, [&](const LaunchResult& result) {
        ++failures;
        EXPECT_TRUE(result.error && !result.error->empty());
        EXPECT_FALSE(result.processIdentifier);
    });
    applications().launch(abacus, LaunchActivation::inBackground,
                          [&](const LaunchResult& result) { results.push_back(result); });
    EXPECT_TRUE(results.empty() && failures == 0) << "the completion was called before the call returned";
    ASSERT_TRUE(until([&] { return results.size() == 1 && failures == 1; }));
    EXPECT_EQ(results[0].error, std::nullopt);
    ASSERT_TRUE(results[0].processIdentifier);
    const auto window = element("Abacus");
    EXPECT_EQ(window.processIdentifier, *results[0].processIdentifier);

    EXPECT_TRUE(applications().terminate(window.processIdentifier));
    EXPECT_TRUE(until([&] { return !polled(window.processIdentifier); }));
    applications().launch(zebra, LaunchActivation::activates, [](const LaunchResult&) {});
    const pid_t process = element("Zebra").processIdentifier;
    const bool isForced = stage().can(Ability::endingByForce);
    EXPECT_EQ(applications().forceTerminate(process).has_value(), !isForced);
    EXPECT_TRUE(isForced || applications().terminate(process));
    EXPECT_TRUE(until([&] { return !polled(process); }));
    for (const pid_t invalid : {process, pid_t{0}, pid_t{-1}, applications().ownProcessIdentifier()}) {
        EXPECT_NE(applications().forceTerminate(invalid).value_or(""), "") << invalid;
    }
    EXPECT_EQ(results.size(), 1u);
    EXPECT_EQ(failures, 1);
}

TEST_P(DesktopContract, AReleasedDesktopCallsNothingBack) {
    if (!stage().can(Ability::lettingGo) || !stage().can(Ability::launching))
        GTEST_SKIP() << "this desktop cannot be destroyed before its queue";
    stage().open(kPlan);
    element("Plan");
    const auto late = stage().install("Late"), gone = stage().install("Gone");
    stage().uninstall("Gone");
    int calls = 0;
    for (const auto& application : {late, gone}) {
        applications().launch(application, LaunchActivation::inBackground, [&](const LaunchResult&) { ++calls; });
    }
    const auto count = stage().changes().changeCount();
    if (count) stage().changes().notifyWhenChanged(*count - 1, [&] { ++calls; });
    const auto keys = stage().keys().addGlobalMonitor([&](const KeyPress&) { ++calls; });
    const auto pointer = stage().pointer().observePointer([&](const PointerEvent&) { ++calls; });
    stage().destroyDesktop();
    stage().retitle("Plan", "Plan B");
    stage().runFor(Seconds(1));
    EXPECT_EQ(calls, 0);
}

TEST_P(DesktopContract, DisplaysStartWithThePrimaryOneAndReportChanges) {
    const auto screens = [&] { return stage().screens().screens(); };
    ASSERT_FALSE(screens().empty());
    const auto expectSound = [&] {
        EXPECT_EQ(screens().front().frame.origin, (CGPoint{0, 0})) << "screen space begins at the first display";
        std::vector<DisplayID> ids;
        for (const Screen& screen : screens()) {
            EXPECT_TRUE(containsWithin(screen.frame, screen.visibleFrame, 0)) << screen.localizedName;
            EXPECT_FALSE(screen.localizedName.empty());
            ids.push_back(displayID(screen));
        }
        std::ranges::sort(ids);
        EXPECT_EQ(std::ranges::adjacent_find(ids), ids.end()) << "two displays share an id";
    };
    expectSound();
    EXPECT_EQ(displayID(screens().front()), displayID(screens().front()));
    if (!stage().can(Ability::pluggingInDisplays)) return;
    stage().open(kPlan);
    const auto plan = element("Plan");

    int calls = 0, callsOnce = 0, callsDropped = 0;
    bool isInOurCall = false;
    const auto subscription = stage().screens().observeScreens([&] {
        EXPECT_FALSE(isInOurCall) << "called back inside a call";
        ++calls;
    });
    Subscription once = stage().screens().observeScreens([&] {
        ++callsOnce;
        once = Subscription();
    });
    {
        const auto dropped = stage().screens().observeScreens([&] { ++callsDropped; });
    }
    const auto before = screens();
    isInOurCall = true;
    stage().plugInPrimaryDisplay();
    isInOurCall = false;
    EXPECT_TRUE(until([&] {
        poll();
        return calls > 0 && screens().size() > before.size() &&
               displayID(screens().front()) != displayID(before.front());
    }));
    expectSound();
    // Where windows are counts from the new first display.
    EXPECT_TRUE(until([&] { return text(frameOf(plan)) == text(stage().frame("Plan")); }))
        << text(frameOf(plan)) << " and not " << text(stage().frame("Plan"));
    EXPECT_EQ(callsOnce, 1);
    EXPECT_EQ(callsDropped, 0);
}

TEST_P(DesktopContract, EveryChangeThatAPollCouldSeeIsCountedAndAnnouncedOnce) {
    if (!stage().changes().changeCount()) GTEST_SKIP() << "this desktop does not announce changes";
    stage().open(kPlan);
    const pid_t mail = stage().open(kInbox);
    const auto plan = element("Plan");
    element("Inbox");
    auto& changes = stage().changes();
    std::uint64_t last = 0;
    ChangeAnnouncements announcements(changes);
    const auto allAnnounce = [&] {
        if (changes.announcesUnasked()) return true;
        bool allDo = false;
        stage().onPollingQueue([&] { allDo = announcements.follow(enumeration(), Seconds(0)); });
        return allDo;
    };
    const auto rests = [&] {
        return until([&] {
            poll();
            last = *changes.changeCount();
            if (!allAnnounce()) return false;
            stage().runFor(Seconds(0.3));
            poll();
            return *changes.changeCount() == last;
        });
    };
    struct Happening {
        const char* name;
        std::function<void()> happens;
        bool isOurCall = false;
    };
    const std::vector<Happening> happenings = {
        {"a title", [&] { stage().retitle("Plan", "Plan B"); }},
        {"a frame", [&] { stage().userMoves("Plan B", makeRect(90, 110, 430, 330)); }},
        {"the keyboard at another window",
         [&] {
             write(plan, {{Attribute::main, true}});
             accessibility().performAction(plan, AccessibilityAction::raise);
             applications().activate(plan.processIdentifier);
             accessibility().flush();
         },
         true},
        {"a new window",
         [&] {
             stage().open({"Editor", "Draft", makeRect(600, 50, 400, 300)});
         }},
        {"a closed window", [&] { stage().close("Draft"); }},
        {"a hidden application", [&] { applications().hide(mail); }, true},
        {"an application that comes back", [&] { applications().unhide(mail); }, true},
        {"a request that is fulfilled",
         [&] {
             write(plan, {{Attribute::position, CGPoint{130, 140}}, {Attribute::size, CGSize{460, 340}}});
         },
         true},
        {"a crash", [&] { stage().crash("Mail"); }},
    };
    for (const auto& [name, happens, isOurCall] : happenings) {
        ASSERT_TRUE(rests()) << "before " << name;
        int calls = 0, callsBefore = 0;
        changes.notifyWhenChanged(last, [&] { ++callsBefore; });
        changes.notifyWhenChanged(last, [&] { ++calls; });
        happens();
        EXPECT_TRUE(calls == 0 || !isOurCall) << name << " was called back inside a call";
        EXPECT_TRUE(until([&] { return calls == 1 && *changes.changeCount() > last; })) << name;
        ASSERT_TRUE(rests()) << "after " << name;
        EXPECT_EQ(calls, 1) << name << " was announced twice";
        EXPECT_EQ(callsBefore, 0) << name << " was called after it was cancelled";
    }
    int calls = 0;
    changes.notifyWhenChanged(last, [&] { ++calls; });
    changes.notifyWhenChanged(last, {});
    stage().retitle("Plan B", "Plan C");
    EXPECT_TRUE(until([&] { return *changes.changeCount() > last; }));
    ASSERT_TRUE(rests());
    EXPECT_EQ(calls, 0);
    // For an old count the callback is posted at once; it runs after the call has returned.
    changes.notifyWhenChanged(last - 1, [&] { ++calls; });
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(until([&] { return calls == 1; }));
}

TEST_P(DesktopContract, AHandleKeepsThePointerUntilTheRelease) {
    if (!stage().can(Ability::usingTheMouse)) GTEST_SKIP() << "there is no mouse to move";
    stage().open({"Editor", "Plan", makeRect(40, 50, 300, 300)});
    element("Plan");
    const double height = stage().screens().screens().front().frame.size.height;
    std::string told, pointed;
    const char* const words[] = {"press", "move", "release", "cancel", "double"};
    const auto word = [&](auto kind) { return std::string(words[static_cast<int>(kind)]) + " "; };
    const auto handles = stage().handles().observeHandles([&](const DividerHandleEvent& event) {
        using Kind = DividerHandleEvent::Kind;
        if (event.kind == Kind::entered || event.kind == Kind::left) return;
        if (told.ends_with(word(event.kind)) && event.kind == DividerHandleEvent::Kind::moved) return;
        told += (told.empty() ? event.handleID + ": " : "") + word(event.kind);
    });
    CGPoint last{};
    Subscription pointer = stage().pointer().observePointer([&](const PointerEvent& event) {
        last = event.location;
        if (pointed.ends_with(word(event.kind)) && event.kind == PointerEvent::Kind::moved) return;
        pointed += word(event.kind);
    });
    // A thin divider has a wider handle; part of it is below the window.
    stage().handles().showHandles({{"divider", flipped(makeRect(199, 60, 2, 600), height), LayoutAxis::horizontal}});
    stage().runFor(Seconds(0.2));
    stage().movePointer({197, 500});
    stage().press({197, 500});
    EXPECT_TRUE(until([&] { return told == "divider: press "; })) << told;
    for (const double x : {260.0, 700.0}) stage().movePointer({x, 420});
    EXPECT_TRUE(until([&] { return told == "divider: press move "; })) << told;
    stage().releaseButton();
    EXPECT_TRUE(until([&] { return told == "divider: press move release "; })) << told;

    // Movements count only while the button is down, in screen space; a window over the handle takes the press.
    told.clear();
    EXPECT_TRUE(until([&] { return pointed.ends_with("release "); })) << pointed;
    pointed.clear();
    stage().movePointer({150, 150});
    stage().movePointer({199, 200});
    stage().press({199, 200});
    EXPECT_TRUE(until([&] { return pointed == "press "; })) << pointed;
    EXPECT_EQ(text({last, {}}), text({flipped(CGPoint{199, 200}, height), {}}));
    pointer = Subscription();
    stage().releaseButton();

    // Another divider's handle at another place reports that divider only.
    stage().handles().showHandles({{"other", flipped(makeRect(450, 499, 200, 2), height), LayoutAxis::vertical}});
    stage().runFor(Seconds(0.2));
    for (const double x : {200.0, 500.0}) {
        stage().movePointer({x, 500});
        stage().press({x, 500});
        stage().releaseButton();
    }
    EXPECT_TRUE(until([&] { return told == "other: press release "; })) << told;
    told.clear();
    stage().handles().showHandles({});
    stage().runFor(Seconds(0.1));
    stage().movePointer({500, 600});
    stage().movePointer({200, 500});
    stage().press({200, 500});
    stage().releaseButton();
    stage().runFor(Seconds(0.3));
    EXPECT_EQ(pointed, "press ") << "an event was reported after the subscription was dropped";
    EXPECT_EQ(told, "");
}

} // namespace
} // namespace kova::contract
