#include "layout/AutoArrangeLearning.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <utility>

using namespace kova;

TEST(AutoArrangeLearning, ClassifiesApplicationsByNameAndBundleIdentifier) {
    using enum AutoArrangeAppRole;
    struct Case {
        const char* name;
        std::optional<BundleID> bundle;
        AutoArrangeAppRole expected;
    };
    const Case cases[] = {
        {"Cursor", "com.todesktop.230313mzl4w4u92", codingAgent},
        {"Editor", "COM.ToDesktop.230313mzl4w4u92", codingAgent},
        {"Editor", "com.todesktop.230313mzl4w4u92.helper", other},
        {"X", "io.github.my-claudecode.app", codingAgent},
        {"Visual Studio Code with Codex", std::nullopt, codingAgent},
        {"Claude", std::nullopt, other},
        {"Arc Welder", std::nullopt, browser},
        {"Research", "org.example.research", browser},
        {"Kagi", "com.kagi.orion", browser},
        {"ZEN BROWSER", "", browser},
        {"Konsole", "org.kde.konsole", utility},
        {"AKTIVITÄTSANZEIGE", std::nullopt, utility},
        {"Schlu\u0308sselbundverwaltung", std::nullopt, utility},
        {"Panel", "com.apple.systempreferences", utility},
        {"Search Console", "com.apple.mail", browser},
        {"Postfach", "com.apple.mail", productivity},
        {"Anything", "com.apple.notes", productivity},
        {"Barcode", std::nullopt, browser},
        {"Encoder", std::nullopt, productivity},
        {"xterm", "xterm", other},
        {"", std::nullopt, other},
    };
    for (const auto& c : cases)
        EXPECT_EQ(describe(classifyApplication(c.name, c.bundle)), describe(c.expected)) << c.name;
    int value = 0;
    for (const auto role : {utility, other, productivity, browser, codingAgent}) {
        EXPECT_EQ(static_cast<int>(role), value++) << describe(role);
    }

    EXPECT_EQ(applicationKey("Mail", "Com.Apple.Mail"), "com.apple.mail");
    EXPECT_EQ(applicationKey("My Tool", ""), "name:my tool");
    EXPECT_EQ(applicationKey("ÜBUNG", std::nullopt), "name:übung");
}

TEST(AutoArrangeLearning, EachListedWordIdentifiesItsRole) {
    using enum AutoArrangeAppRole;
    enum class Where { bundle, partOfBundle, partOfName };
    const struct {
        AutoArrangeAppRole role;
        Where where;
        const char* words; // separated by commas
    } cases[] = {
        {codingAgent, Where::bundle,
         "com.openai.codex,com.todesktop.230313mzl4w4u92,com.anthropic.claudefordesktop,com.anthropic.claude-code,"
         "com.anthropic.claudecode"},
        {codingAgent, Where::partOfBundle, "codex,cursor,claude-code,claudecode,claude_code"},
        {codingAgent, Where::partOfName, "codex,claude code,cursor"},
        {browser, Where::bundle,
         "com.apple.safari,com.google.chrome,com.google.chrome.canary,org.mozilla.firefox,com.microsoft.edgemac,"
         "company.thebrowser.browser,com.brave.browser,com.operasoftware.opera,com.vivaldi.vivaldi,com.kagi.orion"},
        {browser, Where::partOfName, "safari,chrome,firefox,microsoft edge,arc,brave,opera,vivaldi,orion,zen browser"},
        {utility, Where::bundle,
         "com.apple.systempreferences,com.apple.activitymonitor,com.apple.console,com.apple.diskutility,"
         "com.apple.colorsyncutility,com.apple.fontbook,com.apple.keychainaccess"},
        {utility, Where::partOfName,
         "system settings,system preferences,systemeinstellungen,activity monitor,aktivitätsanzeige,console,konsole,"
         "disk utility,festplattendienstprogramm,colorsync utility,font book,schriftensammlung,keychain access,"
         "schlüsselbundverwaltung"},
        {productivity, Where::partOfBundle,
         "xcode,visualstudiocode,vscode,zed,sublime,jetbrains,iterm,wezterm,warp,terminal,notion,obsidian,slack,"
         "microsoft.teams,discord,mail,notes,calendar,pages,numbers,keynote,figma,linear"},
        {productivity, Where::partOfName,
         "xcode,visual studio code,code,terminal,iterm,warp,zed,sublime,android studio,notion,obsidian,slack,teams,"
         "discord,mail,notes,calendar,figma,linear"},
    };
    for (const auto& c : cases) {
        std::istringstream words(c.words);
        for (std::string word; std::getline(words, word, ',');) {
            const std::string text = c.where == Where::bundle ? word : "~" + word + "~";
            const auto role = c.where == Where::partOfName ? classifyApplication(text, std::nullopt)
                                                           : classifyApplication("X", BundleID(text));
            EXPECT_EQ(describe(role), describe(c.role)) << word;
        }
    }
}

