#include "workspace/ArrangementPlan.h"

#include <gtest/gtest.h>

#include <functional>

using namespace kova;

namespace {

/// Builds a planner's input from the windows and their tiles, and prints the plan as "Mail:focus-main
/// Notes:secondary-1".
class Table {
  public:
    Table& display(const std::string& id, const std::string& layoutID, CGSize size = {2560, 1440}) {
        ArrangementDisplay display;
        display.displayID = DisplayID(id);
        display.name = id;
        const double left = input.displays.empty() ? 0 : maxX(input.displays.back().visibleFrame);
        display.visibleFrame = makeRect(left, 0, size.width, size.height);
        display.layout = *findLayout(builtInLayouts(), layoutID);
        display.solved = solveDefinition(display.layout, {}, size, input.tileInset);
        input.displays.push_back(display);
        return *this;
    }
    ArrangementCandidate& window(const std::string& name) {
        ArrangementCandidate candidate;
        candidate.window.id = WindowID(name);
        candidate.window.applicationName = name;
        candidate.applicationKey = applicationKey(name, std::nullopt);
        candidate.role = classifyApplication(name, std::nullopt);
        candidate.displayID = input.displays.front().displayID;
        input.candidates.push_back(candidate);
        return input.candidates.back();
    }
    std::string plan() const {
        std::string text;
        const auto made = planArrangement(input);
        for (const auto& placement : made.placements) {
            text += placement.window.id.text() + (placement.isPrimary ? "" : " behind") + ":" +
                    placement.target.slot.id.text();
            for (std::size_t i = 1; i < placement.claimedTargets.size(); ++i) {
                text += "+" + placement.claimedTargets[i].slot.id.text();
            }
            if (input.displays.size() > 1) text += "@" + placement.target.displayID.text();
            text += " ";
        }
        for (const auto& surplus : made.surplus) text += surplus.window.id.text() + ":surplus ";
        if (!text.empty()) text.pop_back();
        return text;
    }

