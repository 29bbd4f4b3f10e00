// Whatever a person does, each step back brings back what was before that step: tiles, stacks, anchors, frames, what
// was minimized or hidden, the profile and the accent color. A failure prints the seed and the story so far.
// KOVA_RANDOM_SEED runs one seed, KOVA_RANDOM_DAYS that many seeds from it on.
#include "tests/harness/Scenario.h"
#include "tests/workspace/Seeds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <random>

namespace kova {

namespace {

constexpr std::uint32_t kUsualWalks = 30;
constexpr int kStepsPerWalk = 45; // more than the history keeps
constexpr std::size_t kMostWindows = 10;
enum class Pace { calm, hasty };

constexpr double kLongestHastyPause = 0.6; // seconds
constexpr CGSize kCell{17, 31};            // users and programs choose whole cells

class UndoWalk {
  public:
    UndoWalk(std::uint32_t seed, Pace pace) : pace_(pace), random_(seed) {
        desk_.display(2560, 1440).display(1920, 1080);
        desk_.desktop.setHidingStyle(chance(2) ? HidingStyle::hidesApplication : HidingStyle::iconifiesWindows);
        desk_.start();
        for (int i = 0; i < (isHasty() ? 7 : 4); ++i) openWindow();
        desk_.settle();
        for (int step = 0; step < kStepsPerWalk && !testing::Test::HasFailure(); ++step) takeStep();
        if (isHasty()) desk_.settle();
        story_ += "\n  and all of it back";
        isWalkedBack_ = true;
        while (*desk_.state().canUndo && !testing::Test::HasFailure()) stepBack();
        if (testing::Test::HasFailure()) ADD_FAILURE() << "seed " << seed << story_;
    }

  private:
    struct Picture {
        TileAssignments assignments;
        std::map<WindowID, std::string> windows; // by id, as the desktop describes them
        std::set<WindowID> leftAlone;            // ids: in full screen, or on another Space
        WorkspaceProfile profile;
        std::string accentColor;
    };
    struct Step {
        const char* name;
        std::function<void()> take;
        bool isCommand = false; // one of KOVA, which may follow the one before at once
    };

    bool isHasty() const { return pace_ == Pace::hasty; }
    std::size_t below(std::size_t count) { return random_() % count; }
    bool chance(std::size_t oneIn) { return below(oneIn) == 0; }

    Picture picture() {
        Picture out{desk_.controller().assignments(), {}, {}, *desk_.state().profile, *desk_.state().accentColorID};
        for (const auto* window : desk_.desktop.livingWindows()) {
            const WindowID id = desk_.desktop.windowIDOf(window->label());
            std::string& text = out.windows[id] = desk_.desktop.describeWindow(*window);
            if (isHasty()) text = desk_.desktop.isOnScreen(*window) ? "shown" : "away";
            // Where hiding means iconifying, an application is hidden by those of its windows that left with it.
            constexpr std::string_view kBoth = " minimized hidden";
            if (const auto at = text.find(kBoth); at != std::string::npos) text.replace(at, kBoth.size(), " minimized");
            const bool isElsewhere = window->virtualDesktop != desk_.desktop.shownVirtualDesktop();
            if (window->isFullScreen || isElsewhere) out.leftAlone.insert(id);
        }
        return out;
    }

    /// What was requested of the windows, which the desktop may not have carried out yet. Where a window in a tile is
    /// to be follows from the tiles alone; another one is where the last command left it.
    Picture requestedPicture() {
        Picture out = picture();
        const auto& assignments = out.assignments;
        for (const auto& window : desk_.controller().liveWindows()) {
            const bool isShown =
                assignments.isInAnyTile(window.id) ? assignments.isAssigned(window.id) : window.isVisible;
            EXPECT_EQ(window.isVisible, isShown) << window.id << " in " << desk_.tiles();
            out.windows[window.id] = isShown ? "shown" : "away";
        }
        return out;
    }

    /// Every window, also one in no tile, comes to be where the commands have requested it.
    void expectCarriedOut() {
        const Picture requested = requestedPicture();
        desk_.settle();
        EXPECT_EQ(picture().windows, requested.windows);
    }

