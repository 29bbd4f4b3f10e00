// The drag of a divider. Its movements are applied at most 60 times a second, always with the newest translation. For
// the main thread only.
#pragma once

#include "layout/LayoutSolver.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace kova {

/// Whether `a` and `b` are the same boundary of the same layout on the same display. Their positions may differ.
bool isSameDivider(const DisplayLayoutDivider& a, const DisplayLayoutDivider& b);

struct ActiveDividerDrag {
    DisplayLayoutDivider target;
    LayoutWeightOverrides startingOverrides; // the weights when the drag began
    LayoutWeightOverrides overrides;         // the weights at the present position of the drag
    bool didChange() const { return overrides != startingOverrides; }
};

class DividerDrag {
  public:
    static constexpr Seconds kUpdateInterval{1.0 / 60};

    /// `apply` is called when the newest translation must be applied; it calls `takePendingTranslation`.
    DividerDrag(MainQueue& queue, std::function<void()> apply);

    const std::optional<ActiveDividerDrag>& active() const { return active_; }
    /// True while this divider is being dragged.
    bool isDragging(const DisplayLayoutDivider& divider) const;

    void begin(const DisplayLayoutDivider& target, const LayoutWeightOverrides& weightsInForce);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);
    /// Moves the divider. `translationPoints` is the distance along the divider's axis from its position at the
    /// beginning of the drag.
    void update(double translationPoints);
    /// Changes the weights by the pending translation. False if no translation is pending. The weights do not change if
    /// the divider cannot move. If the divider is back at its starting position, it gets its starting weights.
    bool takePendingTranslation();
    /// Ends the drag, cancels scheduled updates and returns the dragged divider.
    std::optional<ActiveDividerDrag> end();

  private:
    void cancelScheduledUpdate();

    MainQueue& queue_;
    std::function<void()> apply_;
    std::optional<ActiveDividerDrag> active_;
    std::optional<double> pendingTranslation_;
    std::shared_ptr<ScheduledWork> scheduledUpdate_;
    Seconds lastUpdateUptime_{0};
    Lifetime lifetime_;
};

} // namespace kova
