// Any workspace can be captured, and comes back as it was after anything was done to it; opening it once more moves
// nothing. A failure prints the seed. KOVA_RANDOM_SEED runs one seed, KOVA_RANDOM_DAYS that many seeds from it on.
#include "tests/harness/Scenario.h"
#include "tests/workspace/Seeds.h"

#include <gtest/gtest.h>

#include <random>

namespace kova {

namespace {

constexpr std::uint32_t kUsualScenes = 40;

class RandomScene {
  public:
    explicit RandomScene(std::uint32_t seed) : random_(seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        desk_.display(2560, 1440).display(1920, 1080);
        desk_.desktop.setHidingStyle(below(2) == 0 ? HidingStyle::hidesApplication : HidingStyle::iconifiesWindows);
        desk_.start();
        for (std::size_t i = 3 + below(7); i > 0; --i) openWindow();
        desk_.settle();
        for (std::size_t i = 2 + below(8); i > 0; --i) disturb();
        desk_.advance(Seconds(5));
        desk_.controller().perform(action::CaptureScene{});
        const Uuid scene = desk_.state().scenes->back().id;
        const auto captured = desk_.controller().assignments();
        const bool hasTilesWithoutFront = hasStackWithoutFront(captured);
        const std::string tiles = desk_.tiles();
        EXPECT_EQ(desk_.controller().diffScene(scene)->size(), 0u);

        for (std::size_t i = 1 + below(6); i > 0; --i) disturb();
        open(scene);
        if (!hasTilesWithoutFront) {
            EXPECT_EQ(desk_.controller().assignments().assignedWindowIDs, captured.assignedWindowIDs) << tiles;
            EXPECT_EQ(desk_.controller().assignments().stackWindowIDsByTarget, captured.stackWindowIDsByTarget);
        }
        EXPECT_EQ(desk_.controller().diffScene(scene)->size(), 0u);
        const std::string picture = desk_.desktop.picture();
        desk_.desktop.takeJournal();
        open(scene);
        EXPECT_EQ(desk_.desktop.takeJournal(), "");
        EXPECT_EQ(desk_.desktop.picture(), picture);
    }

  private:
    std::size_t below(std::size_t count) { return random_() % count; }
    void openWindow() {
        const char* names[] = {"Mail", "Notes", "Codex", "Viewer"};
        const std::string name = names[below(std::size(names))];
        desk_.opens(name,
                    {.frame = makeRect(static_cast<double>(below(3500)), static_cast<double>(below(500)), 700, 500)});
        // Titles of which none contains another.
        desk_.desktop.setTitle(desk_.desktop.livingWindows().back()->label(), "Document " + std::string(1, next_++));
    }
    void disturb() {
        auto& controller = desk_.controller();
        const auto tiles = controller.tiles();
        const auto windows = desk_.desktop.livingWindows();
        const std::string label = windows[below(windows.size())]->label();
        switch (below(6)) {
        case 0:
            controller.perform(action::Arrange{});
            break;
        case 1:
            controller.perform(action::CycleLayout{});
            break;
        case 2:
            if (desk_.desktop.isOnScreen(desk_.desktop.window(label))) {
                controller.perform(
                    command::Place{desk_.desktop.windowIDOf(label), tiles[below(tiles.size())].targetID});
            }
            break;
        case 3:
            desk_.desktop.userFocuses(label);
            controller.perform(action::CycleStack{});
            break;
        case 4:
            controller.perform(action::SetTileInset{static_cast<double>(below(9))});
            break;
        case 5:
            desk_.desktop.userMoves(label, makeRect(static_cast<double>(below(900)), 50, 600, 400));
            break;
        default:
            break;
        }
        desk_.advance(Seconds(1.5));
    }
    void open(const Uuid& scene) { desk_.perform(action::ActivateScene{scene}).advance(Seconds(3)); }
    static bool hasStackWithoutFront(const TileAssignments& assignments) {
        for (const auto& [target, stack] : assignments.stackWindowIDsByTarget) {
            if (!assignments.assignedWindowIDs.contains(target)) return true;
        }
        return false;
    }

    std::mt19937 random_;
    Scenario desk_;
    char next_ = 'a';
};

TEST(RandomScene, ComesBackAndStays) {
    forEachSeed(kUsualScenes, [](std::uint32_t seed) { RandomScene{seed}; });
}

} // namespace

} // namespace kova
