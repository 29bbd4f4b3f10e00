// For the benchmarks on a private X server: a workspace that manages real windows, without a window manager, and an X
// client that sends the same requests as the workspace, but does nothing else.
#pragma once

#include "persistence/MemoryPreferencesStore.h"
#include "platform/linux/SerialWorkQueue.h"
#include "tests/desktop/DesktopUnderTest.h"
#include "windowing/AlertServicing.h"
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

namespace kova {

class UnlockedSession final : public SessionServicing {
  public:
    bool isLoginSessionScreenLocked() const override { return false; }
};

class DeclinedAlerts final : public AlertServicing {
  public:
    void inform(const Alert&) override {}
    void confirm(const Alert&, std::function<void(bool isConfirmed)> answer) override { answer(false); }
};

struct RealWorkspace {
    /// Sends the requests that move the windows to the frames, all in one flush, and does nothing else.
    void sendOnlyRequests(const std::vector<CGRect>& frames) {
        for (std::size_t i = 0; i < windows.size(); ++i) {
            const CGRect& frame = frames[i];
            const std::uint32_t values[] = {
                static_cast<std::uint32_t>(minX(frame)), static_cast<std::uint32_t>(minY(frame)),
                static_cast<std::uint32_t>(frame.size.width), static_cast<std::uint32_t>(frame.size.height)};
            xcb_configure_window(
                requestsOnly->connection(), windows[i],
                XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values);
        }
        xcb_flush(requestsOnly->connection());
    }

    testing::DesktopUnderTest desktopUnderTest{testing::Manager::none, "2560x1440"};
    std::unique_ptr<testing::TestClient> windowOwner = desktopUnderTest.client("Bench", 4001);
    std::unique_ptr<testing::TestClient> requestsOnly = desktopUnderTest.client("Other", 4002);
    std::vector<xcb_window_t> windows;
    X11Desktop& desktop = desktopUnderTest.openDesktop();
    UnlockedSession session;
    DeclinedAlerts alerts;
    MemoryPreferencesStore preferences;
    SerialWorkQueue polling{"polling"};
    WorkspaceController controller{WorkspaceServices{.accessibility = desktop,
                                                     .applications = desktop,
                                                     .screens = desktop,
                                                     .session = session,
                                                     .changes = desktop,
                                                     .preferences = preferences,
                                                     .queue = desktopUnderTest.loop(),
                                                     .pollingQueue = polling,
                                                     .alerts = alerts}};
};

inline double medianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace kova