    /// Windows that opened since do as they like; the others are where they were. Where one has closed, the tiles may
    /// have become others, and their windows with them.
    void expectAgain(Picture before) {
        Picture now = picture();
        std::set<WindowID> leftOut = displacedIn(before);
        if (desk_.desktop.readsAskApplications()) {
            for (const Picture* picture : {&now, &before}) leftOut.merge(ofOtherSpacesIn(*picture));
        }
        leaveOut(leftOut, now);
        leaveOut(leftOut, before);
        std::set<WindowID> living;
        for (const auto& [id, description] : now.windows) living.insert(id);
        const auto hasClosed = [&](const auto& window) { return !living.contains(window.first); };
        const bool haveTilesMoved = std::any_of(before.windows.begin(), before.windows.end(), hasClosed);
        before.assignments.keepOnly(living);
        // Where a front window has closed, the next of its stack has come forward, and its application with it.
        std::set<std::string> broughtBack;
        for (const auto& id : living) {
            if (now.assignments.isAssigned(id) && !before.assignments.isAssigned(id)) broughtBack.insert(processOf(id));
        }
        if (haveTilesMoved) {
            EXPECT_EQ(now.assignments.windows(), before.assignments.windows());
            for (const auto& [target, front] : before.assignments.assignedWindowIDs) {
                EXPECT_TRUE(now.assignments.isAssigned(front)) << front;
            }
        } else {
            EXPECT_EQ(now.assignments.assignedWindowIDs, before.assignments.assignedWindowIDs);
            EXPECT_EQ(now.assignments.stackWindowIDsByTarget, before.assignments.stackWindowIDsByTarget);
            EXPECT_EQ(now.assignments.anchorTargetIDsByWindowID, before.assignments.anchorTargetIDsByWindowID);
        }
        EXPECT_EQ(now.profile, before.profile);
        EXPECT_EQ(now.accentColor, before.accentColor);
        for (const auto& [id, description] : before.windows) {
            const bool isLeftAlone = now.leftAlone.contains(id) || before.leftAlone.contains(id);
            const bool mayBeBack = haveTilesMoved && broughtBack.contains(processOf(id));
            if (!living.contains(id) || isLeftAlone || mayBeBack || (haveTilesMoved && now.assignments.isAssigned(id)))
                continue;
            // Where a window was opened since, the others of its hidden application are minimized instead.
            const auto isNewSibling = [&, process = processOf(id)](const WindowID& other) {
                return !before.windows.contains(other) && processOf(other) == process;
            };
            const bool hasNewSibling = std::any_of(living.begin(), living.end(), isNewSibling);
            EXPECT_EQ(hasNewSibling ? minimizedForHidden(now.windows.at(id)) : now.windows.at(id),
                      hasNewSibling ? minimizedForHidden(description) : description);
        }
    }
    /// With the undo, windows whose display was disconnected before the step take free tiles, or are stacked.
    std::set<WindowID> displacedIn(const Picture& before) {
        TileAssignments displaced = before.assignments;
        for (const auto& screen : desk_.desktop.screens()) {
            const auto here = before.assignments.onDisplay(displayID(screen)).windows();
            for (const auto& window : here) displaced.remove(window);
        }
        return displaced.windows();
    }
    /// Full screen is a Space of its own on a Mac, and a step back restores the tiles of the Space that is shown. A
    /// window that comes from another Space takes its tile back, and what was in that tile waits behind it.
    static std::set<WindowID> ofOtherSpacesIn(const Picture& picture) {
        std::set<WindowID> windows = picture.leftAlone;
        for (const auto& id : picture.leftAlone) {
            const auto tile = picture.assignments.targetOf(id);
            const auto stack = tile ? picture.assignments.stackWindowIDsByTarget.find(*tile)
                                    : picture.assignments.stackWindowIDsByTarget.end();
            if (stack != picture.assignments.stackWindowIDsByTarget.end()) {
                windows.insert(stack->second.begin(), stack->second.end());
            }
        }
        return windows;
    }
    void leaveOut(const std::set<WindowID>& windows, Picture& from) {
        for (const auto& window : windows) {
            from.assignments.remove(window);
            from.leftAlone.insert(window);
        }
        if (windows.empty()) return;
        // A window that nothing waits behind may be listed as the only one of its stack.
        std::erase_if(from.assignments.stackWindowIDsByTarget, [&](const auto& entry) {
            return entry.second.size() == 1 && from.assignments.isAssigned(entry.second.front());
        });
    }
    static std::string processOf(const WindowID& windowID) {
        return windowID.text().substr(0, windowID.text().find(':'));
    }
    static std::string minimizedForHidden(std::string description) {
        constexpr std::string_view kHidden = " hidden";
        if (description.ends_with(kHidden)) {
            description.replace(description.size() - kHidden.size(), kHidden.size(), " minimized");
        }
        return description;
    }

