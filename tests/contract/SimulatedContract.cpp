// Contract tests of the simulated desktop, virtual time and preferences in memory.
#include "persistence/MemoryPreferencesStore.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "platform/simulated/SimulatedKeyboard.h"
#include "tests/contract/ContractDesktop.h"
#include "tests/contract/PreferencesContract.h"
#include "tests/contract/QueueContract.h"
#include "tests/contract/SessionContract.h"

#include <map>

namespace kova::contract {
namespace {

class SimulatedStage final : public ContractDesktop {
  public:
    explicit SimulatedStage(HidingStyle style, DesktopStyle desktopStyle = DesktopStyle::knowsItsWindows) {
        desktop_.setStyle(desktopStyle);
        desktop_.addDisplay({.name = "First", .size = {1280, 800}});
        desktop_.setHidingStyle(style);
        desktop_.queue().runDue();
    }

    /// The simulated desktop owns its queue, so it cannot be destroyed before the queue.
    bool can(Ability ability) const override { return ability != Ability::destroyingDesktop; }
    pid_t open(const NewWindow& newWindow) override {
        if (!desktop_.isRunning(newWindow.application)) desktop_.launch(newWindow.application);
        const std::string label = desktop_.open(
            newWindow.application,
            {.frame = onDesktop(newWindow.frame),
             .title = newWindow.title,
             .dialogOf = newWindow.dialogOf ? std::optional(labels_.at(*newWindow.dialogOf)) : std::nullopt,
             .minimumSize = newWindow.minimumSize});
        labels_[newWindow.title] = label;
        return desktop_.processIdentifier(newWindow.application);
    }
    void retitle(const std::string& title, const std::string& newTitle) override {
        desktop_.setTitle(labels_.at(title), newTitle);
        labels_[newTitle] = labels_.at(title);
    }
    void close(const std::string& title) override { desktop_.close(labels_.at(title)); }
    void userMoves(const std::string& title, const CGRect& frame) override {
        desktop_.userMoves(labels_.at(title), onDesktop(frame));
    }
    void userMinimizes(const std::string& title) override { desktop_.userMinimizes(labels_.at(title)); }
    void crash(const std::string& application) override { desktop_.quit(application); }
    CGRect frame(const std::string& title) override {
        return desktop_.frameForWindowService(desktop_.window(labels_.at(title)));
    }
    void plugInPrimaryDisplay() override {
        desktop_.addDisplay({.name = "Second", .size = {1920, 1080}});
        desktop_.makeFirstDisplay("Second");
    }
    void withdrawPermission() override { desktop_.setTrusted(false); }
    void destroyDesktop() override {}
    void press(CGPoint point) override { desktop_.pressAt(onDesktop({point, {}}).origin, WindowPart::nothing); }
    void movePointer(CGPoint point) override { desktop_.movePointer(onDesktop({point, {}}).origin); }
    void releaseButton() override { desktop_.releaseButton(); }
    void pressKey(KeyCombination combination) override {
        keyboard_.press(combination.keyCode, combination.modifierFlags);
    }
    void claimForOther(KeyCombination combination) override { keyboard_.claimByOther(combination); }
    LaunchableApplication install(const std::string& name) override { return desktop_.install(name); }
    void uninstall(const std::string& name) override { desktop_.uninstall(name); }

    AccessibilityServicing& accessibility() override { return desktop_; }
    ApplicationServicing& applications() override { return desktop_; }
    ScreenServicing& screens() override { return desktop_; }
    DesktopChangeServicing& changes() override { return desktop_; }
    PointerMonitorServicing& pointer() override { return desktop_; }
    DividerHandleServicing& handles() override { return desktop_; }
    KeyMonitorServicing& keys() override { return keyboard_; }

    void onPollingQueue(const std::function<void()>& job) override {
        bool isDone = false;
        desktop_.pollingQueue().post([&] {
            job();
            isDone = true;
        });
        runUntil([&] { return isDone; });
    }
    bool runUntil(const std::function<bool()>& condition) override {
        for (int i = 0; i < 400; ++i) {
            desktop_.queue().runDue();
            if (condition()) return true;
            desktop_.queue().advance(Seconds(0.05));
        }
        return false;
    }
    void runFor(Seconds time) override { desktop_.queue().advance(time); }
    std::vector<std::string> recordedErrors() const override { return desktop_.violations(); }

  private:
    CGRect onDesktop(const CGRect& r) const {
        const auto screens = desktop_.screens();
        const CGPoint corner = desktop_.frameOfDisplay(screens.front().localizedName).origin;
        return makeRect(minX(r) + corner.x, minY(r) + corner.y, r.size.width, r.size.height);
    }

    SimulatedDesktop desktop_;
    SimulatedKeyboard keyboard_{desktop_.queue()};
    std::map<std::string, std::string> labels_; // the labels of windows in the simulated desktop, by title
};

Backend simulated(const std::string& name, HidingStyle style) {
    return {name, "", [style] { return std::make_unique<SimulatedStage>(style); }};
}

Backend simulatedMac() {
    return {"SimulatedMac", "",
            [] { return std::make_unique<SimulatedStage>(HidingStyle::hidesApplication, DesktopStyle::mac); }};
}

INSTANTIATE_TEST_SUITE_P(Simulated, DesktopContract,
                         ::testing::Values(simulated("Simulated", HidingStyle::hidesApplication), simulatedMac(),
                                           simulated("SimulatedIconifying", HidingStyle::iconifiesWindows)),
                         nameOf);

class SimulatedSession final : public SessionStage {
  public:
    SystemActivityServicing& activity() override { return desktop_; }
    SessionServicing& session() override { return desktop_; }
    void simulate(SystemActivityEvent event) override { desktop_.simulate(event); }
    bool runUntil(const std::function<bool()>& condition) override {
        desktop_.queue().runDue();
        return condition();
    }
    void runFor(Seconds time) override { desktop_.queue().advance(time); }

  private:
    SimulatedDesktop desktop_;
};

INSTANTIATE_TEST_SUITE_P(Simulated, SessionContract,
                         ::testing::Values(SessionBackend{"Simulated", "",
                                                          [] { return std::make_unique<SimulatedSession>(); }}),
                         [](const auto& chosen) { return chosen.param.name; });

class VirtualStage final : public QueueStage {
  public:
    MainQueue& queue() override { return queue_; }
    void runFor(Seconds time) override { queue_.advance(time); }
    std::unique_ptr<WorkQueue> makeWorker() override { return std::make_unique<VirtualWorkQueue>(queue_); }
    void beBusyFor(Seconds) override {} // virtual time does not pass while work runs

  private:
    VirtualMainQueue queue_;
};

INSTANTIATE_TEST_SUITE_P(Simulated, QueueContract,
                         ::testing::Values(QueueBackend{"VirtualTime",
                                                        [] { return std::make_unique<VirtualStage>(); }}),
                         [](const auto& chosen) { return chosen.param.name; });

class MemoryStage final : public PreferencesStage {
  public:
    PreferencesStore& store() override { return store_; }
    void reopen() override {}

  private:
    MemoryPreferencesStore store_;
};

INSTANTIATE_TEST_SUITE_P(Simulated, PreferencesContract,
                         ::testing::Values(PreferencesBackend{"Memory",
                                                              [] { return std::make_unique<MemoryStage>(); }}),
                         [](const auto& chosen) { return chosen.param.name; });

} // namespace
} // namespace kova::contract
