// Contents of the footers, the strips below tiles. A footer shows the tile's name, the windows of its stack, an
// application that is being launched into the tile, and for 6 seconds the notice that a window claimed further tiles. A
// span has one footer, below its whole area. A display in focus mode has no footers. Main thread only.
#pragma once

#include "app/OverlayBoard.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "workspace/WorkspaceController.h"

#include <optional>
#include <string>
#include <vector>

namespace kova {

/// The footer's text about a window that claimed further tiles.
std::string placementNoticeText(const WindowPlacementNotice& notice);

class TileFooterWindowController {
  public:
    static constexpr Seconds kNoticeTime{6};

    /// Shows the footers. The workspace, the board and the queue outlive the controller.
    TileFooterWindowController(const WorkspaceController& workspace, OverlayBoard& board, MainQueue& queue);
    ~TileFooterWindowController();
    TileFooterWindowController(const TileFooterWindowController&) = delete;
    TileFooterWindowController& operator=(const TileFooterWindowController&) = delete;

    /// Computes the contents again; no-op while closed.
    void refresh();
    void close();

  private:
    void fill(OverlayContents& contents);
    void addNotice(std::vector<OverlayTile>& tiles);

    const WorkspaceController& workspace_;
    OverlayBoard& board_;
    MainQueue& queue_;
    Seconds noticeEnd_{0}; // uptime
    bool isNoticeEndScheduled_ = false;
    std::vector<Subscription> subscriptions_; // while shown
    Lifetime lifetime_;
};

} // namespace kova