    void takeStep() {
        const Step* chosen = &steps_[below(steps_.size())];
        while (isHasty() && !chosen->isCommand) chosen = &steps_[below(steps_.size())];
        const Step& step = *chosen;
        story_ += std::string("\n  ") + step.name;
        const bool isZoomStep = std::string_view(step.name) == "zoom";
        const bool wasZoomed = desk_.state().focusMode->has_value();
        // Every step begins with the display as it was before it was given to one window.
        const Picture before = wasZoomed && beforeZoom_ ? *beforeZoom_ : isHasty() ? requestedPicture() : picture();
        std::set<WallTime> knownEntries;
        for (const auto& entry : desk_.controller().undoHistory().entries()) knownEntries.insert(entry.time);
        desk_.advance(Seconds(0.001));
        areDisplaysOthers_ = false;
        step.take();
        if (isHasty() && chance(4)) expectCarriedOut();
        desk_.advance(isHasty() ? Seconds(kLongestHastyPause * static_cast<double>(below(7)) / 6) : Seconds(4));
        story_ += "\n    " + desk_.desktop.picture() + "\n    " + desk_.tiles();
        if (areDisplaysOthers_) { // frames and tiles of other displays cannot come back
            before_.clear();
            beforeZoom_.reset();
            return;
        }
        int added = 0;
        for (const auto& entry : desk_.controller().undoHistory().entries()) {
            if (knownEntries.contains(entry.time)) continue;
            ++added;
            before_.insert_or_assign(entry.time, before);
        }
        EXPECT_LE(added, 1) << "one step of a person is one step back";
        const bool isZoomed = desk_.state().focusMode->has_value();
        const bool isBack = wasZoomed && !isZoomed && added == 0 && beforeZoom_ && isZoomStep;
        if (isBack && isHasty()) expectCarriedOut();
        if (isBack) expectAgain(*beforeZoom_);
        if (isZoomed && !wasZoomed) beforeZoom_ = before;
        if (!isZoomed) beforeZoom_.reset();
    }

    void stepBack() {
        const auto& entries = desk_.controller().undoHistory().entries();
        if (entries.empty()) return;
        story_ += " of " + entries.back().label.action;
        const auto before = before_.find(entries.back().time);
        const std::optional<Picture> expected = before == before_.end() ? std::nullopt : std::optional(before->second);
        const auto size = entries.size();
        const bool isHastyStep = isHasty() && !isWalkedBack_;
        if (isHastyStep) {
            (void)desk_.controller().perform(action::Undo{});
            return;
        }
        desk_.undo().advance(Seconds(4));
        EXPECT_TRUE(desk_.wasCarriedOut());
        EXPECT_LT(desk_.controller().undoHistory().size(), size + 1);
        if (expected) expectAgain(*expected);
    }

