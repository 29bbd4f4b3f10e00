// The scale of a display (pixels per point), which desktop environments set in two ways and can change at run time.
#include "tests/desktop/DesktopUnderTest.h"

#include <xcb/xcb.h>

namespace kova::testing {
namespace {

constexpr std::uint32_t kDpiUnit = 1024; // Xft/DPI is in 1/1024 dots per inch

/// A fake XSETTINGS manager with one setting, Xft/DPI.
class SettingsManager {
  public:
    explicit SettingsManager(TestClient& client) :
        client_(client), window_(client.create({.title = "Settings", .isOverrideRedirect = true})) {}
    void write(std::uint32_t dpi) {
        std::string bytes("\0\0\0\0\0\0\0\0\1\0\0\0\0\0\7\0Xft/DPI\0\0\0\0\0", 28);
        for (int i = 0; i < 4; ++i) bytes += static_cast<char>((dpi * kDpiUnit) >> (8 * i));
        client_.setText(window_, "_XSETTINGS_SETTINGS", "_XSETTINGS_SETTINGS", bytes);
    }
    void announce() {
        const xcb_atom_t selection = client_.atom("_XSETTINGS_S0");
        xcb_set_selection_owner(client_.connection(), window_, selection, XCB_CURRENT_TIME);
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = client_.root();
        message.type = client_.atom("MANAGER");
        message.data.data32[1] = selection;
        message.data.data32[2] = window_;
        xcb_send_event(client_.connection(), 0, client_.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
        client_.sync();
    }
    void end() { client_.destroy(window_); }

  private:
    TestClient& client_;
    xcb_window_t window_;
};

TEST(Scale, FollowsTheSettingsOfTheDesktop) {
    if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
    DesktopUnderTest desk(Manager::openbox);
    const auto client = desk.client("Editor", 4001);
    const auto draft =
        client->open({.title = "Draft", .frame = makeRect(40, 50, 400, 300), .minimumSize = CGSize{240, 120}});
    auto& desktop = desk.openDesktop();
    /// Waits until the placement was verified, so that no frame of the old scale is requested after a change.
    const auto isVerified = [&] {
        return desk.runUntil([&, id = desk.window("Draft").id] { return !desk.service().pendingFrame(id); });
    };
    ASSERT_TRUE(desk.reachesFrame("Draft", makeRect(40, 60, 600, 400), *client, draft) && isVerified());
    int announcements = 0;
    const auto screens = desktop.observeScreens([&] { ++announcements; });
    /// Waits until screens and windows have the scale; the change must have been announced exactly once.
    const auto becomes = [&](double scale, const char* screen, const char* frame) {
        const bool isReached = desk.runUntil([&] {
            const auto all = desktop.screens();
            const auto window = desk.window("Draft");
            return announcements > 0 && all.size() == 1 && all[0].scale == scale && text(all[0].frame) == screen &&
                   window.frame && text(*window.frame) == frame;
        });
        return isReached && std::exchange(announcements, 0) == 1;
    };
    const CGSize before = *desk.window("Draft").minimumSize;
    const auto setResource = [&](const std::string& dpi) {
        client->setText(client->root(), "RESOURCE_MANAGER", "STRING", "Xft.dpi:\t" + dpi + "\n");
        client->sync();
    };
    setResource("192");
    EXPECT_TRUE(becomes(2, "0,0 640x400", "20,30 300x200"));
    EXPECT_EQ(desk.window("Draft").minimumSize->width, before.width / 2);
    EXPECT_TRUE(desk.reachesFrame("Draft", makeRect(100, 50, 200, 150), [&] {
        const CGRect pixels = client->outerFrame(draft);
        return makeRect(minX(pixels) / 2, minY(pixels) / 2, pixels.size.width / 2, pixels.size.height / 2);
    }));
    EXPECT_TRUE(isVerified());
    setResource("192.4"); // rounds to the same scale
    setResource("144");
    EXPECT_TRUE(becomes(1.5, "0,0 853x533", "133,66 266x200"));

    // While the settings manager runs, its settings take precedence over the resources.
    const auto panel = desk.client("Panel", 4002);
    SettingsManager manager(*panel);
    manager.write(96);
    manager.announce();
    EXPECT_TRUE(becomes(1, "0,0 1280x800", "200,100 400x300"));
    manager.write(192);
    EXPECT_TRUE(becomes(2, "0,0 640x400", "100,50 200x150"));
    manager.end();
    EXPECT_TRUE(becomes(1.5, "0,0 853x533", "133,66 266x200"));
    client->remove(client->root(), "RESOURCE_MANAGER");
    EXPECT_TRUE(becomes(1, "0,0 1280x800", "200,100 400x300"));
}

} // namespace
} // namespace kova::testing
