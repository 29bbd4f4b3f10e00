// Computes the layout of each display, the frames of its tiles and of the windows in them, and the tiles that a window
// needs.
#pragma once

#include "themes/ThemeRegistry.h"
#include "workspace/DisplayLayouts.h"
#include "workspace/FrameKeeper.h"
#include "workspace/LiveWindows.h"
#include "workspace/TileAssignments.h"
#include "workspace/TileRoom.h"
#include "workspace/WindowSizes.h"
#include "workspace/WorkspaceRecords.h"
#include "workspace/WorkspaceState.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kova {

struct WorkspaceParts;

/// The tiles that a window covers, its anchor first.
struct Covering {
    std::vector<DisplayTileTarget> targets;
};
/// The data by which learning records a tile.
struct LearnedPlace {
    std::string layoutID;
    SlotID slotID;
};

class TileGeometry {
  public:
    explicit TileGeometry(WorkspaceParts& parts);

    /// The layouts that the theme in use offers.
    const std::vector<LayoutDefinition>& catalogue() const;
    /// Null when the display is not connected.
    const Screen* screenOf(const DisplayID& displayID) const;
    /// Null when the display of the tile is not connected.
    const Screen* screenOfTarget(const TileTarget& target) const;
    /// The top edge of the first display in screen space. `flipped` needs it to convert between screen space and
    /// window-service space.
    double firstScreenMaxY() const;
    bool isOnSomeScreen(const CGRect& frameForWindowService) const;
    /// The layout in force on the display, with the display's weights; null for a display that is not connected.
    const LayoutDefinition* resolvedLayout(const DisplayID& displayID) const;
    /// The cells and dividers of the display, in layout space. The reference is valid until the next call for the
    /// display.
    const SolvedLayout& solvedTiles(const Screen& screen) const;
    /// The cell of the tile. Absent if the display is not connected, or its layout in force has no such tile.
    std::optional<CGRect> tileFrameOnScreen(const TileTarget& target) const;
    /// The frame of the window in its tile or span, in window-service space. Absent if it is not a front window.
    std::optional<CGRect> frameForWindow(const WindowID& windowID) const;
    /// The frames of the front windows in their tiles and spans, by window id, in window-service space.
    std::map<WindowID, CGRect> framesOfTiledWindows() const;
    std::map<WindowID, CGRect> framesOfTiledWindows(const Screen& screen) const;
    /// The tiles of all displays: the displays in the platform's order, the tiles of each in the order of its layout.
    std::vector<WorkspaceTile> tiles() const;
    /// The display of the window's tile, else the display that shows the window's middle, else the display that shows
    /// most of the window. Null if no display shows any of it.
    const Screen* screenOfWindow(const ManagedWindow& window) const;
    /// The minimum size in points, 0 if unknown.
    CGSize minimumSizeOf(const ManagedWindow& window,
                         WindowSizes::Purpose purpose = WindowSizes::Purpose::present) const;
    /// The minimum size learned for the window's application; absent if there is none.
    std::optional<CGSize> minimumOfApplication(const ManagedWindow& window) const;
    /// The largest frame inside `tileFrame` that the window's size hints allow. Both frames are in window-service
    /// space.
    CGRect largestAllowedFrame(const ManagedWindow& window, const CGRect& tileFrame) const;
    /// The front windows of the display, with the room that they have and need.
    TileRoom roomOn(const Screen& screen) const;
    /// The tiles that the window covers if it is put into `target`; absent for an unknown tile.
    std::optional<Covering> coveringFor(const ManagedWindow& window, const TileTarget& target) const;
    /// The tiles of these slots. Slots that the layout does not have are left out; absent if none is left.
    std::optional<Covering> coveringOn(const Screen& screen, const std::vector<SlotID>& slotIDs) const;
    /// The first free tile, or span of free tiles, with room for the window; absent when there is none.
    std::optional<Covering> freeCoveringOn(const Screen& screen, const ManagedWindow& window) const;
    /// The dividers of one display, also those that focus mode hides.
    std::vector<DisplayLayoutDivider> dividersOn(const DisplayID& displayID) const;
    /// The gutter of the divider, in screen space; absent if its display is disconnected.
    std::optional<CGRect> dividerFrameOnScreen(const DisplayLayoutDivider& divider) const;
    /// The tiles for the slots of a stored placement, the anchor first. Empty if the layout does not have `slotID`.
    std::vector<TileTarget> targetsFor(const Screen& screen, const SlotID& slotID,
                                       const std::optional<std::vector<SlotID>>& claimedSlotIDs) const;
    /// The frame of a zoomed window, in window-service space; absent if the display is disconnected.
    std::optional<CGRect> zoomFrame(const DisplayID& displayID) const;
    /// Absent when the display of the tile is not connected.
    std::optional<LearnedPlace> learnedPlace(const TileTarget& target) const;
    /// The tile under the point (screen space). Absent if there is none, or if it is the window's own tile.
    std::optional<TileTarget> dropTarget(const WindowID& windowID, CGPoint pointOnScreen) const;
    /// The names of the applications that own the front windows of the display, each once. Without a display: the names
    /// of the applications that own any live window.
    std::vector<std::string> applicationsOn(const std::optional<DisplayID>& displayID) const;
    /// The layout in force, with the display's weights.
    const LayoutDefinition& layoutOn(const Screen& screen) const {
        return layouts_.resolve(screen, *state_.profile, catalogue());
    }
    /// The id of the layout in force.
    const std::string& layoutIDOn(const Screen& screen) const {
        return layouts_.layoutID(screen, *state_.profile, catalogue());
    }
    DisplayLayouts& layouts() { return layouts_; }
    const ThemeRegistry& registry() const { return registry_; }

  private:
    TileMinimumSizes tileMinimumSizes(const DisplayID& displayID) const;

    const WorkspaceState& state_;
    const LiveWindows& liveWindows_;
    const TileAssignments& assignments_;
    const FrameKeeper& frames_;
    ThemeRegistry registry_;
    mutable DisplayLayouts layouts_;
};

} // namespace kova
