// After random actions of a user, each undo restores the state before the undone action. The state consists of tiles,
// stacks, anchors, frames, minimized and hidden windows, the profile and the accent color.
#include "tests/workspace/RandomWalk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>

namespace kova {

namespace {

constexpr std::uint32_t kUsualWalks = 30;
constexpr std::size_t kStepsPerWalk = 45;  // more than the history keeps
constexpr double kLongestHastyPause = 0.6; // seconds
constexpr CGSize kCell{17, 31};            // all frames are whole multiples of it; some windows round their size to it

/// Calm: the desktop settles after each step. Hasty: the next command may come at once.
enum class Pace { calm, hasty };

class UndoWalk : public RandomWalk {
  public:
    explicit UndoWalk(std::uint32_t seed, Pace pace = Pace::calm) : RandomWalk(seed), isHasty_(pace == Pace::hasty) {
        kinds_.merge(Kinds{
            {"locked for a while", [this] { interrupt([this] { desk_.desktop.setLocked(true); }); }},
            {"asleep for a while", [this] { interrupt([this] { desk_.sleep(); }); }},
            {"without permission for a while", [this] { interrupt([this] { desk_.desktop.setTrusted(false); }); }},
            {"other displays", [this] { changeDisplays(); }},
        });
        kinds_["undo"] = [this] { undoNewestStep(); };
    }
    Operations anyOperations() override {
        return draw(kStepsPerWalk, [this] {
            return isHasty_ || chance(2) ? kCommands[below(kCommands.size())] : kOthers[below(kOthers.size())];
        });
    }

