#include "tests/windowing/ServiceBench.h"

#include <gtest/gtest.h>

namespace kova {

namespace {

struct FocusBench : ServiceBench {
    FocusBench() {
        desktop.launch("Notes");
        desktop.open("Mail");
        desktop.open("Notes");
    }
};

TEST(WindowFocus, RestoresAMinimizedOrHiddenWindow) {
    FocusBench bench;
    const auto mail = bench.managed("Mail");
    bench.desktop.userMinimizes("Mail");
    bench.desktop.userHides("Mail");
    EXPECT_TRUE(bench.service.restoreAndFocus(mail));
    const std::string attempt = "Mail: AXFrontmost true\nMail: AXMain true, AXFocused true\nMail: AXRaise\n";
    EXPECT_EQ(bench.desktop.takeJournal(), "Mail: unhide\nMail: AXMinimized false\n" + attempt + "Mail: activate\n");
    EXPECT_EQ(bench.desktop.focusedLabel(), "Mail");
    bench.desktop.queue().runDue();
    EXPECT_EQ(bench.desktop.takeJournal(), attempt);
    EXPECT_EQ(bench.desktop.queue().pendingCount(), 0u);
}

TEST(WindowFocus, AWindowGetsTheFocusAlthoughAnotherApplicationActivatesItselfMeanwhile) {
    FocusBench bench;
    bench.desktop.stealNextActivation("Notes");
    EXPECT_TRUE(bench.service.restoreAndFocus(bench.managed("Mail")));
    EXPECT_EQ(bench.desktop.focusedLabel(), "Notes");
    bench.desktop.queue().runDue();
    EXPECT_EQ(bench.desktop.focusedLabel(), "Mail");
}

TEST(WindowFocus, FailsIfThePermissionTheWindowOrTheApplicationIsMissing) {
    struct Case {
        const char* why;
        std::function<void(SimulatedDesktop&)> happens;
    };
    const Case cases[] = {
        {"no permission", [](auto& desktop) { desktop.setTrusted(false); }},
        {"window closed", [](auto& desktop) { desktop.close("Mail"); }},
        {"application ended", [](auto& desktop) { desktop.quit("Mail"); }},
        {"application is terminating", [](auto& desktop) { desktop.beginTerminating("Mail"); }},
    };
    for (const auto& [why, happens] : cases) {
        FocusBench bench;
        const auto mail = bench.managed("Mail");
        happens(bench.desktop);
        EXPECT_FALSE(bench.service.restoreAndFocus(mail)) << why;
        EXPECT_EQ(bench.desktop.takeJournal(), "") << why;
    }
    // The application ends between the two attempts.
    FocusBench bench;
    EXPECT_TRUE(bench.service.restoreAndFocus(bench.managed("Mail")));
    bench.desktop.takeJournal();
    bench.desktop.quit("Mail");
    bench.desktop.queue().runDue();
    EXPECT_EQ(bench.desktop.takeJournal(), "");
}

TEST(WindowFocus, ReadsTheFocusedWindow) {
    FocusBench bench;
    EXPECT_EQ(bench.service.focusedWindowID(), bench.desktop.windowIDOf("Notes"));
    bench.desktop.userFocuses("Mail");
    EXPECT_EQ(bench.service.focusedWindowID(), bench.managed("Mail").id);
    bench.desktop.userMinimizes("Mail");
    EXPECT_EQ(bench.service.focusedWindowID(), std::nullopt);
    bench.desktop.quit("Mail");
    bench.desktop.quit("Notes");
    EXPECT_EQ(bench.service.focusedWindowID(), std::nullopt);
}

TEST(WindowUnderPoint, FindsTheWindowOfTheElementOnAnyDisplay) {
    ServiceBench bench;
    auto& desktop = bench.desktop;
    desktop.addDisplay({.name = "Upper", .size = {1000, 800}, .origin = CGPoint{0, -800}});
    desktop.open("Mail", {.frame = makeRect(0, 0, 500, 400)});
    desktop.open("Mail", {.frame = makeRect(100, -700, 500, 400)});
    desktop.open("Mail", {.frame = makeRect(900, 0, 500, 400), .inside = InnerElements::cyclic});
    desktop.open("Mail", {.frame = makeRect(1500, 0, 500, 400), .inside = InnerElements::orphaned});
    const auto labelAt = [&](double x, double y) -> std::string {
        const auto found = bench.service.windowElement({x, y});
        if (!found) return "nothing";
        EXPECT_EQ(found->first, desktop.processIdentifier("Mail"));
        return desktop.labelOfID(windowID(found->first, found->second));
    };
    EXPECT_EQ(labelAt(10, 1430), "Mail") << "near the upper left corner of a display that is 1440 points high";
    EXPECT_EQ(labelAt(10, 10), "nothing") << "the bare desktop";
    EXPECT_EQ(labelAt(150, 1440 + 650), "Mail 2") << "the display above";
    EXPECT_EQ(labelAt(1000, 1400), "nothing") << "a cycle of parents";
    EXPECT_EQ(labelAt(1600, 1400), "nothing") << "the parent cannot be read";
    desktop.setTrusted(false);
    EXPECT_EQ(labelAt(10, 1430), "nothing");
}

TEST(WindowService, MinimizesAndRestoresWindows) {
    FocusBench bench;
    const auto mail = bench.managed("Mail");
    bench.service.presentDisplaced(mail, DisplacedWindowPresentationAction::minimizeWindow);
    EXPECT_TRUE(bench.desktop.window("Mail").isMinimized);
    bench.service.unminimize(mail);
    EXPECT_FALSE(bench.desktop.window("Mail").isMinimized);
    bench.service.presentDisplaced(mail, DisplacedWindowPresentationAction::hideApplication);
    EXPECT_TRUE(bench.service.isApplicationHidden(mail.processIdentifier));
    bench.service.unhideApplication(mail.processIdentifier);
    EXPECT_FALSE(bench.service.isApplicationHidden(mail.processIdentifier));
    EXPECT_FALSE(bench.service.isApplicationHidden(99999));
    bench.service.raise(mail);
    EXPECT_EQ(bench.desktop.takeJournal(), "Mail: AXMinimized true\nMail: AXMinimized false\nMail: hide\nMail: unhide\n"
                                           "Mail: AXRaise\n");
}

TEST(WindowService, ShowsThePermissionPromptOnlyOnRequest) {
    ServiceBench bench;
    using enum AccessibilityPermissionState;
    EXPECT_EQ(bench.service.permissionState(), granted);
    bench.desktop.setTrusted(false);
    EXPECT_EQ(bench.service.permissionState(), denied);
    EXPECT_EQ(bench.service.requestPermission(false), denied);
    EXPECT_EQ(bench.desktop.promptCount(), 0);
    bench.desktop.setAnswerToPrompt(true);
    EXPECT_EQ(bench.service.requestPermission(true), granted);
    EXPECT_EQ(bench.desktop.promptCount(), 1);
    EXPECT_EQ(describe(bench.service.permissionState()), "granted");
}

} // namespace

} // namespace kova
