// Remembers windows without a tile on displays that were disconnected, with their frames there. The windows return with
// the display, unless they were moved meanwhile. Frames are in window-service space.
#pragma once

#include "windowing/ManagedWindow.h"
#include "windowing/ScreenServicing.h"
#include "workspace/TileAssignments.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kova {

class StrandedFloats {
  public:
    /// Remembers the windows on displays that were disconnected since `before`, with their frames in `live`. A window
    /// that is remembered already keeps its first display.
    void rememberDisconnected(const std::vector<Screen>& before, const std::set<DisplayID>& connected,
                              const std::vector<ManagedWindow>& live, const TileAssignments& tiles);
    /// Records the first frame that the window has while its display is disconnected. If the window has another frame
    /// when the display returns, the window was moved. Later calls for the same window have no effect.
    void settle(const WindowID& windowID, const CGRect& frame);
    /// Returns the ids and former frames of the windows whose display is connected again, except windows that were
    /// moved or are in a tile. Forgets all windows of connected displays.
    std::vector<std::pair<WindowID, CGRect>> takeReturned(const std::set<DisplayID>& connected,
                                                          const std::vector<ManagedWindow>& live,
                                                          const TileAssignments& tiles);
    void forget(const WindowID& windowID) { stranded_.erase(windowID); }
    void forgetAll() { stranded_.clear(); }
    void keepOnly(const std::set<WindowID>& windowIDs);
    void rename(const WindowID& windowID, const WindowID& newID);
    void renameDisplay(const DisplayID& displayID, const DisplayID& newID);

  private:
    struct Stranded {
        DisplayID displayID;
        CGRect frame;
        std::optional<CGRect> frameMeanwhile{}; // while the display is disconnected; see `settle`
    };
    std::map<WindowID, Stranded> stranded_; // by window id
};

} // namespace kova
