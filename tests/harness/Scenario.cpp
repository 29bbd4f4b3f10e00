#include "tests/harness/Scenario.h"

#include "tests/harness/SimulatedServices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace kova {

Scenario::Scenario() {
    const char* style = std::getenv("KOVA_DESKTOP_STYLE");
    if (style && std::string_view(style) == "mac") desktop.setStyle(DesktopStyle::mac);
}

Scenario::~Scenario() {
    if (delegate_) {
        delegate_->workspace().stop(); // also if the test started the controller without its delegate
        delegate_.reset();
    }
    // This is longer than every delay in the agent: work that is then still queued would repeat forever.
    desktop.queue().advance(Seconds(30));
    EXPECT_EQ(desktop.queue().pendingCount(), 0u) << "work is left in the queue";
}

AppDelegate& Scenario::delegate() {
    if (!delegate_) {
        delegate_ = std::make_unique<AppDelegate>(simulatedServices(desktop, preferences),
                                                  ShellServices{.systemActivity = {&desktop}});
        messages_ = delegate_->workspace().state().lastActionMessage.observe([this](const auto& message) {
            if (message) checkCanBeTranslated(*message);
        });
    }
    return *delegate_;
}

// Displays and windows

Scenario& Scenario::display(double width, double height, std::string name) {
    if (name.empty()) name = std::string(1, static_cast<char>('A' + displayCount_));
    ++displayCount_;
    desktop.addDisplay({.name = name, .size = {width, height}});
    lastDisplay_ = std::move(name);
    desktop.queue().runDue();
    return *this;
}

DisplayID Scenario::displayIDOf(std::string_view displayName) const {
    for (const auto& screen : desktop.screens()) {
        if (screen.localizedName == displayName) return displayID(screen);
    }
    throw std::out_of_range("no display " + std::string(displayName));
}

TileTarget Scenario::target(std::string_view displayName, const SlotID& slotID) const {
    return {displayIDOf(displayName), slotID};
}

Scenario& Scenario::layout(std::string_view layoutID, std::string_view displayName) {
    const auto id = displayIDOf(displayName.empty() ? lastDisplay_ : displayName);
    const auto result =
        controller().perform(action::SelectLayout{id, DisplayLayoutSelection::layout(std::string(layoutID))});
    EXPECT_TRUE(result) << layoutID;
    return wasStarted_ ? settle() : *this;
}

Scenario& Scenario::opens(const std::string& application, WindowTraits traits) {
    const auto running = desktop.runningApplications();
    const bool runs = std::any_of(running.begin(), running.end(),
                                  [&](const auto& candidate) { return candidate.localizedName == application; });
    if (!runs) desktop.launch(application);
    desktop.open(application, std::move(traits));
    return *this;
}

// Lifecycle

Scenario& Scenario::start(const std::function<void()>& beforeTheFirstPoll) {
    wasStarted_ = true;
    delegate().startWorkspace();
    if (beforeTheFirstPoll) beforeTheFirstPoll();
    desktop.queue().advance(Seconds(0.5));
    return *this;
}

Scenario& Scenario::stop() {
    delegate().stopWorkspace();
    return settle();
}

Scenario& Scenario::restart(const std::function<void()>& beforeTheFirstPoll) {
    delegate_.reset();
    resumptionEnd_ = desktop.queue().uptime() + Seconds(14);
    framesAtRestart_.clear();
    for (const auto* window : desktop.livingWindows()) {
        framesAtRestart_[window->label()] = {desktop.frameForWindowService(*window), std::nullopt};
    }
    return start(beforeTheFirstPoll).settle();
}

Scenario& Scenario::simulate(SystemActivityEvent event) {
    noteSuspension(); // the event may end the suspension
    desktop.simulate(event);
    desktop.queue().runDue();
    return *this;
}

bool Scenario::isManaging() {
    return delegate_ && controller().isRunning() && desktop.isProcessTrusted() && !isSuspended() &&
           !desktop.stalePermission() && !desktop.isLoginSessionScreenLocked() && !desktop.screens().empty();
}

/// After sleep and lock, the agent awaits missing windows for 10 s from the first poll, which may be slow.
void Scenario::noteSuspension() {
    if (isSuspended() || desktop.isLoginSessionScreenLocked()) recoveryEnd_ = desktop.queue().uptime() + Seconds(14);
}

bool Scenario::isRecovering() {
    noteSuspension();
    return desktop.queue().uptime() < recoveryEnd_;
}

/// After a restart, the agent awaits missing windows in the same way, though they may have closed while no agent ran.
bool Scenario::isResuming() {
    return desktop.queue().uptime() < resumptionEnd_;
}

// User actions

Scenario& Scenario::perform(const WorkspaceAction& action) {
    if (!wasStarted_) start();
    desktop.queue().runDue();
    wasCarriedOut_ = controller().perform(action);
    return settle();
}

