// Rules: which rule decides, when rules are evaluated, and how they are edited.
#include "tests/harness/Scenario.h"

#include "persistence/PreferenceKeys.h"
#include "persistence/WorkspaceDocumentCoding.h"
#include "workspace/RuleMatching.h"

#include <gtest/gtest.h>

namespace kova {

namespace {

const SlotID kLeft = "focus-main";
const SlotID kRight = "secondary-1";
const CGRect kUntiledFrame = makeRect(300, 300, 800, 600);

WorkspaceRule rule(std::string name, std::optional<BundleID> bundle, std::optional<std::string> application,
                   std::optional<std::string> title, WorkspaceRuleDisposition disposition = disposition::Float{}) {
    return {Uuid::random(),         std::move(name),  true,       std::move(bundle),
            std::move(application), std::move(title), disposition};
}

ManagedWindow windowOf(std::optional<BundleID> bundle, std::string application, std::string title) {
    ManagedWindow window;
    window.bundleIdentifier = std::move(bundle);
    window.applicationName = std::move(application);
    window.title = std::move(title);
    return window;
}

TEST(RuleMatching, AllCriteriaMustHoldAndThereMustBeAtLeastOne) {
    const auto mail = windowOf("org.example.mail", "Mail", "Inbox – Mail");
    const auto plain = windowOf(std::nullopt, "safari", "");
    const struct {
        WorkspaceRule rule;
        ManagedWindow window;
        RuleVerdict verdict;
    } cases[] = {
        {rule("", std::nullopt, std::nullopt, "mAIL"), mail, RuleVerdict::matches},
        {rule("", "org.example.mail", std::nullopt, std::nullopt), mail, RuleVerdict::matches},
        {rule("", "org.example.Mail", std::nullopt, std::nullopt), mail, RuleVerdict::otherApplication},
        {rule("", "org.example.mail", "mail", "inbox"), mail, RuleVerdict::matches},
        {rule("", "org.example.mail", "Notes", "inbox"), mail, RuleVerdict::otherApplication},
        {rule("", "org.example.mail", std::nullopt, "Drafts"), mail, RuleVerdict::otherTitle},
        {rule("", std::nullopt, std::nullopt, std::nullopt), mail, RuleVerdict::withoutCriterion},
        {rule("", std::nullopt, std::nullopt, ""), mail, RuleVerdict::withoutCriterion},
        {rule("", std::nullopt, "Safari", std::nullopt), plain, RuleVerdict::matches},
        {rule("", "org.safari", std::nullopt, std::nullopt), plain, RuleVerdict::otherApplication},
        {rule("", std::nullopt, "Safari", "x"), plain, RuleVerdict::titleAwaited},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(verdictOf(c.rule, c.window), c.verdict) << &c - cases;
        WorkspaceRule disabled = c.rule;
        disabled.isEnabled = false;
        EXPECT_EQ(verdictOf(disabled, c.window), RuleVerdict::disabled);
    }
}

class Rules : public ::testing::Test {
  protected:
    Rules() { desk.display(2560, 1440).layout("jarvis.dual-split").start(); }

    void add(WorkspaceRule added) { EXPECT_TRUE(desk.controller().perform(action::AddRule{std::move(added)})); }
    void manageContinuously() {
        desk.controller().perform(action::Switch{action::Setting::continuousManagement, true});
    }
    bool isHandled(const char* label) {
        const auto explained = desk.controller().explainRules(desk.desktop.windowIDOf(label));
        return explained && explained->summary.find("was seen already") != std::string::npos;
    }
    /// Opens a window and waits for the next poll.
    Scenario& opensAndPolls(const char* name, WindowTraits traits = {.frame = kUntiledFrame}) {
        return desk.opens(name, std::move(traits)).advance(Seconds(0.6));
    }

