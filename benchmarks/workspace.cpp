// Measures the time of the workspace's own code: the plan of an arrangement of many windows, a poll without changes,
// and a change of layout until its last request is sent. The desktop is simulated, so the times contain no work of an X
// server.
#include "persistence/MemoryPreferencesStore.h"
#include "tests/harness/SimulatedServices.h"

#include <benchmark/benchmark.h>

#include <string>

namespace kova {

namespace {

struct Session {
    explicit Session(std::int64_t windows) {
        desktop.setAnnouncesAllChanges(false);
        desktop.addDisplay({.name = "A", .size = {2560, 1440}});
        for (std::int64_t i = 0; i < windows; ++i) {
            const std::string name = "Application " + std::to_string(i);
            desktop.launch(name);
            desktop.open(name);
        }
        controller.start(false);
        select("jarvis.six-grid");
        desktop.queue().advance(Seconds(1));
        controller.perform(action::Arrange{});
        desktop.queue().advance(Seconds(3));
    }
    void select(const std::string& layoutID) {
        (void)controller.perform(
            action::SelectLayout{displayID(desktop.screens().front()), DisplayLayoutSelection::layout(layoutID)});
    }

    SimulatedDesktop desktop;
    MemoryPreferencesStore preferences;
    WorkspaceController controller{simulatedServices(desktop, preferences)};
};

void PlanAnArrangement(benchmark::State& state) {
    Session session(state.range(0));
    for (auto _ : state) benchmark::DoNotOptimize(session.controller.planArrangement());
    state.SetComplexityN(state.range(0));
}
BENCHMARK(PlanAnArrangement)->Arg(6)->Arg(20)->Arg(100)->Arg(200)->Complexity();

void PollThatFindsNothingNew(benchmark::State& state) {
    Session session(state.range(0));
    for (auto _ : state) {
        session.controller.refresh();
        session.desktop.queue().runDue();
    }
}
BENCHMARK(PollThatFindsNothingNew)->Arg(6)->Arg(20)->Arg(100);

void ChangeOfLayout(benchmark::State& state) {
    Session session(state.range(0));
    bool isPortrait = false;
    for (auto _ : state) {
        isPortrait = !isPortrait;
        session.select(isPortrait ? "jarvis.six-grid-portrait" : "jarvis.six-grid");
        state.PauseTiming();
        session.desktop.queue().advance(Seconds(2));
        state.ResumeTiming();
    }
}
BENCHMARK(ChangeOfLayout)->Arg(6)->Arg(100);

} // namespace

} // namespace kova

BENCHMARK_MAIN();
