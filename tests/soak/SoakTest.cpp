// Runs as many random events as a long session has in a short time, with real windows and the real agent.
//
// KOVA_SOAK_SECONDS   the duration; the growth of memory is checked if the duration is at least a minute
// KOVA_SOAK_SEED      the seed of the random numbers; the events also depend on the speed of the machine
#include "tests/agent/Session.h"
#include "tests/desktop/TestClient.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <memory>
#include <random>
#include <thread>

namespace kova::testing {
namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

constexpr std::size_t kMostWindows = 14;
constexpr std::size_t kMostTerminals = 5;
constexpr std::size_t kStepsReported = 40;
constexpr std::chrono::seconds kLongEnoughForMemory{60};

std::chrono::seconds duration() {
    const char* value = std::getenv("KOVA_SOAK_SECONDS");
    return std::chrono::seconds(value ? std::atoi(value) : 10);
}

std::uint32_t seed() {
    const char* value = std::getenv("KOVA_SOAK_SEED");
    return value ? static_cast<std::uint32_t>(std::atol(value)) : std::random_device{}();
}

class Soak : public ::testing::TestWithParam<Manager> {
  protected:
    struct Window {
        std::size_t application;
        xcb_window_t number;
        std::string title;
    };
    struct Terminal {
        std::string title;
        ChildProcess process;
    };
    struct Step {
        int weight;
        std::string name;
        std::function<void()> run;
    };

    void SetUp() override {
        if (!PrivateServer::isInstalled()) GTEST_SKIP() << "Xvfb is not installed";
        for (int i = 0; i < 4; ++i) {
            applications_.push_back(std::make_unique<TestClient>(server_.displayName(), "Drawing" + std::to_string(i),
                                                                 static_cast<std::uint32_t>(getpid())));
        }
        if (GetParam() == Manager::openbox) server_.startManager();
        // The address sanitizer must not retain freed memory, since the test would count it.
        session_.setVariable("ASAN_OPTIONS", "quarantine_size_mb=1:detect_leaks=1:malloc_context_size=8");
        agent_ = session_.startAgent();
        ASSERT_TRUE(session_.agentResponds());
    }

    std::size_t below(std::size_t count) { return random_() % count; }
    double between(double least, double most) {
        return std::floor(std::uniform_real_distribution<double>(least, most)(random_));
    }
    std::string anyOf(std::vector<std::string> choices) { return choices[below(choices.size())]; }
    /// A random frame, mostly on the screen.
    CGRect anyFrame() { return makeRect(between(0, 1500), between(0, 800), between(120, 1200), between(80, 900)); }

    // What programs do
    void openWindow() {
        if (windows_.size() >= kMostWindows) return closeWindow();
        const std::size_t application = below(applications_.size());
        TestWindow traits{
            .title = "window " + std::to_string(++opened_), .frame = anyFrame(), .hasDeleteProtocol = true};
        if (below(5) == 0) traits.minimumSize = CGSize{between(100, 1500), between(100, 800)};
        if (below(5) == 0) traits.sizeIncrements = CGSize{7, 14};
        if (below(8) == 0) traits.type = anyOf({"DIALOG", "UTILITY", "SPLASH", "TOOLBAR"});
        windows_.push_back({application, applications_[application]->open(traits), traits.title});
    }
    void closeWindow() {
        withAnyWindow([this](Window& window, TestClient& client) {
            client.destroy(window.number);
            windows_.erase(windows_.begin() + (&window - windows_.data()));
        });
    }
    void withAnyWindow(const std::function<void(Window&, TestClient&)>& act) {
        if (windows_.empty()) return;
        Window& window = windows_[below(windows_.size())];
        act(window, *applications_[window.application]);
    }
    /// Withdraws the window, waits until the window manager has released it, and maps it again, as programs do. The
    /// requests are repeated: a window manager that has just minimized the window may mistake its withdrawal for the
    /// end of the minimizing. The window must be managed first, since Openbox handles requests for a new window in the
    /// wrong order.
    void reopen(const Window& window) {
        TestClient& client = *applications_[window.application];
        const auto isWithdrawn = [&] {
            const auto state = client.numbers(window.number, "WM_STATE");
            return state.empty() || state.front() == 0;
        };
        const auto isManagedNow = [&] { return GetParam() == Manager::none || isManaged(window); };
        EXPECT_TRUE(eventually(isManagedNow)) << window.title;
        for (int attempt = 0; attempt < 2; ++attempt) {
            client.withdraw(window.number);
            if (eventually(isWithdrawn, 1s)) break;
        }
        for (int attempt = 0; attempt < 3; ++attempt) {
            client.map(window.number);
            if (eventually(isManagedNow, 1s)) break;
        }
    }
    void startTerminal() {
        if (terminals_.size() >= kMostTerminals) return killTerminal();
        const std::string title = "terminal " + std::to_string(++opened_);
        terminals_.push_back({title, server_.start({"xterm", "-T", title, "-e", "sleep", "1000"})});
    }
    void killTerminal() {
        if (!terminals_.empty())
            terminals_.erase(terminals_.begin() + static_cast<std::ptrdiff_t>(below(terminals_.size())));
    }