    void withAnyWindow(const std::function<void(const std::string&)>& act) {
        const auto windows = desk_.desktop.livingWindows();
        if (windows.empty()) return;
        const std::string label = windows[below(windows.size())]->label();
        story_ += " " + label;
        act(label);
    }
    CGRect anyFrame() {
        const double left = desk_.desktop.screens().size() > 1 && chance(3) ? 2560 : 0;
        return makeRect(left + static_cast<double>(below(1500)), static_cast<double>(below(700)),
                        kCell.width * static_cast<double>(18 + below(50)),
                        kCell.height * static_cast<double>(7 + below(20)));
    }
    /// As large as a user could make the window.
    CGRect anyFrameFor(const std::string& label) {
        const auto minimum = desk_.desktop.window(label).traits().minimumSize.value_or(CGSize{});
        CGRect frame = anyFrame();
        frame.size = {std::max(frame.size.width, minimum.width), std::max(frame.size.height, minimum.height)};
        return frame;
    }
    void openWindow() {
        if (desk_.desktop.livingWindows().size() >= kMostWindows) return;
        const std::string name =
            std::vector<std::string>{"Mail", "Notes", "Codex", "Firefox", "Console", "Viewer"}[below(6)];
        WindowTraits traits{.frame = anyFrame()};
        if (chance(4)) {
            traits.minimumSize = CGSize{300 + static_cast<double>(below(900)), 200};
            traits.frame->size.width = std::max(traits.frame->size.width, traits.minimumSize->width);
        } else if (chance(6)) {
            traits.cell = kCell;
        }
        story_ += " " + name;
        desk_.opens(name, traits);
    }
    void act(const WorkspaceAction& action) { desk_.controller().perform(action); }
    /// Any of the commands for one window, the focused one or another.
    void command() {
        std::optional<WindowID> window;
        if (chance(2)) withAnyWindow([&](const auto& label) { window = desk_.desktop.windowIDOf(label); });
        const auto tiles = desk_.controller().tiles();
        if (tiles.empty()) return;
        const std::string tile = tiles[below(tiles.size())].targetID;
        const std::vector<WindowCommand> commands = {command::Place{window, tile},
                                                     command::PlaceInNumbered{window, 1 + below(4)},
                                                     command::Swap{window, tile},
                                                     command::Swap{window, anyDirection()},
                                                     command::ToggleFloating{window},
                                                     command::Float{window},
                                                     command::FocusDisplay{DisplayStep::next},
                                                     command::MoveToDisplay{window, DisplayStep::previous}};
        const std::size_t chosen = below(commands.size());
        story_ += " " + std::to_string(chosen) + " " + tile;
        desk_.controller().perform(commands[chosen]);
    }
    WorkspaceDirection anyDirection() {
        using enum WorkspaceDirection;
        return std::vector{left, right, up, down}[below(4)];
    }
    void withAnyDivider(const std::function<void(const DisplayLayoutDivider&)>& act) {
        const auto dividers = desk_.controller().dividers();
        if (!dividers.empty()) act(dividers[below(dividers.size())]);
    }
    void dragDivider(const DisplayLayoutDivider& divider) {
        if (!desk_.controller().perform(action::BeginDividerDrag{divider})) return;
        for (std::size_t moves = below(4); moves > 0; --moves) {
            desk_.controller().perform(action::UpdateDividerDrag{divider, static_cast<double>(5 * below(200)) - 500});
            desk_.advance(Seconds(0.3));
        }
        chance(4) ? desk_.controller().perform(action::CancelDividerDrag{})
                  : desk_.controller().perform(action::EndDividerDrag{divider});
    }
    void dragWindow(const std::string& label) {
        using enum action::WindowDragKind;
        using enum action::DropMode;
        const auto& window = desk_.desktop.window(label);
        // No hand takes hold of what it does not see, and a window that it takes while another one is zoomed comes back
        // to where it was taken.
        if (!desk_.desktop.isOnScreen(window) || *desk_.state().focusMode) return;
        const auto movement = chance(3) ? resize : move;
        if (!desk_.controller().perform(action::BeginWindowDrag{desk_.desktop.windowIDOf(label),
                                                                desk_.desktop.frameForWindowService(window)})) {
            return;
        }
        const CGRect frame = anyFrameFor(label);
        desk_.desktop.userMoves(label, movement == move ? frame : CGRect{window.frame.origin, frame.size});
        desk_.advance(Seconds(0.6));
        const CGPoint pointer = {minX(frame), 1440 - minY(frame)};
        desk_.controller().perform(action::UpdateWindowDrag{pointer, movement});
        if (chance(5)) {
            desk_.controller().perform(action::CancelWindowDrag{});
            return;
        }
        desk_.controller().perform(action::EndWindowDrag{pointer, movement, chance(4) ? floating : intoTile});
    }
    void wake() {
        desk_.desktop.setLocked(false);
        desk_.wake();
        desk_.advance(Seconds(14));
    }

