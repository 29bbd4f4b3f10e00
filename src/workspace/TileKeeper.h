// Keeps windows and tiles consistent: places windows, gives them room, fills tiles that lost their window, and commits
// what an operation has changed.
#pragma once

#include "support/Lifetime.h"
#include "windowing/AccessibilityWindowService.h"
#include "workspace/Arranger.h"
#include "workspace/AwaitedWindows.h"
#include "workspace/DisplayMemory.h"
#include "workspace/FocusMode.h"
#include "workspace/FrameKeeper.h"
#include "workspace/LiveWindows.h"
#include "workspace/PointerInteraction.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileGeometry.h"
#include "workspace/TileMemory.h"
#include "workspace/Transaction.h"
#include "workspace/WindowPresenter.h"
#include "workspace/WorkspaceAccess.h"
#include "workspace/WorkspaceServices.h"
#include "workspace/WorkspaceState.h"

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kova {

struct WorkspaceParts;

enum class Focusing { no, yes };

class TileKeeper {
  public:
    TileKeeper(WorkspaceParts& parts, WorkspaceAccess& access, TileGeometry& geometry, WindowPresenter& presenter);

    void publishAssignments();
    void noteTileGeometry();
    void noteTilesMoved();
    void commit(const Transaction& changes);
    std::vector<std::string> takeTiles(const std::string& windowID, const Covering& covering);
    void place(const ManagedWindow& window, const Covering& covering, AccessibilityWindowService::BringToFront raise);
    bool placeWindow(const std::string& windowID, const std::string& targetID, Focusing focusing);
    void announceClaim(const ManagedWindow& window, const Covering& covering);
    void bringNextForward(const TileAssignments& before);
    void claimRoomWhereNeeded(const std::string& first = {});
    void giveBackSpans();
    void minimumSizeObserved(const std::string& windowID, const CGRect& wanted, const CGRect& actual);
    void noteSizesSeen();
    void retryMinimum(const std::string& windowID);
    void publishMinimums() { state_.observedMinimumSizes.set(frames_.sizes().shown()); }
    void setProfile(WorkspaceProfile profile);
    void layoutChanged(const std::string& displayID);
    void storeWeights(const std::string& displayID, const std::string& layoutID, LayoutWeightOverrides weights);
    void noteHasItsPlace(const std::string& windowID);
    void noteMovedByUser(const std::string& windowID);

  private:
    void keepFloatingValid();
    bool bringForward(const Promotion& promotion);
    std::optional<std::pair<ManagedWindow, Covering>> nextClaimOn(const Screen& screen, const std::string& first,
                                                                  const std::set<std::string>& done) const;
    void moveOutOfTheWay(const Screen& screen, const std::pair<ManagedWindow, Covering>& claim);
    void reflow(const std::string& windowID);
    void rememberMinimum(const ManagedWindow& window, std::optional<CGSize> minimum);
    void makeRoomFor(const ManagedWindow& window);

    const WorkspaceServices& services_;
    AccessibilityWindowService& windowService_;
    WorkspaceState& state_;
    LiveWindows& liveWindows_;
    TileAssignments& assignments_;
    TileMemory& tileMemory_;
    DisplayMemory& displays_;
    FocusMode& focusMode_;
    PointerInteraction& pointer_;
    FrameKeeper& frames_;
    AwaitedWindows& awaited_;
    Arranger& arranger_;
    WorkspaceAccess& access_;
    TileGeometry& geometry_;
    WindowPresenter& presenter_;
    Lifetime lifetime_;
};

} // namespace kova
