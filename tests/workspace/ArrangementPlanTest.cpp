#include "workspace/ArrangementPlan.h"

#include <gtest/gtest.h>

#include <functional>

using namespace kova;

namespace {

/// Builds a planner's input from the windows and their tiles, and prints the plan as "Mail:focus-main
/// Notes:secondary-1".
class Planner {
  public:
    Planner& display(const std::string& id, const std::string& layoutID, CGSize size = {2560, 1440}) {
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
    Planner planner;
    planner.display("D", "jarvis.command-center");
    for (const char* name : {"Console", "Viewer", "Mail", "Firefox", "Codex"}) planner.window(name);
    EXPECT_EQ(planner.plan(), "Codex:focus-main Console:focus-utility Firefox:focus-right-top "
                              "Mail:focus-right-bottom Viewer:surplus");
}

TEST(ArrangementPlan, EqualScoresAreOrderedByNameRegardlessOfCaseThenByEnumeration) {
    Planner planner;
    planner.display("D", "jarvis.triple-strip");
    for (const char* name : {"zeta", "beta", "Alpha"}) planner.window(name);
    EXPECT_EQ(planner.plan(), "Alpha:focus-main beta:secondary-1 zeta:secondary-2");

    Planner twins;
    twins.display("D", "jarvis.dual-split");
    twins.window("Term").window.id = "second opened";
    twins.window("Term").window.id = "first in name only";
    EXPECT_EQ(twins.plan(), "second opened:focus-main first in name only:secondary-1");
}

TEST(ArrangementPlan, LearnedTilesPrecedeThePresentTileWhichPrecedesTheRole) {
    Planner planner;
    planner.display("D", "jarvis.dual-split");
    planner.window("Firefox").currentTarget = "D::secondary-1";
    planner.window("Mail");
    EXPECT_EQ(planner.plan(), "Mail:focus-main Firefox:secondary-1") << "nothing moves without a reason";
    for (const int round : {1, 2, 3}) {
        planner.input.learning.learnArrangement("jarvis.dual-split", "name:firefox", {"focus-main"});
        const auto lines = planArrangement(planner.input).explanation();
        EXPECT_EQ(planner.plan() == "Firefox:focus-main Mail:secondary-1", round == 3)
            << "three arrangements outweigh the present tile";
        EXPECT_EQ(lines.front().find("usually keep") != std::string::npos, round == 3) << lines.front();
    }
    planner.input.learning.learnPlacementByUser("jarvis.dual-split", "name:mail", "focus-main");
    EXPECT_EQ(planner.plan(), "Firefox:focus-main Mail:secondary-1")
        << "the tile is learned for both applications, so the role decides";
    planner.input.learning.learnPlacementByUser("jarvis.dual-split", "name:firefox", "secondary-1");
    EXPECT_EQ(planner.plan(), "Mail:focus-main Firefox:secondary-1") << "the user's own choice counts at once";
}

TEST(ArrangementPlan, AmongEqualTilesTheNearestIsTaken) {
    Planner planner;
    planner.display("D", "jarvis.quad-grid");
    planner.window("Codex");
    planner.window("Viewer").frameOnScreen = makeRect(1300, 20, 1200, 650); // lower right, y up
    EXPECT_EQ(planner.plan(), "Codex:focus-main Viewer:secondary-3");
}

TEST(ArrangementPlan, RulesAndPreferencesPrecedeAllScores) {
    const struct {
        const char* why;
        std::function<void(Planner&)> change;
        const char* plan;
    } cases[] = {
        {"roles and learning alone", [](Planner&) {}, "Codex:focus-main Firefox:secondary-1 Viewer:surplus"},
        {"a rule",
         [](Planner& t) {
             t.input.candidates[2].rule = RuleTile{"focus-main", "R"};
         },
         "Viewer:focus-main Codex:secondary-1 Firefox:surplus"},
        {"a rule for a tile that the layout lacks",
         [](Planner& t) {
             t.input.candidates[2].rule = RuleTile{"secondary-9", "R"};
         },
         "Codex:focus-main Firefox:secondary-1 Viewer:surplus"},
        {"two windows with a rule for one tile: its front window gets it",
         [](Planner& t) {
             t.input.candidates[1].rule = t.input.candidates[2].rule = RuleTile{"focus-main", "R"};
             t.input.candidates[2].currentTarget = "D::focus-main";
         },
         "Viewer:focus-main Codex:secondary-1 Firefox:surplus"},
        {"a hidden window does not take the tile of a visible window",
         [](Planner& t) {
             t.input.candidates[2].rule = RuleTile{"focus-main", "R"};
             t.input.candidates[2].isDeferred = true;
         },
         "Codex:focus-main Firefox:secondary-1 Viewer:surplus"},
        {"a preferred application", [](Planner& t) { t.input.preferredApplications["secondary-1"] = "name:viewer"; },
         "Codex:focus-main Viewer:secondary-1 Firefox:surplus"},
        {"a rule before a preference",
         [](Planner& t) {
             t.input.preferredApplications["secondary-1"] = "name:viewer";
             t.input.candidates[0].rule = RuleTile{"secondary-1", "R"};
         },
         "Firefox:focus-main Codex:secondary-1 Viewer:surplus"},
        {"a window too large for its tiles neither takes nor covers a claimed tile",
         [](Planner& t) {
             t.input.preferredApplications["secondary-1"] = "name:viewer";
             t.input.candidates[0].minimumSize = {2300, 400};
         },
         "Firefox:focus-main Viewer:secondary-1 Codex:surplus"},
    };
    for (const auto& c : cases) {
        Planner planner;
        planner.display("D", "jarvis.dual-split");
        for (const char* name : {"Codex", "Firefox", "Viewer"}) planner.window(name);
        c.change(planner);
        EXPECT_EQ(planner.plan(), c.plan) << c.why;
    }
}

TEST(ArrangementPlan, WindowsStayOnTheirDisplayWhileItHasAFreeTile) {
    Planner planner;
    planner.display("D", "jarvis.focus-single").display("E", "jarvis.dual-split");
    for (const char* name : {"Codex", "Firefox", "Mail", "Viewer"}) planner.window(name);
    planner.window("Safari").displayID = "E";
    EXPECT_EQ(planner.plan(),
              "Codex:focus-main@D Safari:focus-main@E Firefox:secondary-1@E Mail:surplus Viewer:surplus");
}

TEST(ArrangementPlan, HiddenWindowsRankAfterVisibleOnes) {
    Planner planner;
    planner.display("D", "jarvis.dual-split");
    planner.window("Codex").isDeferred = true;
    planner.window("Viewer");
    EXPECT_EQ(planner.plan(), "Viewer:focus-main Codex:secondary-1");
    planner.window("Other");
    EXPECT_EQ(planner.plan(), "Other:focus-main Viewer:secondary-1 Codex:surplus");
    planner.input.candidates[0].stackTarget = "D::secondary-1";
    EXPECT_EQ(planner.plan(), "Other:focus-main Viewer:secondary-1 Codex behind:secondary-1");
}

TEST(ArrangementPlan, WithFewerTilesThanWindowsTheWindowsUsedLastGetThem) {
    Planner planner;
    planner.display("D", "jarvis.dual-split");
    planner.window("Console").useRank = 0; // a utility, but it has the focus
    planner.window("Viewer").useRank = 1;
    planner.window("Codex");
    planner.window("Firefox");
    EXPECT_EQ(planner.plan(), "Viewer:focus-main Console:secondary-1 Codex:surplus Firefox:surplus");
    planner.input.candidates[1].useRank.reset();
    EXPECT_EQ(planner.plan(), "Codex:focus-main Console:secondary-1 Viewer:surplus Firefox:surplus");
    planner.input.candidates[2].isFixedSize = true;
    EXPECT_EQ(planner.plan(), "Firefox:focus-main Console:secondary-1 Viewer:surplus Codex:surplus");
    planner.input.candidates[3].isDeferred = true;
    EXPECT_EQ(planner.plan(), "Viewer:focus-main Console:secondary-1 Codex:surplus Firefox:surplus");

    Planner large; // a large window does not take the tile of the window in use
    large.display("D", "jarvis.dual-split");
    large.window("Mail").useRank = 0;
    large.window("Codex").minimumSize = {2300, 400};
    large.window("Viewer");
    EXPECT_EQ(large.plan(), "Mail:focus-main Viewer:secondary-1 Codex:surplus");
}

TEST(ArrangementPlan, ASingleWindowGetsThePrimaryTileUnlessTheUserPutItElsewhere) {
    Planner planner;
    planner.display("D", "jarvis.command-center");
    auto& alone = planner.window("Console");
    alone.currentTarget = "D::focus-right-top";
    for (int round = 0; round < 5; ++round) {
        planner.input.learning.learnArrangement("jarvis.command-center", "name:console", {"focus-utility"});
    }
    EXPECT_EQ(planner.plan(), "Console:focus-main");
    EXPECT_EQ(planArrangement(planner.input).explanation().front(),
              "Console → Primary on D: a window alone has the primary tile");
    planner.input.learning.learnPlacementByUser("jarvis.command-center", "name:console", "focus-right-bottom");
    EXPECT_EQ(planner.plan(), "Console:focus-right-bottom");
}

TEST(ArrangementPlan, TheTileOfAFullScreenWindowIsNotGivenToAnotherWindow) {
    Planner planner;
    planner.display("D", "jarvis.dual-split");
    planner.input.displays[0].reservedSlotIDs = {"focus-main"};
    planner.window("Codex");
    planner.window("Mail");
    EXPECT_EQ(planner.plan(), "Codex:secondary-1 Mail:surplus");
    planner.input.candidates.back().stackTarget = "D::focus-main";
    EXPECT_EQ(planner.plan(), "Codex:secondary-1 Mail behind:focus-main") << "the stacked window stays stacked";
}

TEST(ArrangementPlan, ATallWindowGetsAFreeTileThatIsTallEnough) {
    Planner planner;
    planner.display("D", "jarvis.command-center");
    planner.window("Codex");
    planner.window("Console").minimumSize = {300, 600};
    EXPECT_EQ(planner.plan(), "Codex:focus-main Console:focus-right-bottom") << "the utility tile is too flat";
    for (auto& candidate : planner.input.candidates) candidate.minimumSize = {300, 100};
    EXPECT_EQ(planner.plan(), "Codex:focus-main Console:focus-utility");
}

TEST(ArrangementPlan, NeitherOfTwoLargeWindowsIsCoveredByTheOther) {
    Planner planner;
    planner.display("D", "jarvis.quad-grid");
    planner.window("Codex").minimumSize = {1702, 400};
    planner.window("Mail").minimumSize = {1002, 400};
    planner.input.candidates.back().currentTarget = "D::secondary-1";
    EXPECT_EQ(planner.plan(), "Codex:focus-main Mail:secondary-2") << "the windows do not fit side by side";
    // A spanning window keeps its room like a window in a single tile.
    planner.input.candidates.back().minimumSize = {700, 1300};
    planner.window("Firefox").minimumSize = {2000, 300};
    EXPECT_EQ(planner.plan(), "Codex:focus-main Mail:secondary-1+secondary-3 Firefox:surplus");
}

TEST(ArrangementPlan, ALargeWindowGrowsItsTileOrClaimsItsNeighbor) {
    Planner grows;
    grows.display("D", "jarvis.dual-split");
    grows.window("Codex").minimumSize = {1700, 400};
    grows.window("Mail");
    EXPECT_EQ(grows.plan(), "Codex:focus-main Mail:secondary-1") << "the layout makes room";

    Planner claims;
    claims.display("D", "jarvis.dual-split");
    claims.window("Codex").minimumSize = {2300, 400}; // leaves less than a tile needs
    claims.window("Mail");
    EXPECT_EQ(claims.plan(), "Codex:focus-main+secondary-1 Mail:surplus");
    claims.input.candidates.back().stackTarget = "D::secondary-1";
    EXPECT_EQ(claims.plan(), "Codex:focus-main+secondary-1 Mail behind:focus-main") << "a span has one stack";

    Planner tooLarge;
    tooLarge.display("D", "jarvis.dual-split");
    tooLarge.window("Codex").minimumSize = {9000, 9000};
    tooLarge.window("Mail");
    EXPECT_EQ(tooLarge.plan(), "Codex:focus-main+secondary-1 Mail:surplus")
        << "the window covers the whole display in any case";
}

TEST(ArrangementPlan, ALargeWindowMayDisplaceASmallerOneWhichThenGetsAnotherTile) {
    Planner planner;
    planner.display("D", "jarvis.quad-grid");
    planner.window("Codex");
    planner.window("Firefox").minimumSize = {2300, 300};
    EXPECT_EQ(planner.plan(), "Codex:focus-main Firefox:secondary-2+secondary-3");
}

TEST(ArrangementPlan, ExplainsEveryDecisionAndAnySurplus) {
    Planner planner;
    planner.display("D", "jarvis.focus-single");
    planner.window("Codex").window.title = "main.cpp";
    EXPECT_EQ(
        planArrangement(planner.input).explanation(),
        std::vector<std::string>{"Codex “main.cpp” → Primary on D: coding agents are offered the primary tile first"});
    planner.window("Viewer");
    const auto lines = planArrangement(planner.input).explanation();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1], "Viewer → minimized: no tile was left");
    EXPECT_EQ(lines[2], "1 surplus windows minimized; none were closed.");
}

} // namespace
