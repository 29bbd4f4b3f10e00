// Contract tests of windows: reading attributes, requests, and closed windows.
#include "tests/contract/ContractDesktop.h"

namespace kova::contract {
namespace {

using Attribute = AccessibilityAttribute;
using Elements = std::vector<AccessibilityElement>;

const NewWindow kDraft{"Editor", "Draft", makeRect(600, 50, 500, 400)};

/// All attributes except `enhancedUserInterface`, which only applications on a Mac have.
const std::vector<Attribute> kAllAttributes = {
    Attribute::windows,     Attribute::focusedWindow, Attribute::frontmost,  Attribute::role,
    Attribute::subrole,     Attribute::title,         Attribute::minimized,  Attribute::position,
    Attribute::size,        Attribute::minSize,       Attribute::parent,     Attribute::main,
    Attribute::minimumSize, Attribute::focused,       Attribute::fullScreen, Attribute::maximized};

TEST_P(DesktopContract, ValuesHaveTheOrderOfTheRequestedAttributesAndAMissingAttributeHasNoValue) {
    const pid_t editor = desktop().open(kPlan);
    const auto plan = element("Plan");
    const auto values = read(plan, {Attribute::title, Attribute::windows, Attribute::size, Attribute::role,
                                    Attribute::frontmost, Attribute::title, Attribute::subrole, Attribute::minimized,
                                    Attribute::fullScreen, Attribute::parent});
    const auto application = accessibility().applicationElement(editor);
    const CGSize size = desktop().frame("Plan").size;
    EXPECT_EQ(values, (std::vector<AttributeValue>{std::string("Plan"),
                                                   {},
                                                   size,
                                                   std::string("AXWindow"),
                                                   {},
                                                   std::string("Plan"),
                                                   std::string("AXStandardWindow"),
                                                   false,
                                                   false,
                                                   application}));
    // An attribute has the same value whether it is read alone or with others.
    for (const Attribute attribute : kAllAttributes) {
        EXPECT_EQ(read(plan, attribute), read(plan, std::vector{attribute, Attribute::role}).front())
            << attributeName(attribute);
    }
    EXPECT_TRUE(read(plan, std::vector<Attribute>{}).empty());

    const auto minimumSizes = read(plan, {Attribute::minSize, Attribute::minimumSize});
    const auto* minimumSize = std::get_if<CGSize>(&minimumSizes[0]) ? std::get_if<CGSize>(&minimumSizes[0])
                                                                    : std::get_if<CGSize>(&minimumSizes[1]);
    ASSERT_TRUE(minimumSize);
    EXPECT_GE(minimumSize->width, 300); // the decorations of the window may add to the announced size
    EXPECT_GE(minimumSize->height, 200);

    EXPECT_EQ(application, (AccessibilityElement{editor, application.hash, nullptr}));
    EXPECT_EQ(read(application, {Attribute::role, Attribute::windows, Attribute::position, Attribute::minimized}),
              (std::vector<AttributeValue>{std::string("AXApplication"), Elements{plan}, {}, {}}));
}

TEST_P(DesktopContract, AnEmptyTitleIsReadAsAnEmptyString) {
    desktop().open(kPlan);
    const auto plan = element("Plan");
    desktop().retitle("Plan", "");
    EXPECT_TRUE(until([&] { return read(plan, Attribute::title) == AttributeValue(std::string()); }));
}

TEST_P(DesktopContract, AnElementStaysTheSameAsLongAsItsWindowExists) {
    desktop().open(kPlan);
    desktop().open(kInbox);
    desktop().open(kDraft);
    const auto plan = element("Plan"), draft = element("Draft"), inbox = element("Inbox");
    EXPECT_NE(plan, draft);
    EXPECT_NE(plan, inbox);
    EXPECT_EQ(plan.processIdentifier, draft.processIdentifier);

    desktop().retitle("Plan", "Plan B — “final”");
    EXPECT_EQ(element("Plan B — “final”"), plan);
    EXPECT_EQ(find("Plan"), std::nullopt);
    desktop().userMoves("Plan B — “final”", makeRect(90, 120, 450, 350));
    EXPECT_TRUE(
        until([&] { return frameOf(plan) && text(frameOf(plan)) == text(desktop().frame("Plan B — “final”")); }));
    write(plan, {{Attribute::minimized, true}});
    EXPECT_TRUE(until([&] { return isTrue(plan, Attribute::minimized); }));
    EXPECT_EQ(element("Plan B — “final”"), plan);

    // A new window has another element than a closed window with the same title.
    desktop().close("Draft");
    desktop().open(kDraft);
    EXPECT_TRUE(until([&] { return find("Draft") && find("Draft") != draft; }));
}

TEST_P(DesktopContract, AClosedWindowHasNoValuesAndIgnoresRequests) {
    const pid_t editor = desktop().open(kPlan);
    const pid_t mail = desktop().open(kInbox);
    desktop().open(kDraft);
    const auto plan = element("Plan"), draft = element("Draft"), inbox = element("Inbox");
    const std::vector<AttributeValue> nothing(kAllAttributes.size());
    const auto writeWithoutEffect = [&](const AccessibilityElement& closed) {
        write(closed, {{Attribute::position, CGPoint{1, 2}},
                       {Attribute::size, CGSize{300, 200}},
                       {Attribute::minimized, true},
                       {Attribute::main, true},
                       {Attribute::frontmost, true}});
        accessibility().performAction(closed, AccessibilityAction::raise);
        accessibility().flush();
    };
    desktop().close("Plan");
    EXPECT_TRUE(until([&] { return read(plan, kAllAttributes) == nothing; }));
    EXPECT_EQ(read(accessibility().applicationElement(editor), Attribute::windows), AttributeValue(Elements{draft}));
    const auto before = frameOf(draft);
    writeWithoutEffect(plan);

    const auto presenceOf = [&](const AccessibilityElement& window) {
        auto presence = WindowPresence::noResponse;
        desktop().onPollingQueue([&] {
            (void)applications().runningApplications();
            presence = accessibility().presenceOf(window);
        });
        return presence;
    };
    EXPECT_EQ(presenceOf(plan), WindowPresence::closed);
    EXPECT_EQ(presenceOf(inbox), WindowPresence::present);

    desktop().crash("Mail");
    EXPECT_TRUE(until([&] { return !polled(mail); }));
    EXPECT_EQ(presenceOf(inbox), WindowPresence::closed);
    EXPECT_EQ(read(inbox, kAllAttributes), nothing);
    EXPECT_EQ(read(accessibility().applicationElement(mail), kAllAttributes), nothing);
    EXPECT_EQ(applications().runningApplication(mail), std::nullopt);
    writeWithoutEffect(inbox);
    writeWithoutEffect(accessibility().applicationElement(mail));
    applications().hide(mail);
    applications().unhide(mail);
    applications().activate(mail);
    EXPECT_FALSE(applications().terminate(mail));
    EXPECT_TRUE(applications().forceTerminate(mail)) << "the request was not refused";

    desktop().runFor(Seconds(0.3));
    EXPECT_EQ(text(frameOf(draft)), text(before)) << "a request to a closed window changed another window";
    EXPECT_FALSE(isTrue(draft, Attribute::minimized));
}

TEST_P(DesktopContract, PositionAndSizeAreWrittenTogetherOrAlone) {
    desktop().open(kPlan);
    const auto plan = element("Plan");
    // A desktop may need more than one request. Therefore the request is repeated every 0.3 s, as the verification of a
    // placement does.
    const auto becomes = [&](const std::vector<AttributeWrite>& writes, const CGRect& requested) {
        Seconds nextTry{0}, passed{0};
        return until([&] {
            if (passed >= nextTry) {
                write(plan, writes);
                nextTry += Seconds(0.3);
            }
            desktop().runFor(Seconds(0.06));
            passed += Seconds(0.06);
            return text(desktop().frame("Plan")) == text(requested) && text(frameOf(plan)) == text(requested);
        });
    };
    EXPECT_TRUE(becomes({{Attribute::position, CGPoint{60, 70}}, {Attribute::size, CGSize{640, 420}}},
                        makeRect(60, 70, 640, 420)))
        << text(desktop().frame("Plan")) << ", read as " << text(frameOf(plan));
    EXPECT_TRUE(becomes({{Attribute::position, CGPoint{100, 110}}}, makeRect(100, 110, 640, 420)));
    EXPECT_TRUE(becomes({{Attribute::size, CGSize{500, 380}}}, makeRect(100, 110, 500, 380)));
    // If one attribute is written several times, the last value counts.
    EXPECT_TRUE(becomes({{Attribute::size, CGSize{900, 600}},
                         {Attribute::position, CGPoint{20, 30}},
                         {Attribute::size, CGSize{450, 360}},
                         {Attribute::position, CGPoint{80, 90}}},
                        makeRect(80, 90, 450, 360)));

    // Attributes that cannot be written, and values of the wrong type, change nothing.
    write(plan, {{Attribute::title, std::string("Mine")},
                 {Attribute::role, std::string("AXButton")},
                 {Attribute::position, CGSize{1, 1}},
                 {Attribute::size, true},
                 {Attribute::minimized, std::string("yes")},
                 {Attribute::fullScreen, {}}});
    desktop().runFor(Seconds(0.3));
    EXPECT_EQ(text(desktop().frame("Plan")), "80,90 450x360");
    EXPECT_EQ(read(plan, {Attribute::title, Attribute::role, Attribute::minimized}),
              (std::vector<AttributeValue>{std::string("Plan"), std::string("AXWindow"), false}));

    // If a window refuses the requested frame, its actual frame is read.
    write(plan, {{Attribute::size, CGSize{200, 120}}});
    desktop().runFor(Seconds(0.3));
    EXPECT_TRUE(until([&] { return text(frameOf(plan)) == text(desktop().frame("Plan")); }));
    if (!desktop().can(Ability::enforcingMinimumSizes)) return;
    EXPECT_GE(desktop().frame("Plan").size.width, 300);
    EXPECT_GE(desktop().frame("Plan").size.height, 200);
}

TEST_P(DesktopContract, MinimizedAndHiddenWindowsAreOffTheScreenAndAreRestored) {
    const pid_t editor = desktop().open(kPlan);
    const pid_t mail = desktop().open(kInbox);
    desktop().open(kDraft);
    const auto plan = element("Plan"), draft = element("Draft");
    const auto countOf = [&](pid_t process) {
        std::size_t count = 0;
        for (const auto& window : windowsOnScreen()) count += window.processIdentifier == process ? 1 : 0;
        return count;
    };
    ASSERT_TRUE(until([&] { return countOf(editor) == 2 && countOf(mail) == 1; }));
    const auto frameBefore = text(frameOf(plan));
    write(plan, {{Attribute::minimized, true}});
    EXPECT_TRUE(until([&] { return isTrue(plan, Attribute::minimized) && countOf(editor) == 1; }));
    EXPECT_FALSE(isTrue(draft, Attribute::minimized));
    EXPECT_FALSE(polled(editor)->isHidden) << "an application with a minimized window is not hidden";

    // Hiding an application hides its windows that are on the screen and does not minimize them. Unhiding the
    // application shows only these windows.
    applications().hide(editor);
    EXPECT_TRUE(until([&] { return polled(editor)->isHidden && countOf(editor) == 0; }));
    EXPECT_FALSE(isTrue(draft, Attribute::minimized));
    EXPECT_TRUE(isTrue(plan, Attribute::minimized));
    EXPECT_EQ(countOf(mail), 1u);
    applications().hide(editor); // the second request has no effect
    applications().unhide(editor);
    EXPECT_TRUE(until([&] { return !polled(editor)->isHidden && countOf(editor) == 1; }));
    EXPECT_TRUE(isTrue(plan, Attribute::minimized));
    applications().unhide(editor);

    write(plan, {{Attribute::minimized, false}});
    EXPECT_TRUE(until([&] { return !isTrue(plan, Attribute::minimized) && countOf(editor) == 2; }));
    EXPECT_TRUE(until([&] { return text(frameOf(plan)) == frameBefore; })) << text(frameOf(plan));

    if (!desktop().can(Ability::minimizingByUser)) return;
    desktop().userMinimizes("Draft");
    EXPECT_TRUE(until([&] { return isTrue(draft, Attribute::minimized) && countOf(editor) == 1; }));
    write(draft, {{Attribute::minimized, false}});
    EXPECT_TRUE(until([&] { return !isTrue(draft, Attribute::minimized) && countOf(editor) == 2; }));
}

TEST_P(DesktopContract, ARaisedWindowIsInFrontAndIsFoundUnderThePoint) {
    const pid_t editor = desktop().open({"Editor", "Plan", makeRect(100, 100, 400, 300)});
    const pid_t mail = desktop().open({"Mail", "Inbox", makeRect(300, 200, 400, 300)});
    const auto plan = element("Plan"), inbox = element("Inbox");
    ASSERT_TRUE(until([&] { return windowsOnScreen().size() == 2; }));
    for (const bool isPlanOnTop : {true, false, true}) {
        const auto& top = isPlanOnTop ? plan : inbox;
        accessibility().performAction(top, AccessibilityAction::raise);
        applications().activate(top.processIdentifier);
        accessibility().flush();
        EXPECT_TRUE(until([&] {
            const auto windows = windowsOnScreen();
            return windows.size() == 2 && windows.front().processIdentifier == top.processIdentifier &&
                   titleAt({400, 300}) == (isPlanOnTop ? "Plan" : "Inbox");
        }));
    }
    const auto windows = windowsOnScreen();
    ASSERT_EQ(windows.size(), 2u);
    EXPECT_EQ(windows[0].processIdentifier, editor);
    EXPECT_EQ(windows[1].processIdentifier, mail);
    EXPECT_EQ(text(windows[0].bounds), text(desktop().frame("Plan")));
    EXPECT_EQ(text(windows[1].bounds), text(desktop().frame("Inbox")));

    // The points on the left and top edges belong to a window. Those on the right and bottom edges do not.
    const CGRect r = desktop().frame("Inbox");
    EXPECT_EQ(titleAt({maxX(r) - 1, maxY(r) - 1}), "Inbox");
    EXPECT_EQ(titleAt({maxX(r), maxY(r)}), "");
    EXPECT_EQ(titleAt({maxX(r) + 200, maxY(r) + 100}), "");
    EXPECT_EQ(titleAt({minX(desktop().frame("Plan")), minY(desktop().frame("Plan"))}), "Plan");
    EXPECT_EQ(titleAt({-5000, -5000}), "");
    desktop().close("Plan");
    EXPECT_TRUE(until([&] { return windowsOnScreen().size() == 1 && titleAt({400, 300}) == "Inbox"; }));
}

TEST_P(DesktopContract, OnlyTheFocusedWindowAndItsApplicationReadAsFocused) {
    const pid_t editor = desktop().open(kPlan);
    const pid_t mail = desktop().open(kInbox);
    desktop().open(kDraft);
    const auto plan = element("Plan"), draft = element("Draft"), inbox = element("Inbox");
    for (const auto& chosen : {plan, inbox, draft, plan}) {
        const auto application = accessibility().applicationElement(chosen.processIdentifier);
        write(application, {{Attribute::frontmost, true}});
        write(chosen, {{Attribute::main, true}, {Attribute::focused, true}});
        accessibility().performAction(chosen, AccessibilityAction::raise);
        applications().activate(chosen.processIdentifier);
        accessibility().flush();
        EXPECT_TRUE(until([&] {
            return applications().frontmostApplication() == chosen.processIdentifier &&
                   read(application, Attribute::focusedWindow) == AttributeValue(chosen);
        })) << chosen.hash;
        EXPECT_TRUE(
            until([&] { return isTrue(chosen, Attribute::main) && isTrue(application, Attribute::frontmost); }));
        const pid_t other = chosen.processIdentifier == editor ? mail : editor;
        EXPECT_FALSE(isTrue(accessibility().applicationElement(other), Attribute::frontmost));
    }
    EXPECT_FALSE(isTrue(draft, Attribute::main));
    // When the focused window is minimized, another window is focused.
    write(plan, {{Attribute::minimized, true}});
    EXPECT_TRUE(until([&] {
        return read(accessibility().applicationElement(editor), Attribute::focusedWindow) == AttributeValue(draft);
    }));
}

TEST_P(DesktopContract, ADialogStaysInFrontOfItsWindowAndIsHiddenAndShownWithIt) {
    if (!desktop().can(Ability::openingDialogs)) GTEST_SKIP() << "no dialog can be opened here";
    const pid_t editor = desktop().open({"Editor", "Plan", makeRect(100, 100, 500, 400)});
    desktop().open(
        {.application = "Editor", .title = "Save?", .frame = makeRect(200, 200, 250, 150), .dialogOf = "Plan"});
    const auto plan = element("Plan"), dialog = element("Save?");
    const auto seen = [&] {
        (void)poll();
        return titleAt({110, 300}) + " | " + titleAt({300, 300});
    };
    EXPECT_EQ(read(dialog, Attribute::parent), AttributeValue(plan));
    EXPECT_EQ(read(plan, Attribute::parent), AttributeValue(accessibility().applicationElement(editor)));
    accessibility().performAction(plan, AccessibilityAction::raise);
    applications().activate(editor);
    accessibility().flush();
    desktop().runFor(Seconds(0.2));
    EXPECT_EQ(seen(), "Plan | Save?");
    for (int times = 0; times < 2; ++times) {
        write(plan, {{Attribute::minimized, true}});
        EXPECT_TRUE(until([&] { return seen() == " | "; })) << seen();
        write(plan, {{Attribute::minimized, false}});
        EXPECT_TRUE(until([&] { return seen() == "Plan | Save?"; })) << seen();
    }
    desktop().close("Plan");
    EXPECT_TRUE(until([&] { return read(dialog, Attribute::parent) != AttributeValue(plan); }));
}

TEST_P(DesktopContract, ARestoredWindowDoesNotTakeTheFocus) {
    const pid_t editor = desktop().open(kPlan);
    const pid_t mail = desktop().open(kInbox);
    const auto plan = element("Plan"), inbox = element("Inbox");
    const auto isOffScreen = [&] {
        (void)poll();
        return titleAt({60, 80}).empty();
    };
    for (const bool isWholeApplication : {false, true}) {
        isWholeApplication ? applications().hide(editor) : write(plan, {{Attribute::minimized, true}});
        accessibility().flush();
        ASSERT_TRUE(until(isOffScreen));
        write(accessibility().applicationElement(mail), {{Attribute::frontmost, true}});
        write(inbox, {{Attribute::main, true}, {Attribute::focused, true}});
        applications().activate(mail);
        accessibility().flush();
        ASSERT_TRUE(until([&] { return applications().frontmostApplication() == mail; }));
        isWholeApplication ? applications().unhide(editor) : write(plan, {{Attribute::minimized, false}});
        accessibility().flush();
        EXPECT_TRUE(until([&] { return !isOffScreen(); }));
        desktop().runFor(Seconds(0.3));
        EXPECT_EQ(applications().frontmostApplication(), mail)
            << "the focus was lost to the window that was " << (isWholeApplication ? "unhidden" : "restored");
    }
}

TEST_P(DesktopContract, WithoutPermissionNothingIsReadOrWritten) {
    desktop().open(kPlan);
    const auto plan = element("Plan");
    EXPECT_TRUE(accessibility().isProcessTrusted());
    EXPECT_TRUE(accessibility().requestTrust(true));
    ASSERT_EQ(titleAt({100, 200}), "Plan");
    if (!desktop().can(Ability::withdrawingPermission)) return;
    desktop().withdrawPermission();
    EXPECT_TRUE(until([&] { return !accessibility().isProcessTrusted(); }));
    EXPECT_FALSE(accessibility().requestTrust(false));
    const std::vector<AttributeValue> nothing(kAllAttributes.size());
    EXPECT_EQ(read(plan, kAllAttributes), nothing);
    EXPECT_EQ(read(accessibility().applicationElement(plan.processIdentifier), kAllAttributes), nothing);
    EXPECT_EQ(accessibility().elementAtPosition({100, 200}), std::nullopt);
    write(plan, {{Attribute::position, CGPoint{1, 2}}, {Attribute::minimized, true}});
    accessibility().performAction(plan, AccessibilityAction::raise);
    accessibility().flush();
    desktop().runFor(Seconds(0.1));
}

} // namespace
} // namespace kova::contract
