// Anything a person, an application or the machine can do, in any order and at any moment. The scenario checks its
// invariants after every step; a failure prints the seed and the story so far. KOVA_RANDOM_SEED runs one seed,
// KOVA_RANDOM_DAYS that many seeds from it on.
#include "tests/harness/Scenario.h"
#include "tests/workspace/Seeds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <set>
#include <string>

namespace kova {

namespace {

constexpr std::uint32_t kUsualDays = 40;
constexpr int kStepsPerDay = 60;
constexpr std::size_t kMostWindows = 12;

class RandomDay {
  public:
    explicit RandomDay(std::uint32_t seed) : random_(seed) {
        desk_.display(2560, 1440);
        desk_.desktop.setVouching(chance(2));
        for (const char* name : {"Mail", "Notes", "Codex"}) desk_.desktop.install(name);
        desk_.desktop.setHidingStyle(chance(2) ? HidingStyle::hidesApplication : HidingStyle::iconifiesWindows);
        const bool listsAll = chance(2);
        if (isMac()) {
            desk_.desktop.setAnswerTime(anyOf({Seconds(0.001), Seconds(0.005)}));
        } else {
            desk_.desktop.setSpaceStyle(listsAll ? SpaceStyle::listsAll : SpaceStyle::listsShown);
        }
        desk_.start();
        for (int step = 0; step < kStepsPerDay && !testing::Test::HasFailure(); ++step) takeStep();
        if (!testing::Test::HasFailure()) checkRest();
        if (testing::Test::HasFailure()) ADD_FAILURE() << "seed " << seed << story_;
    }

  private:
    struct Step {
        const char* name;
        std::function<void()> take;
    };

    bool isMac() const { return !desk_.desktop.announcesUnasked(); }
    std::size_t below(std::size_t count) { return random_() % count; }
    bool chance(std::size_t oneIn) { return below(oneIn) == 0; }
    template <class T>
    T anyOf(std::initializer_list<T> choices) {
        return *(choices.begin() + below(choices.size()));
    }
    /// With its corner on some display, where there is one.
    CGRect anyFrame() {
        CGRect display = makeRect(0, 0, 2560, 1440);
        const auto screens = desk_.desktop.screens();
        if (!screens.empty()) display = desk_.desktop.frameOfDisplay(screens[below(screens.size())].localizedName);
        return makeRect(minX(display) + static_cast<double>(below(900)),
                        minY(display) + static_cast<double>(below(700)), static_cast<double>(150 + below(1500)),
                        static_cast<double>(100 + below(1200)));
    }
    /// Nothing when there is no window.
    void withAnyWindow(const std::function<void(const std::string&)>& act) {
        const auto windows = desk_.desktop.livingWindows();
        if (windows.empty()) return;
        const std::string label = windows[below(windows.size())]->label();
        story_ += " " + label;
        act(label);
    }
    void withAnyDisplay(const std::function<void(const std::string&)>& act) {
        const auto screens = desk_.desktop.screens();
        if (screens.empty()) return;
        const std::string name = screens[below(screens.size())].localizedName;
        story_ += " " + name;
        act(name);
    }
    std::string applicationOf(const std::string& label) { return label.substr(0, label.find(' ')); }