    Scenario desk_;
    Pace pace_;
    bool isWalkedBack_ = false;
    std::mt19937 random_;
    std::string story_;
    std::map<WallTime, Picture> before_; // by the entry of the history that brings it back
    std::optional<Picture> beforeZoom_;
    bool areDisplaysOthers_ = false;
    const std::vector<Step> steps_ = {
        {"arrange", [this] { act(action::Arrange{}); }, true},
        {"arrange", [this] { act(action::Arrange{}); }, true},
        {"zoom", [this] { act(action::ToggleFocusZoom{}); }, true},
        {"zoom", [this] { act(action::ToggleFocusZoom{}); }, true},
        {"cycle stack", [this] { act(action::CycleStack{}); }, true},
        {"cycle stack", [this] { act(action::CycleStack{}); }, true},
        {"focus", [this] { act(action::Focus{anyDirection()}); }, true},
        {"move", [this] { act(action::Move{anyDirection()}); }, true},
        {"move", [this] { act(action::Move{anyDirection()}); }, true},
        {"move", [this] { act(action::Move{anyDirection()}); }, true},
        {"command", [this] { command(); }, true},
        {"command", [this] { command(); }, true},
        {"command", [this] { command(); }, true},
        {"next layout", [this] { desk_.controller().perform(action::CycleLayout{}); }, true},
        {"previous layout", [this] { desk_.controller().perform(action::CycleLayout{LayoutStep::previous}); }, true},
        {"reset sizes", [this] { desk_.controller().perform(action::ResetLayoutSizes{}); }, true},
        {"inset", [this] { desk_.controller().perform(action::SetTileInset{static_cast<double>(4 * below(5))}); },
         true},
        {"drag divider", [this] { withAnyDivider([&](const auto& divider) { dragDivider(divider); }); }},
        {"drag divider", [this] { withAnyDivider([&](const auto& divider) { dragDivider(divider); }); }},
        {"reset divider",
         [this] {
             withAnyDivider(
                 [&](const auto& divider) { (void)desk_.controller().perform(action::ResetDivider{divider}); });
         },
         true},
        {"drag window", [this] { withAnyWindow([&](const auto& label) { dragWindow(label); }); }},
        {"drag window", [this] { withAnyWindow([&](const auto& label) { dragWindow(label); }); }},
        {"captures", [this] { desk_.controller().perform(action::CaptureScene{}); }},
        {"opens a scene",
         [this] {
             const auto scenes = *desk_.state().scenes;
             if (scenes.empty()) return;
             act(action::ActivateScene{scenes[below(scenes.size())].id});
             desk_.advance(Seconds(26)); // until no window is awaited any more
         }},
        {"undo", [this] { stepBack(); }, true},
        {"opens", [this] { openWindow(); }},
        {"opens", [this] { openWindow(); }},
        {"closes", [this] { withAnyWindow([&](const auto& label) { desk_.desktop.close(label); }); }},
        {"moves",
         [this] { withAnyWindow([&](const auto& label) { desk_.desktop.userMoves(label, anyFrameFor(label)); }); }},
        {"minimises",
         [this] { withAnyWindow([&](const auto& label) { desk_.desktop.userMinimizes(label, !chance(3)); }); }},
        {"hides",
         [this] {
             withAnyWindow(
                 [&](const auto& label) { desk_.desktop.userHides(label.substr(0, label.find(' ')), !chance(3)); });
         }},
        {"clicks", [this] { withAnyWindow([&](const auto& label) { desk_.desktop.userFocuses(label); }); }},
        {"clicks", [this] { withAnyWindow([&](const auto& label) { desk_.desktop.userFocuses(label); }); }},
        {"clicks", [this] { withAnyWindow([&](const auto& label) { desk_.desktop.userFocuses(label); }); }},
        {"full screen",
         [this] { withAnyWindow([&](const auto& label) { desk_.desktop.setFullScreen(label, !chance(3)); }); }},
        {"renames", [this] { withAnyWindow([&](const auto& label) { desk_.desktop.setTitle(label, "Draft"); }); }},
        {"locked for a while",
         [this] {
             desk_.desktop.setLocked(true);
             desk_.advance(Seconds(3));
             wake();
         }},
        {"asleep for a while",
         [this] {
             desk_.sleep();
             desk_.advance(Seconds(3));
             wake();
         }},
        {"without permission for a while",
         [this] {
             desk_.desktop.setTrusted(false);
             desk_.advance(Seconds(3));
             desk_.desktop.setTrusted(true);
         }},
        {"other displays",
         [this] {
             if (!chance(6)) return;
             areDisplaysOthers_ = true;
             if (desk_.desktop.screens().size() > 1) {
                 desk_.desktop.removeDisplay("B");
             } else {
                 desk_.display(1920, 1080, "B");
             }
         }},
    };
};

TEST(UndoWalk, EachStepBackRestoresWhatWasBeforeIt) {
    forEachSeed(kUsualWalks, [](std::uint32_t seed) { UndoWalk(seed, Pace::calm); });
}

TEST(UndoWalk, CommandsThatFollowEachOtherAtOnceLoseNoStep) {
    forEachSeed(kUsualWalks, [](std::uint32_t seed) { UndoWalk(seed, Pace::hasty); });
}

} // namespace

} // namespace kova
