// A scenario runs the real controller on the simulated desktop. No part of KOVA is replaced.
//
//     Scenario desk;
//     desk.display(2560, 1440).layout("jarvis.dual-split").opens("Mail").opens("Notes");
//     desk.arrange();
//     desk.expectTiles("Mail 15,15 1254x1382 | Notes 1291,15 1254x1382");
//
// Every step checks these invariants:
// - Tiles fill their display and do not overlap.
// - No window is in two tiles, except as a span. Stacks and anchors agree with the assignments.
// - Published values equal the state.
// - Every call of a platform interface obeys its contract.
// - kova-ui can translate each status message.
// Once the desktop is settled, these hold as well:
// - Only live windows have tiles, and every window that accepts its frame is in its tile.
// - No window lies outside all displays.
// - Windows in tiles overlap only if a minimum size that the window does not announce requires it.
//
// At the end of the scenario no work is left in the queue. With KOVA_DESKTOP_STYLE=mac the desktop responds and
// announces changes like a Mac, unless a scenario sets another style.
#pragma once

#include "app/AppDelegate.h"
#include "persistence/MemoryPreferencesStore.h"
#include "platform/simulated/SimulatedDesktop.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

class Scenario {
  public:
    /// This is long enough for an arrangement, its second pass, the verification of both, and the polls that repair
    /// drift. It is too short for a status message to end.
    static constexpr Seconds kSettlingTime{2.4};
    /// `kSettlingTime`, or longer while polls are slow: they may take long, or wait for an application that does not
    /// respond.
    Seconds settlingTime() const;

    Scenario();
    ~Scenario();
    Scenario(const Scenario&) = delete;
    Scenario& operator=(const Scenario&) = delete;

    // Displays and windows. Displays are called "A", "B", and so on, unless they are named.
    Scenario& display(double width, double height, std::string name = {});
    /// Selects the layout of the named display; without a name, of the display added last.
    Scenario& layout(std::string_view layoutID, std::string_view displayName = {});
    /// Opens a window. Launches its application if it does not run yet.
    Scenario& opens(const std::string& application, WindowTraits traits = {});

    // Lifecycle; every action starts the controller if it has not been started.
    Scenario& start(const std::function<void()>& beforeTheFirstPoll = {});
    Scenario& stop();
    /// Destroys the controller and starts a new one with the present preferences.
    Scenario& restart(const std::function<void()>& beforeTheFirstPoll = {});

    /// `sleep` simulates the event before the machine sleeps, `wake` the event after it has woken up.
    Scenario& sleep() { return simulate(SystemActivityEvent::systemWillSleep); }
    Scenario& wake() { return simulate(SystemActivityEvent::systemDidWake); }
    Scenario& simulate(SystemActivityEvent event);
    bool isSuspended() { return delegate().isWorkspaceSuspended(); }

    // User actions. Each calls WorkspaceController::perform and then `settle`.
    Scenario& arrange();
    Scenario& undo();
    Scenario& zoom();
    Scenario& cycleStack();
    Scenario& move(WorkspaceDirection direction);
    Scenario& focus(WorkspaceDirection direction);
    Scenario& perform(const WorkspaceAction& action);
    /// Returns whether the controller carried out the last action of `perform`.
    bool wasCarriedOut() const { return wasCarriedOut_; }

    // Time
    Scenario& advance(Seconds duration);
    Scenario& settle() { return advance(settlingTime()); }
    /// Advances by 20 s, much longer than `settle`. After this time, windows have refused frames below minimum sizes
    /// that they do not announce, and other windows have made room for these windows.
    Scenario& settleFully();

    // Expectations. A failure prints the whole screen.
    /// The tiles in the order of the layout: "Mail 15,15 600x400 + Notes | - | (Mail)". Each tile has its front window
    /// with its frame in window-service space, then its stacked windows. "-" is an empty tile, "(Mail)" a tile that the
    /// span of Mail covers. " || " separates displays.
    std::string tiles();
    void expectTiles(std::string_view expected);
    void expectMessage(std::string_view expected);
    void expectFocus(std::string_view label);
    /// The number of frames written to any window within the duration; 0 on an idle desktop.
    int framesWrittenWithin(Seconds duration);
    /// How many polls may run within the duration while the desktop is idle; 0 if no announcement can get lost.
    int mostPollsWhileIdle(Seconds duration) const;
    /// The lines of the last arrangement's explanation.
    std::string explanation();

    AppDelegate& delegate();
    WorkspaceController& controller() { return delegate().workspace(); }
    const WorkspaceState& state() { return controller().state(); }
    DisplayID displayIDOf(std::string_view displayName) const;
    TileTarget target(std::string_view displayName, const SlotID& slotID) const;

    SimulatedDesktop desktop;
    MemoryPreferencesStore preferences;

  private:
    std::string describeTile(const WorkspaceTile& tile);
    bool isManaging();
    void noteSuspension();
    bool isRecovering();
    bool isResuming();
    int frameWrites() const;
    void noteLostAnnouncements();
    void checkInvariants();
    void checkTilesFillTheirDisplays(std::vector<std::string>& violations);
    void checkAssignments(std::vector<std::string>& violations);
    void checkWindowsAreInTheirTiles(std::vector<std::string>& violations);
    enum class MinimumSizes { announced, all };
    void checkTiledWindowsDoNotOverlap(std::vector<std::string>& violations, MinimumSizes considered);

    void checkCanBeTranslated(const std::string& message);

    std::unique_ptr<AppDelegate> delegate_;
    Subscription messages_;
    std::string lastDisplay_;
    int displayCount_ = 0;
    bool wasStarted_ = false;
    bool wasCarriedOut_ = false;
    bool isSettled_ = false;
    Seconds recoveryEnd_{0};   // uptime
    Seconds resumptionEnd_{0}; // uptime
    Seconds lossesFoundBy_{0}; // uptime; by then a poll has found all changes whose announcements were lost
    int knownLosses_ = 0;
    struct FrameAtRestart {
        CGRect frame;               // window-service space
        std::optional<CGRect> tile; // frame of the window's tile at the first check after the restart
    };
    std::map<std::string, FrameAtRestart> framesAtRestart_; // by label, until the next arrangement
};

} // namespace kova
