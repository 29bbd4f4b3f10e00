// Reports key presses, in whichever application they occur. macOS lets KOVA watch the presses for other applications,
// but these applications get them, too. So `claim` grabs nothing. The key combinations that the system uses are known;
// those of other programs are not.
#pragma once

#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "windowing/KeyMonitorServicing.h"

#include <memory>

namespace kova::macos {

class MacKeyMonitors final : public KeyMonitorServicing {
  public:
    /// The queue outlives the monitors.
    explicit MacKeyMonitors(MainQueue& queue) : queue_(queue) {}
    ~MacKeyMonitors() override;
    MacKeyMonitors(const MacKeyMonitors&) = delete;
    MacKeyMonitors& operator=(const MacKeyMonitors&) = delete;

    Subscription addGlobalMonitor(std::function<void(const KeyPress&)> monitor) override;
    Subscription addLocalMonitor(std::function<bool(const KeyPress&)> monitor) override;
    void claim(const std::vector<KeyCombination>& combinations) override;
    std::vector<KeyCombination> heldByOthers() const override;
    KnownHolders knownHolders() const override { return KnownHolders::systemOnly; }
    ModifierNames modifierNames() const override { return ModifierNames::symbols; }
    Subscription observeHeldByOthers(std::function<void()> changed) override;
    Subscription recordKeys(std::function<bool(const KeyPress&)> recorder,
                            std::function<void(const std::string& reason)> failed) override;
    std::string charactersOf(std::uint16_t keyCode) const override;

  private:
    struct Recording;

    MainQueue& queue_;
    std::vector<KeyCombination> claimed_;
    std::weak_ptr<Recording> recording_;
    Observers<> claimObservers_;
    Lifetime lifetime_;
};

} // namespace kova::macos