Scenario& Scenario::arrange() {
    // Waits for a poll that sees windows that were just opened.
    const Seconds delay = desktop.announcesWithoutRequest() ? Seconds(0) : Seconds(0.1);
    if (wasStarted_) desktop.queue().advance(RefreshCycle::kInterval + delay);
    framesAtRestart_.clear();
    return perform(action::Arrange{});
}

Scenario& Scenario::undo() {
    return perform(action::Undo{});
}

Scenario& Scenario::zoom() {
    return perform(action::ToggleFocusZoom{});
}

Scenario& Scenario::cycleStack() {
    return perform(action::CycleStack{});
}

Scenario& Scenario::move(WorkspaceDirection direction) {
    return perform(action::Move{direction});
}

Scenario& Scenario::focus(WorkspaceDirection direction) {
    return perform(action::Focus{direction});
}

Seconds Scenario::settlingTime() const {
    constexpr Seconds kTwoPolls = 8 * SimulatedDesktop::kReadDeadline;
    const auto running = desktop.runningApplications();
    const bool isSlow = std::ranges::any_of(
        running, [&](const auto& application) { return desktop.isUnresponsive(application.processIdentifier); });
    const Seconds settlingTime = kSettlingTime + 2 * desktop.pollingQueue().jobDuration();
    return isSlow ? settlingTime + kTwoPolls : settlingTime;
}

Scenario& Scenario::advance(Seconds duration) {
    const Seconds needed = settlingTime();
    const int closedBefore = desktop.closedCount();
    noteLostAnnouncements();
    desktop.queue().advance(duration);
    noteLostAnnouncements();
    // If a window closed itself meanwhile, the desktop is not settled: the close may be noticed only by the next poll.
    isSettled_ = duration >= needed && desktop.closedCount() == closedBefore;
    isSettled_ = isSettled_ && desktop.queue().uptime() >= lossesFoundBy_;
    checkInvariants();
    return *this;
}

void Scenario::noteLostAnnouncements() {
    const int losses = desktop.announcements().lostCount();
    if (losses == knownLosses_) return;
    knownLosses_ = losses;
    lossesFoundBy_ = desktop.queue().uptime() + desktop.longestIdleTime().value_or(Seconds(0)) + kSettlingTime;
}

Scenario& Scenario::settleFully() {
    advance(Seconds(20));
    std::vector<std::string> violations;
    if (isManaging() && isSettled_ && !isRecovering()) checkTiledWindowsDoNotOverlap(violations, MinimumSizes::all);
    for (const auto& violation : violations) ADD_FAILURE() << violation << "\non the screen: " << desktop.picture();
    return *this;
}

// Expectations

std::string Scenario::describeTile(const WorkspaceTile& tile) {
    if (!tile.windowID && tile.stack.empty()) return "-";
    std::string text = "-";
    const auto& anchors = controller().assignments().anchorsByWindowID;
    if (tile.windowID) {
        const auto label = desktop.labelOfID(*tile.windowID);
        const auto anchor = anchors.find(*tile.windowID);
        if (anchor != anchors.end() && anchor->second != tile.target) return "(" + label + ")";
        text = label == tile.windowID->text() ? label + " closed" : desktop.describeWindow(desktop.window(label));
    }
    for (const auto& windowID : tile.stack) {
        if (windowID != tile.windowID) text += " + " + desktop.labelOfID(windowID);
    }
    return text;
}

std::string Scenario::tiles() {
    std::string text;
    std::optional<DisplayID> displayID;
    for (const auto& tile : controller().tiles()) {
        if (displayID) text += *displayID == tile.displayID ? " | " : " || ";
        text += describeTile(tile);
        displayID = tile.displayID;
    }
    return text;
}

void Scenario::expectTiles(std::string_view expected) {
    EXPECT_EQ(tiles(), expected) << "on the screen: " << desktop.picture();
}

void Scenario::expectMessage(std::string_view expected) {
    EXPECT_EQ(state().lastActionMessage->value_or(""), expected);
}

void Scenario::expectFocus(std::string_view label) {
    EXPECT_EQ(desktop.focusedLabel(), label) << "on the screen: " << desktop.picture();
}

int Scenario::frameWrites() const {
    int count = 0;
    for (const auto* window : desktop.livingWindows()) count += window->frameWriteCount;
    return count;
}

int Scenario::framesWrittenWithin(Seconds duration) {
    const int before = frameWrites();
    advance(duration);
    return frameWrites() - before;
}

int Scenario::mostPollsWhileIdle(Seconds duration) const {
    const auto longestIdleTime = desktop.longestIdleTime();
    return longestIdleTime ? static_cast<int>(duration / *longestIdleTime) : 0;
}

std::string Scenario::explanation() {
    std::string text;
    for (const auto& line : *state().lastArrangeExplanation) text += line + "\n";
    return text;
}

} // namespace kova
