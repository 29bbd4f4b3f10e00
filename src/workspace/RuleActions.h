// Applies rules to new windows.
#pragma once

#include "workspace/DocumentStore.h"
#include "workspace/FloatingWindows.h"
#include "workspace/FocusMode.h"
#include "workspace/LiveWindows.h"
#include "workspace/Outcome.h"
#include "workspace/PointerInteraction.h"
#include "workspace/RuleMatching.h"
#include "workspace/StatusMessages.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileGeometry.h"
#include "workspace/TileKeeper.h"
#include "workspace/TileMemory.h"
#include "workspace/WindowFinder.h"
#include "workspace/WorkspaceAccess.h"
#include "workspace/WorkspaceAction.h"
#include "workspace/WorkspaceState.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kova {

struct WorkspaceParts;

class RuleActions {
  public:
    RuleActions(WorkspaceParts& parts, WorkspaceAccess& access, TileGeometry& geometry, const WindowFinder& finder,
                TileKeeper& keeper, DocumentStore& documents);

    void applyRules(const std::vector<ManagedWindow>& windows);
    /// Whether `applyRules` has skipped a window that the pointer held, since the last call. After the release the
    /// caller polls again.
    bool takePostponed() { return std::exchange(isPostponed_, false); }
    Outcome addRuleForWindow(const action::AddRuleForWindow& wanted);
    /// Explains which rule decides for the live window, and why each other rule does not; absent if there is no such
    /// window.
    std::optional<RuleExplanation> explainRules(const WindowID& windowID) const;

  private:
    void carryOutRules(const std::vector<std::pair<WindowID, std::size_t>>& decisions);

    WorkspaceState& state_;
    LiveWindows& liveWindows_;
    TileAssignments& assignments_;
    TileMemory& tileMemory_;
    const FocusMode& focusMode_;
    const FloatingWindows& floating_;
    const PointerInteraction& pointer_;
    StatusMessages& messages_;
    WorkspaceAccess& access_;
    TileGeometry& geometry_;
    const WindowFinder& finder_;
    TileKeeper& keeper_;
    DocumentStore& documents_;
    bool isPostponed_ = false;
};

} // namespace kova
