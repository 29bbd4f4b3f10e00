// Measures the cost of large scenes: importing a large file, capturing many windows, and placing many awaited windows
// at once. Each benchmark runs with one number of scenes or windows and with twice that number; the second run should
// take about twice as long.
#include "persistence/MemoryPreferencesStore.h"
#include "persistence/WorkspaceDocumentCoding.h"
#include "tests/harness/SimulatedServices.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

namespace kova {

namespace {

constexpr std::int64_t kApplications = 50;
constexpr Seconds kPollDuration{0.01};
constexpr std::string_view kSlots[] = {"focus-main",  "secondary-1", "secondary-2",
                                       "secondary-3", "secondary-4", "secondary-5"};

struct Session {
    Session() {
        desktop.setAnnouncesAllChanges(false);
        desktop.addDisplay({.name = "A", .size = {2560, 1440}});
        (void)controller.perform(action::SelectLayout{displayID(desktop.screens().front()),
                                                      DisplayLayoutSelection::layout("jarvis.six-grid")});
        controller.start(false);
        desktop.queue().advance(Seconds(1));
    }
    void openWindows(std::int64_t count) {
        for (std::int64_t i = 0; i < count; ++i) {
            const std::string name = "Application " + std::to_string(i % kApplications);
            if (i < kApplications) desktop.launch(name);
            desktop.setTitle(desktop.open(name), "Document " + std::to_string(i));
        }
    }
    /// Runs the part of a poll that the agent runs on the polling queue's thread.
    void readDesktop() {
        desktop.pollingQueue().setJobDuration(kPollDuration);
        controller.refresh();
        desktop.queue().runDue();
    }
    /// Runs the part of a poll that the agent runs on the main queue: applies the result of `readDesktop`.
    void applyPoll() { desktop.queue().advance(kPollDuration); }

    SimulatedDesktop desktop;
    MemoryPreferencesStore preferences;
    WorkspaceController controller{simulatedServices(desktop, preferences)};
};

/// Returns a scene with a placement for each of the first windows that `openWindows` opens.
WorkspaceScene sceneOf(std::int64_t placements) {
    WorkspaceScene scene;
    scene.name = "Scene";
    scene.themeID = "kova.native";
    scene.accentColorID = "system-blue";
    scene.displays.push_back(
        {.ordinal = 0, .name = "A", .aspectRatio = 1.8, .layoutID = "jarvis.six-grid", .layoutWeights = {}});
    for (std::int64_t i = 0; i < placements; ++i) {
        const std::string number = std::to_string(i % kApplications);
        WorkspaceScenePlacement placement;
        placement.window = {BundleID("sim.application " + number), "Application " + number,
                            "Document " + std::to_string(i)};
        placement.slotID = SlotID(kSlots[static_cast<std::size_t>(i) % std::size(kSlots)]);
        placement.stackIndex = i / static_cast<std::int64_t>(std::size(kSlots));
        placement.claimedSlotIDs = {placement.slotID};
        placement.isActive = placement.stackIndex == 0;
        scene.placements.push_back(std::move(placement));
    }
    return scene;
}

void ImportScenesOf50Placements(benchmark::State& state) {
    WorkspaceProductDocument document;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        document.scenes.push_back(sceneOf(50));
    }
    const std::string file = std::get<std::string>(encodeExportedDocument(document));
    for (auto _ : state) {
        state.PauseTiming();
        auto session = std::make_unique<Session>();
        state.ResumeTiming();
        benchmark::DoNotOptimize(session->controller.perform(action::ImportDocument{file}));
        state.PauseTiming();
        if (session->controller.state().scenes->size() != document.scenes.size()) state.SkipWithError("not imported");
        session.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.size()));
}
BENCHMARK(ImportScenesOf50Placements)->Arg(1000)->Arg(2000)->Unit(benchmark::kMillisecond);

void CaptureWindows(benchmark::State& state) {
    Session session;
    WorkspaceProductDocument document;
    document.scenes.push_back(sceneOf(state.range(0)));
    (void)session.controller.perform(action::ImportDocument{std::get<std::string>(encodeExportedDocument(document))});
    session.openWindows(state.range(0));
    session.readDesktop();
    session.applyPoll();
    (void)session.controller.perform(action::ActivateScene{document.scenes.front().id});
    session.desktop.queue().advance(Seconds(1));
    for (auto _ : state) {
        (void)session.controller.perform(action::CaptureScene{"Scene"});
        state.PauseTiming();
        const auto& scene = session.controller.state().scenes->back();
        if (static_cast<std::int64_t>(scene.placements.size()) != state.range(0)) state.SkipWithError("not captured");
        (void)session.controller.perform(action::DeleteScene{Uuid(scene.id)});
        session.desktop.queue().advance(Seconds(0));
        state.ResumeTiming();
    }
}
BENCHMARK(CaptureWindows)->Arg(200)->Arg(400)->Unit(benchmark::kMicrosecond);

void PlaceAllAwaitedWindows(benchmark::State& state) {
    const std::int64_t awaited = state.range(0), windows = state.range(1);
    WorkspaceProductDocument document;
    document.scenes.push_back(sceneOf(awaited));
    const std::string file = std::get<std::string>(encodeExportedDocument(document));
    for (auto _ : state) {
        state.PauseTiming();
        auto session = std::make_unique<Session>();
        (void)session->controller.perform(action::ImportDocument{file});
        (void)session->controller.perform(action::ActivateScene{document.scenes.front().id});
        if (static_cast<std::int64_t>(session->controller.pendingSceneWindowPlacements().size()) != awaited) {
            state.SkipWithError("not awaited");
        }
        session->openWindows(windows);
        session->readDesktop();
        state.ResumeTiming();
        session->applyPoll();
        state.PauseTiming();
        if (!session->controller.pendingSceneWindowPlacements().empty()) state.SkipWithError("not placed");
        session.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(PlaceAllAwaitedWindows)->Args({200, 500})->Args({400, 1000})->Unit(benchmark::kMillisecond);

} // namespace

} // namespace kova

BENCHMARK_MAIN();
