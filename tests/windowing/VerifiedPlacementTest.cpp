#include "tests/windowing/ServiceBench.h"

#include <gtest/gtest.h>

namespace kova {

namespace {

using BringToFront = AccessibilityWindowService::BringToFront;

constexpr const char* kPositionFirst = "Mail: AXPosition 100,100, AXSize 600x400, AXSize 600x400, AXPosition 100,100\n";
constexpr const char* kSizeFirst = "Mail: AXSize 600x400, AXPosition 100,100, AXSize 600x400, AXPosition 100,100\n";
const CGRect kTarget = makeRect(100, 100, 600, 400);

struct PlacementBench : ServiceBench {
    explicit PlacementBench(WindowTraits traits, BringToFront bringToFront = BringToFront::no) {
        if (!traits.frame) traits.frame = makeRect(900, 300, 800, 500);
        desktop.open("Mail", std::move(traits));
        request(kTarget, bringToFront);
    }
    void request(const CGRect& target, BringToFront bringToFront = BringToFront::no) {
        service.setFrame(managed("Mail"), target, bringToFront,
                         [this](CGRect frame) { reported += describeFrame(frame) + ";"; });
    }
    /// The desktop's journal up to `seconds` after the request.
    std::string journalUntil(double seconds) {
        desktop.queue().advance(Seconds(seconds) - passed);
        passed = Seconds(seconds);
        return desktop.takeJournal();
    }
    bool isPending() const { return service.pendingFrame(desktop.windowIDOf("Mail")).has_value(); }

