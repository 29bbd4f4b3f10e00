#include "workspace/ArrangementPlan.h"

#include <gtest/gtest.h>

#include <functional>

using namespace kova;

namespace {

/// Builds the input of the planner from the windows and their tiles, and prints the plan as "Mail:focus-main
/// Notes:secondary-1".
class PlanBuilder {
  public:
    PlanBuilder& display(const std::string& id, const std::string& layoutID, CGSize size = {2560, 1440}) {
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
    PlanBuilder builder;
    builder.display("D", "jarvis.command-center");
    for (const char* name : {"Console", "Viewer", "Mail", "Firefox", "Codex"}) builder.window(name);
    EXPECT_EQ(builder.plan(), "Codex:focus-main Console:focus-utility Firefox:focus-right-top "
                              "Mail:focus-right-bottom Viewer:surplus");
}

TEST(ArrangementPlan, EqualScoresAreOrderedByNameRegardlessOfCaseThenByTheOrderOfTheList) {
    PlanBuilder builder;
    builder.display("D", "jarvis.triple-strip");
    for (const char* name : {"zeta", "beta", "Alpha"}) builder.window(name);
    EXPECT_EQ(builder.plan(), "Alpha:focus-main beta:secondary-1 zeta:secondary-2");

    PlanBuilder twins;
    twins.display("D", "jarvis.dual-split");
    twins.window("Term").window.id = "second opened";
    twins.window("Term").window.id = "first in name only";
    EXPECT_EQ(twins.plan(), "second opened:focus-main first in name only:secondary-1");
}

TEST(ArrangementPlan, LearnedTilesPrecedeThePresentTileWhichPrecedesTheRole) {
    PlanBuilder builder;
    builder.display("D", "jarvis.dual-split");
    builder.window("Firefox").currentTarget = "D::secondary-1";
    builder.window("Mail");
    EXPECT_EQ(builder.plan(), "Mail:focus-main Firefox:secondary-1") << "nothing moves without a reason";
    for (const int round : {1, 2, 3}) {
        builder.input.learning.learnArrangement("jarvis.dual-split", "name:firefox", {"focus-main"});
        const auto lines = planArrangement(builder.input).explanation();
        EXPECT_EQ(builder.plan() == "Firefox:focus-main Mail:secondary-1", round == 3)
            << "three arrangements outweigh the present tile";
        EXPECT_EQ(lines.front().find("usually keep") != std::string::npos, round == 3) << lines.front();
    }
    builder.input.learning.learnPlacementByUser("jarvis.dual-split", "name:mail", "focus-main");
    EXPECT_EQ(builder.plan(), "Firefox:focus-main Mail:secondary-1")
        << "the tile is learned for both applications, so the role decides";
    builder.input.learning.learnPlacementByUser("jarvis.dual-split", "name:firefox", "secondary-1");
    EXPECT_EQ(builder.plan(), "Mail:focus-main Firefox:secondary-1") << "the user's own choice counts at once";
}

TEST(ArrangementPlan, AmongEqualTilesTheNearestIsTaken) {
    PlanBuilder builder;
    builder.display("D", "jarvis.quad-grid");
    builder.window("Codex");
    builder.window("Viewer").frameOnScreen = makeRect(1300, 20, 1200, 650); // lower right, y up
    EXPECT_EQ(builder.plan(), "Codex:focus-main Viewer:secondary-3");
}

TEST(ArrangementPlan, RulesAndPreferencesPrecedeAllScores) {
    const struct {
        const char* why;
        std::function<void(PlanBuilder&)> change;
        const char* plan;
    } cases[] = {
        {"roles and learning alone", [](PlanBuilder&) {}, "Codex:focus-main Firefox:secondary-1 Viewer:surplus"},
        {"a rule",
         [](PlanBuilder& t) {
             t.input.candidates[2].rule = RuleTile{"focus-main", "R"};
         },
         "Viewer:focus-main Codex:secondary-1 Firefox:surplus"},
        {"a rule for a tile that the layout lacks",
         [](PlanBuilder& t) {
             t.input.candidates[2].rule = RuleTile{"secondary-9", "R"};
         },
         "Codex:focus-main Firefox:secondary-1 Viewer:surplus"},
        {"two windows with a rule for one tile: its front window gets it",
         [](PlanBuilder& t) {
             t.input.candidates[1].rule = t.input.candidates[2].rule = RuleTile{"focus-main", "R"};
             t.input.candidates[2].currentTarget = "D::focus-main";
         },
         "Viewer:focus-main Codex:secondary-1 Firefox:surplus"},
        {"a hidden window does not take the tile of a visible window",
         [](PlanBuilder& t) {
             t.input.candidates[2].rule = RuleTile{"focus-main", "R"};
             t.input.candidates[2].isDeferred = true;
         },
         "Codex:focus-main Firefox:secondary-1 Viewer:surplus"},
        {"a preferred application",
         [](PlanBuilder& t) { t.input.preferredApplications["secondary-1"] = "name:viewer"; },
         "Codex:focus-main Viewer:secondary-1 Firefox:surplus"},
        {"a rule before a preference",
         [](PlanBuilder& t) {
             t.input.preferredApplications["secondary-1"] = "name:viewer";
             t.input.candidates[0].rule = RuleTile{"secondary-1", "R"};
         },
         "Firefox:focus-main Codex:secondary-1 Viewer:surplus"},
        {"a window too large for its tiles neither takes nor covers a claimed tile",
         [](PlanBuilder& t) {
             t.input.preferredApplications["secondary-1"] = "name:viewer";
             t.input.candidates[0].minimumSize = {2300, 400};
         },
         "Firefox:focus-main Viewer:secondary-1 Codex:surplus"},
    };
    for (const auto& c : cases) {
        PlanBuilder builder;
        builder.display("D", "jarvis.dual-split");
        for (const char* name : {"Codex", "Firefox", "Viewer"}) builder.window(name);
        c.change(builder);
        EXPECT_EQ(builder.plan(), c.plan) << c.why;
    }
}

TEST(ArrangementPlan, WindowsStayOnTheirDisplayWhileItHasAFreeTile) {
    PlanBuilder builder;
    builder.display("D", "jarvis.focus-single").display("E", "jarvis.dual-split");
    for (const char* name : {"Codex", "Firefox", "Mail", "Viewer"}) builder.window(name);
    builder.window("Safari").displayID = "E";
    EXPECT_EQ(builder.plan(),
              "Codex:focus-main@D Safari:focus-main@E Firefox:secondary-1@E Mail:surplus Viewer:surplus");
}

TEST(ArrangementPlan, HiddenWindowsRankAfterVisibleOnes) {
    PlanBuilder builder;
    builder.display("D", "jarvis.dual-split");
    builder.window("Codex").isDeferred = true;
    builder.window("Viewer");
    EXPECT_EQ(builder.plan(), "Viewer:focus-main Codex:secondary-1");
    builder.window("Other");
    EXPECT_EQ(builder.plan(), "Other:focus-main Viewer:secondary-1 Codex:surplus");
    builder.input.candidates[0].stackTarget = "D::secondary-1";
    EXPECT_EQ(builder.plan(), "Other:focus-main Viewer:secondary-1 Codex behind:secondary-1");
}

TEST(ArrangementPlan, WithFewerTilesThanWindowsTheWindowsUsedLastGetThem) {
    PlanBuilder builder;
    builder.display("D", "jarvis.dual-split");
    builder.window("Console").useRank = 0; // a utility, but it has the focus
    builder.window("Viewer").useRank = 1;
    builder.window("Codex");
    builder.window("Firefox");
    EXPECT_EQ(builder.plan(), "Viewer:focus-main Console:secondary-1 Codex:surplus Firefox:surplus");
    builder.input.candidates[1].useRank.reset();
    EXPECT_EQ(builder.plan(), "Codex:focus-main Console:secondary-1 Viewer:surplus Firefox:surplus");
    builder.input.candidates[2].isFixedSize = true;
    EXPECT_EQ(builder.plan(), "Firefox:focus-main Console:secondary-1 Viewer:surplus Codex:surplus");
    builder.input.candidates[3].isDeferred = true;
    EXPECT_EQ(builder.plan(), "Viewer:focus-main Console:secondary-1 Codex:surplus Firefox:surplus");

    PlanBuilder large; // a large window does not take the tile of the window in use
    large.display("D", "jarvis.dual-split");
    large.window("Mail").useRank = 0;
    large.window("Codex").minimumSize = {2300, 400};
    large.window("Viewer");
    EXPECT_EQ(large.plan(), "Mail:focus-main Viewer:secondary-1 Codex:surplus");
}

TEST(ArrangementPlan, ASingleWindowGetsThePrimaryTileUnlessTheUserPutItElsewhere) {
    PlanBuilder builder;
    builder.display("D", "jarvis.command-center");
    auto& alone = builder.window("Console");
    alone.currentTarget = "D::focus-right-top";
    for (int round = 0; round < 5; ++round) {
        builder.input.learning.learnArrangement("jarvis.command-center", "name:console", {"focus-utility"});
    }
    EXPECT_EQ(builder.plan(), "Console:focus-main");
    EXPECT_EQ(planArrangement(builder.input).explanation().front(),
              "Console → Primary on D: a window alone has the primary tile");
    builder.input.learning.learnPlacementByUser("jarvis.command-center", "name:console", "focus-right-bottom");
    EXPECT_EQ(builder.plan(), "Console:focus-right-bottom");
}

TEST(ArrangementPlan, TheTileOfAFullScreenWindowIsNotGivenToAnotherWindow) {
    PlanBuilder builder;
    builder.display("D", "jarvis.dual-split");
    builder.input.displays[0].reservedSlotIDs = {"focus-main"};
    builder.window("Codex");
    builder.window("Mail");
    EXPECT_EQ(builder.plan(), "Codex:secondary-1 Mail:surplus");
    builder.input.candidates.back().stackTarget = "D::focus-main";
    EXPECT_EQ(builder.plan(), "Codex:secondary-1 Mail behind:focus-main") << "the stacked window stays stacked";
}

TEST(ArrangementPlan, ATallWindowGetsAFreeTileThatIsTallEnough) {
    PlanBuilder builder;
    builder.display("D", "jarvis.command-center");
    builder.window("Codex");
    builder.window("Console").minimumSize = {300, 600};
    EXPECT_EQ(builder.plan(), "Codex:focus-main Console:focus-right-bottom") << "the utility tile is too flat";
    for (auto& candidate : builder.input.candidates) candidate.minimumSize = {300, 100};
    EXPECT_EQ(builder.plan(), "Codex:focus-main Console:focus-utility");
}

TEST(ArrangementPlan, NeitherOfTwoLargeWindowsIsCoveredByTheOther) {
    PlanBuilder builder;
    builder.display("D", "jarvis.quad-grid");
    builder.window("Codex").minimumSize = {1702, 400};
    builder.window("Mail").minimumSize = {1002, 400};
    builder.input.candidates.back().currentTarget = "D::secondary-1";
    EXPECT_EQ(builder.plan(), "Codex:focus-main Mail:secondary-2") << "the windows do not fit side by side";
    // A spanning window keeps its room like a window in a single tile.
    builder.input.candidates.back().minimumSize = {700, 1300};
    builder.window("Firefox").minimumSize = {2000, 300};
    EXPECT_EQ(builder.plan(), "Codex:focus-main Mail:secondary-1+secondary-3 Firefox:surplus");
}

TEST(ArrangementPlan, ALargeWindowGrowsItsTileOrClaimsItsNeighbor) {
    PlanBuilder grows;
    grows.display("D", "jarvis.dual-split");
    grows.window("Codex").minimumSize = {1700, 400};
    grows.window("Mail");
    EXPECT_EQ(grows.plan(), "Codex:focus-main Mail:secondary-1") << "the layout makes room";

    PlanBuilder claims;
    claims.display("D", "jarvis.dual-split");
    claims.window("Codex").minimumSize = {2300, 400}; // leaves less than a tile needs
    claims.window("Mail");
    EXPECT_EQ(claims.plan(), "Codex:focus-main+secondary-1 Mail:surplus");
    claims.input.candidates.back().stackTarget = "D::secondary-1";
    EXPECT_EQ(claims.plan(), "Codex:focus-main+secondary-1 Mail behind:focus-main") << "a span has one stack";

    PlanBuilder tooLarge;
    tooLarge.display("D", "jarvis.dual-split");
    tooLarge.window("Codex").minimumSize = {9000, 9000};
    tooLarge.window("Mail");
    EXPECT_EQ(tooLarge.plan(), "Codex:focus-main+secondary-1 Mail:surplus")
        << "the window covers the whole display in any case";
}

TEST(ArrangementPlan, ALargeWindowMayDisplaceASmallerOneWhichThenGetsAnotherTile) {
    PlanBuilder builder;
    builder.display("D", "jarvis.quad-grid");
    builder.window("Codex");
    builder.window("Firefox").minimumSize = {2300, 300};
    EXPECT_EQ(builder.plan(), "Codex:focus-main Firefox:secondary-2+secondary-3");
}

TEST(ArrangementPlan, ExplainsEveryDecisionAndAnySurplus) {
    PlanBuilder builder;
    builder.display("D", "jarvis.focus-single");
    builder.window("Codex").window.title = "main.cpp";
    EXPECT_EQ(
        planArrangement(builder.input).explanation(),
        std::vector<std::string>{"Codex “main.cpp” → Primary on D: coding agents are offered the primary tile first"});
    builder.window("Viewer");
    const auto lines = planArrangement(builder.input).explanation();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1], "Viewer → minimized: no tile was left");
    EXPECT_EQ(lines[2], "1 surplus windows minimized; none were closed.");
}

} // namespace
