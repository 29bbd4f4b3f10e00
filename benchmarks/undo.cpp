// What a step back costs beside a program that only sends the same requests: 100 windows of a private X server without
// a window manager, from the command until the server has done it. The two take turns; quoted is the median of each.
// How often the agent hands bytes to the system on the way is counted too: one flush is all that it takes.
//
//   undo_benchmark [ROUNDS]
#include "persistence/MemoryPreferencesStore.h"
#include "platform/linux/SerialWorkQueue.h"
#include "tests/desktop/Desk.h"
#include "windowing/AlertServicing.h"
#include "workspace/WorkspaceController.h"

#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

int writes = 0;

} // namespace

/// In place of the system's own, for the X library.
extern "C" ssize_t writev(int descriptor, const iovec* parts, int count) {
    ++writes;
    return syscall(SYS_writev, descriptor, parts, count);
}

namespace {

using namespace kova;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kWindows = 100;
constexpr int kColumns = 10;
constexpr double kOtherInset = 6; // points

class UnlockedSession final : public SessionServicing {
  public:
    bool isLoginSessionScreenLocked() const override { return false; }
};

CGRect place(int window, int shift) {
    return makeRect(10 + 240 * (window % kColumns) + shift, 10 + 130 * (window / kColumns) + shift, 200, 100);
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void waitForServer(xcb_connection_t* connection) {
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

template <class Work>
double timeOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return Milliseconds(std::chrono::steady_clock::now() - start).count();
}

class Bench {
  public:
    Bench() {
        for (int i = 0; i < kWindows; ++i) windows_.push_back(client_->open({.title = "w", .frame = place(i, 0)}));
        controller_.start(false);
        ready_ = desk_.runUntil([&] { return controller_.liveWindows().size() == kWindows; });
    }
    bool isReady() const { return ready_; }

    /// The agent has seen all windows somewhere else than where the step back will put them.
    void prepare() {
        for (int i = 0; i < kWindows; ++i) client_->configure(windows_[index(i)], place(i, 0));
        client_->sync();
        desk_.runFor(Seconds(1.2));
        controller_.setTileInset(kOtherInset); // any step at all; the step back takes it back
        for (int i = 0; i < kWindows; ++i) client_->configure(windows_[index(i)], place(i, 30));
        client_->sync();
        desk_.runFor(Seconds(1.2));
    }
    double stepBack() {
        writes = 0;
        const double time = timeOf([&] {
            controller_.perform(action::Undo{});
            flushes_ = writes;
            waitForServer(client_->connection()); // it serves its clients in turn; then it has done the agent's, too
        });
        desk_.runFor(Seconds(1));
        return time;
    }
    double onlyRequests(int shift) {
        return timeOf([&] {
            for (int i = 0; i < kWindows; ++i) {
                const CGRect frame = place(i, shift);
                const std::uint32_t values[] = {
                    static_cast<std::uint32_t>(minX(frame)), static_cast<std::uint32_t>(minY(frame)),
                    static_cast<std::uint32_t>(frame.size.width), static_cast<std::uint32_t>(frame.size.height)};
                xcb_configure_window(other_->connection(), windows_[index(i)],
                                     XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                                         XCB_CONFIG_WINDOW_HEIGHT,
                                     values);
            }
            xcb_flush(other_->connection());
            waitForServer(client_->connection());
        });
    }
    int flushes() const { return flushes_; }
    bool areBack() const {
        for (int i = 0; i < kWindows; ++i) {
            const CGPoint origin = client_->outerFrame(windows_[index(i)]).origin;
            if (origin == place(i, 0).origin) continue;
            std::fprintf(stderr, "window %d is at %g,%g\n", i, origin.x, origin.y);
            return false;
        }
        return true;
    }
    void rest() { desk_.runFor(Seconds(0.7)); }

  private:
    static std::size_t index(int window) { return static_cast<std::size_t>(window); }

    kova::testing::Desk desk_{kova::testing::Manager::none, "2560x1440"};
    std::unique_ptr<kova::testing::TestClient> client_ = desk_.client("Bench", 4001);
    std::unique_ptr<kova::testing::TestClient> other_ = desk_.client("Other", 4002);
    std::vector<xcb_window_t> windows_;
    X11Desktop& desktop_ = desk_.openDesktop();
    UnlockedSession session_;
    UnansweredAlerts alerts_;
    MemoryPreferencesStore preferences_;
    SerialWorkQueue polling_{"polling"};
    WorkspaceController controller_{WorkspaceServices{.accessibility = desktop_,
                                                      .applications = desktop_,
                                                      .screens = desktop_,
                                                      .session = session_,
                                                      .changes = desktop_,
                                                      .preferences = preferences_,
                                                      .queue = desk_.loop(),
                                                      .pollingQueue = polling_,
                                                      .alerts = alerts_}};
    int flushes_ = 0;
    bool ready_ = false;
};

} // namespace

int main(int argc, char** argv) {
    const int rounds = std::max(argc > 1 ? std::atoi(argv[1]) : 15, 3);
    Bench bench;
    if (!bench.isReady()) return std::fputs("the windows were not found\n", stderr), 1;
    std::vector<double> back, floor;
    for (int round = 0; round < rounds; ++round) {
        floor.push_back(bench.onlyRequests(round % 2 == 0 ? 30 : 0));
        bench.rest();
        bench.prepare();
        back.push_back(bench.stepBack());
        if (!bench.areBack()) return std::fputs("the windows did not come back\n", stderr), 1;
    }
    std::printf("only the requests   %7.3f ms\nkova undo           %7.3f ms  x %.2f, %d flush(es)\n", median(floor),
                median(back), median(back) / median(floor), bench.flushes());
    return 0;
}