    static WorkspaceRule tileMail(const SlotID& slot = kRight) {
        return rule("Mail to the right", "sim.mail", std::nullopt, std::nullopt, disposition::Tile{slot});
    }
    static constexpr const char* kMailOnTheRight = "- | Mail 1291,15 1254x1382";
    static constexpr const char* kEmptyTiles = "- | -";
    Scenario desk;
};

TEST_F(Rules, PlaceANewWindowOnceAndNeverAgain) {
    add(tileMail());
    manageContinuously();
    opensAndPolls("Notes");
    const auto steps = desk.controller().undoHistory().size();
    opensAndPolls("Mail").expectMessage("Rule “Mail to the right” placed Mail");
    desk.settle().expectTiles(kMailOnTheRight);
    EXPECT_EQ(desk.controller().undoHistory().size(), steps) << "an automatic arrangement is no undo step";
    desk.desktop.userFocuses("Mail");
    desk.move(WorkspaceDirection::left).expectTiles("Mail 15,15 1254x1382 | -");
    desk.desktop.setTitle("Mail", "Another");
    desk.advance(Seconds(30)).expectTiles("Mail 15,15 1254x1382 | -");
    desk.desktop.close("Mail");
    desk.settle();
    opensAndPolls("Mail").settle().expectTiles(kMailOnTheRight);
}

TEST_F(Rules, AreAppliedOnlyDuringContinuousManagement) {
    add(tileMail());
    opensAndPolls("Mail").settle().expectTiles(kEmptyTiles);
    manageContinuously();
    desk.settle().expectTiles(kMailOnTheRight);
    desk.restart();
    EXPECT_TRUE(*desk.state().continuousManagementEnabled);
    EXPECT_EQ(desk.state().rules->size(), 1u);
    desk.expectTiles(kMailOnTheRight);
    desk.controller().perform(action::Switch{action::Setting::continuousManagement, false});
    EXPECT_EQ(desk.preferences.boolean(preferenceKey::continuousManagement), false);
    opensAndPolls("Mail").settle().expectTiles(kMailOnTheRight);
}

TEST_F(Rules, TheFirstMatchingRuleDecides) {
    WorkspaceRule first = rule("Mail floats", "sim.mail", std::nullopt, std::nullopt);
    add(first);
    add(tileMail());
    manageContinuously();
    opensAndPolls("Mail").settle().expectTiles(kEmptyTiles);
    EXPECT_TRUE(isHandled("Mail"));
    desk.controller().perform(action::ChangeRule{.id = first.id, .isEnabled = false});
    opensAndPolls("Mail").settle().expectTiles("- | Mail 2 1291,15 1254x1382");
    desk.controller().perform(action::ChangeRule{.id = first.id, .isEnabled = true});
    desk.controller().perform(action::MoveRule{first.id, 99});
    opensAndPolls("Mail").settle().expectTiles("- | Mail 3 1291,15 1254x1382 + Mail 2");
    desk.controller().perform(action::DeleteRule{desk.state().rules->front().id});
    opensAndPolls("Mail").settle().expectTiles("- | Mail 3 1291,15 1254x1382 + Mail 2");
}

TEST_F(Rules, ATitleThatComesLateIsAwaited) {
    add(rule("Inbox to the left", std::nullopt, std::nullopt, "inbox", disposition::Tile{kLeft}));
    add(tileMail());
    manageContinuously();
    opensAndPolls("Mail");
    desk.desktop.setTitle("Mail", "");
    desk.settle().expectTiles("- | Mail 1291,15 1254x1382");
    desk.desktop.close("Mail");

    const std::string late = desk.desktop.open("Mail", {.frame = kUntiledFrame});
    desk.desktop.setTitle(late, "");
    desk.settle().expectTiles(kEmptyTiles);
    EXPECT_FALSE(isHandled(late.c_str()));
    desk.desktop.setTitle(late, "Inbox (2)");
    desk.advance(Seconds(0.6)).expectMessage("Rule “Inbox to the left” placed Mail");
    desk.desktop.setTitle(late, "Drafts");
    desk.settle().expectTiles(late + " 15,15 1254x1382 | -");
}

TEST_F(Rules, RulesApplyToAHiddenWindowOnceItIsShown) {
    add(tileMail());
    manageContinuously();
    opensAndPolls("Mail", {.frame = kUntiledFrame, .isMinimized = true}).settle().expectTiles(kEmptyTiles);
    EXPECT_TRUE(desk.desktop.window("Mail").isMinimized);
    desk.desktop.userMinimizes("Mail", false);
    desk.settle().expectTiles(kMailOnTheRight);
}

TEST_F(Rules, AnArrangementShowsAHiddenWindowThatARuleTakesOutOfItsStack) {
    for (const bool hasSecondWindow : {false, true}) { // the window's application is hidden, or only the window
        desk.opens("Mail", {.frame = kUntiledFrame}).opens("Notes").settle();
        if (hasSecondWindow) desk.opens("Mail").settle();
        for (const char* name : {"Mail", "Notes"}) {
            desk.perform(command::Place{desk.desktop.windowIDOf(name), desk.target("A", kLeft)});
        }
        if (hasSecondWindow) desk.perform(command::Place{desk.desktop.windowIDOf("Mail 2"), desk.target("A", kRight)});
        EXPECT_FALSE(desk.desktop.isOnScreen(desk.desktop.window("Mail")));
        manageContinuously();
        add(rule("Mail floats", "sim.mail", std::nullopt, std::nullopt));
        desk.arrange();
        EXPECT_TRUE(desk.desktop.isOnScreen(desk.desktop.window("Mail"))) << desk.desktop.picture();
        EXPECT_TRUE(desk.desktop.isOnScreen(desk.desktop.window("Notes")));
        for (const auto* window : desk.desktop.livingWindows()) desk.desktop.close(window->label());
        desk.perform(action::DeleteRule{desk.state().rules->front().id});
    }
}

TEST_F(Rules, DoNotTakeAWindowThatFloatsByCommandOrThatThePointerHolds) {
    opensAndPolls("Mail").perform(command::Float{desk.desktop.windowIDOf("Mail")});
    add(tileMail());
    manageContinuously();
    desk.settle().expectTiles(kEmptyTiles);
    opensAndPolls("Mail").settle().expectTiles("- | Mail 2 1291,15 1254x1382");
    desk.desktop.close("Mail 2");
    desk.settle();
    desk.controller().perform(action::Switch{action::Setting::continuousManagement, false});
    const std::string held = desk.desktop.open("Mail", {.frame = kUntiledFrame});
    desk.advance(Seconds(0.6));
    desk.controller().perform(action::PressWindow{desk.desktop.windowIDOf(held)});
    manageContinuously();
    desk.settle().expectTiles(kEmptyTiles);
    desk.controller().perform(action::ReleaseWindow{});
    desk.settle().expectTiles("- | " + held + " 1291,15 1254x1382");
}

TEST_F(Rules, AWindowMostlyOffTheScreenBelongsToTheDisplayThatShowsAPartOfIt) {
    desk.display(1920, 1080).layout("jarvis.dual-split", "B");
    add(tileMail());
    manageContinuously();
    opensAndPolls("Mail", {.frame = makeRect(4300, 900, 800, 600)}).settle();
    desk.expectTiles("- | - || - | Mail 3531,15 934x1022");
}

TEST_F(Rules, DoNothingInALayoutWithoutTheirSlot) {
    add(tileMail("no-such-slot"));
    manageContinuously();
    opensAndPolls("Mail");
    desk.advance(Seconds(5)).expectTiles(kEmptyTiles);
    desk.expectMessage("");
    EXPECT_TRUE(isHandled("Mail"));
}

TEST_F(Rules, KeepWindowsOutOfArrangements) {
    opensAndPolls("Mail");
    opensAndPolls("Notes");
    add(rule("", "sim.mail", std::nullopt, std::nullopt, disposition::Ignore{}));
    desk.arrange();
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 2u) << "rules are applied only while continuous management is on";
    desk.undo();
    manageContinuously();
    desk.arrange().expectTiles("Notes 15,15 1254x1382 | -");
    EXPECT_EQ(desk.desktop.window("Mail").frame, kUntiledFrame);
    desk.controller().perform(
        action::ChangeRule{.id = desk.state().rules->front().id, .disposition = disposition::Tile{kRight}});
    desk.arrange();
    EXPECT_EQ(desk.state().assignedWindowIDs->size(), 2u);
}

TEST_F(Rules, AllRulesAreMatchedBeforeAnyWindowMoves) {
    struct Case {
        const char* layout;
        SlotID notesTo;
        const char* after;
    };
    const Case cases[] = {
        {"jarvis.dual-split", kLeft, "Notes 15,15 1254x1382 | Mail 1291,15 1254x1382"},
        {"jarvis.triple-strip", "secondary-2", "- | Mail 866,15 829x1382 | Notes 1717,15 828x1382"},
    };
    for (const auto& c : cases) {
        for (const bool mailFirst : {true, false}) {
            SCOPED_TRACE(c.layout + std::string(mailFirst ? ", Mail first" : ", Notes first"));
            Scenario two;
            two.display(2560, 1440).layout(c.layout);
            two.opens(mailFirst ? "Mail" : "Notes").opens(mailFirst ? "Notes" : "Mail").start();
            for (const auto& [label, slot] : {std::pair{"Mail", kLeft}, {"Notes", kRight}}) {
                two.controller().perform(command::Place{two.desktop.windowIDOf(label), two.target("A", slot)});
            }
            two.settle();
            two.controller().perform(action::AddRule{tileMail()});
            two.controller().perform(
                action::AddRule{rule("", "sim.notes", std::nullopt, std::nullopt, disposition::Tile{c.notesTo})});
            two.controller().perform(action::Switch{action::Setting::continuousManagement, true});
            two.settle().expectTiles(c.after);
            EXPECT_TRUE(two.desktop.isOnScreen(two.desktop.window("Mail")));
            EXPECT_TRUE(two.desktop.isOnScreen(two.desktop.window("Notes")));
        }
    }
}

TEST_F(Rules, DetermineTilesInArrangements) {
    desk.opens("Notes").arrange().expectTiles("Notes 15,15 1254x1382 | -"); // this tile is learned for Notes
    add(rule("Notes aside", "sim.notes", std::nullopt, std::nullopt, disposition::Tile{kRight}));
    desk.arrange().expectTiles("Notes 15,15 1254x1382 | -");
    manageContinuously();
    desk.arrange().expectTiles("- | Notes 1291,15 1254x1382");
    EXPECT_EQ(desk.explanation(), "Notes “Notes” → Secondary on A: the rule “Notes aside” names this tile\n");

    add(tileMail());
    opensAndPolls("Mail").settle().expectTiles("- | Mail 1291,15 1254x1382 + Notes");
    desk.arrange().expectTiles("- | Mail 1291,15 1254x1382 + Notes");
}

TEST_F(Rules, DoNotApplyToAWindowThatASceneNames) {
    opensAndPolls("Mail").arrange().expectTiles("Mail 15,15 1254x1382 | -");
    desk.controller().perform(action::CaptureScene{"Work"});
    const Uuid scene = desk.state().scenes->front().id;
    desk.desktop.install("Mail");
    desk.desktop.quit("Mail");
    add(tileMail());
    manageContinuously();
    desk.settle();
    desk.perform(action::ActivateScene{scene}).settle();
    desk.expectTiles("Mail 15,15 1254x1382 | -");
    desk.desktop.takeJournal();
    desk.perform(action::ActivateScene{scene});
    EXPECT_EQ(desk.desktop.takeJournal(), "") << "the second opening moves nothing";
}

TEST_F(Rules, AreAppliedOnlyAfterFocusMode) {
    add(tileMail());
    manageContinuously();
    opensAndPolls("Notes").arrange();
    desk.desktop.userFocuses("Notes");
    desk.zoom();
    opensAndPolls("Mail").settle();
    EXPECT_NE(*desk.state().focusMode, std::nullopt);
    desk.desktop.userFocuses("Notes");
    desk.zoom().settle().expectTiles("Notes 15,15 1254x1382 | Mail 1291,15 1254x1382");
}

TEST_F(Rules, CanBeAddedForTheFocusedApplication) {
    auto& controller = desk.controller();
    EXPECT_FALSE(controller.perform(action::AddRuleForWindow{disposition::Float{}}));
    desk.expectMessage("No focused application window found");
    desk.desktop.launch("Tool", {.hasBundleIdentifier = false});
    opensAndPolls("Tool");
    opensAndPolls("Mail");
    const struct {
        const char* application;
        WorkspaceRuleDisposition disposition;
        const char* name;
        std::optional<BundleID> bundleIdentifier;
        std::optional<std::string> applicationName;
    } cases[] = {
        {"Mail", disposition::Float{}, "Mail floats", "sim.mail", std::nullopt},
        {"Tool", disposition::Ignore{}, "Tool ignored", std::nullopt, "Tool"},
        {"Tool", disposition::Tile{kLeft}, "Tool → focus-main", std::nullopt, "Tool"},
    };
    for (const auto& c : cases) {
        desk.desktop.userFocuses(c.application);
        EXPECT_TRUE(controller.perform(action::AddRuleForWindow{c.disposition}));
        desk.expectMessage("Rule added for " + std::string(c.application));
        const WorkspaceRule added = desk.state().rules->back();
        EXPECT_EQ(added.name, c.name);
        EXPECT_TRUE(added.isEnabled);
        EXPECT_EQ(added.bundleIdentifier, c.bundleIdentifier);
        EXPECT_EQ(added.applicationName, c.applicationName);
        EXPECT_EQ(added.titleContains, std::nullopt);
        EXPECT_EQ(added.disposition, c.disposition);
    }
    EXPECT_EQ(desk.state().rules->size(), 3u);
}

TEST_F(Rules, AreEditedAndSavedWithoutAMessage) {
    add(tileMail());
    EXPECT_FALSE(desk.controller().perform(action::AddRule{rule("", std::nullopt, std::nullopt, " \n")}));
    desk.expectMessage("A rule needs an application or a part of a title");
    desk.advance(Seconds(5));
    auto& controller = desk.controller();
    const auto stored = [&] {
        const auto data = desk.preferences.data(preferenceKey::workspaceProduct);
        return std::get<WorkspaceProductDocument>(decodeStoredDocument(data->json)).rules;
    };
    const Uuid id = desk.state().rules->front().id;
    EXPECT_TRUE(controller.perform(action::ChangeRule{.id = id, .titleContains = " \t Inbox \n"}));
    EXPECT_EQ(stored().front().titleContains, "Inbox");
    EXPECT_TRUE(controller.perform(action::ChangeRule{.id = id, .titleContains = "\n"}));
    EXPECT_EQ(stored().front().titleContains, std::nullopt);
    add(rule("Drafts float", std::nullopt, std::nullopt, "Drafts"));
    const action::ChangeRule lastCriterion{.id = desk.state().rules->back().id, .titleContains = ""};
    EXPECT_FALSE(controller.perform(lastCriterion)) << "the rule would match no window";
    EXPECT_EQ(stored().back().titleContains, "Drafts");
    controller.perform(action::DeleteRule{lastCriterion.id});
    EXPECT_TRUE(controller.perform(action::ChangeRule{.id = id, .isEnabled = false}));
    EXPECT_FALSE(stored().front().isEnabled);
    EXPECT_TRUE(controller.perform(action::ChangeRule{.id = id, .disposition = disposition::Ignore{}}));
    EXPECT_EQ(stored().front().disposition, WorkspaceRuleDisposition(disposition::Ignore{}));
    for (const char* name : {"b", "c", "d"}) add(rule(name, "x", std::nullopt, std::nullopt));
    desk.advance(Seconds(5));
    const auto order = [&] {
        std::string names;
        for (const auto& each : stored()) names += each.name.substr(0, 1);
        return names;
    };
    const Uuid d = desk.state().rules->back().id;
    EXPECT_TRUE(controller.perform(action::MoveRule{d, 1}));
    EXPECT_EQ(order(), "Mdbc");
    EXPECT_TRUE(controller.perform(action::MoveRule{id, 2}));
    EXPECT_EQ(order(), "dbMc");
    EXPECT_TRUE(controller.perform(action::MoveRule{d, 2}));
    EXPECT_EQ(order(), "bMdc");
    EXPECT_TRUE(controller.perform(action::DeleteRule{id}));
    EXPECT_EQ(order(), "bdc");
    const auto before = *desk.state().rules;
    EXPECT_FALSE(controller.perform(action::ChangeRule{.id = id, .isEnabled = true}) ||
                 controller.perform(action::ChangeRule{.id = id, .titleContains = "x"}) ||
                 controller.perform(action::ChangeRule{.id = id, .disposition = disposition::Float{}}) ||
                 controller.perform(action::DeleteRule{id}) || controller.perform(action::MoveRule{id, 0}));
    EXPECT_EQ(*desk.state().rules, before);
    desk.expectMessage("");
}

TEST_F(Rules, ExplainTheirDecisions) {
    WorkspaceRule off = rule("Off", "sim.mail", std::nullopt, std::nullopt);
    off.isEnabled = false;
    add(off);
    add(rule("Notes", "sim.notes", std::nullopt, std::nullopt));
    add(rule("Drafts", "sim.mail", std::nullopt, "Drafts"));
    add(tileMail());
    add(rule("Later", "sim.mail", std::nullopt, std::nullopt));
    opensAndPolls("Mail");
    const auto explain = [&] { return *desk.controller().explainRules(desk.desktop.windowIDOf("Mail")); };
    EXPECT_EQ(explain().deciding, 3u);
    EXPECT_EQ(explain().summary, "Rule “Mail to the right” decides: tile Secondary 1; rules are off, and “kova "
                                 "rules on” lets them act");
    std::string reasons;
    for (const auto& reason : explain().reasons) reasons += reason.name + " " + reason.text + "\n";
    EXPECT_EQ(reasons, "Off is disabled\n"
                       "Notes is for sim.notes, the window belongs to sim.mail\n"
                       "Drafts asks for “Drafts” in the title, which is “Mail”\n"
                       "Mail to the right matches: tile Secondary 1\n"
                       "Later is not consulted, an earlier rule decides\n");
    manageContinuously();
    desk.settle();
    EXPECT_TRUE(explain().summary.ends_with("; the window was seen already and is not moved again"));
    EXPECT_FALSE(desk.controller().explainRules("1:2"));
}

} // namespace

} // namespace kova
