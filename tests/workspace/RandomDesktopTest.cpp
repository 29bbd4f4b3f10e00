// Random events of users, applications and the machine occur in any order and at any moment. The tests check that the
// invariants of every scenario hold, that windows which are not listed for a moment keep their tiles, and that the
// desktop settles at the end.
#include "tests/workspace/RandomWalk.h"

#include "layout/AutoArrangeLearning.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>

namespace kova {

namespace {

constexpr std::uint32_t kUsualDays = 40;
constexpr std::size_t kStepsPerDay = 60;

/// One day is a walk of `kStepsPerDay` operations; each seed gives another day.
class RandomDay : public RandomWalk {
  public:
    explicit RandomDay(std::uint32_t seed) : RandomWalk(seed) { addSystemOperations(); }
    Operations anyOperations() override {
        return draw(kStepsPerDay, [this] { return anyName(); });
    }

  private:
    void begin() override {
        desk_.display(2560, 1440);
        desk_.desktop.setAnnouncesAllChanges(chance(2));
        for (const char* name : {"Mail", "Notes", "Codex"}) desk_.desktop.install(name);
        desk_.desktop.setHidingStyle(chance(2) ? HidingStyle::hidesApplication : HidingStyle::iconifiesWindows);
        const bool listsAll = chance(2);
        if (isMac()) {
            desk_.desktop.setResponseTime(anyOf({Seconds(0.001), Seconds(0.005)}));
        } else {
            desk_.desktop.setSpaceStyle(listsAll ? SpaceStyle::listsAll : SpaceStyle::listsShown);
        }
        desk_.start();
    }
    void step(const std::string& name) override {
        if (chance(2)) endDisturbances();
        perform(name);
        // The next event comes at once, during the passes of a placement, between two polls, or after settling.
        const Seconds pause = anyOf({Seconds(0), Seconds(0.1), Seconds(0.5), Seconds(0.9), desk_.settlingTime()});
        chance(12) ? desk_.settleFully() : desk_.advance(pause);
    }
    /// Once all applications respond again and no more events occur, the desktop settles for good.
    void end() override {
        auto& desktop = desk_.desktop;
        for (const auto& application : desktop.runningApplications())
            desktop.setResponding(*application.localizedName, true);
        endDisturbances();
        desk_.settleFully().arrange();
        withAnyWindow([&](const auto& label) { desk_.desktop.userMoves(label, anyFrame()); });
        desk_.settleFully(); // a frame that a window refuses is requested more than once
        (void)desktop.takeJournal();
        EXPECT_EQ(desk_.framesWrittenWithin(Seconds(30)), 0)
            << "frames are written although the desktop should have settled: " << desktop.picture() << "\n"
            << desktop.takeJournal().substr(0, 600);
    }
    WindowTraits anyTraits() override {
        WindowTraits traits{.frame = anyFrame()};
        switch (below(16)) {
        case 10:
            traits.unannouncedMinimumSize = CGSize{static_cast<double>(500 + below(1300)), 300};
            break;
        case 11:
            traits.minimumSize = CGSize{static_cast<double>(500 + below(1300)), static_cast<double>(below(900))};
            break;
        case 0:
            traits.minimumSize = CGSize{static_cast<double>(below(2000)), static_cast<double>(below(1200))};
            break;
        case 1:
            traits.unannouncedMinimumSize = CGSize{static_cast<double>(below(2000)), static_cast<double>(below(1200))};
            break;
        case 2:
            traits.sizeIncrement = {17, 31};
            break;
        case 3:
            traits.refusesToMove = true;
            break;
        case 4:
            traits.refusesToResize = true;
            break;
        case 5:
            traits.writeDelay = Seconds(0.3);
            break;
        case 6:
            traits.springsBackTimes = 3;
            break;
        case 7:
            traits.vanishesAtWrite = static_cast<int>(1 + below(6));
            break;
        case 8:
            traits.clampsToDisplay = true;
            break;
        case 9:
            traits.unreadable = {anyOf({AccessibilityAttribute::position, AccessibilityAttribute::minimized})};
            break;
        default:
            break; // most windows accept requested frames
        }
        return traits;
    }
    /// Another event may occur while the button is still down.
    void pauseDrag() override {
        desk_.advance(anyOf({Seconds(0), Seconds(0.02), Seconds(0.6)}));
        if (!chance(4) || isInterrupted_) return;
        isInterrupted_ = true;
        const std::string name = anyName();
        story_ += "\n  meanwhile " + name;
        perform(name);
        desk_.advance(anyOf({Seconds(0), Seconds(0.1), Seconds(0.5), Seconds(0.9)}));
        isInterrupted_ = false;
    }

