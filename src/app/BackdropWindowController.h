// Contents of the overlay behind all windows: for each display its frame and layout, the theme's palette and switches,
// and the status message at the bottom of the current display. Main thread only.
#pragma once

#include "app/OverlayBoard.h"
#include "workspace/WorkspaceController.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kova {

class BackdropWindowController {
  public:
    /// Shows nothing before `show`. The workspace and the board outlive the controller.
    BackdropWindowController(const WorkspaceController& workspace, OverlayBoard& board);
    ~BackdropWindowController();
    BackdropWindowController(const BackdropWindowController&) = delete;
    BackdropWindowController& operator=(const BackdropWindowController&) = delete;

    void show();
    /// Computes the contents again; no-op while closed.
    void refresh();
    void close();

  private:
    std::optional<OverlayMessage> message();

    const WorkspaceController& workspace_;
    OverlayBoard& board_;
    struct MessagePlace {
        std::uint64_t serial = 0; // of the message
        std::optional<DisplayID> displayID;
    };
    MessagePlace messagePlace_;               // a message stays on the display on which it was first shown
    std::vector<Subscription> subscriptions_; // while shown
};

} // namespace kova
