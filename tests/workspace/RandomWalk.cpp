#include "tests/workspace/RandomWalk.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#ifdef KOVA_HAS_RAPIDCHECK
#include <rapidcheck.h>
#endif

#include <algorithm>
#include <exception>
#include <optional>
#include <sstream>

namespace kova {

RandomWalk::RandomWalk(std::uint32_t seed) : seed_(seed), random_(seed) {
    const auto command = [this](const WorkspaceAction& action) { return [this, action] { act(action); }; };
    kinds_ = {
        {"arrange", command(action::Arrange{})},
        {"undo", command(action::Undo{})},
        {"zoom", command(action::ToggleFocusZoom{})},
        {"cycle stack", command(action::CycleStack{})},
        {"next layout", command(action::CycleLayout{})},
        {"previous layout", command(action::CycleLayout{LayoutStep::previous})},
        {"reset sizes", command(action::ResetLayoutSizes{})},
        {"captures", command(action::CaptureScene{})},
        {"focus", [this] { act(action::Focus{anyDirection()}); }},
        {"move", [this] { act(action::Move{anyDirection()}); }},
        {"inset", [this] { act(action::SetTileInset{4 * number(5)}); }},
        {"command", [this] { commandWindow(); }},
        {"theme",
         [this] {
             act(action::SelectTheme{anyOf<const char*>({"kova.native", "jarvis.neon-cyan"})});
         }},
        {"bring forward",
         [this] {
             act(action::Switch{action::Setting::bringsNextForward, chance(2)});
         }},
        {"repairs", command(action::RepairPlacements{})},
        {"presses", toWindow([this](const auto& label) { pressWindow(label); })},
        {"resets divider",
         [this] { withAnyDivider([this](const auto& divider) { act(action::ResetDivider{divider}); }); }},
        {"drags divider", [this] { withAnyDivider([this](const auto& divider) { dragDivider(divider); }); }},
        {"drags into a tile", toWindow([this](const auto& label) { dragWindow(label); })},
        {"opens a scene", [this] { openScene(); }},
        {"opens", [this] { openWindow(); }},
        {"closes", toWindow([this](const auto& label) { desk_.desktop.close(label); })},
        {"moves", toWindow([this](const auto& label) { desk_.desktop.userMoves(label, anyFrameFor(label)); })},
        {"minimizes", toWindow([this](const auto& label) { desk_.desktop.userMinimizes(label, !chance(3)); })},
        {"hides", toWindow([this](const auto& label) { desk_.desktop.userHides(applicationOf(label), !chance(3)); })},
        {"clicks", toWindow([this](const auto& label) { desk_.desktop.userFocuses(label); })},
        {"full screen", toWindow([this](const auto& label) { desk_.desktop.setFullScreen(label, !chance(3)); })},
        {"renames", toWindow([this](const auto& label) { desk_.desktop.setTitle(label, "Draft"); })},
    };
}

void RandomWalk::run(const Operations& operations, const std::function<bool()>& hasFailed) {
    random_.seed(seed_);
    begin();
    for (const auto& operation : operations) {
        if (hasFailed()) return;
        random_.seed(operation.number);
        story_ += "\n  " + operation.name;
        step(operation.name);
        story_ += "\n    " + desk_.desktop.picture() + "\n    " + desk_.tiles();
    }
    if (!hasFailed()) end();
}

// Random choices

Operations RandomWalk::draw(std::size_t count, const std::function<std::string()>& anyName) {
    constexpr std::size_t kNumbers = 100000; // keeps the numbers in the story short
    Operations operations;
    while (operations.size() < count) {
        std::string name = anyName();
        operations.push_back({std::move(name), static_cast<std::uint32_t>(below(kNumbers))});
    }
    return operations;
}

WorkspaceDirection RandomWalk::anyDirection() {
    using enum WorkspaceDirection;
    return anyOf({left, right, up, down});
}

CGRect RandomWalk::anyFrame() {
    CGRect display = makeRect(0, 0, 2560, 1440);
    const auto screens = desk_.desktop.screens();
    if (!screens.empty()) display = desk_.desktop.frameOfDisplay(screens[below(screens.size())].localizedName);
    const CGPoint corner = {minX(display) + number(900), minY(display) + number(700)};
    const double width = 150 + number(1500);
    return {corner, {width, 100 + number(1200)}};
}

void RandomWalk::withAnyWindow(const UseName& use) {
    const auto windows = desk_.desktop.livingWindows();
    if (windows.empty()) return;
    const std::string label = windows[below(windows.size())]->label();
    story_ += " " + label;
    use(label);
}

void RandomWalk::withAnyDisplay(const UseName& use) {
    const auto screens = desk_.desktop.screens();
    if (screens.empty()) return;
    const std::string name = screens[below(screens.size())].localizedName;
    story_ += " " + name;
    use(name);
}

void RandomWalk::withAnyDivider(const std::function<void(const DisplayLayoutDivider&)>& use) {
    const auto dividers = desk_.controller().dividers();
    if (!dividers.empty()) use(dividers[below(dividers.size())]);
}

std::function<void()> RandomWalk::toWindow(UseName use) {
    return [this, use = std::move(use)] { withAnyWindow(use); };
}

std::function<void()> RandomWalk::toDisplay(UseName use) {
    return [this, use = std::move(use)] { withAnyDisplay(use); };
}

// Operations that draw more than one value

void RandomWalk::openWindow() {
    if (desk_.desktop.livingWindows().size() >= kMostWindows) return;
    const std::string name = anyOf<const char*>({"Mail", "Notes", "Codex", "Firefox", "Console", "Viewer"});
    story_ += " " + name;
    desk_.opens(name, anyTraits());
}

void RandomWalk::openScene() {
    const auto scenes = *desk_.state().scenes;
    if (!scenes.empty()) act(action::ActivateScene{scenes[below(scenes.size())].id});
}

/// Performs a random command for the focused window or for another window.
void RandomWalk::commandWindow() {
    std::optional<WindowID> window;
    if (chance(2)) withAnyWindow([&](const auto& label) { window = desk_.desktop.windowIDOf(label); });
    const auto tiles = desk_.controller().tiles();
    if (tiles.empty()) return;
    const TileTarget tile = tiles[below(tiles.size())].target;
    const auto direction = anyDirection();
    const auto slotNumber = 1 + below(4);
    const std::vector<WindowCommand> commands = {command::Place{window, tile},
                                                 command::PlaceInNumbered{window, slotNumber},
                                                 command::Swap{window, tile},
                                                 command::Swap{window, direction},
                                                 command::ToggleFloating{window},
                                                 command::Float{window},
                                                 command::Tile{window},
                                                 command::FocusWindow{window},
                                                 command::FocusDisplay{DisplayStep::next},
                                                 command::MoveToDisplay{window, DisplayStep::previous}};
    const std::size_t chosen = below(commands.size());
    story_ += " " + std::to_string(chosen) + " " + tile.text();
    act(commands[chosen]);
}

void RandomWalk::dragDivider(const DisplayLayoutDivider& divider) {
    if (!desk_.controller().perform(action::BeginDividerDrag{divider})) return;
    for (std::size_t moves = below(4); moves > 0; --moves) {
        act(action::UpdateDividerDrag{divider, 5 * number(320) - 800});
        pauseDrag();
    }
    chance(4) ? act(action::CancelDividerDrag{}) : act(action::EndDividerDrag{divider});
}

/// Presses the window without dragging it to a tile.
void RandomWalk::pressWindow(const std::string& label) {
    if (!desk_.controller().perform(action::PressWindow{desk_.desktop.windowIDOf(label)})) return;
    pauseDrag();
    act(action::ReleaseWindow{});
}

/// Each pause may replace the controller, so no reference to it is kept.
void RandomWalk::dragWindow(const std::string& label) {
    using enum action::WindowDragKind;
    using enum action::DropMode;
    auto& desktop = desk_.desktop;
    if (!mayDrag(label)) return;
    const auto& window = desktop.window(label);
    const CGRect before = desktop.frameForWindowService(window);
    const auto movement = chance(3) ? resize : move;
    if (movement == resize) story_ += " by an edge";
    if (!desk_.controller().perform(action::BeginWindowDrag{desktop.windowIDOf(label), before})) return;
    CGPoint pointer{};
    for (std::size_t moves = 1 + below(3); moves > 0; --moves) {
        const auto living = desktop.livingWindows();
        if (std::ranges::none_of(living, [&](const auto* each) { return each->label() == label; })) break;
        const CGRect frame = anyFrameFor(label);
        pointer = {minX(frame), 1440 - minY(frame)};
        desktop.userMoves(label, movement == move ? frame : CGRect{desktop.window(label).frame.origin, frame.size});
        act(action::UpdateWindowDrag{pointer, movement});
        pauseDrag();
    }
    if (chance(5)) {
        story_ += " and cancels the drag";
        return act(action::CancelWindowDrag{});
    }
    const auto mode = chance(4) ? floating : intoTile;
    story_ += mode == floating ? " and lets it float" : " and drops it into a tile";
    act(action::EndWindowDrag{pointer, movement, mode});
}

// Walks

namespace {

struct Failure {
    std::string place; // file and line of the check
    std::string text;
    std::string story;
};

/// Runs the walk and returns its first failure; the checks at the end of the walk count as well.
std::optional<Failure> failureOf(const MakeWalk& make, std::uint32_t seed, const Operations& operations) {
    testing::TestPartResultArray results;
    Failure failure;
    {
        using Reporter = testing::ScopedFakeTestPartResultReporter;
        const Reporter reporter(Reporter::INTERCEPT_ONLY_CURRENT_THREAD, &results);
        const auto walk = make(seed);
        try {
            walk->run(operations, [&] { return results.size() > 0; });
        } catch (const std::exception& error) {
            ADD_FAILURE() << error.what();
        }
        failure.story = walk->story();
    }
    if (results.size() == 0) return std::nullopt;
    const auto& first = results.GetTestPartResult(0);
    failure.place = std::string(first.file_name() ? first.file_name() : "") + ":" + std::to_string(first.line_number());
    failure.text = first.message();
    return failure;
}

/// Shortens the list: removes operations and reduces the numbers of others. Keeps a change only if the same check
/// still fails.
std::pair<Operations, Failure> shortened(const MakeWalk& make, std::uint32_t seed, Operations operations,
                                         Failure failure) {
#ifdef KOVA_HAS_RAPIDCHECK
    const auto withSmallerNumber = [](const Operation& operation) {
        return rc::seq::map(rc::shrink::towards(operation.number, std::uint32_t{0}),
                            [name = operation.name](std::uint32_t number) {
                                return Operation{name, number};
                            });
    };
    for (bool isShorter = true; isShorter;) {
        isShorter = false;
        auto shorter = rc::seq::concat(rc::shrink::removeChunks(operations),
                                       rc::shrink::eachElement(operations, withSmallerNumber));
        while (const auto candidate = shorter.next()) {
            auto again = failureOf(make, seed, *candidate);
            if (!again || again->place != failure.place) continue;
            operations = *candidate;
            failure = std::move(*again);
            isShorter = true;
            break;
        }
    }
#else
    (void)make, (void)seed;
#endif
    return {std::move(operations), std::move(failure)};
}

std::string described(const char* name, std::uint32_t seed, const Operations& operations) {
    std::ostringstream text;
    text << "replay<" << name << ">(" << seed << ", {";
    const char* separator = "";
    for (const auto& [kind, number] : operations) {
        text << std::exchange(separator, ", ") << "{\"" << kind << "\", " << number << "}";
    }
    text << "});";
    return text.str();
}

} // namespace

void runWalks(std::uint32_t usualCount, const char* name, const MakeWalk& make) {
    forEachSeed(usualCount, [&](std::uint32_t seed) {
        const Operations operations = make(seed)->anyOperations();
        auto failed = failureOf(make, seed, operations);
        if (!failed) return;
        const auto [shortest, failure] = shortened(make, seed, operations, std::move(*failed));
        ADD_FAILURE() << failure.place << "\n"
                      << failure.text << "\nseed " << seed << ", " << shortest.size() << " of " << operations.size()
                      << " operations\n"
                      << described(name, seed, shortest) << failure.story;
    });
}

void replay(const MakeWalk& make, std::uint32_t seed, const Operations& operations) {
    const auto failure = failureOf(make, seed, operations);
    if (failure) ADD_FAILURE() << failure->place << "\n" << failure->text << failure->story;
}

} // namespace kova
