// Contract tests of desktops on X11, with a window manager and without one, and of the Linux implementations.
#include "platform/linux/DesktopLauncher.h"
#include "platform/linux/EventLoop.h"
#include "platform/linux/FilePreferencesStore.h"
#include "platform/linux/SerialWorkQueue.h"
#include "platform/x11/X11Desktop.h"
#include "tests/contract/ContractDesktop.h"
#include "tests/contract/PreferencesContract.h"
#include "tests/contract/QueueContract.h"
#include "tests/desktop/PrivateServer.h"
#include "tests/desktop/TestClient.h"
#include "tests/linux/LoopTime.h"
#include "tests/linux/TemporaryFolder.h"

#include <xcb/randr.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <map>
#include <thread>

namespace kova::contract {
namespace {

using testing::ChildProcess;
using testing::Manager;
using testing::PrivateServer;
using testing::TestClient;

constexpr int kScreenWidth = 1280, kScreenHeight = 800, kSecondDisplayX = 800; // points

class X11Stage final : public ContractDesktop {
  public:
    X11Stage(Manager manager, int scale) :
        manager_(manager), scale_(scale),
        server_(pixels(kScreenWidth) + "x" + pixels(kScreenHeight), testing::ClientProcessNumbers::reported) {
        // The programs that a test launches inherit this variable.
        setenv("DISPLAY", server_.displayName().c_str(), 1);
        watcher_ = std::make_unique<TestClient>(server_.displayName(), "Watcher", 1);
        if (scale != 1) {
            watcher_->setText(watcher_->root(), "RESOURCE_MANAGER", "STRING",
                              "Xft.antialias:\t1\nXft.dpi:\t" + std::to_string(96 * scale) + "\n");
        }
        if (manager == Manager::openbox) server_.startManager();
        auto opened = X11Desktop::open({.displayName = server_.displayName(),
                                        .hiddenWindowsFile = server_.folder() + "/hidden.json",
                                        .launcher = &launcher_,
                                        .returnTimeoutAtEnd = Seconds(10),
                                        // A query would return the process of this test for every client.
                                        .queriesProcesses = false},
                                       loop_, catalogue_);
        if (const auto* failure = std::get_if<X11Desktop::Failure>(&opened)) throw std::runtime_error(failure->reason);
        desktop_ = std::move(std::get<0>(opened));
        desktop_->listen(
            [this](int descriptor, auto readable) { return loop_.watchReadable(descriptor, std::move(readable)); },
            [this] { EXPECT_TRUE(isEnding_) << "the connection was lost"; });
    }