    std::string anyName() {
        return chance(4) ? kSystemOperations[below(kSystemOperations.size())]
                         : kUserOperations[below(kUserOperations.size())];
    }
    void launchIntoAnyTile() {
        const auto tiles = desk_.controller().tiles();
        if (tiles.empty() || desk_.desktop.livingWindows().size() >= kMostWindows) return;
        const auto application = anyOf({mail_, notes_, broken_});
        const auto& tile = tiles[below(tiles.size())];
        story_ += " " + application.name + " into " + tile.target.text();
        (void)desk_.controller().perform(action::LaunchApplication{application, tile.displayID, tile.slot.id});
    }
    void endApplication(const std::string& label) {
        const WindowID id = desk_.desktop.windowIDOf(label);
        (void)(chance(2) ? desk_.controller().perform(action::QuitApplication{id})
                         : desk_.controller().perform(action::ForceQuitApplication{id}));
    }
    void simulateSystemEvent() {
        using enum SystemActivityEvent;
        const auto event = anyOf({systemWillSleep, systemDidWake, screensDidSleep, screensDidWake,
                                  sessionDidResignActive, sessionDidBecomeActive, screenDidLock, screenDidUnlock});
        story_ += " " + std::to_string(static_cast<int>(event));
        desk_.simulate(event);
    }
    /// Stops listing a window, as the window server does around sleep.
    void stopListingAnyWindow() {
        if (!desk_.isSuspended()) desk_.sleep();
        withAnyWindow([&](const auto& label) { desk_.desktop.loseWindow(label); });
    }
    /// Windows that are not listed between `interrupt` and `resume` keep their tiles if no other event occurs.
    void expectTilesKept(const std::function<void()>& interrupt, const std::function<void()>& resume) {
        auto& desktop = desk_.desktop;
        if (isInterrupted_ || desk_.isSuspended() || *desk_.state().isPaused || desktop.stalePermission() ||
            desktop.isLoginSessionScreenLocked() || !desktop.isProcessTrusted())
            return;
        desk_.settleFully(); // earlier operations may still move windows
        const auto& controller = desk_.controller();
        bool mayChangeAnyway =
            !controller.state().pendingLaunches->empty() || !controller.pendingSceneWindowPlacements().empty();
        const auto before = controller.assignments();
        std::set<WindowID> onShownSpace;
        for (const auto& window : controller.liveWindows()) {
            // The Space of an unresponsive window is unknown, and the window may claim more tiles once it responds.
            if (!window.isResponding) mayChangeAnyway = true;
            if (!window.isElsewhere && window.isResponding) onShownSpace.insert(window.id);
        }
        interrupt();
        desk_.advance(Seconds(1.5));
        resume();
        desk_.advance(Seconds(1.5));
        const auto& after = controller.assignments();
        for (const auto* window : desktop.livingWindows()) {
            const auto id = desktop.windowIDOf(window->label());
            // Only the shown tab of a tab group has a tile.
            if (!before.isInAnyTile(id) || !onShownSpace.contains(id) || window->isBackgroundTab) continue;
            EXPECT_TRUE(after.isInAnyTile(id)) << window->label();
            if (mayChangeAnyway) continue;
            EXPECT_EQ(after.targetsOf(id), before.targetsOf(id)) << window->label();
            EXPECT_EQ(after.stackTargetOf(id), before.stackTargetOf(id)) << window->label();
        }
    }
    void useTabs(const std::string& label) {
        const auto& window = desk_.desktop.window(label);
        if (window.isBackgroundTab) {
            desk_.desktop.showTab(label);
        } else if (desk_.desktop.livingWindows().size() < kMostWindows) {
            desk_.desktop.openTab(label);
        }
    }
    void addRule() {
        WorkspaceRule rule;
        rule.applicationName = anyOf<const char*>({"Mail", "Notes", "Codex", "Firefox", "Console", "Viewer"});
        rule.disposition = anyOf<WorkspaceRuleDisposition>(
            {disposition::Tile{"focus-main"}, disposition::Tile{"secondary-2"}, disposition::Float{}});
        if (chance(3)) rule.titleContains = "draft";
        (void)desk_.controller().perform(action::AddRule{rule});
    }
    /// Events that occur only on a Mac; an arrangement on other desktops.
    void disturbMac() {
        if (!isMac()) return act(action::Arrange{});
        switch (below(3)) {
        case 0:
            return desk_.desktop.setResponseTime(anyOf({Seconds(0.001), Seconds(0.005), Seconds(0.3)}));
        case 1:
            return desk_.desktop.setPermissionStale(chance(2));
        default:
            return desk_.desktop.announcements().lose(static_cast<int>(1 + below(4)));
        }
    }
    /// Ends sleep, locks and other conditions in which KOVA moves no windows.
    void endDisturbances() {
        auto& desktop = desk_.desktop;
        using enum SystemActivityEvent;
        const bool wasAway = desktop.isLoginSessionScreenLocked() || desk_.isSuspended();
        act(action::Switch{action::Setting::isPaused, false});
        desktop.setTrusted(true);
        desktop.setPermissionStale(false);
        if (isMac()) desktop.setResponseTime(Seconds(0.002));
        for (const auto event : {systemDidWake, screensDidWake, sessionDidBecomeActive, screenDidUnlock}) {
            desk_.simulate(event);
        }
        for (const auto* window : desktop.livingWindows()) desktop.loseWindow(window->label(), false);
        if (desktop.screens().empty()) desk_.display(2560, 1440);
        if (wasAway) desk_.advance(Seconds(14));
    }
    void addSystemOperations();

