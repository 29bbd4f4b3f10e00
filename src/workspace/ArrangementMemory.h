// Holds the plan of the last arrangement, what was learned from arrangements and moves, and whether the arrangement
// after the agent's start is due. Always true: the remaining steps of an arrangement are dropped as soon as another
// arrangement, an undo or a change of the layout supersedes that arrangement.
#pragma once

#include "layout/AutoArrangeLearning.h"
#include "persistence/PreferencesStore.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "support/Published.h"
#include "workspace/ArrangementPlan.h"
#include "workspace/PartDefaults.h"

#include <cstdint>
#include <memory>
#include <string>

namespace kova {

class ArrangementMemory : public PartWithoutPolls {
  public:
    using Learning = std::shared_ptr<const AutoArrangeLearningModel>; // shared with undo snapshots

    ArrangementMemory(MainQueue& queue, PreferencesStore& preferences);

    /// The plan of the last arrangement; empty before the first.
    const ArrangementPlan& lastPlan() const { return lastPlan_; }
    void notePlan(ArrangementPlan plan) { lastPlan_ = std::move(plan); }

    /// Drops the remaining steps of the last arrangement: raises the generation, and returns it. A step that runs later
    /// checks `isNewest` with the generation in which it was scheduled.
    std::int64_t dropRemainingSteps();
    std::int64_t newestGeneration() const { return generation_; }
    bool isNewest(std::int64_t generation) const { return generation == generation_; }

    /// Returns whether the arrangement after the agent's start is due, and marks it as done. `isPermissionNew` is true
    /// if the permission was granted just now; then the arrangement is due again.
    bool takeStartupArrangement(bool isPermissionNew);
    void skipStartupArrangement() { hadStartupArrangement_ = true; }
    /// Marks the arrangement after the start as due again, after it could not be carried out.
    void postponeStartupArrangement() { hadStartupArrangement_ = false; }

    const Learning& learning() const { return *learning_; }
    const Published<Learning>& publishedLearning() const { return learning_; }
    /// Uses the model that was read from the preferences; does not save it.
    void loadLearning(AutoArrangeLearningModel model);
    /// Replaces the model. The model is saved after all work that is queued now, so that saving does not delay requests
    /// to windows.
    void setLearning(Learning learning);
    /// Replaces the model by a copy that `edit` has changed.
    template <class Edit>
    void learn(Edit edit) {
        AutoArrangeLearningModel model = **learning_;
        edit(model);
        setLearning(std::make_shared<const AutoArrangeLearningModel>(std::move(model)));
    }

    void rename(const WindowID& windowID, const WindowID& newID) { lastPlan_.rename(windowID, newID); }
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
        lastPlan_.renameDisplay(displayID, newID);
    }

  private:
    MainQueue& queue_;
    PreferencesStore& preferences_;
    Published<Learning> learning_;
    ArrangementPlan lastPlan_;
    std::int64_t generation_ = 0;
    bool hadStartupArrangement_ = false;
    bool isSavePending_ = false;
    Lifetime lifetime_;
};

} // namespace kova
