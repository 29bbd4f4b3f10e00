// Shared by the measurements on a private X server: a workspace on real windows, without a window manager, and a
// second client that can send the same requests.
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

class UnansweredAlerts final : public AlertServicing {
  public:
    void inform(const Alert&) override {}
    void confirm(const Alert&, std::function<void(bool isConfirmed)> answer) override { answer(false); }
};

struct RealWorkspace {
    /// Only sends the requests that move the windows to the frames, in one buffer.
    void onlyConfigure(const std::vector<CGRect>& frames) {
        for (std::size_t i = 0; i < windows.size(); ++i) {
            const CGRect& frame = frames[i];
            const std::uint32_t values[] = {
                static_cast<std::uint32_t>(minX(frame)), static_cast<std::uint32_t>(minY(frame)),
                static_cast<std::uint32_t>(frame.size.width), static_cast<std::uint32_t>(frame.size.height)};
            xcb_configure_window(
                other->connection(), windows[i],
                XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values);
        }
        xcb_flush(other->connection());
    }

    testing::DesktopUnderTest desk{testing::Manager::none, "2560x1440"};
    std::unique_ptr<testing::TestClient> client = desk.client("Bench", 4001);
    std::unique_ptr<testing::TestClient> other = desk.client("Other", 4002);
    std::vector<xcb_window_t> windows;
    X11Desktop& desktop = desk.openDesktop();
    UnlockedSession session;
    UnansweredAlerts alerts;
    MemoryPreferencesStore preferences;
    SerialWorkQueue polling{"polling"};
    WorkspaceController controller{WorkspaceServices{.accessibility = desktop,
                                                     .applications = desktop,
                                                     .screens = desktop,
                                                     .session = session,
                                                     .changes = desktop,
                                                     .preferences = preferences,
                                                     .queue = desk.loop(),
                                                     .pollingQueue = polling,
                                                     .alerts = alerts}};
};

inline double medianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace kova
