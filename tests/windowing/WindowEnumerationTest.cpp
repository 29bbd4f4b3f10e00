#include "tests/windowing/ServiceBench.h"
#include "windowing/VisibilityMatching.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace kova {

namespace {

/// "Mail/Inbox 100,100 800x600 visible, Mail/Draft 0,0 300x300 minimized, least 200x100".
std::string listed(const ServiceBench& bench) {
    std::string text;
    for (const auto& window : bench.service.enumerateWindows().listed) {
        text += (text.empty() ? "" : ", ") + window.applicationName + "/" + window.title;
        text += window.frame ? " " + describeFrame(*window.frame) : " nowhere";
        if (window.isVisible) text += " visible";
        if (window.isMinimized) text += " minimized";
        if (window.isFullScreen) text += " full screen";
        if (window.minimumSize) text += " least " + describeFrame({{0, 0}, *window.minimumSize}).substr(4);
    }
    return text;
}

using enum AccessibilityAttribute;

TEST(WindowEnumeration, TheParentOfADialogIsAManagedWindowOfItsApplication) {
    ServiceBench bench;
    bench.desktop.launch("Mail");
    bench.desktop.launch("Notes");
    const CGRect tiny = makeRect(0, 0, 50, 50);
    bench.desktop.open("Mail", {.title = "Inbox"});
    bench.desktop.open("Mail", {.title = "Save?", .subrole = "AXDialog", .dialogOf = "Mail"});
    bench.desktop.open("Mail", {.title = "Really?", .dialogOf = "Mail 2"});
    bench.desktop.open("Mail", {.frame = tiny});
    bench.desktop.open("Mail", {.title = "dialog of an unmanaged window", .dialogOf = "Mail 4"});
    bench.desktop.open("Mail", {.title = "first of a cycle", .dialogOf = "Mail 7"});
    bench.desktop.open("Mail", {.title = "second of a cycle", .dialogOf = "Mail 6"});
    bench.desktop.open("Notes", {.title = "dialog of another application's window", .dialogOf = "Mail"});
    std::string owners;
    for (const auto& window : bench.service.enumerateWindows().listed) {
        owners += window.title + ": " + (window.parentID ? bench.desktop.labelOfID(*window.parentID) : "-") + "\n";
    }
    EXPECT_EQ(owners, "Inbox: -\nSave?: Mail\nReally?: Mail\ndialog of an unmanaged window: -\n"
                      "first of a cycle: -\nsecond of a cycle: -\ndialog of another application's window: -\n");
}

TEST(WindowEnumeration, ManagesOnlyWindowsAndDialogsOfAtLeast120By80Points) {
    const CGRect large = makeRect(10, 20, 300, 200);
    struct Case {
        const char* why;
        WindowTraits traits;
        const char* expected;
    };
    const Case cases[] = {
        {"ordinary", {.frame = large}, "Mail/Mail 10,20 300x200 visible"},
        {"a dialog", {.frame = large, .subrole = "AXDialog"}, "Mail/Mail 10,20 300x200 visible"},
        {"no subrole", {.frame = large, .subrole = std::nullopt}, "Mail/Mail 10,20 300x200 visible"},
        {"a palette", {.frame = large, .subrole = "AXFloatingWindow"}, ""},
        {"a drawer", {.frame = large, .role = "AXDrawer"}, ""},
        {"role unreadable", {.frame = large, .unreadable = {role}}, ""},
        {"narrow", {.frame = makeRect(0, 0, 119.5, 600)}, ""},
        {"low", {.frame = makeRect(0, 0, 600, 79.5)}, ""},
        {"just large enough", {.frame = makeRect(0, 0, 120, 80)}, "Mail/Mail 0,0 120x80 visible"},
        {"size unreadable", {.frame = makeRect(0, 0, 10, 10), .unreadable = {size}}, "Mail/Mail nowhere"},
        {"position unreadable", {.frame = large, .unreadable = {position}}, "Mail/Mail nowhere"},
        {"frame not a number", {.frame = makeRect(0, 0, std::nan(""), 500)}, "Mail/Mail nowhere"},
        {"untitled", {.frame = large, .unreadable = {title}}, "Mail/Untitled Window 10,20 300x200 visible"},
        {"title empty", {.frame = large, .title = ""}, "Mail/ 10,20 300x200 visible"},
        {"whether it is minimized is unreadable",
         {.frame = large, .unreadable = {minimized}},
         "Mail/Mail 10,20 300x200 visible"},
        {"minimized", {.frame = large, .isMinimized = true}, "Mail/Mail 10,20 300x200 minimized"},
        {"on another Space", {.frame = large, .virtualDesktop = 1}, "Mail/Mail 10,20 300x200"},
        {"not an ordinary layer", {.frame = large, .layer = 3}, "Mail/Mail 10,20 300x200"},
        {"a minimum size",
         {.frame = large, .minimumSize = CGSize{80, 60}},
         "Mail/Mail 10,20 300x200 visible least 80x60"},
        {"a minimum size with a negative width",
         {.frame = large, .minimumSize = CGSize{-5, 60}},
         "Mail/Mail 10,20 300x200 visible least 0x60"},
        {"an empty minimum size and one in the other attribute",
         {.frame = large, .minimumSize = CGSize{0, -1}, .otherMinimumSize = CGSize{70, 0}},
         "Mail/Mail 10,20 300x200 visible least 70x0"},
        {"different minimum sizes in both attributes",
         {.frame = large, .minimumSize = CGSize{80, 0}, .otherMinimumSize = CGSize{70, 50}},
         "Mail/Mail 10,20 300x200 visible least 80x0"},
        {"empty minimum sizes in both attributes",
         {.frame = large, .minimumSize = CGSize{0, 0}, .otherMinimumSize = CGSize{-1, 0}},
         "Mail/Mail 10,20 300x200 visible"},
    };
    for (const auto& [why, traits, expected] : cases) {
        ServiceBench bench;
        bench.desktop.open("Mail", traits);
        EXPECT_EQ(listed(bench), expected) << why;
    }
}

TEST(WindowEnumeration, ListsOrdinaryApplicationsInTheDesktopsOrder) {
    ServiceBench bench;
    auto& desktop = bench.desktop;
    desktop.launch("Chat", {.hasName = false});
    desktop.launch("Clock", {.activationPolicy = ApplicationActivationPolicy::accessory});
    desktop.launch("Helper", {.activationPolicy = ApplicationActivationPolicy::prohibited});
    desktop.launch("KOVA");
    desktop.launch("Notes");
    desktop.launch("Leaving");
    for (const auto* name : {"Notes", "Clock", "Helper", "KOVA", "Leaving", "Chat", "Mail"}) {
        desktop.open(name, {.frame = makeRect(0, 0, 500, 400)});
    }
    desktop.open("Mail", {.title = "Draft"});
    desktop.beginTerminating("Leaving");
    desktop.userHides("Notes");
    EXPECT_EQ(listed(bench), "Mail/Mail 0,0 500x400 visible, Mail/Draft 310,310 800x600 visible, "
                             "App/Chat 0,0 500x400 visible, Notes/Notes 0,0 500x400");
    desktop.setTrusted(false);
    EXPECT_EQ(listed(bench), "");
}

TEST(WindowEnumeration, ReadsEachElementWithOneRequest) {
    ServiceBench bench;
    bench.desktop.launch("Notes");
    for (int i = 0; i < 3; ++i) bench.desktop.open("Mail");
    const int before = bench.desktop.readCount();
    EXPECT_EQ(bench.service.enumerateWindows().listed.size(), 3u);
    EXPECT_EQ(bench.desktop.readCount() - before, 2 + 3) << "two applications and three windows";
}

TEST(WindowEnumeration, OnlyTheUnresponsiveApplicationCostsItsTimeout) {
    ServiceBench bench;
    auto& desktop = bench.desktop;
    desktop.launch("Notes");
    desktop.open("Mail");
    desktop.open("Notes", {.frame = makeRect(0, 0, 500, 400)});
    desktop.setResponding("Mail", false);
    std::string found;
    desktop.pollingQueue().post([&] { desktop.queue().post([&, text = listed(bench)] { found = text; }); });
    desktop.queue().advance(SimulatedDesktop::kReadDeadline - Seconds(0.001));
    EXPECT_EQ(found, "");
    desktop.queue().advance(Seconds(0.001));
    EXPECT_EQ(found, "Notes/Notes 0,0 500x400 visible");
    EXPECT_TRUE(desktop.violations().empty()) << desktop.violations().front();
}

TEST(WindowEnumeration, QueriesThePresenceOfUnlistedKnownWindowsOnly) {
    ServiceBench bench;
    auto& desktop = bench.desktop;
    desktop.setSpaceStyle(SpaceStyle::listsShown);
    desktop.launch("Notes");
    std::vector<KnownWindow> known;
    for (const char* name : {"Mail", "Mail", "Notes", "Notes"}) {
        const auto window = bench.managed(desktop.open(name));
        known.push_back({window.id, window.element});
    }
    struct Case {
        const char* what;
        std::function<void()> happens;
        std::string expected; // the windows that are neither listed nor closed
        int moreRequests;     // how many more than a poll without known windows
    };
    const Case cases[] = {
        {"all are listed", [] {}, "", 0},
        {"minimized", [&] { desktop.userMinimizes("Mail"); }, "", 0},
        {"small but managed before", [&] { desktop.userMoves("Mail 2", makeRect(0, 0, 100, 60)); }, "", 0},
        {"on another Space", [&] { desktop.sendToVirtualDesktop("Mail 2", 1); }, "Mail 2", 3},
        {"closed", [&] { desktop.close("Mail 2"); }, "", 1},
        {"unresponsive", [&] { desktop.setResponding("Notes", false); }, "Notes unresponsive, Notes 2 unresponsive", 2},
        {"the application has ended", [&] { desktop.quit("Notes"); }, "", 1},
    };
    WindowEnumeration found;
    const auto requestsOfPoll = [&](std::span<const KnownWindow> knownWindows) {
        const int before = desktop.readCount();
        desktop.pollingQueue().post([&] { found = bench.service.enumerateWindows(knownWindows); });
        desktop.queue().advance(Seconds(5));
        return desktop.readCount() - before;
    };
    for (const auto& [what, happens, expected, moreRequests] : cases) {
        happens();
        const int withoutKnown = requestsOfPoll({});
        EXPECT_EQ(requestsOfPoll(known) - withoutKnown, moreRequests) << what;
        std::string text;
        for (const auto& window : found.unlisted) {
            text += (text.empty() ? "" : ", ") + desktop.labelOfID(window.id) +
                    (window.isResponding ? "" : " unresponsive");
        }
        EXPECT_EQ(text, expected) << what;
    }
}

TEST(WindowEnumeration, AnApplicationWithoutAnIconGetsTheIconOfItsBundleOrASymbol) {
    ServiceBench bench;
    const ApplicationIcon none{};
    bench.desktop.launch("Bundled", {.icon = none, .bundlePath = "/Applications/Bundled.app"});
    bench.desktop.launch("Strange", {.icon = none, .bundlePath = "/opt/strange"});
    bench.desktop.launch("Bare", {.icon = none});
    std::string icons;
    for (const auto* name : {"Mail", "Bundled", "Strange", "Bare"}) {
        bench.desktop.open(name);
        icons += bench.managed(name).icon.name + "|";
    }
    EXPECT_EQ(icons, "application|icon of /Applications/Bundled.app|symbol macwindow|symbol macwindow|");
}

TEST(WindowEnumeration, OneRectangleMakesOneOfTwoEqualWindowsVisible) {
    const CGRect frame = makeRect(50, 50, 700, 500);
    ServiceBench bench;
    bench.desktop.open("Mail", {.frame = frame});
    bench.desktop.open("Mail", {.frame = frame, .virtualDesktop = 2});
    EXPECT_EQ(listed(bench), "Mail/Mail 50,50 700x500 visible, Mail/Mail 2 50,50 700x500");
    EXPECT_NE(bench.managed("Mail").id, bench.managed("Mail 2").id);
    bench.desktop.userMinimizes("Mail");
    bench.desktop.showVirtualDesktop(2);
    EXPECT_EQ(listed(bench), "Mail/Mail 50,50 700x500 minimized, Mail/Mail 2 50,50 700x500 visible")
        << "a minimized window with the same frame takes no rectangle";
}

TEST(WindowEnumeration, IgnoresDuplicatesAndWindowsOfHiddenApplications) {
    ServiceBench bench;
    bench.desktop.launch("Echo", {.listsWindowsTwice = true});
    bench.desktop.open("Echo", {.frame = makeRect(0, 0, 500, 400)});
    EXPECT_EQ(listed(bench), "Echo/Echo 0,0 500x400 visible");
    bench.desktop.launch("Ghost", {.lingersWhenHidden = true});
    bench.desktop.open("Ghost", {.frame = makeRect(0, 0, 500, 400)});
    bench.desktop.userHides("Ghost");
    EXPECT_EQ(listed(bench), "Echo/Echo 0,0 500x400 visible, Ghost/Ghost 0,0 500x400");
}

TEST(VisibilityMatching, PrefersTheSameSizeAndUsesRectanglesInOrder) {
    struct Case {
        const char* why;
        std::vector<CGRect> windows;
        std::vector<CGRect> onScreen;
        std::vector<std::size_t> expected;
    };
    const Case cases[] = {
        {"a window of the same size far away beats a near window of another size",
         {makeRect(0, 0, 400, 300), makeRect(90, 90, 500, 400)},
         {makeRect(0, 0, 500, 400)},
         {1}},
        {"equal scores: the earlier window",
         {makeRect(10, 0, 300, 300), makeRect(0, 10, 300, 300)},
         {makeRect(0, 0, 300, 300)},
         {0}},
        {"width counts double: a window 30 points away beats one that is 20 points too wide",
         {makeRect(0, 0, 320, 300), makeRect(30, 0, 300, 300)},
         {makeRect(0, 0, 300, 300)},
         {1}},
        {"height counts double",
         {makeRect(0, 0, 300, 320), makeRect(0, 30, 300, 300)},
         {makeRect(0, 0, 300, 300)},
         {1}},
        {"the only window, however different it is",
         {makeRect(5000, 5000, 120, 80)},
         {makeRect(0, 0, 2000, 2000)},
         {0}},
        {"the first rectangle takes a window that fits the second one better",
         {makeRect(0, 0, 300, 300), makeRect(900, 900, 900, 900)},
         {makeRect(100, 100, 300, 300), makeRect(0, 0, 300, 300)},
         {0, 1}},
        {"more rectangles than windows",
         {makeRect(0, 0, 300, 300)},
         {makeRect(9, 9, 9, 9), makeRect(0, 0, 300, 300)},
         {0}},
        {"nothing on the screen", {makeRect(0, 0, 300, 300)}, {}, {}},
    };
    for (const auto& [why, windows, onScreen, expected] : cases) {
        std::vector<VisibilityCandidate> candidates;
        for (const auto& frame : windows) candidates.push_back({candidates.size(), frame});
        EXPECT_EQ(visibleWindows(candidates, onScreen), expected) << why;
    }
}

TEST(WindowIdentity, SamePresentationIgnoresFrameAndTitle) {
    ServiceBench bench;
    bench.desktop.open("Mail", {.minimumSize = CGSize{200, 100}});
    const auto window = bench.managed("Mail");
    auto moved = window;
    moved.frame = makeRect(1, 2, 3, 4);
    moved.title = "Another";
    EXPECT_TRUE(samePresentation(window, moved));
    const std::vector<std::function<void(ManagedWindow&)>> changes = {
        [](auto& w) { w.id = WindowID(w.id.text() + "0"); },
        [](auto& w) { w.processIdentifier += 1; },
        [](auto& w) { w.applicationName = ""; },
        [](auto& w) { w.bundleIdentifier.reset(); },
        [](auto& w) { w.isMinimized = true; },
        [](auto& w) { w.isVisible = false; },
        [](auto& w) { w.minimumSize.reset(); }};
    for (std::size_t i = 0; i < changes.size(); ++i) {
        auto changed = window;
        changes[i](changed);
        EXPECT_FALSE(samePresentation(window, changed)) << "change " << i;
    }
}

TEST(DisplayIdentity, IsDerivedFromTheDeviceOrElseFromTheFrame) {
    const auto id = [](std::optional<std::string> uuid, CGRect frame) {
        return displayID({.displayUUID = std::move(uuid), .localizedName = "", .frame = frame, .visibleFrame = frame});
    };
    EXPECT_EQ(id("37D8-A", makeRect(0, 0, 10, 10)), "display-37D8-A");
    EXPECT_EQ(id(std::nullopt, makeRect(0, 0, 2560, 1440)), "display-0-0-2560x1440");
    EXPECT_EQ(id(std::nullopt, makeRect(-1920.5, -3.9, 1920.9, 1080)), "display--1920--3-1920x1080");
    EXPECT_EQ(id(std::nullopt, makeRect(std::nan(""), 1e300, 5, 5)), "display-0-1000000000000000-5x5");
}

} // namespace

} // namespace kova