TEST(AutoArrangeLearning, SlotsOfTheSameMeaningShareACanonicalID) {
    const std::vector<std::pair<SlotID, const char*>> cases{
        {"focus-right-top", "secondary-1"},
        {"ultrawide-left-top", "secondary-1"},
        {"focus-right-bottom", "secondary-2"},
        {"ultrawide-left-bottom", "secondary-2"},
        {"focus-utility", "secondary-3"},
        {"ultrawide-right-top", "secondary-3"},
        {"ultrawide-right-bottom", "secondary-4"},
        {"ultrawide-center", "focus-main"},
        {"focus-main", "focus-main"},
        {"my-slot", "my-slot"},
    };
    for (const auto& [id, canonical] : cases) EXPECT_EQ(canonicalSlotID(id), canonical);
}

TEST(AutoArrangeLearning, ThreeArrangementsOrOnePlacementByTheUserMakeAHabit) {
    AutoArrangeLearningModel model;
    const auto preferences = [&] {
        return std::pair(model.preference("grid", "mail", "focus-main"),
                         model.preference("grid", "mail", "secondary-1"));
    };
    using Pair = std::pair<double, double>;
    for (const double expected : {0, 0, 1, 1, 1}) {
        model.learnArrangement("grid", "mail", {"focus-main"});
        EXPECT_EQ(preferences(), Pair(expected, 0));
    }
    EXPECT_FALSE(model.isPlacedByUser("grid", "mail", "focus-main"))
        << "arrangements do not count as placements by the user";
    EXPECT_EQ(model.preference("grid", "chat", "focus-main"), 0);
    for (const Pair& expected : {Pair(0, 0), Pair(0, 0), Pair(0, 1)}) {
        model.learnArrangement("grid", "mail", {"secondary-1"});
        EXPECT_EQ(preferences(), expected) << "a new habit replaces the old one";
    }
    model.learnPlacementByUser("grid", "mail", "focus-main");
    EXPECT_EQ(preferences(), Pair(1, 0));
    for (int round = 0; round < 2; ++round) model.learnArrangement("grid", "mail", {"secondary-1"});
    EXPECT_TRUE(model.isPlacedByUser("grid", "mail", "focus-main")) << "arrangements do not overrule the user";
    model.learnPlacementByUser("grid", "mail", "secondary-2");
    EXPECT_FALSE(model.isPlacedByUser("grid", "mail", "focus-main"));
    EXPECT_EQ(preferences(), Pair(0, 0));
    EXPECT_EQ(model.layouts["grid"].applications["mail"].placementCount, 12);
    for (int round = 0; round < 30; ++round) model.learnArrangement("grid", "mail", {"secondary-2"});
    EXPECT_EQ(model.layouts["grid"].applications["mail"].slotWeights.size(), 1U) << "old slots are forgotten";

    for (const double stored : {3.5, 4.0, 12.0, 1e9}) { // stored by older versions, which had no limit
        auto& weights = model.layouts["grid"].applications["old"].slotWeights;
        weights = {{"focus-main", stored}};
        EXPECT_FALSE(model.isPlacedByUser("grid", "old", "focus-main")) << stored;
        EXPECT_EQ(model.preference("grid", "old", "focus-main"), 1) << stored;
        for (int round = 0; round < 3; ++round) model.learnArrangement("grid", "old", {"secondary-1"});
        EXPECT_EQ(model.preference("grid", "old", "focus-main"), 0) << stored;
    }

    for (int round = 0; round < 3; ++round) model.learnArrangement("grid", "term", {"secondary-1", "secondary-2"});
    EXPECT_EQ(model.preference("grid", "term", "secondary-1"), 0.5) << "two windows of one application in two slots";
    EXPECT_EQ(model.preference("grid", "term", "secondary-2"), 0.5);
}

TEST(AutoArrangeLearning, AHabitCountsHalfForSlotsOfTheSameMeaningOnOtherLayouts) {
    AutoArrangeLearningModel model;
    model.learnPlacementByUser("command-center", "mail", "focus-right-top");
    EXPECT_EQ(model.preference("six-grid", "mail", "secondary-1"), 0.5);
    EXPECT_EQ(model.preference("six-grid", "mail", "secondary-2"), 0);
    model.learnPlacementByUser("six-grid", "mail", "secondary-2");
    EXPECT_EQ(model.preference("six-grid", "mail", "secondary-1"), 0)
        << "a habit on this layout excludes those on others";

    auto& weights = model.layouts["absurd"].applications["mail"].slotWeights;
    weights = {{"a", std::numeric_limits<double>::infinity()},
               {"b", 1e308},
               {"c", -7},
               {"d", std::numeric_limits<double>::quiet_NaN()}};
    EXPECT_EQ(model.preference("absurd", "mail", "a"), 0.5);
    EXPECT_EQ(model.preference("absurd", "mail", "c"), 0);
    model.layouts["absurd"].applications["mail"].placementCount = std::numeric_limits<std::int64_t>::max();
    model.learnArrangement("absurd", "mail", {"d"});
    EXPECT_EQ(weights.at("d"), 1);
}