    std::string reported;
    Seconds passed{0};
};

TEST(VerifiedPlacement, AcceptedFrameIsWrittenOnce) {
    PlacementBench bench({});
    EXPECT_EQ(bench.journalUntil(0), kPositionFirst);
    EXPECT_EQ(bench.service.pendingFrame(bench.desktop.windowIDOf("Mail")), kTarget);
    EXPECT_EQ(bench.journalUntil(0.64), "");
    EXPECT_TRUE(bench.isPending());
    EXPECT_EQ(bench.journalUntil(5), "");
    EXPECT_FALSE(bench.isPending());
    EXPECT_EQ(bench.desktop.window("Mail").frameWriteCount, 1);
    EXPECT_EQ(bench.desktop.queue().pendingCount(), 0u);
}

TEST(VerifiedPlacement, WindowThatEntersFullScreenOrIsMaximizedIsLeftAlone) {
    for (const auto enlarge : {&SimulatedDesktop::setFullScreen, &SimulatedDesktop::setMaximized}) {
        for (const double when : {0.0, 0.1, 0.5}) {
            PlacementBench bench({});
            bench.journalUntil(when);
            (bench.desktop.*enlarge)("Mail", true);
            bench.desktop.takeJournal();
            EXPECT_EQ(bench.journalUntil(5), "") << when;
            EXPECT_EQ(bench.reported, "") << when;
            EXPECT_FALSE(bench.isPending());
        }
    }
}

TEST(VerifiedPlacement, EndsAMaximizeThatTheWindowManagerEndsLate) {
    PlacementBench bench({});
    bench.journalUntil(5);
    bench.desktop.setMaximized("Mail", true);
    bench.request(kTarget);
    bench.desktop.setMaximized("Mail", true); // the window manager has not carried out the request yet
    bench.desktop.queue().advance(Seconds(1));
    EXPECT_FALSE(bench.desktop.window("Mail").isMaximized);
    EXPECT_EQ(bench.frameOf("Mail"), describeFrame(kTarget));
}

TEST(VerifiedPlacement, PassesRunOnTimeAndAlternateTheOrderOfPositionAndSize) {
    PlacementBench bench({.refusesToMove = true});
    EXPECT_EQ(bench.journalUntil(0.059), kPositionFirst);
    EXPECT_EQ(bench.journalUntil(0.06), kSizeFirst);
    EXPECT_EQ(bench.journalUntil(0.159), "");
    EXPECT_EQ(bench.journalUntil(0.16), kPositionFirst);
    EXPECT_EQ(bench.journalUntil(0.339), "");
    EXPECT_EQ(bench.journalUntil(0.34), kSizeFirst);
    EXPECT_EQ(bench.journalUntil(0.649), "");
    // After its correction the last pass also moves the window inside the target, with one more write.
    EXPECT_EQ(bench.journalUntil(0.65), std::string(kPositionFirst) + kSizeFirst);
    EXPECT_EQ(bench.journalUntil(9), "");
}

TEST(VerifiedPlacement, AcceptsADeviationOfUpToTwoPoints) {
    struct Case {
        const char* why;
        CGRect actual;
        const char* written;
    };
    const Case cases[] = {
        {"1.5 points to the right and above", makeRect(101.5, 98.5, 600, 400), ""},
        {"2.4 points to the left", makeRect(97.6, 100, 600, 400), kSizeFirst},
        {"3 points to the right", makeRect(103, 100, 600, 400), kSizeFirst},
        {"3 points above", makeRect(100, 97, 600, 400), kSizeFirst},
        {"2 points larger", makeRect(100, 100, 602, 402), ""},
        {"2 points larger and 1 to the right: sticks out by 3", makeRect(101, 100, 602, 400), kSizeFirst},
        {"3 points smaller", makeRect(100, 100, 600, 397), kSizeFirst},
        {"3 points larger", makeRect(100, 100, 603, 400), kSizeFirst},
    };
    for (const auto& [why, actual, written] : cases) {
        PlacementBench bench({});
        bench.desktop.takeJournal();
        bench.desktop.userMoves("Mail", actual);
        EXPECT_EQ(bench.journalUntil(0.65), written) << why;
        EXPECT_EQ(bench.frameOf("Mail"), *written ? "100,100 600x400" : describeFrame(actual)) << why;
        EXPECT_EQ(bench.reported, "") << why;
    }
}

TEST(VerifiedPlacement, TheFrameOfAWindowThatDoesNotShrinkIsReportedOnce) {
    // The last pass neither writes the frame nor raises the window, although the window is to be brought to the front.
    PlacementBench bench({.unannouncedMinimumSize = CGSize{900, 200}}, BringToFront::yes);
    EXPECT_EQ(bench.journalUntil(0), std::string(kPositionFirst) + "Mail: unhide\nMail: AXRaise\nMail: activate\n");
    EXPECT_EQ(bench.journalUntil(0.64), std::string(kSizeFirst) + kPositionFirst + kSizeFirst);
    EXPECT_EQ(bench.reported, "");
    EXPECT_EQ(bench.journalUntil(5), "");
    EXPECT_EQ(bench.reported, "100,100 900x400;");
}

TEST(VerifiedPlacement, AWindowThatStaysTooTallIsReportedAndOneWithoutAReadableSizeIsNot) {
    PlacementBench tall({.unannouncedMinimumSize = CGSize{200, 700}});
    tall.journalUntil(5);
    EXPECT_EQ(tall.reported, "100,100 600x700;");

    PlacementBench unreadable({.unreadable = {AccessibilityAttribute::size}});
    EXPECT_EQ(unreadable.journalUntil(5),
              std::string(kPositionFirst) + kSizeFirst + kPositionFirst + kSizeFirst + kPositionFirst)
        << "each of the four passes writes the frame again, and none moves the window inside the target";
    EXPECT_EQ(unreadable.reported, "");
}

TEST(VerifiedPlacement, MovesAWindowInsideTheTileOnlyIfItFits) {
    const CGRect target = makeRect(100, 100, 600, 400);
    const auto moved = [&](CGRect frame) {
        const auto inside = movedInside(frame, target);
        return inside ? describeFrame(*inside) : "stays";
    };
    EXPECT_EQ(moved(makeRect(50, 450, 500, 300)), "100,200 500x300");
    EXPECT_EQ(moved(makeRect(300, 90, 500, 300)), "200,100 500x300");
    EXPECT_EQ(moved(makeRect(150, 150, 500, 300)), "stays") << "the window is inside the tile";
    EXPECT_EQ(moved(makeRect(50, 50, 601, 300)), "stays") << "too wide";
    EXPECT_EQ(moved(makeRect(50, 50, 500, 401)), "stays") << "too tall";
}

TEST(VerifiedPlacement, WindowThatCannotFillItsTargetIsMovedInsideIt) {
    // The window accepts only multiples of 130 x 90 points, so it is 520 x 360 in this target. Then the user drags it
    // out of the target.
    PlacementBench bench({.sizeIncrement = CGSize{130, 90}});
    bench.journalUntil(0.64);
    bench.desktop.userMoves("Mail", makeRect(150, 150, 520, 360));
    EXPECT_EQ(bench.journalUntil(5), kPositionFirst);
    EXPECT_EQ(bench.frameOf("Mail"), "100,100 520x360") << "the correction has moved the window inside";

    // A slow window has not carried out the correction when the last pass reads its frame. The pass then also writes a
    // frame of the present size that is inside the target.
    PlacementBench slow({.maximumSize = CGSize{520, 360}, .writeDelay = Seconds(10)});
    slow.journalUntil(0.64);
    slow.desktop.userMoves("Mail", makeRect(250, 80, 520, 360));
    EXPECT_EQ(slow.journalUntil(0.65),
              std::string(kPositionFirst) +
                  "Mail: AXSize 520x360, AXPosition 180,100, AXSize 520x360, AXPosition 180,100\n");
}

TEST(VerifiedPlacement, ANewerRequestEndsThePassesOfTheOlderOne) {
    PlacementBench bench({.unannouncedMinimumSize = CGSize{900, 700}});
    bench.journalUntil(0.3);
    bench.request(makeRect(0, 0, 500, 300));
    bench.desktop.takeJournal();
    const std::string written = bench.journalUntil(5);
    EXPECT_EQ(written.find("600x400"), std::string::npos) << written;
    EXPECT_EQ(std::count(written.begin(), written.end(), '\n'), 3);
    EXPECT_EQ(bench.reported, "0,0 900x700;");
}

TEST(VerifiedPlacement, AfterAPassOnTargetTheNextPassRunsOnlyIfTheDesktopHasChanged) {
    PlacementBench bench({});
    bench.journalUntil(0.06);
    EXPECT_EQ(bench.desktop.queue().pendingCount(), 0u);
    bench.journalUntil(0.2);
    bench.desktop.userMoves("Mail", makeRect(0, 0, 600, 400));
    bench.desktop.takeJournal();
    EXPECT_EQ(bench.journalUntil(0.339), "");
    EXPECT_EQ(bench.journalUntil(0.34), kSizeFirst);
    EXPECT_EQ(bench.journalUntil(0.649), "");
    EXPECT_TRUE(bench.isPending());
    bench.journalUntil(0.66);
    EXPECT_FALSE(bench.isPending());

    // A change after the time of the last pass is the user's.
    bench.desktop.userMoves("Mail", makeRect(10, 0, 600, 400));
    bench.desktop.takeJournal();
    EXPECT_EQ(bench.journalUntil(5), "");

    // Where announcements can get lost, each pass runs.
    bench.desktop.setAnnouncesAllChanges(false);
    bench.request(kTarget);
    bench.desktop.queue().advance(Seconds(0.06));
    EXPECT_GT(bench.desktop.queue().pendingCount(), 0u);
}

TEST(VerifiedPlacement, BringsToTheFrontAndRaisesAgainOnlyAfterALateCorrection) {
    PlacementBench bench({.isMinimized = true}, BringToFront::yes);
    EXPECT_EQ(bench.journalUntil(0.64),
              std::string(kPositionFirst) + "Mail: unhide\nMail: AXMinimized false\nMail: AXRaise\nMail: activate\n");
    bench.desktop.userMoves("Mail", makeRect(0, 0, 600, 400));
    EXPECT_EQ(bench.journalUntil(5), std::string(kPositionFirst) + "Mail: AXRaise\n");

    // A window that was minimized after the poll is restored, too.
    const auto beforeMinimize = bench.managed("Mail");
    bench.desktop.userMinimizes("Mail");
    bench.service.setFrame(beforeMinimize, kTarget, BringToFront::yes, {});
    EXPECT_FALSE(bench.desktop.window("Mail").isMinimized);
    EXPECT_EQ(bench.journalUntil(10),
              std::string(kPositionFirst) + "Mail: unhide\nMail: AXMinimized false\nMail: AXRaise\nMail: activate\n")
        << "the window is not raised again if its frame is correct in the last pass";
}

TEST(VerifiedPlacement, PlacesWindowsThatDelayClampOrRevertRequests) {
    struct Case {
        const char* why;
        WindowTraits traits;
    };
    const Case cases[] = {
        {"carries out requests late", {.writeDelay = Seconds(0.2)}},
        {"clamps its frame to the display", {.frame = makeRect(2000, 900, 500, 500), .clampsToDisplay = true}},
        {"returns to its former frame twice", {.springsBackTimes = 2}},
    };
    for (const auto& [why, traits] : cases) {
        PlacementBench bench(traits);
        bench.journalUntil(3);
        EXPECT_EQ(bench.frameOf("Mail"), "100,100 600x400") << why;
        EXPECT_EQ(bench.reported, "") << why;
    }
}

TEST(VerifiedPlacement, EndsWhenTheWindowClosesOrTheServiceIsDestroyed) {
    PlacementBench bench({.refusesToMove = true, .vanishesAtWrite = 2});
    bench.journalUntil(5);
    EXPECT_EQ(bench.desktop.picture(), "");
    EXPECT_EQ(bench.reported, "");

    SimulatedDesktop desktop;
    desktop.addDisplay({.name = "Left"});
    desktop.launch("Mail");
    desktop.open("Mail", {.refusesToMove = true});
    {
        AccessibilityWindowService service(desktop, desktop, desktop, std::make_shared<ChangeNotifications>(desktop),
                                           desktop.queue());
        const auto window = service.enumerateWindows().listed.front();
        service.setFrame(window, kTarget, BringToFront::no, {});
        service.restoreAndFocus(window);
    }
    desktop.takeJournal();
    desktop.queue().advance(Seconds(5));
    EXPECT_EQ(desktop.takeJournal(), "");
}

TEST(VerifiedPlacement, TheObserverOfAMinimumSizeMayRequestANewFrame) {
    PlacementBench bench({.unannouncedMinimumSize = CGSize{900, 700}});
    const auto window = bench.managed("Mail");
    bench.service.setFrame(window, kTarget, BringToFront::no, [&](CGRect) {
        bench.service.setFrame(window, makeRect(0, 0, 1000, 800), BringToFront::no, {});
    });
    bench.journalUntil(0.7);
    EXPECT_TRUE(bench.isPending());
    bench.journalUntil(5);
    EXPECT_EQ(bench.frameOf("Mail"), "0,0 1000x800");
}

TEST(InteractivePlacement, WritesOnceInTheOrderThatAvoidsClamping) {
    struct Case {
        const char* why;
        CGRect target;
        const char* written;
    };
    const Case cases[] = {
        {"grows", makeRect(10, 10, 700, 500), "Mail: AXPosition 10,10, AXSize 700x500\n"},
        {"keeps its size", makeRect(10, 10, 599.6, 399.5), "Mail: AXPosition 10,10, AXSize 599.6x399.5\n"},
        {"shrinks", makeRect(10, 10, 599, 700), "Mail: AXSize 599x700, AXPosition 10,10\n"},
    };
    for (const auto& [why, target, written] : cases) {
        PlacementBench bench({.refusesToMove = true});
        bench.journalUntil(0.05);
        bench.service.setFrameInteractive(bench.managed("Mail"), target);
        EXPECT_FALSE(bench.isPending()) << why;
        EXPECT_EQ(bench.journalUntil(5), written) << why << ": the pending passes are canceled";
    }
}

} // namespace

} // namespace kova
