// Random workspaces: a captured scene restores the workspace after random changes, and opening the scene once more
// moves no window.
#include "tests/workspace/RandomWalk.h"

#include <gtest/gtest.h>

#include <array>

namespace kova {

namespace {

constexpr std::uint32_t kUsualScenes = 40;

class RandomScene : public RandomWalk {
  public:
    explicit RandomScene(std::uint32_t seed) : RandomWalk(seed) {}
    Operations anyOperations() override {
        const auto anyName = [this] { return kDisturbances[below(kDisturbances.size())]; };
        Operations operations = draw(2 + below(8), anyName);
        operations.push_back({"captures", 0});
        for (auto& operation : draw(1 + below(6), anyName)) operations.push_back(std::move(operation));
        return operations;
    }

  private:
    void begin() override {
        desk_.display(2560, 1440).display(1920, 1080);
        desk_.desktop.setHidingStyle(chance(2) ? HidingStyle::hidesApplication : HidingStyle::iconifiesWindows);
        desk_.start();
        char next = 'a';
        for (std::size_t i = 3 + below(7); i > 0; --i) {
            const CGPoint corner = {number(3500), number(500)};
            desk_.opens(anyOf({"Mail", "Notes", "Codex", "Viewer"}),
                        {.frame = CGRect{corner, {700, 500}},
                         .title = std::string("Document ") + next++}); // no title is part of another one
        }
        desk_.settle();
    }
    void step(const std::string& name) override {
        if (name == "captures") desk_.advance(Seconds(5));
        perform(name);
        if (name == "captures") {
            captured_ = desk_.controller().assignments();
            expectNoDifference();
        }
        desk_.advance(Seconds(1.5));
    }
    void end() override {
        if (desk_.state().scenes->empty()) return;
        open();
        EXPECT_EQ(desk_.controller().assignments().assignedWindowIDs, captured_.assignedWindowIDs);
        EXPECT_EQ(desk_.controller().assignments().stackWindowIDsByTarget, captured_.stackWindowIDsByTarget);
        expectNoDifference();
        const std::string picture = desk_.desktop.picture();
        desk_.desktop.takeJournal();
        open();
        EXPECT_EQ(desk_.desktop.takeJournal(), "");
        EXPECT_EQ(desk_.desktop.picture(), picture);
    }
    void open() { desk_.perform(action::ActivateScene{desk_.state().scenes->back().id}).advance(Seconds(3)); }
    void expectNoDifference() { EXPECT_EQ(desk_.controller().diffScene(desk_.state().scenes->back().id)->size(), 0u); }

    static constexpr std::array kDisturbances = {"arrange",     "next layout", "command", "clicks",
                                                 "cycle stack", "inset",       "moves"};
    TileAssignments captured_;
};

TEST(RandomScene, IsRestoredAndASecondOpeningMovesNothing) {
    runWalks<RandomScene>(kUsualScenes, "RandomScene");
}

} // namespace

} // namespace kova
