// Measures an undo of 100 windows on a private X server without a window manager, from the command until the server has
// carried out the requests. The undo is compared with code that only sends the same requests. The two alternate, and
// each result is a median. The number of flushes is printed as well; one is enough.
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

int writes = 0;

} // namespace

/// The X library calls this function instead of the system's. It counts the flushes.
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

CGRect place(int window, int shift) {
    return makeRect(10 + 240 * (window % kColumns) + shift, 10 + 130 * (window / kColumns) + shift, 200, 100);
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

class Bench : private RealWorkspace {
  public:
    Bench() {
        for (int i = 0; i < kWindows; ++i) windows.push_back(client->open({.title = "w", .frame = place(i, 0)}));
        controller.start(false);
        isReady_ = desk.runUntil([&] { return controller.liveWindows().size() == kWindows; });
    }
    bool isReady() const { return isReady_; }

    /// Performs an action and then moves all windows, so that the undo has to move them back.
    void prepare() {
        for (int i = 0; i < kWindows; ++i) client->configure(windows[index(i)], place(i, 0));
        client->sync();
        desk.runFor(Seconds(1.2));
        controller.perform(action::SetTileInset{kOtherInset}); // an arbitrary action for the undo to revert
        for (int i = 0; i < kWindows; ++i) client->configure(windows[index(i)], place(i, 30));
        client->sync();
        desk.runFor(Seconds(1.2));
    }
    double undo() {
        writes = 0;
        const double time = timeOf([&] {
            controller.perform(action::Undo{});
            flushes_ = writes;
            waitForServer(client->connection()); // the server serves clients in turn, so the agent's requests are done
        });
        desk.runFor(Seconds(1));
        return time;
    }
    double onlyRequests(int shift) {
        std::vector<CGRect> frames;
        for (int i = 0; i < kWindows; ++i) frames.push_back(place(i, shift));
        return timeOf([&] {
            onlyConfigure(frames);
            waitForServer(client->connection());
        });
    }
    int flushes() const { return flushes_; }
    bool areWindowsBack() const {
        for (int i = 0; i < kWindows; ++i) {
            const CGPoint origin = client->outerFrame(windows[index(i)]).origin;
            if (origin == place(i, 0).origin) continue;
            std::fprintf(stderr, "window %d is at %g,%g\n", i, origin.x, origin.y);
            return false;
        }
        return true;
    }
    void settle() { desk.runFor(Seconds(0.7)); }

  private:
    static std::size_t index(int window) { return static_cast<std::size_t>(window); }

    int flushes_ = 0;
    bool isReady_ = false;
};

} // namespace

int main(int argc, char** argv) {
    const int rounds = std::max(argc > 1 ? std::atoi(argv[1]) : 15, 3);
    Bench bench;
    if (!bench.isReady()) return std::fputs("the windows were not found\n", stderr), 1;
    std::vector<double> back, floor;
    for (int round = 0; round < rounds; ++round) {
        floor.push_back(bench.onlyRequests(round % 2 == 0 ? 30 : 0));
        bench.settle();
        bench.prepare();
        back.push_back(bench.undo());
        if (!bench.areWindowsBack()) return std::fputs("the windows did not come back\n", stderr), 1;
    }
    std::printf("only the requests   %7.3f ms\nkova undo           %7.3f ms  x %.2f, %d flush(es)\n", medianOf(floor),
                medianOf(back), medianOf(back) / medianOf(floor), bench.flushes());
    return 0;
}