    WindowTraits anyTraits() {
        WindowTraits traits{.frame = anyFrame()};
        switch (below(16)) {
        case 10:
            traits.secretMinimumSize = CGSize{static_cast<double>(500 + below(1300)), 300};
            break;
        case 11:
            traits.minimumSize = CGSize{static_cast<double>(500 + below(1300)), static_cast<double>(below(900))};
            break;
        case 0:
            traits.minimumSize = CGSize{static_cast<double>(below(2000)), static_cast<double>(below(1200))};
            break;
        case 1:
            traits.secretMinimumSize = CGSize{static_cast<double>(below(2000)), static_cast<double>(below(1200))};
            break;
        case 2:
            traits.cell = {17, 31};
            break;
        case 3:
            traits.refusesToMove = true;
            break;
        case 4:
            traits.refusesToResize = true;
            break;
        case 5:
            traits.answersAfter = Seconds(0.3);
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
    void openWindow() {
        if (desk_.desktop.livingWindows().size() >= kMostWindows) return;
        const std::string name = anyOf<const char*>({"Mail", "Notes", "Codex", "Firefox", "Console", "Viewer"});
        story_ += " " + name;
        desk_.opens(name, anyTraits());
    }
    void launchIntoAnyTile() {
        const auto tiles = desk_.controller().tiles();
        if (tiles.empty() || desk_.desktop.livingWindows().size() >= kMostWindows) return;
        const auto application = anyOf({mail_, notes_, broken_});
        const auto& tile = tiles[below(tiles.size())];
        story_ += " " + application.name + " into " + tile.targetID;
        (void)desk_.controller().perform(action::LaunchApplication{application, tile.displayID, tile.slot.id});
    }
    void endApplication(const std::string& label) {
        const WindowID id = desk_.desktop.windowIDOf(label);
        (void)(chance(2) ? desk_.controller().perform(action::QuitApplication{id})
                         : desk_.controller().perform(action::ForceQuitApplication{id}));
    }
    void act(const WorkspaceAction& action) {
        desk_.controller().perform(action);
        desk_.advance(Seconds(0));
    }
    WorkspaceDirection anyDirection() {
        using enum WorkspaceDirection;
        return anyOf({left, right, up, down});
    }
    void simulateSystemEvent() {
        using enum SystemActivityEvent;
        const auto event = anyOf({systemWillSleep, systemDidWake, screensDidSleep, screensDidWake,
                                  sessionDidResignActive, sessionDidBecomeActive, screenDidLock, screenDidUnlock});
        story_ += " " + std::to_string(static_cast<int>(event));
        desk_.simulate(event);
    }
    /// As the window server does around sleep.
    void loseAnyWindow() {
        if (!desk_.isSuspended()) desk_.sleep();
        withAnyWindow([&](const auto& label) { desk_.desktop.loseWindow(label); });
    }
    /// Windows that are not listed for a while, with nothing else happening, keep
    /// their tiles.
    void expectNoLoss(const std::function<void()>& away, const std::function<void()>& back) {
        auto& desktop = desk_.desktop;
        if (isInterrupted_ || desk_.isSuspended() || desktop.stalePermission() ||
            desktop.isLoginSessionScreenLocked() || !desktop.isProcessTrusted())
            return;
        desk_.rest(); // what was done before may still move windows
        const auto& controller = desk_.controller();
        const bool isAwaitingWindows =
            !controller.pendingApplicationPlacements().empty() || !controller.pendingSceneWindowPlacements().empty();
        const auto before = controller.assignments();
        std::set<WindowID> here; // one that was sent to the other Space has its tile there
        for (const auto& window : controller.liveWindows()) {
            if (!window.isElsewhere) here.insert(window.id);
        }
        away();
        desk_.advance(Seconds(1.5));
        back();
        desk_.advance(Seconds(1.5));
        const auto& after = controller.assignments();
        for (const auto* window : desktop.livingWindows()) {
            const auto id = desktop.windowIDOf(window->label());
            // A tab group has the tile of the tab that it shows.
            if (!before.isInAnyTile(id) || !here.contains(id) || window->isBackgroundTab) continue;
            EXPECT_TRUE(after.isInAnyTile(id)) << window->label();
            if (isAwaitingWindows) continue;
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
    double anyDistance() { return static_cast<double>(below(1600)) - 800; }
    /// Something else may happen while the button is still down.
    void holdOn() {
        desk_.advance(anyOf({Seconds(0), Seconds(0.02), Seconds(0.6)}));
        if (chance(4) && !isInterrupted_) {
            isInterrupted_ = true;
            takeStep();
            isInterrupted_ = false;
        }
    }
    void openScene() {
        const auto scenes = *desk_.state().scenes;
        if (scenes.empty()) return;
        const Uuid id = scenes[below(scenes.size())].id;
        act(action::ActivateScene{id});
        if (!chance(3) || isInterrupted_) return;
        desk_.advance(Seconds(1));
        act(action::ActivateScene{id});
    }
    void addRule() {
        WorkspaceRule rule;
        rule.applicationName = anyOf<const char*>({"Mail", "Notes", "Codex", "Firefox", "Console", "Viewer"});
        rule.disposition = anyOf<WorkspaceRuleDisposition>(
            {disposition::Tile{"focus-main"}, disposition::Tile{"secondary-2"}, disposition::Float{}});
        if (chance(3)) rule.titleContains = "draft";
        (void)desk_.controller().perform(action::AddRule{rule});
    }
    void dragDivider() {
        const auto dividers = desk_.controller().dividers();
        if (dividers.empty()) return;
        const auto& divider = dividers[below(dividers.size())];
        if (!desk_.controller().perform(action::BeginDividerDrag{divider})) return;
        for (std::size_t moves = below(4); moves > 0; --moves) {
            desk_.controller().perform(action::UpdateDividerDrag{divider, anyDistance()});
            holdOn();
        }
        if (chance(3)) {
            desk_.controller().perform(action::CancelDividerDrag{});
        } else {
            desk_.controller().perform(action::EndDividerDrag{divider});
        }
    }
    void resetDivider() {
        const auto dividers = desk_.controller().dividers();
        if (!dividers.empty()) desk_.controller().perform(action::ResetDivider{dividers[below(dividers.size())]});
    }
    /// The controller may be another one after every pause.
    void dragWindow(const std::string& label) {
        using enum action::WindowDragKind;
        using enum action::DropMode;
        const auto& window = desk_.desktop.window(label);
        const auto movement = chance(3) ? resize : move;
        story_ += movement == resize ? " by an edge" : "";
        if (!desk_.controller().perform(action::BeginWindowDrag{desk_.desktop.windowIDOf(label),
                                                                desk_.desktop.frameForWindowService(window)})) {
            return;
        }
        CGPoint pointer{};
        for (std::size_t moves = below(4); moves > 0; --moves) {
            const CGRect frame = anyFrame();
            pointer = {minX(frame), minY(frame)};
            const auto living = desk_.desktop.livingWindows();
            const bool lives =
                std::any_of(living.begin(), living.end(), [&](const auto* w) { return w->label() == label; });
            if (lives) desk_.desktop.userMoves(label, frame);
            desk_.controller().perform(action::UpdateWindowDrag{pointer, movement});
            holdOn();
        }
        if (chance(4)) {
            story_ += " and gives up";
            desk_.controller().perform(action::CancelWindowDrag{});
        } else {
            const auto lettingGo = chance(4) ? floating : intoTile;
            story_ += lettingGo == floating ? " and lets it float" : " and lets it go";
            desk_.controller().perform(action::EndWindowDrag{pointer, movement, lettingGo});
        }
    }
    /// What happens on a Mac only; a person elsewhere goes on with the work.
    void haveMacTrouble() {
        if (!isMac()) return act(action::Arrange{});
        switch (below(3)) {
        case 0:
            return desk_.desktop.setAnswerTime(anyOf({Seconds(0.001), Seconds(0.005), Seconds(0.3)}));
        case 1:
            return desk_.desktop.setPermissionStale(chance(2));
        default:
            return desk_.desktop.announcements().lose(static_cast<int>(1 + below(4)));
        }
    }
    void takeStep() {
        if (!isInterrupted_ && chance(2)) endTrouble();
        const auto& steps = chance(4) ? trouble_ : work_;
        const Step& step = steps[below(steps.size())];
        story_ += std::string("\n  ") + step.name;
        step.take();
        // At once, in the midst of the passes, between two polls, or when all is at
        // rest, which it is not in the hand.
        const Seconds longest = isInterrupted_ ? Seconds(0.9) : Scenario::kSettlingTime;
        const Seconds pause = anyOf({Seconds(0), Seconds(0.1), Seconds(0.5), Seconds(0.9), longest});
        if (!isInterrupted_ && chance(12)) {
            desk_.rest();
        } else {
            desk_.advance(pause);
        }
        story_ += "\n    " + desk_.desktop.picture();
    }
    /// A day of sleep, locks and missing displays would show little.
    void endTrouble() {
        auto& desktop = desk_.desktop;
        using enum SystemActivityEvent;
        const bool wasAway = desktop.isLoginSessionScreenLocked() || desk_.isSuspended();
        desktop.setTrusted(true);
        desktop.setPermissionStale(false);
        if (isMac()) desktop.setAnswerTime(Seconds(0.002));
        for (const auto event : {systemDidWake, screensDidWake, sessionDidBecomeActive, screenDidUnlock}) {
            desk_.simulate(event);
        }
        for (const auto* window : desktop.livingWindows()) desktop.loseWindow(window->label(), false);
        if (desktop.screens().empty()) desk_.display(2560, 1440);
        if (wasAway) desk_.advance(Seconds(14));
    }
    /// When all answers again and nothing interferes, the desk comes to rest and
    /// stays there.
    void checkRest() {
        auto& desktop = desk_.desktop;
        for (const auto& application : desktop.runningApplications())
            desktop.setAnswering(*application.localizedName, true);
        endTrouble();
        desk_.rest().arrange();
        withAnyWindow([&](const auto& label) { desk_.desktop.userMoves(label, anyFrame()); });
        desk_.rest(); // a window that refuses its tile is asked more than once
        (void)desktop.takeJournal();
        EXPECT_EQ(desk_.framesWrittenWithin(Seconds(30)), 0) << "it never comes to rest: " << desktop.picture() << "\n"
                                                             << desktop.takeJournal().substr(0, 600);
    }

    Scenario desk_;
    const LaunchableApplication mail_ = desk_.desktop.install("Mail", {.startsAfter = Seconds(0.2)});
    const LaunchableApplication notes_ = desk_.desktop.install("Notes", {.opensWhenRunning = true});
    const LaunchableApplication broken_ = desk_.desktop.install("Broken", {.fails = "It is broken"});
    std::mt19937 random_;
    std::string story_;
    int displays_ = 1;
    bool isInterrupted_ = false;
    const std::vector<Step> work_ = {
        {"opens", [this] { openWindow(); }},
        {"opens", [this] { openWindow(); }},
        {"opens", [this] { openWindow(); }},
        {"closes", [this] { withAnyWindow([&](const auto& label) { desk_.desktop.close(label); }); }},
        {"drags", [this] { withAnyWindow([&](const auto& label) { desk_.desktop.userMoves(label, anyFrame()); }); }},
        {"minimises",
         [this] { withAnyWindow([&](const auto& label) { desk_.desktop.userMinimizes(label, !chance(3)); }); }},
        {"clicks", [this] { withAnyWindow([&](const auto& label) { desk_.desktop.userFocuses(label); }); }},
        {"clicks", [this] { withAnyWindow([&](const auto& label) { desk_.desktop.userFocuses(label); }); }},
        {"arrange", [this] { act(action::Arrange{}); }},
        {"arrange", [this] { act(action::Arrange{}); }},
        {"arrange", [this] { act(action::Arrange{}); }},
        {"undo", [this] { act(action::Undo{}); }},
        {"zoom", [this] { act(action::ToggleFocusZoom{}); }},
        {"cycle stack", [this] { act(action::CycleStack{}); }},
        {"focus", [this] { act(action::Focus{anyDirection()}); }},
        {"move", [this] { act(action::Move{anyDirection()}); }},
        {"move", [this] { act(action::Move{anyDirection()}); }},
        {"captures", [this] { desk_.controller().perform(action::CaptureScene{}); }},
        {"opens a scene", [this] { openScene(); }},
        {"launches", [this] { launchIntoAnyTile(); }},
        {"next layout", [this] { desk_.controller().perform(action::CycleLayout{}); }},
        {"previous layout", [this] { desk_.controller().perform(action::CycleLayout{LayoutStep::previous}); }},
        {"drags divider", [this] { dragDivider(); }},
        {"drags divider", [this] { dragDivider(); }},
        {"drags into a tile", [this] { withAnyWindow([&](const auto& label) { dragWindow(label); }); }},
        {"drags into a tile", [this] { withAnyWindow([&](const auto& label) { dragWindow(label); }); }},
    };
    const std::vector<Step> trouble_ = {
        {"quits", [this] { withAnyWindow([&](const auto& label) { desk_.desktop.quit(applicationOf(label)); }); }},
        {"asks to quit", [this] { withAnyWindow([&](const auto& label) { endApplication(label); }); }},
        {"hides",
         [this] {
             withAnyWindow([&](const auto& label) { desk_.desktop.userHides(applicationOf(label), !chance(3)); });
         }},
        {"renames", [this] { withAnyWindow([&](const auto& label) { desk_.desktop.setTitle(label, "Draft"); }); }},
        {"full screen",
         [this] { withAnyWindow([&](const auto& label) { desk_.desktop.setFullScreen(label, !chance(3)); }); }},
        {"sends elsewhere",
         [this] {
             withAnyWindow(
                 [&](const auto& label) { desk_.desktop.sendToVirtualDesktop(label, static_cast<int>(below(2))); });
         }},
        {"shows desktop", [this] { desk_.desktop.showVirtualDesktop(static_cast<int>(below(2))); }},
        {"hangs",
         [this] {
             withAnyWindow([&](const auto& label) { desk_.desktop.setAnswering(applicationOf(label), chance(2)); });
         }},
        {"hangs for a moment",
         [this] {
             withAnyWindow([&](const auto& label) {
                 const std::string application = applicationOf(label);
                 const auto setAnswering = [&](bool answers) { // one that was requested to quit may end meanwhile
                     if (desk_.desktop.isRunning(application)) desk_.desktop.setAnswering(application, answers);
                 };
                 expectNoLoss([&] { setAnswering(false); }, [&] { setAnswering(true); });
             });
         }},
        {"visits a desktop",
         [this] {
             const int here = desk_.desktop.shownVirtualDesktop();
             expectNoLoss([&] { desk_.desktop.showVirtualDesktop(here + 1); },
                          [&] { desk_.desktop.showVirtualDesktop(here); });
         }},
        {"uses tabs", [this] { withAnyWindow([&](const auto& label) { useTabs(label); }); }},
        {"uses tabs", [this] { withAnyWindow([&](const auto& label) { useTabs(label); }); }},
        {"plugs in",
         [this] {
             if (desk_.desktop.screens().size() < 3) desk_.display(1920, 1080, "P" + std::to_string(displays_++));
         }},
        {"unplugs", [this] { withAnyDisplay([&](const auto& name) { desk_.desktop.removeDisplay(name); }); }},
        {"resizes",
         [this] {
             withAnyDisplay([&](const auto& name) {
                 desk_.desktop.resizeDisplay(name,
                                             anyOf<CGSize>({{2560, 1440}, {1280, 800}, {5120, 1440}, {1080, 1920}}));
             });
         }},
        {"reorders", [this] { withAnyDisplay([&](const auto& name) { desk_.desktop.makeFirstDisplay(name); }); }},
        {"locks", [this] { desk_.desktop.setLocked(!desk_.desktop.isLoginSessionScreenLocked()); }},
        {"permission", [this] { desk_.desktop.setTrusted(!desk_.desktop.isProcessTrusted() || chance(3)); }},
        {"slow polls", [this] { desk_.desktop.pollingQueue().setJobDuration(Seconds(chance(3) ? 0.5 : 0.01)); }},
        {"system event", [this] { simulateSystemEvent(); }},
        {"system event", [this] { simulateSystemEvent(); }},
        {"loses", [this] { loseAnyWindow(); }},
        {"renumbers", [this] { withAnyWindow([&](const auto& label) { desk_.desktop.renumber(label); }); }},
        {"inset", [this] { desk_.controller().perform(action::SetTileInset{static_cast<double>(below(12))}); }},
        {"resets divider", [this] { resetDivider(); }},
        {"rules",
         [this] {
             desk_.controller().perform(
                 action::Switch{action::Setting::continuousManagement, !*desk_.state().continuousManagementEnabled});
         }},
        {"adds a rule", [this] { addRule(); }},
        {"drops a rule",
         [this] {
             if (!desk_.state().rules->empty())
                 desk_.controller().perform(action::DeleteRule{Uuid(desk_.state().rules->front().id)});
         }},
        {"restart", [this] { desk_.restart(); }},
        {"trouble of a Mac", [this] { haveMacTrouble(); }},
    };
};

TEST(RandomDesktop, KeepsTheInvariantsWhateverHappens) {
    forEachSeed(kUsualDays, [](std::uint32_t seed) { RandomDay{seed}; });
}

} // namespace

} // namespace kova