    ArrangementInput input;
};

TEST(ArrangementPlan, RolesDecideWhichWindowGetsThePrimaryTile) {
    Table table;
    table.display("D", "jarvis.command-center");
    for (const char* name : {"Console", "Viewer", "Mail", "Firefox", "Codex"}) table.window(name);
    EXPECT_EQ(table.plan(), "Codex:focus-main Console:focus-utility Firefox:focus-right-top "
                            "Mail:focus-right-bottom Viewer:surplus");
}

TEST(ArrangementPlan, EqualScoresAreOrderedByNameRegardlessOfCaseThenByEnumeration) {
    Table table;
    table.display("D", "jarvis.triple-strip");
    for (const char* name : {"zeta", "beta", "Alpha"}) table.window(name);
    EXPECT_EQ(table.plan(), "Alpha:focus-main beta:secondary-1 zeta:secondary-2");

    Table twins;
    twins.display("D", "jarvis.dual-split");
    twins.window("Term").window.id = "second opened";
    twins.window("Term").window.id = "first in name only";
    EXPECT_EQ(twins.plan(), "second opened:focus-main first in name only:secondary-1");
}

TEST(ArrangementPlan, LearnedTilesPrecedeThePresentTileAndThatPrecedesTheRole) {
    Table table;
    table.display("D", "jarvis.dual-split");
    table.window("Firefox").currentTarget = "D::secondary-1";
    table.window("Mail");
    EXPECT_EQ(table.plan(), "Mail:focus-main Firefox:secondary-1") << "nothing moves without a reason";
    for (const int round : {1, 2, 3}) {
        table.input.learning.learnArrangement("jarvis.dual-split", "name:firefox", {"focus-main"});
        const auto lines = planArrangement(table.input).explanation();
        EXPECT_EQ(table.plan() == "Firefox:focus-main Mail:secondary-1", round == 3)
            << "three arrangements outweigh the present tile";
        EXPECT_EQ(lines.front().find("usually keep") != std::string::npos, round == 3) << lines.front();
    }
    table.input.learning.learnPlacementByUser("jarvis.dual-split", "name:mail", "focus-main");
    EXPECT_EQ(table.plan(), "Firefox:focus-main Mail:secondary-1")
        << "the tile is learned for both applications: the role decides";
    table.input.learning.learnPlacementByUser("jarvis.dual-split", "name:firefox", "secondary-1");
    EXPECT_EQ(table.plan(), "Mail:focus-main Firefox:secondary-1") << "the user's own choice counts at once";
}

TEST(ArrangementPlan, AmongEqualTilesTheNearestIsTaken) {
    Table table;
    table.display("D", "jarvis.quad-grid");
    table.window("Codex");
    table.window("Viewer").frameOnScreen = makeRect(1300, 20, 1200, 650); // lower right, y up
    EXPECT_EQ(table.plan(), "Codex:focus-main Viewer:secondary-3");
}

TEST(ArrangementPlan, RulesAndPreferencesPrecedeAllScores) {
    const struct {
        const char* why;
        std::function<void(Table&)> change;
        const char* plan;
    } cases[] = {
        {"roles and learning alone", [](Table&) {}, "Codex:focus-main Firefox:secondary-1 Viewer:surplus"},
        {"a rule",
         [](Table& t) {
             t.input.candidates[2].rule = RuleTile{"focus-main", "R"};
         },
         "Viewer:focus-main Codex:secondary-1 Firefox:surplus"},
        {"a rule for a tile that the layout lacks",
         [](Table& t) {
             t.input.candidates[2].rule = RuleTile{"secondary-9", "R"};
         },
         "Codex:focus-main Firefox:secondary-1 Viewer:surplus"},
        {"two windows with a rule for one tile: its front window gets it",
         [](Table& t) {
             t.input.candidates[1].rule = t.input.candidates[2].rule = RuleTile{"focus-main", "R"};
             t.input.candidates[2].currentTarget = "D::focus-main";
         },
         "Viewer:focus-main Codex:secondary-1 Firefox:surplus"},
        {"a hidden window does not take the tile of a visible window",
         [](Table& t) {
             t.input.candidates[2].rule = RuleTile{"focus-main", "R"};
             t.input.candidates[2].isDeferred = true;
         },
         "Codex:focus-main Firefox:secondary-1 Viewer:surplus"},
        {"a preferred application", [](Table& t) { t.input.preferredApplications["secondary-1"] = "name:viewer"; },
         "Codex:focus-main Viewer:secondary-1 Firefox:surplus"},
        {"a rule before a preference",
         [](Table& t) {
             t.input.preferredApplications["secondary-1"] = "name:viewer";
             t.input.candidates[0].rule = RuleTile{"secondary-1", "R"};
         },
         "Firefox:focus-main Codex:secondary-1 Viewer:surplus"},
        {"a window too large for its tiles neither takes nor covers a claimed tile",
         [](Table& t) {
             t.input.preferredApplications["secondary-1"] = "name:viewer";
             t.input.candidates[0].minimumSize = {2300, 400};
         },
         "Firefox:focus-main Viewer:secondary-1 Codex:surplus"},
    };
    for (const auto& c : cases) {
        Table table;
        table.display("D", "jarvis.dual-split");
        for (const char* name : {"Codex", "Firefox", "Viewer"}) table.window(name);
        c.change(table);
        EXPECT_EQ(table.plan(), c.plan) << c.why;
    }
}

TEST(ArrangementPlan, WindowsStayOnTheirDisplayWhileItHasAFreeTile) {
    Table table;
    table.display("D", "jarvis.focus-single").display("E", "jarvis.dual-split");
    for (const char* name : {"Codex", "Firefox", "Mail", "Viewer"}) table.window(name);
    table.window("Safari").displayID = "E";
    EXPECT_EQ(table.plan(), "Codex:focus-main@D Safari:focus-main@E Firefox:secondary-1@E Mail:surplus Viewer:surplus");
}

TEST(ArrangementPlan, HiddenWindowsRankAfterVisibleOnes) {
    Table table;
    table.display("D", "jarvis.dual-split");
    table.window("Codex").isDeferred = true;
    table.window("Viewer");
    EXPECT_EQ(table.plan(), "Viewer:focus-main Codex:secondary-1");
    table.window("Other");
    EXPECT_EQ(table.plan(), "Other:focus-main Viewer:secondary-1 Codex:surplus");
    table.input.candidates[0].stackTarget = "D::secondary-1";
    EXPECT_EQ(table.plan(), "Other:focus-main Viewer:secondary-1 Codex behind:secondary-1");
}

TEST(ArrangementPlan, WithFewerTilesThanWindowsTheWindowsUsedLastGetThem) {
    Table table;
    table.display("D", "jarvis.dual-split");
    table.window("Console").useRank = 0; // a utility, but it has the focus
    table.window("Viewer").useRank = 1;
    table.window("Codex");
    table.window("Firefox");
    EXPECT_EQ(table.plan(), "Viewer:focus-main Console:secondary-1 Codex:surplus Firefox:surplus");
    table.input.candidates[1].useRank.reset();
    EXPECT_EQ(table.plan(), "Codex:focus-main Console:secondary-1 Viewer:surplus Firefox:surplus");
    table.input.candidates[2].isFixedSize = true;
    EXPECT_EQ(table.plan(), "Firefox:focus-main Console:secondary-1 Viewer:surplus Codex:surplus");
    table.input.candidates[3].isDeferred = true;
    EXPECT_EQ(table.plan(), "Viewer:focus-main Console:secondary-1 Codex:surplus Firefox:surplus");

    Table large; // a large window does not take the tile of the window in use
    large.display("D", "jarvis.dual-split");
    large.window("Mail").useRank = 0;
    large.window("Codex").minimumSize = {2300, 400};
    large.window("Viewer");
    EXPECT_EQ(large.plan(), "Mail:focus-main Viewer:secondary-1 Codex:surplus");
}

TEST(ArrangementPlan, ASingleWindowGetsThePrimaryTileUnlessTheUserPutItElsewhere) {
    Table table;
    table.display("D", "jarvis.command-center");
    auto& alone = table.window("Console");
    alone.currentTarget = "D::focus-right-top";
    for (int round = 0; round < 5; ++round) {
        table.input.learning.learnArrangement("jarvis.command-center", "name:console", {"focus-utility"});
    }
    EXPECT_EQ(table.plan(), "Console:focus-main");
    EXPECT_EQ(planArrangement(table.input).explanation().front(),
              "Console → Primary on D: a window alone has the primary tile");
    table.input.learning.learnPlacementByUser("jarvis.command-center", "name:console", "focus-right-bottom");
    EXPECT_EQ(table.plan(), "Console:focus-right-bottom");
}

TEST(ArrangementPlan, TheTileOfAFullScreenWindowIsNotGivenToAnotherWindow) {
    Table table;
    table.display("D", "jarvis.dual-split");
    table.input.displays[0].reservedSlotIDs = {"focus-main"};
    table.window("Codex");
    table.window("Mail");
    EXPECT_EQ(table.plan(), "Codex:secondary-1 Mail:surplus");
    table.input.candidates.back().stackTarget = "D::focus-main";
    EXPECT_EQ(table.plan(), "Codex:secondary-1 Mail behind:focus-main") << "the stacked window stays stacked";
}

TEST(ArrangementPlan, ATallWindowGetsAFreeTileThatIsTallEnough) {
    Table table;
    table.display("D", "jarvis.command-center");
    table.window("Codex");
    table.window("Console").minimumSize = {300, 600};
    EXPECT_EQ(table.plan(), "Codex:focus-main Console:focus-right-bottom") << "the utility tile is too flat";
    for (auto& candidate : table.input.candidates) candidate.minimumSize = {300, 100};
    EXPECT_EQ(table.plan(), "Codex:focus-main Console:focus-utility");
}

TEST(ArrangementPlan, NeitherOfTwoLargeWindowsIsCoveredByTheOther) {
    Table table;
    table.display("D", "jarvis.quad-grid");
    table.window("Codex").minimumSize = {1702, 400};
    table.window("Mail").minimumSize = {1002, 400};
    table.input.candidates.back().currentTarget = "D::secondary-1";
    EXPECT_EQ(table.plan(), "Codex:focus-main Mail:secondary-2") << "the windows do not fit side by side";
    // A spanning window keeps its room like a window in a single tile.
    table.input.candidates.back().minimumSize = {700, 1300};
    table.window("Firefox").minimumSize = {2000, 300};
    EXPECT_EQ(table.plan(), "Codex:focus-main Mail:secondary-1+secondary-3 Firefox:surplus");
}

TEST(ArrangementPlan, ALargeWindowGrowsItsTileOrClaimsItsNeighbor) {
    Table grows;
    grows.display("D", "jarvis.dual-split");
    grows.window("Codex").minimumSize = {1700, 400};
    grows.window("Mail");
    EXPECT_EQ(grows.plan(), "Codex:focus-main Mail:secondary-1") << "the layout makes room";

    Table claims;
    claims.display("D", "jarvis.dual-split");
    claims.window("Codex").minimumSize = {2300, 400}; // leaves less than a tile needs
    claims.window("Mail");
    EXPECT_EQ(claims.plan(), "Codex:focus-main+secondary-1 Mail:surplus");
    claims.input.candidates.back().stackTarget = "D::secondary-1";
    EXPECT_EQ(claims.plan(), "Codex:focus-main+secondary-1 Mail behind:focus-main") << "a span has one stack";

    Table tooLarge;
    tooLarge.display("D", "jarvis.dual-split");
    tooLarge.window("Codex").minimumSize = {9000, 9000};
    tooLarge.window("Mail");
    EXPECT_EQ(tooLarge.plan(), "Codex:focus-main+secondary-1 Mail:surplus")
        << "the window covers the whole display in any case";
}

TEST(ArrangementPlan, ALargeWindowMayDisplaceASmallerOneWhichThenGetsAnotherTile) {
    Table table;
    table.display("D", "jarvis.quad-grid");
    table.window("Codex");
    table.window("Firefox").minimumSize = {2300, 300};
    EXPECT_EQ(table.plan(), "Codex:focus-main Firefox:secondary-2+secondary-3");
}

TEST(ArrangementPlan, ExplainsEveryDecisionAndAnySurplus) {
    Table table;
    table.display("D", "jarvis.focus-single");
    table.window("Codex").window.title = "main.cpp";
    EXPECT_EQ(
        planArrangement(table.input).explanation(),
        std::vector<std::string>{"Codex “main.cpp” → Primary on D: coding agents are offered the primary tile first"});
    table.window("Viewer");
    const auto lines = planArrangement(table.input).explanation();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1], "Viewer → minimized: no tile was left");
    EXPECT_EQ(lines[2], "1 surplus windows minimized; none were closed.");
}

} // namespace