    // What the machine does
    void changeDisplays() {
        // Only few sizes are used, since the agent keeps a record of each display.
        const auto width = anyOf({"800", "960", "1200"});
        switch (below(3)) {
        case 0: // one display becomes two
            session_.run({"xrandr", "--setmonitor", "left", width + "/254x1080/285+0+0", "screen"});
            session_.run({"xrandr", "--setmonitor", "right", "700/190x1080/285+" + width + "+0", "none"});
            break;
        case 1:
            session_.run({"xrandr", "--delmonitor", "right"});
            break;
        default:
            restoreDisplays();
        }
    }
    void restoreDisplays() {
        session_.run({"xrandr", "--delmonitor", "right"});
        session_.run({"xrandr", "--delmonitor", "left"});
    }
    bool isManaged(const Window& window) const {
        return !applications_[window.application]->numbers(window.number, "WM_STATE").empty();
    }
    /// Kills the window manager and starts a new one. First waits until all windows are managed: a request to map a
    /// window is lost if the old window manager has not handled it, and the new one manages only mapped windows.
    void replaceManager() {
        if (GetParam() == Manager::none) return;
        const auto areAllManaged = [this] {
            return std::ranges::all_of(windows_, [this](const Window& window) { return isManaged(window); }) &&
                   unknownTerminals().empty();
        };
        EXPECT_TRUE(eventually(areAllManaged)) << unknownTerminals();
        server_.endManager();
        server_.startManager();
    }

    // What a user does
    void runKova(const std::vector<std::string>& words) {
        const auto finished = session_.kova(words);
        if (finished.exitCode == 0 || finished.exitCode == 1) return; // done, or refused with a reason
        std::string command;
        for (const auto& word : words) command += " " + word;
        ADD_FAILURE() << "kova" << command << " ended with " << finished.exitCode << ":\n" << finished.output;
    }
    std::string anyTitle() { return windows_.empty() ? "nothing" : windows_[below(windows_.size())].title; }
    void dragDivider() {
        const auto listed = session_.kova({"divider", "list", "--json"});
        if (listed.exitCode != 0) return;
        const auto dividers = nlohmann::json::parse(listed.output).at("dividers");
        if (dividers.empty()) return;
        const auto& divider = dividers[below(dividers.size())];
        runKova({"divider", "drag", divider.at("split"), std::to_string(divider.at("boundary").get<int>()),
                 std::to_string(static_cast<int>(between(-400, 400))), "--display", divider.at("display")});
    }
    void dragWithTheMouse() {
        const auto place = [this] {
            return std::pair{std::to_string(static_cast<int>(between(0, 1919))),
                             std::to_string(static_cast<int>(between(0, 1079)))};
        };
        const auto [x, y] = place();
        const auto [toX, toY] = place();
        session_.run({"xdotool", "mousemove", x, y, "mousedown", "1", "mousemove", toX, toY, "mouseup", "1"});
    }

    /// Presses shortcuts, except those with arrow keys and Tab, which a window manager may use itself.
    void pressShortcuts() {
        std::vector<std::string> command{"xdotool", "key"};
        for (std::size_t left = 1 + below(3); left > 0; --left) {
            command.push_back("ctrl+alt+" + anyOf({"a", "z", "Return", "h", "j", "k", "l", "shift+h", "shift+j",
                                                   "shift+k", "shift+l"}));
        }
        EXPECT_EQ(session_.run(command).exitCode, 0);
    }

