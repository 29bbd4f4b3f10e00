// Measures one movement of a divider between two halves of six windows on a private X server without a window manager.
// The movement is compared with code that only sends the same six requests. Two times are measured: until the last
// request is sent, and until the server has carried out the requests. The two kinds of movement alternate, and each
// result is a median. The movement of a divider also moves the handle in its gap.
//
//   drag_benchmark [ROUNDS]
#include "app/LayoutDividerWindowController.h"
#include "benchmarks/RealWorkspace.h"

#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

std::chrono::steady_clock::time_point lastSent;

} // namespace

/// The X library calls this function instead of the system's. It notes the time of the last request.
extern "C" ssize_t writev(int descriptor, const iovec* parts, int count) {
    const auto written = syscall(SYS_writev, descriptor, parts, count);
    lastSent = std::chrono::steady_clock::now();
    return written;
}

namespace {

using namespace kova;
using Microseconds = std::chrono::duration<double, std::micro>;

constexpr int kWindows = 6;

struct Cost {
    double sent = 0, done = 0; // microseconds
};

double median(const std::vector<Cost>& costs, double Cost::*part) {
    std::vector<double> values;
    for (const Cost& cost : costs) values.push_back(cost.*part);
    return medianOf(std::move(values));
}

class Bench : private RealWorkspace {
  public:
    Bench() {
        for (int i = 0; i < kWindows; ++i) windows.push_back(client->open({.title = "w"}));
        controller.start(false);
        isReady_ = desk.runUntil([&] { return controller.liveWindows().size() == kWindows; });
        const DisplayID display = displayID(desktop.screens().front());
        (void)controller.perform(action::SelectLayout{display, DisplayLayoutSelection::layout("jarvis.six-grid")});
        controller.perform(action::Arrange{});
        desk.runFor(Seconds(2));
        for (const auto& divider : controller.dividers()) {
            if (divider.divider.splitID == "root") divider_ = divider;
        }
        isReady_ = isReady_ && controller.perform(action::BeginDividerDrag{divider_});
    }
    bool isReady() const { return isReady_; }

    Cost drag(double translationPoints) {
        const Cost cost = timed([&] { controller.perform(action::UpdateDividerDrag{divider_, translationPoints}); });
        desk.runFor(Seconds(0.03));
        return cost;
    }
    std::vector<CGRect> frames() const {
        std::vector<CGRect> all;
        for (const xcb_window_t window : windows) all.push_back(client->outerFrame(window));
        return all;
    }
    Cost onlyRequests(const std::vector<CGRect>& frames) {
        const Cost cost = timed([&] { onlyConfigure(frames); });
        desk.runFor(Seconds(0.03));
        return cost;
    }

  private:
    template <class Work>
    Cost timed(Work work) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const Microseconds sent = lastSent - start;
        client->sync(); // the server serves its clients in turn, so it has carried out the agent's requests, too
        const Microseconds done = std::chrono::steady_clock::now() - start;
        return {sent.count(), done.count()};
    }

    OverlayBoard overlay_;
    LayoutDividerWindowController handles_{controller, desktop, overlay_, desk.loop()};
    DisplayLayoutDivider divider_;
    bool isReady_ = false;
};

} // namespace

int main(int argc, char** argv) {
    const int rounds = std::max(argc > 1 ? std::atoi(argv[1]) : 101, 3);
    Bench bench;
    if (!bench.isReady()) return std::fputs("the divider cannot be dragged\n", stderr), 1;
    std::vector<Cost> drags, floors;
    for (int round = 0; round < rounds; ++round) {
        drags.push_back(bench.drag(60));
        const auto down = bench.frames();
        drags.push_back(bench.drag(-60));
        const auto up = bench.frames();
        for (std::size_t i = 0; i < up.size(); ++i) {
            if (up[i] == down[i]) return std::fputs("a window did not follow\n", stderr), 1;
        }
        floors.push_back(bench.onlyRequests(down));
        floors.push_back(bench.onlyRequests(up));
    }
    for (const auto& [name, part] : {std::pair("sent", &Cost::sent), std::pair("done", &Cost::done)}) {
        const double drag = median(drags, part), floor = median(floors, part);
        std::printf("%s: only the requests %6.1f us, the divider's movement %6.1f us  x %.2f\n", name, floor, drag,
                    drag / floor);
    }
    return 0;
}
