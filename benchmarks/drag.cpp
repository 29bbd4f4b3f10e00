// Measures one step of a divider drag on a private X server without a window manager. The divider separates two rows of
// three windows each, so a step moves or resizes six windows. For comparison, other code only sends the six requests of
// a step. Two times are measured: until the last request is sent, and until the server has carried out the requests.
// Steps and comparisons alternate, and each result is a median. A step also moves the handle of the divider, which the
// comparison does not.
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

std::chrono::steady_clock::time_point timeOfLastFlush;

} // namespace

/// The X library calls this function instead of the system's, once for each flush. It records the time.
extern "C" ssize_t writev(int descriptor, const iovec* parts, int count) {
    const auto written = syscall(SYS_writev, descriptor, parts, count);
    timeOfLastFlush = std::chrono::steady_clock::now();
    return written;
}

namespace {

using namespace kova;
using Microseconds = std::chrono::duration<double, std::micro>;

constexpr int kWindows = 6;

/// Times from the start of a step or a comparison, in microseconds.
struct Cost {
    double sent = 0; // when the last request had been sent
    double done = 0; // when the server had carried out all requests
};

double median(const std::vector<Cost>& costs, double Cost::*part) {
    std::vector<double> values;
    for (const Cost& cost : costs) values.push_back(cost.*part);
    return medianOf(std::move(values));
}

class Bench : private RealWorkspace {
  public:
    Bench() {
        for (int i = 0; i < kWindows; ++i) windows.push_back(windowOwner->open({.title = "w"}));
        controller.start(false);
        isReady_ = desktopUnderTest.runUntil([&] { return controller.liveWindows().size() == kWindows; });
        const DisplayID display = displayID(desktop.screens().front());
        (void)controller.perform(action::SelectLayout{display, DisplayLayoutSelection::layout("jarvis.six-grid")});
        controller.perform(action::Arrange{});
        desktopUnderTest.runFor(Seconds(2));
        for (const auto& divider : controller.dividers()) {
            if (divider.divider.splitID == "root") divider_ = divider;
        }
        isReady_ = isReady_ && controller.perform(action::BeginDividerDrag{divider_});
    }
    bool isReady() const { return isReady_; }

    Cost step(double translationPoints) {
        const Cost cost = timed([&] { controller.perform(action::UpdateDividerDrag{divider_, translationPoints}); });
        desktopUnderTest.runFor(Seconds(0.03));
        return cost;
    }
    std::vector<CGRect> frames() const {
        std::vector<CGRect> all;
        for (const xcb_window_t window : windows) all.push_back(windowOwner->outerFrame(window));
        return all;
    }
    Cost onlyRequests(const std::vector<CGRect>& frames) {
        const Cost cost = timed([&] { sendOnlyRequests(frames); });
        desktopUnderTest.runFor(Seconds(0.03));
        return cost;
    }

  private:
    template <class Work>
    Cost timed(Work work) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const Microseconds sent = timeOfLastFlush - start;
        windowOwner->sync(); // returns after the server has carried out the requests that other clients sent before
        const Microseconds done = std::chrono::steady_clock::now() - start;
        return {sent.count(), done.count()};
    }

    OverlayBoard overlay_;
    LayoutDividerWindowController handles_{controller, desktop, overlay_, desktopUnderTest.loop()};
    DisplayLayoutDivider divider_;
    bool isReady_ = false;
};

} // namespace

int main(int argc, char** argv) {
    const int rounds = std::max(argc > 1 ? std::atoi(argv[1]) : 101, 3);
    Bench bench;
    if (!bench.isReady()) return std::fputs("the divider cannot be dragged\n", stderr), 1;
    std::vector<Cost> steps, comparisons;
    for (int round = 0; round < rounds; ++round) {
        steps.push_back(bench.step(60));
        const auto down = bench.frames();
        steps.push_back(bench.step(-60));
        const auto up = bench.frames();
        for (std::size_t i = 0; i < up.size(); ++i) {
            if (up[i] == down[i]) return std::fputs("a window did not move with the divider\n", stderr), 1;
        }
        comparisons.push_back(bench.onlyRequests(down));
        comparisons.push_back(bench.onlyRequests(up));
    }
    for (const auto& [name, part] : {std::pair("sent", &Cost::sent), std::pair("done", &Cost::done)}) {
        const double step = median(steps, part), comparison = median(comparisons, part);
        std::printf("%s: only the requests %6.1f us, the divider's movement %6.1f us  x %.2f\n", name, comparison, step,
                    step / comparison);
    }
    return 0;
}