    std::vector<Step> steps() {
        const auto direction = [this] { return anyOf({"left", "right", "up", "down"}); };
        return {
            {8, "open window", [this] { openWindow(); }},
            {5, "close window", [this] { closeWindow(); }},
            {6, "retitle",
             [this] {
                 withAnyWindow([this](Window& window, TestClient& client) {
                     window.title = "window " + std::to_string(++opened_) + anyOf({"", " \xc3\xa9", " \"", "\n"});
                     client.setTitle(window.number, window.title);
                 });
             }},
            {8, "window changes its frame",
             [this] {
                 withAnyWindow(
                     [this](Window& window, TestClient& client) { client.configure(window.number, anyFrame()); });
             }},
            {2, "withdraw and map a window",
             [this] { withAnyWindow([this](Window& window, TestClient&) { reopen(window); }); }},
            {2, "maximize or full screen",
             [this] {
                 withAnyWindow([this](Window& window, TestClient& client) {
                     client.requestState(window.number,
                                         anyOf({"_NET_WM_STATE_FULLSCREEN", "_NET_WM_STATE_MAXIMIZED_VERT"}), "",
                                         below(2) ? TestClient::StateRequest::add : TestClient::StateRequest::remove);
                 });
             }},
            {3, "start terminal", [this] { startTerminal(); }},
            {2, "kill terminal", [this] { killTerminal(); }},
            {2, "change displays", [this] { changeDisplays(); }},
            {1, "replace window manager", [this] { replaceManager(); }},
            {6, "mouse", [this] { dragWithTheMouse(); }},
            {6, "keyboard", [this] { pressShortcuts(); }},
            {8, "arrange", [this] { runKova({"arrange"}); }},
            {4, "layout",
             [this] {
                 runKova({"layout", anyOf({"next", "previous", "reset-sizes"})});
             }},
            {2, "inset",
             [this] {
                 runKova({"layout", "inset", std::to_string(below(30))});
             }},
            {8, "focus",
             [this, direction] {
                 runKova({"focus", direction()});
             }},
            {8, "move",
             [this, direction] {
                 runKova({"move", direction()});
             }},
            {5, "stack", [this] { runKova({"stack"}); }},
            {4, "zoom", [this] { runKova({"zoom"}); }},
            {6, "undo", [this] { runKova({"undo"}); }},
            {4, "drag divider", [this] { dragDivider(); }},
            {2, "capture",
             [this] {
                 runKova({"scene", "capture", anyOf({"Work", "Home", "Play"})});
             }},
            {3, "open scene",
             [this] {
                 runKova({"scene", "open", anyOf({"Work", "Home", "Play"})});
             }},
            {1, "delete scene",
             [this] {
                 runKova({"scene", "delete", anyOf({"Work", "Home", "Play"})});
             }},
            {1, "rules",
             [this] {
                 runKova({"rules", anyOf({"on", "off"})});
             }},
            {1, "rule",
             [this] {
                 runKova({"rule", "add", "--app", "Drawing1", anyOf({"float", "ignore"})});
             }},
            {1, "forget rule",
             [this] {
                 runKova({"rule", "delete", "1"});
             }},
            {3, "query",
             [this] {
                 runKova({"query", "state"});
             }},
            {4, "open URL",
             [this] {
                 runKova({"open", anyOf({"kova://action/arrange", "kova:action/stack", "KOVA://scene/work",
                                         "kova://action/move/up", "kova://action/focus/nowhere", "kova://%"})});
             }},
            {2, "explain",
             [this] {
                 runKova({"explain", anyTitle()});
             }},
        };
    }

