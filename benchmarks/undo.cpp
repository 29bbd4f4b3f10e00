// Measures an undo that moves 100 windows on a private X server without a window manager. The time ends when the server
// has carried out the requests. For comparison, other code only sends the same requests. Undos and comparisons
// alternate, and each result is a median. The program also prints how often an undo flushed its requests; once is
// enough.
//
//   undo_benchmark [ROUNDS]
#include "benchmarks/RealWorkspace.h"

#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

int flushes = 0;

} // namespace

/// The X library calls this function instead of the system's, once for each flush.
extern "C" ssize_t writev(int descriptor, const iovec* parts, int count) {
    ++flushes;
    return syscall(SYS_writev, descriptor, parts, count);
}

namespace {

using namespace kova;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kWindows = 100;
constexpr int kColumns = 10;
constexpr double kOtherInset = 6; // points

CGRect frameOf(int window, int shift) {
    return makeRect(10 + 240 * (window % kColumns) + shift, 10 + 130 * (window / kColumns) + shift, 200, 100);
}

/// Returns after the server has carried out the requests that all clients sent before.
void waitForServer(xcb_connection_t* connection) {
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

template <class Work>
double timeOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return Milliseconds(std::chrono::steady_clock::now() - start).count();
}

class Bench : private RealWorkspace {
  public:
    Bench() {
        for (int i = 0; i < kWindows; ++i) windows.push_back(windowOwner->open({.title = "w", .frame = frameOf(i, 0)}));
        controller.start(false);
        isReady_ = desktopUnderTest.runUntil([&] { return controller.liveWindows().size() == kWindows; });
    }
    bool isReady() const { return isReady_; }

    /// Performs an action and then moves all windows, so that the undo has to move them back.
    void prepare() {
        for (int i = 0; i < kWindows; ++i) windowOwner->configure(windows[index(i)], frameOf(i, 0));
        windowOwner->sync();
        desktopUnderTest.runFor(Seconds(1.2));
        controller.perform(action::SetTileInset{kOtherInset}); // an arbitrary action for the undo to revert
        for (int i = 0; i < kWindows; ++i) windowOwner->configure(windows[index(i)], frameOf(i, 30));
        windowOwner->sync();
        desktopUnderTest.runFor(Seconds(1.2));
    }
    double undo() {
        flushes = 0;
        const double time = timeOf([&] {
            controller.perform(action::Undo{});
            flushesOfUndo_ = flushes;
            waitForServer(windowOwner->connection());
        });
        desktopUnderTest.runFor(Seconds(1));
        return time;
    }
    double onlyRequests(int shift) {
        std::vector<CGRect> frames;
        for (int i = 0; i < kWindows; ++i) frames.push_back(frameOf(i, shift));
        return timeOf([&] {
            sendOnlyRequests(frames);
            waitForServer(windowOwner->connection());
        });
    }
    int flushesOfUndo() const { return flushesOfUndo_; }
    bool areWindowsBack() const {
        for (int i = 0; i < kWindows; ++i) {
            const CGPoint origin = windowOwner->outerFrame(windows[index(i)]).origin;
            if (origin == frameOf(i, 0).origin) continue;
            std::fprintf(stderr, "window %d is at %g,%g\n", i, origin.x, origin.y);
            return false;
        }
        return true;
    }
    /// Gives the workspace time to handle the changed frames of the windows.
    void settle() { desktopUnderTest.runFor(Seconds(0.7)); }

  private:
    static std::size_t index(int window) { return static_cast<std::size_t>(window); }

    int flushesOfUndo_ = 0;
    bool isReady_ = false;
};

} // namespace

int main(int argc, char** argv) {
    const int rounds = std::max(argc > 1 ? std::atoi(argv[1]) : 15, 3);
    Bench bench;
    if (!bench.isReady()) return std::fputs("the windows were not found\n", stderr), 1;
    std::vector<double> undos, comparisons;
    for (int round = 0; round < rounds; ++round) {
        comparisons.push_back(bench.onlyRequests(round % 2 == 0 ? 30 : 0));
        bench.settle();
        bench.prepare();
        undos.push_back(bench.undo());
        if (!bench.areWindowsBack()) return std::fputs("the undo did not move the windows back\n", stderr), 1;
    }
    std::printf("only the requests   %7.3f ms\nkova undo           %7.3f ms  x %.2f, %d flush(es)\n",
                medianOf(comparisons), medianOf(undos), medianOf(undos) / medianOf(comparisons), bench.flushesOfUndo());
    return 0;
}