    /// Operations that are listed repeatedly are drawn more often.
    static constexpr std::array kUserOperations = {
        "opens",
        "opens",
        "opens",
        "closes",
        "moves",
        "minimizes",
        "clicks",
        "clicks",
        "arrange",
        "arrange",
        "arrange",
        "undo",
        "zoom",
        "cycle stack",
        "focus",
        "move",
        "move",
        "command",
        "captures",
        "opens a scene",
        "launches",
        "next layout",
        "previous layout",
        "drags divider",
        "drags divider",
        "drags into a tile",
        "drags into a tile",
        "presses",
        "theme",
    };
    static constexpr std::array kSystemOperations = {
        "quits",
        "quits by command",
        "hides",
        "renames",
        "full screen",
        "sends elsewhere",
        "shows desktop",
        "hangs",
        "hangs for a moment",
        "visits a desktop",
        "uses tabs",
        "uses tabs",
        "plugs in",
        "unplugs",
        "resizes",
        "reorders",
        "locks",
        "permission",
        "slow polls",
        "system event",
        "system event",
        "stops listing",
        "renumbers",
        "inset",
        "resets divider",
        "rules",
        "adds a rule",
        "drops a rule",
        "restart",
        "Mac disturbance",
        "bring forward",
        "pauses",
        "prefers",
        "forgets",
        "repairs",
    };
    const LaunchableApplication mail_ = desk_.desktop.install("Mail", {.startsAfter = Seconds(0.2)});
    const LaunchableApplication notes_ = desk_.desktop.install("Notes", {.opensWhenRunning = true});
    const LaunchableApplication broken_ = desk_.desktop.install("Broken", {.fails = "It is broken"});
    int displays_ = 1;
    bool isInterrupted_ = false;
};

void RandomDay::addSystemOperations() {
    kinds_.merge(Kinds{
        {"launches", [this] { launchIntoAnyTile(); }},
        {"quits", toWindow([this](const auto& label) { desk_.desktop.quit(applicationOf(label)); })},
        {"quits by command", toWindow([this](const auto& label) { endApplication(label); })},
        {"sends elsewhere", toWindow([this](const auto& label) {
             desk_.desktop.sendToVirtualDesktop(label, static_cast<int>(below(2)));
         })},
        {"shows desktop", [this] { desk_.desktop.showVirtualDesktop(static_cast<int>(below(2))); }},
        {"hangs",
         toWindow([this](const auto& label) { desk_.desktop.setResponding(applicationOf(label), chance(2)); })},
        {"hangs for a moment", toWindow([this](const auto& label) {
             const auto setResponding =
                 [&](bool responds) { // an application that was requested to quit may end meanwhile
                     const std::string application = applicationOf(label);
                     if (desk_.desktop.isRunning(application)) desk_.desktop.setResponding(application, responds);
                 };
             expectTilesKept([&] { setResponding(false); }, [&] { setResponding(true); });
         })},
        {"visits a desktop",
         [this] {
             const int here = desk_.desktop.shownVirtualDesktop();
             expectTilesKept([&] { desk_.desktop.showVirtualDesktop(here + 1); },
                             [&] { desk_.desktop.showVirtualDesktop(here); });
         }},
        {"uses tabs", toWindow([this](const auto& label) { useTabs(label); })},
        {"plugs in",
         [this] {
             if (desk_.desktop.screens().size() < 3) desk_.display(1920, 1080, "P" + std::to_string(displays_++));
         }},
        {"unplugs", toDisplay([this](const auto& name) { desk_.desktop.removeDisplay(name); })},
        {"resizes", toDisplay([this](const auto& name) {
             desk_.desktop.resizeDisplay(name, anyOf<CGSize>({{2560, 1440}, {1280, 800}, {5120, 1440}, {1080, 1920}}));
         })},
        {"reorders", toDisplay([this](const auto& name) { desk_.desktop.makeFirstDisplay(name); })},
        {"locks", [this] { desk_.desktop.setLocked(!desk_.desktop.isLoginSessionScreenLocked()); }},
        {"permission", [this] { desk_.desktop.setTrusted(!desk_.desktop.isProcessTrusted() || chance(3)); }},
        {"slow polls", [this] { desk_.desktop.pollingQueue().setJobDuration(Seconds(chance(3) ? 0.5 : 0.01)); }},
        {"system event", [this] { simulateSystemEvent(); }},
        {"stops listing", [this] { stopListingAnyWindow(); }},
        {"renumbers", toWindow([this](const auto& label) { desk_.desktop.renumber(label); })},
        {"rules",
         [this] {
             act(action::Switch{action::Setting::continuousManagement, !*desk_.state().continuousManagementEnabled});
         }},
        {"adds a rule", [this] { addRule(); }},
        {"drops a rule",
         [this] {
             const auto rules = *desk_.state().rules;
             if (!rules.empty()) act(action::DeleteRule{Uuid(rules.front().id)});
         }},
        {"pauses",
         [this] {
             act(action::Switch{action::Setting::isPaused, !*desk_.state().isPaused});
         }},
        {"prefers", toWindow([this](const auto& label) {
             const auto slot = anyOf<SlotID>({"focus-main", "secondary-1", "secondary-3"});
             const auto& windows = desk_.controller().liveWindows();
             const auto window = std::ranges::find(windows, desk_.desktop.windowIDOf(label), &ManagedWindow::id);
             if (window == windows.end() || chance(3)) return act(action::PreferApplication{slot});
             act(action::PreferApplication{slot, applicationKey(window->applicationName, window->bundleIdentifier)});
         })},
        {"forgets", toWindow([this](const auto& label) { act(action::ForgetApplication{applicationOf(label)}); })},
        {"restart", [this] { desk_.restart(); }},
        {"Mac disturbance", [this] { disturbMac(); }},
    });
}

TEST(RandomDesktop, KeepsTheInvariantsWhateverHappens) {
    runWalks<RandomDay>(kUsualDays, "RandomDay");
}

} // namespace

} // namespace kova