    bool can(Ability ability) const override {
        if (ability == Ability::forceTerminating) return false; // all clients belong to the process of the test
        return manager_ != Manager::none ||
               (ability != Ability::minimizingByUser && ability != Ability::enforcingMinimumSizes);
    }
    pid_t open(const NewWindow& newWindow) override {
        auto& application = applications_[newWindow.application];
        if (!application.client) {
            application.process = ++lastProcess_;
            application.client = std::make_unique<TestClient>(server_.displayName(), newWindow.application,
                                                              static_cast<std::uint32_t>(application.process));
        }
        TestClient& client = *application.client;
        const auto window = client.open(
            {.title = newWindow.title,
             .frame = inPixels(newWindow.frame),
             .minimumSize =
                 newWindow.minimumSize ? std::optional(inPixels({{}, *newWindow.minimumSize}).size) : std::nullopt,
             .hasDeleteProtocol = true,
             .transientFor = newWindow.dialogOf ? windows_.at(*newWindow.dialogOf).window : xcb_window_t{}});
        windows_[newWindow.title] = {&client, window};
        // Waits until the window manager has listed and decorated the window.
        const auto isSettled = [&] {
            const auto listed = client.numbers(client.root(), "_NET_CLIENT_LIST");
            return manager_ == Manager::none || (std::ranges::find(listed, window) != listed.end() &&
                                                 !client.numbers(window, "_NET_FRAME_EXTENTS").empty());
        };
        EXPECT_TRUE(runUntil([&] { return isSettled() && client.isViewable(window); }));
        userMoves(newWindow.title, newWindow.frame);
        return application.process;
    }
    void retitle(const std::string& title, const std::string& newTitle) override {
        const auto known = windows_.at(title);
        known.client->setTitle(known.window, newTitle);
        windows_.erase(title);
        windows_[newTitle] = known;
    }
    void close(const std::string& title) override {
        const auto known = windows_.at(title);
        known.client->destroy(known.window);
        windows_.erase(title);
    }
    void userMoves(const std::string& title, const CGRect& frame) override {
        const auto [client, window] = windows_.at(title);
        const auto edges = client->numbers(window, "_NET_FRAME_EXTENTS"); // left, right, top, bottom
        CGRect area = inPixels(frame);
        if (edges.size() == 4) {
            area.size.width -= edges[0] + edges[1];
            area.size.height -= edges[2] + edges[3];
        }
        client->configure(window, area);
        EXPECT_TRUE(runUntil([&, client = client] {
            return std::abs(this->frame(title).size.width - frame.size.width) < 1 || client == nullptr;
        }));
    }
    void userMinimizes(const std::string& title) override {
        const auto [client, window] = windows_.at(title);
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window;
        message.type = client->atom("WM_CHANGE_STATE");
        message.data.data32[0] = 3; // iconic
        xcb_send_event(client->connection(), 0, client->root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
        client->sync();
    }
    void crash(const std::string& application) override {
        TestClient* ending = applications_.at(application).client.get();
        std::erase_if(windows_, [&](const auto& entry) { return entry.second.client == ending; });
        applications_.erase(application);
    }
    CGRect frame(const std::string& title) override {
        const auto [client, window] = windows_.at(title);
        const CGRect outer = client->outerFrame(window);
        return makeRect(minX(outer) / scale_ - firstDisplayX_, minY(outer) / scale_, outer.size.width / scale_,
                        outer.size.height / scale_);
    }
    void plugInPrimaryDisplay() override {
        addMonitor("LEFT", false, 0, kSecondDisplayX);
        addMonitor("RIGHT", true, kSecondDisplayX, kScreenWidth - kSecondDisplayX);
        firstDisplayX_ = kSecondDisplayX;
    }
    /// On X11 the permission is the connection to the server, so this ends the server.
    void withdrawPermission() override {
        isEnding_ = true;
        server_.end();
    }
    void destroyDesktop() override { desktop_.reset(); }
    void press(CGPoint point) override {
        runInputTool({"mousemove", pixels(point.x), pixels(point.y), "mousedown", "1"});
    }
    void movePointer(CGPoint point) override { runInputTool({"mousemove", pixels(point.x), pixels(point.y)}); }
    void releaseButton() override { runInputTool({"mouseup", "1"}); }
    void pressKey(KeyCombination combination) override {
        std::string chord;
        const auto with = [&](std::uint64_t flag, const char* name) {
            if (combination.modifierFlags & flag) chord += name;
        };
        with(modifierFlag::control, "ctrl+");
        with(modifierFlag::option, "alt+");
        with(modifierFlag::shift, "shift+");
        with(modifierFlag::command, "super+");
        runInputTool({"key", chord + (combination.keyCode == 4 ? "h" : "j")});
    }
    void claimForOther(KeyCombination combination) override {
        const auto modifiers = ((combination.modifierFlags & modifierFlag::control) ? XCB_MOD_MASK_CONTROL : 0) |
                               ((combination.modifierFlags & modifierFlag::option) ? XCB_MOD_MASK_1 : 0);
        const xcb_keycode_t key = combination.keyCode == 4 ? 43 : 44; // H and J on every evdev keyboard
        xcb_grab_key(watcher_->connection(), 0, watcher_->root(), static_cast<std::uint16_t>(modifiers), key,
                     XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        watcher_->sync();
    }
    LaunchableApplication install(const std::string& name) override {
        home_.write("data/applications/org.test." + name + ".desktop",
                    "[Desktop Entry]\nType=Application\nName=" + name + "\nStartupWMClass=" + name +
                        "\nExec=xterm -class " + name + " -T " + name + " -e sleep 1000\n");
        const auto known = catalogue_.launchableApplication(BundleID("org.test." + name));
        EXPECT_TRUE(known) << name;
        return known.value_or(LaunchableApplication{});
    }
    void uninstall(const std::string& name) override {
        std::filesystem::remove(home_.path() / ("data/applications/org.test." + name + ".desktop"));
    }

    AccessibilityServicing& accessibility() override { return *desktop_; }
    ApplicationServicing& applications() override { return *desktop_; }
    ScreenServicing& screens() override { return *desktop_; }
    DesktopChangeServicing& changes() override { return *desktop_; }
    PointerMonitorServicing& pointer() override { return *desktop_; }
    DividerHandleServicing& handles() override { return *desktop_; }
    KeyMonitorServicing& keys() override { return *desktop_; }

    void onPollingQueue(const std::function<void()>& job) override {
        std::atomic<bool> isDone = false;
        std::thread polling([&] {
            job();
            isDone = true;
        });
        while (!isDone) runFor(Seconds(0.002));
        polling.join();
    }
    bool runUntil(const std::function<bool()>& condition) override { return letPassUntil(loop_, condition); }
    void runFor(Seconds time) override { letPass(loop_, time); }

  private:
    struct Application {
        std::unique_ptr<TestClient> client;
        pid_t process = 0;
    };
    struct Window {
        TestClient* client = nullptr;
        xcb_window_t window = 0;
    };

    static XdgFolders foldersIn(const std::filesystem::path& home) {
        XdgFolders folders;
        folders.configHome = home / "config";
        folders.stateHome = home / "state";
        folders.dataHome = home / "data";
        return folders;
    }
    std::string pixels(double points) const { return std::to_string(std::lround(points * scale_)); }
    CGRect inPixels(const CGRect& r) const {
        return makeRect(minX(r) * scale_, minY(r) * scale_, r.size.width * scale_, r.size.height * scale_);
    }
    void runInputTool(std::vector<std::string> command) {
        command.insert(command.begin(), "xdotool");
        ASSERT_EQ(server_.start(command).wait(), 0);
    }
    /// Sends the request as bytes, since the library's function cannot add a monitor without outputs.
    void addMonitor(const char* name, bool isPrimary, int x, int width) {
        struct {
            xcb_randr_set_monitor_request_t request{};
            xcb_randr_monitor_info_t monitor{};
        } whole;
        whole.request.window = watcher_->root();
        whole.monitor.name = watcher_->atom(name);
        whole.monitor.primary = isPrimary;
        whole.monitor.x = static_cast<std::int16_t>(x * scale_);
        whole.monitor.width = static_cast<std::uint16_t>(width * scale_);
        whole.monitor.height = static_cast<std::uint16_t>(kScreenHeight * scale_);
        whole.monitor.width_in_millimeters = whole.monitor.height_in_millimeters = 300;
        iovec parts[3] = {{}, {}, {&whole, sizeof whole}};
        const xcb_protocol_request_t protocol = {1, &xcb_randr_id, XCB_RANDR_SET_MONITOR, 1};
        xcb_send_request(watcher_->connection(), 0, parts + 2, &protocol);
        watcher_->sync();
    }

    const Manager manager_;
    const int scale_; // pixels per point
    TemporaryFolder home_;
    PrivateServer server_;
    std::unique_ptr<TestClient> watcher_;
    EventLoop loop_;
    DesktopEntries catalogue_{foldersIn(home_.path()), "C"};
    DesktopLauncher launcher_{catalogue_, loop_};
    std::unique_ptr<X11Desktop> desktop_;
    std::map<std::string, Application> applications_;
    std::map<std::string, Window> windows_;
    pid_t lastProcess_ = 4000; // announced by the newest client; the process need not exist
    double firstDisplayX_ = 0;
    bool isEnding_ = false;
};

Backend onX11(const std::string& name, Manager manager, int scale = 1) {
    return {name, PrivateServer::isInstalled() ? "" : "Xvfb is not installed",
            [=] { return std::make_unique<X11Stage>(manager, scale); }};
}

INSTANTIATE_TEST_SUITE_P(X11, DesktopContract,
                         ::testing::Values(onX11("Openbox", Manager::openbox), onX11("NoManager", Manager::none),
                                           onX11("OpenboxAtScale2", Manager::openbox, 2)),
                         nameOf);

class EventLoopStage final : public QueueStage {
  public:
    MainQueue& queue() override { return loop_; }
    void runFor(Seconds time) override { letPass(loop_, time); }
    std::unique_ptr<WorkQueue> makeWorker() override { return std::make_unique<SerialWorkQueue>("worker"); }
    void beBusyFor(Seconds time) override { std::this_thread::sleep_for(time); }

  private:
    EventLoop loop_;
};

INSTANTIATE_TEST_SUITE_P(Linux, QueueContract,
                         ::testing::Values(QueueBackend{"EventLoop",
                                                        [] { return std::make_unique<EventLoopStage>(); }}),
                         [](const auto& chosen) { return chosen.param.name; });

class FileStage final : public PreferencesStage {
  public:
    FileStage() { reopen(); }
    PreferencesStore& store() override { return *store_; }
    void reopen() override {
        store_.reset();
        store_ = std::make_unique<FilePreferencesStore>(folder_.path() / "preferences.json", loop_, disk_);
    }

  private:
    TemporaryFolder folder_;
    EventLoop loop_;
    SerialWorkQueue disk_{"disk"};
    std::unique_ptr<FilePreferencesStore> store_;
};

INSTANTIATE_TEST_SUITE_P(Linux, PreferencesContract,
                         ::testing::Values(PreferencesBackend{"File", [] { return std::make_unique<FileStage>(); }}),
                         [](const auto& chosen) { return chosen.param.name; });

} // namespace
} // namespace kova::contract