  private:
    struct Picture {
        TileAssignments assignments;
        std::map<WindowID, std::string> windows; // by id, as the desktop describes them
        std::set<WindowID> leftAlone;            // windows in full screen or on another Space
        WorkspaceProfile profile;
        std::string accentColor;
    };
    void begin() override {
        desk_.display(2560, 1440).display(1920, 1080);
        desk_.desktop.setHidingStyle(chance(2) ? HidingStyle::hidesApplication : HidingStyle::iconifiesWindows);
        desk_.start();
        for (int i = 0; i < (isHasty_ ? 7 : 4); ++i) perform("opens");
        desk_.settle();
    }
    void step(const std::string& name) override {
        const bool wasZoomed = desk_.state().focusMode->has_value();
        // Most actions end focus mode, and their undo restores the state before focus mode.
        Picture before = wasZoomed && beforeZoom_ ? *beforeZoom_ : isHasty_ ? requestedPicture() : picture();
        // The end of focus mode restores no window of another Space.
        if (wasZoomed) before.leftAlone.merge(picture().leftAlone);
        std::set<WallTime> knownEntries;
        for (const auto& entry : desk_.controller().undoHistory().entries()) knownEntries.insert(entry.time);
        desk_.advance(Seconds(0.001));
        haveDisplaysChanged_ = false;
        perform(name);
        if (isHasty_ && chance(4)) expectCarriedOut();
        if (name == "opens a scene") desk_.advance(Seconds(26)); // until no window is awaited any more
        desk_.advance(isHasty_ ? Seconds(kLongestHastyPause * number(7) / 6) : Seconds(4));
        if (haveDisplaysChanged_) { // frames and tiles on former displays cannot be restored
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
        EXPECT_LE(added, 1) << "each action adds at most one undo step";
        const bool isZoomed = desk_.state().focusMode->has_value();
        const bool hasLeftFocusMode = wasZoomed && !isZoomed && added == 0 && beforeZoom_ && name == "zoom";
        if (hasLeftFocusMode && isHasty_) expectCarriedOut();
        if (hasLeftFocusMode) expectSameState(*beforeZoom_);
        if (isZoomed && !wasZoomed) beforeZoom_ = before;
        if (!isZoomed) beforeZoom_.reset();
    }
    void end() override {
        if (isHasty_) desk_.settle();
        story_ += "\n  undo of all steps";
        isUndoingAll_ = true;
        for (std::size_t i = desk_.controller().undoHistory().size(); i > 0 && *desk_.state().canUndo; --i)
            undoNewestStep();
    }

    Picture picture() {
        Picture out{desk_.controller().assignments(), {}, {}, *desk_.state().profile, *desk_.state().accentColorID};
        for (const auto* window : desk_.desktop.livingWindows()) {
            const WindowID id = desk_.desktop.windowIDOf(window->label());
            std::string& text = out.windows[id] = desk_.desktop.describeWindow(*window);
            if (isHasty_) text = desk_.desktop.isOnScreen(*window) ? "shown" : "not shown";
            // On desktops that hide an application by minimizing its windows, a minimized window may count as hidden.
            constexpr std::string_view kBoth = " minimized hidden";
            if (const auto at = text.find(kBoth); at != std::string::npos) text.replace(at, kBoth.size(), " minimized");
            const bool isElsewhere = window->virtualDesktop != desk_.desktop.shownVirtualDesktop();
            if (window->isFullScreen || isElsewhere) out.leftAlone.insert(id);
        }
        return out;
    }

    /// The requested state, which the desktop may not have reached yet. Windows in tiles are shown if they are front
    /// windows; other windows keep the state that the last command requested.
    Picture requestedPicture() {
        Picture out = picture();
        const auto& assignments = out.assignments;
        for (const auto& window : desk_.controller().liveWindows()) {
            const bool isShown =
                assignments.isInAnyTile(window.id) ? assignments.isAssigned(window.id) : window.isVisible;
            EXPECT_EQ(window.isVisible, isShown) << window.id << " in " << desk_.tiles();
            out.windows[window.id] = isShown ? "shown" : "not shown";
        }
        return out;
    }

    /// Expects that every window, even one without a tile, reaches the state that the commands have requested.
    void expectCarriedOut() {
        const Picture requested = requestedPicture();
        desk_.settle();
        EXPECT_EQ(picture().windows, requested.windows);
    }

    /// Expects that all windows of the former state are in that state again. Windows opened since are ignored. If a
    /// window has closed since, the others may be in other tiles.
    void expectSameState(Picture before) {
        Picture now = picture();
        std::set<WindowID> leftOut = displacedIn(before);
        // A displaced window may need more room than the tile that it takes, so the other tiles of the display change.
        const bool hasDisplacedTakenTile =
            std::ranges::any_of(leftOut, [&](const WindowID& window) { return now.assignments.isAssigned(window); });
        if (desk_.desktop.readsSendRequests()) {
            std::set<WindowID> ofOtherSpaces = now.leftAlone;
            ofOtherSpaces.insert(before.leftAlone.begin(), before.leftAlone.end());
            for (const Picture* picture : {&now, &before}) leftOut.merge(inStacksOf(ofOtherSpaces, *picture));
            leftOut.merge(ofOtherSpaces);
        }
        // If a former front window has closed or is on another Space, the next window of its stack is in front now, so
        // the application of that window is shown.
        std::set<std::string> shownProcesses;
        for (const auto& [target, front] : now.assignments.assignedWindowIDs) {
            if (!before.assignments.isAssigned(front)) shownProcesses.insert(processOf(front));
        }
        leaveOut(leftOut, now);
        leaveOut(leftOut, before);
        std::set<WindowID> living;
        for (const auto& [id, description] : now.windows) living.insert(id);
        const auto hasClosed = [&](const auto& window) { return !living.contains(window.first); };
        const bool haveTilesMoved = std::any_of(before.windows.begin(), before.windows.end(), hasClosed);
        before.assignments.keepOnly(living);
        if (haveTilesMoved) {
            EXPECT_EQ(now.assignments.windows(), before.assignments.windows());
            for (const auto& [target, front] : before.assignments.assignedWindowIDs) {
                EXPECT_TRUE(now.assignments.isAssigned(front)) << front;
            }
        } else {
            EXPECT_EQ(now.assignments.assignedWindowIDs, before.assignments.assignedWindowIDs);
            EXPECT_EQ(now.assignments.stackWindowIDsByTarget, before.assignments.stackWindowIDsByTarget);
            EXPECT_EQ(now.assignments.anchorsByWindowID, before.assignments.anchorsByWindowID);
        }
        EXPECT_EQ(now.profile, before.profile);
        EXPECT_EQ(now.accentColor, before.accentColor);
        for (const auto& [id, description] : before.windows) {
            const bool isLeftAlone = now.leftAlone.contains(id) || before.leftAlone.contains(id);
            const bool mayBeShown = shownProcesses.contains(processOf(id));
            const bool mayBeElsewhere = (haveTilesMoved || hasDisplacedTakenTile) && now.assignments.isAssigned(id);
            if (!living.contains(id) || isLeftAlone || mayBeShown || mayBeElsewhere) continue;
            // After an application has opened a window, its stacked windows are minimized instead of hidden.
            const auto isNewSibling = [&, process = processOf(id)](const WindowID& other) {
                return !before.windows.contains(other) && processOf(other) == process;
            };
            const bool hasNewSibling = std::any_of(living.begin(), living.end(), isNewSibling);
            EXPECT_EQ(hasNewSibling ? minimizedForHidden(now.windows.at(id)) : now.windows.at(id),
                      hasNewSibling ? minimizedForHidden(description) : description);
        }
    }
    /// Windows of displays that are disconnected now: undo puts them into free tiles or stacks.
    std::set<WindowID> displacedIn(const Picture& before) {
        TileAssignments displaced = before.assignments;
        for (const auto& screen : desk_.desktop.screens()) {
            const auto here = before.assignments.onDisplay(displayID(screen)).windows();
            for (const auto& window : here) displaced.remove(window);
        }
        return displaced.windows();
    }
    /// On a Mac a full-screen window has a Space of its own, and undo restores only the tiles of the shown Space. A
    /// window that returns from another Space gets its tile back, in front of the windows in that tile.
    static std::set<WindowID> inStacksOf(const std::set<WindowID>& ids, const Picture& picture) {
        std::set<WindowID> windows;
        for (const auto& id : ids) {
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
        // A stack that contains only the front window is the same as no stack.
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

    void undoNewestStep() {
        const auto& entries = desk_.controller().undoHistory().entries();
        if (entries.empty()) return;
        story_ += " of " + entries.back().label.action;
        const auto before = before_.find(entries.back().time);
        const std::optional<Picture> expected = before == before_.end() ? std::nullopt : std::optional(before->second);
        const auto size = entries.size();
        const bool isHastyStep = isHasty_ && !isUndoingAll_;
        if (isHastyStep) {
            (void)desk_.controller().perform(action::Undo{});
            return;
        }
        desk_.undo().advance(Seconds(4));
        EXPECT_TRUE(desk_.wasCarriedOut());
        EXPECT_EQ(desk_.controller().undoHistory().size(), size - 1);
        if (expected) expectSameState(*expected);
    }

    /// Any frame that is not smaller than the window's minimum size.
    CGRect anyFrameFor(const std::string& label) override {
        const auto minimum = desk_.desktop.window(label).traits().minimumSize.value_or(CGSize{});
        CGRect frame = wholeCells();
        frame.size = {std::max(frame.size.width, minimum.width), std::max(frame.size.height, minimum.height)};
        return frame;
    }
    CGRect wholeCells() {
        const double left = desk_.desktop.screens().size() > 1 && chance(3) ? 2560 : 0;
        const CGPoint corner = {left + number(1500), number(700)};
        const double width = kCell.width * (18 + number(50));
        return {corner, {width, kCell.height * (7 + number(20))}};
    }
    WindowTraits anyTraits() override {
        WindowTraits traits{.frame = wholeCells()};
        if (chance(4)) {
            traits.minimumSize = CGSize{300 + number(900), 200};
            traits.frame->size.width = std::max(traits.frame->size.width, traits.minimumSize->width);
        } else if (chance(6)) {
            traits.sizeIncrement = kCell;
        }
        return traits;
    }
    /// The pointer cannot drag a hidden window. Undo of a drag during focus mode restores the frame at the beginning of
    /// the drag, not the one before focus mode.
    bool mayDrag(const std::string& label) override {
        return desk_.desktop.isOnScreen(desk_.desktop.window(label)) && !*desk_.state().focusMode;
    }
    void pauseDrag() override { desk_.advance(Seconds(0.6)); }
    void interrupt(const std::function<void()>& begin) {
        begin();
        desk_.advance(Seconds(3));
        desk_.desktop.setTrusted(true);
        desk_.desktop.setLocked(false);
        desk_.wake().advance(Seconds(14));
    }
    void changeDisplays() {
        if (!chance(6)) return;
        haveDisplaysChanged_ = true;
        if (desk_.desktop.screens().size() > 1) {
            desk_.desktop.removeDisplay("B");
        } else {
            desk_.display(1920, 1080, "B");
        }
    }

    /// Commands of KOVA, between which there may be no pause. Commands that are listed repeatedly are drawn more often.
    static constexpr std::array kCommands = {
        "arrange",     "arrange", "zoom",           "zoom",        "cycle stack",
        "cycle stack", "focus",   "move",           "move",        "move",
        "command",     "command", "command",        "next layout", "previous layout",
        "reset sizes", "inset",   "resets divider", "undo",
    };
    static constexpr std::array kOthers = {
        "drags divider",
        "drags divider",
        "drags into a tile",
        "drags into a tile",
        "captures",
        "opens a scene",
        "opens",
        "opens",
        "closes",
        "moves",
        "minimizes",
        "hides",
        "clicks",
        "clicks",
        "clicks",
        "full screen",
        "renames",
        "locked for a while",
        "asleep for a while",
        "without permission for a while",
        "other displays",
    };
    const bool isHasty_;
    bool isUndoingAll_ = false;
    std::map<WallTime, Picture> before_; // the key is the time of the undo step that restores the state
    std::optional<Picture> beforeZoom_;
    bool haveDisplaysChanged_ = false;
};

class HastyUndoWalk : public UndoWalk {
  public:
    explicit HastyUndoWalk(std::uint32_t seed) : UndoWalk(seed, Pace::hasty) {}
};

TEST(UndoWalk, EachUndoRestoresTheStateBeforeTheAction) {
    runWalks<UndoWalk>(kUsualWalks, "UndoWalk");
}

TEST(UndoWalk, CommandsWithoutAPauseLoseNoUndoStep) {
    runWalks<HastyUndoWalk>(kUsualWalks, "HastyUndoWalk");
}

} // namespace

} // namespace kova