    // Checks
    /// The tiles of one span are reported with the same frame. Other tiles must not overlap.
    void expectNoOverlaps() {
        const auto tiles = session_.query("tiles");
        EXPECT_FALSE(tiles.empty());
        const auto frameOf = [](const nlohmann::json& tile) {
            const auto& frame = tile.at("frame");
            return makeRect(frame.at("x"), frame.at("y"), frame.at("width"), frame.at("height"));
        };
        for (auto tile = tiles.begin(); tile != tiles.end(); ++tile) {
            for (auto other = tiles.begin(); other != tile; ++other) {
                const bool isShared = !(*tile)["window"].is_null() && (*tile)["window"] == (*other)["window"];
                if (isShared || (*tile)["display"] != (*other)["display"]) continue;
                EXPECT_EQ(intersectionArea(frameOf(*tile), frameOf(*other)), 0) << tiles.dump();
            }
        }
    }
    void expectNoWindowWasClosed() {
        for (const auto& window : windows_) {
            EXPECT_EQ(applications_[window.application]->closeRequestCount(window.number), 0) << window.title;
        }
    }
    /// The windows that are neither visible on the screen nor minimized by a window manager.
    std::string lostWindows() {
        std::string lost;
        for (const auto& window : windows_) {
            const auto& client = *applications_[window.application];
            const double seen = intersectionArea(client.area(window.number), makeRect(0, 0, 1920, 1080));
            const bool isSeen = client.isViewable(window.number) && seen >= 30 * 30;
            const auto state = client.numbers(window.number, "WM_STATE");
            const bool isIconic = GetParam() == Manager::openbox && !state.empty() && state.front() == 3;
            if (isSeen || isIconic) continue;
            const CGRect area = client.area(window.number);
            lost += window.title + (client.isViewable(window.number) ? " is shown at " : " is not shown, at ") +
                    std::to_string(minX(area)) + "," + std::to_string(minY(area)) + ", state " +
                    (state.empty() ? "none" : std::to_string(state.front())) + "\n";
        }
        return lost;
    }
    /// Whether the terminal has become so small that KOVA does not manage it.
    bool isSmall(const Terminal& terminal) const {
        const auto properties = session_.run({"xwininfo", "-name", terminal.title}).output;
        const auto isBelow = [&](const std::string& label, int least) {
            const auto at = properties.find(label);
            return at != std::string::npos && std::atoi(properties.c_str() + at + label.size()) < least;
        };
        return isBelow("Width:", 120) || isBelow("Height:", 80);
    }
    std::string unknownTerminals() {
        const auto known = session_.query("windows");
        std::string unknown;
        for (const auto& terminal : terminals_) {
            const bool isKnown = std::any_of(known.begin(), known.end(),
                                             [&](const auto& window) { return window.at("title") == terminal.title; });
            if (!isKnown && !isSmall(terminal)) unknown += terminal.title + "\n";
        }
        return unknown;
    }
    /// The private memory of the agent in KiB.
    long memory() const {
        std::ifstream rollup("/proc/" + std::to_string(agent_) + "/smaps_rollup");
        for (std::string line; std::getline(rollup, line);) {
            if (line.starts_with("Private_Dirty:"))
                return std::atol(line.c_str() + std::string("Private_Dirty:").size());
        }
        ADD_FAILURE() << "the kernel does not say how much memory the agent has";
        return 0;
    }
    void expectPlateau(const std::vector<long>& samples) {
        ASSERT_GE(samples.size(), 3u);
        // The first third is not compared: the undo history, the scenes and the learning still grow.
        const auto third = static_cast<std::ptrdiff_t>(samples.size() / 3);
        const long before = *std::max_element(samples.begin() + third, samples.end() - third);
        const long after = *std::max_element(samples.end() - third, samples.end());
        std::cerr << "private memory: " << before << " KiB before, " << after << " KiB at the end\n";
        EXPECT_LT(after, before + before / 10 + 1024);
    }

    const std::uint32_t seed_ = seed();
    std::mt19937 random_{seed_};
    PrivateServer server_{"1920x1080"};
    Session session_{server_.folder(), server_.displayName()};
    std::vector<std::unique_ptr<TestClient>> applications_;
    std::vector<Window> windows_;
    std::vector<Terminal> terminals_;
    pid_t agent_ = -1;
    int opened_ = 0;
};

TEST_P(Soak, NoWindowIsLostAndMemoryDoesNotGrow) {
    const auto steps = this->steps();
    std::vector<int> weights;
    for (const auto& step : steps) weights.push_back(step.weight);
    std::discrete_distribution<std::size_t> choose(weights.begin(), weights.end());

    std::deque<std::string> lastSteps;
    std::vector<long> samples;
    const auto begin = SteadyClock::now();
    auto sampleDue = begin;
    long taken = 0;
    for (; SteadyClock::now() - begin < duration() && !HasFailure(); ++taken) {
        const auto& step = steps[choose(random_)];
        lastSteps.push_back(step.name);
        if (lastSteps.size() > kStepsReported) lastSteps.pop_front();
        step.run();
        if (below(40) == 0) expectNoOverlaps();
        if (below(4) == 0) std::this_thread::sleep_for(std::chrono::milliseconds(below(120)));
        if (SteadyClock::now() >= sampleDue) {
            samples.push_back(memory());
            sampleDue += 1s;
        }
    }
    // At the end all windows settle in their tiles.
    restoreDisplays();
    EXPECT_TRUE(eventually([&] { return unknownTerminals().empty(); })) << unknownTerminals();
    runKova({"arrange"});
    expectNoOverlaps();
    expectNoWindowWasClosed();
    if (duration() >= kLongEnoughForMemory) expectPlateau(samples);

    EXPECT_EQ(session_.kova({"quit"}).exitCode, 0);
    const auto finished = session_.waitForAgent();
    ASSERT_TRUE(finished) << "the agent has not ended";
    EXPECT_EQ(finished->exitCode, 0) << finished->output;
    EXPECT_EQ(finished->output.find("Sanitizer"), std::string::npos) << finished->output;
    EXPECT_TRUE(eventually([&] { return lostWindows().empty(); })) << lostWindows();

    std::cerr << taken << " steps, seed " << seed_ << ", " << windows_.size() + terminals_.size() << " windows left\n";
    if (!HasFailure()) return;
    for (const auto& name : lastSteps) std::cerr << name << "; ";
    std::cerr << "\n";
}

INSTANTIATE_TEST_SUITE_P(Beside, Soak, ::testing::Values(Manager::none, Manager::openbox), managerName);

} // namespace
} // namespace kova::testing
