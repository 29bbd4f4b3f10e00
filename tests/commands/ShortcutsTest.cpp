// Shortcuts as values: the defaults, and how they are stored, named and recorded.
#include "commands/KeyNames.h"
#include "commands/KovaShortcutSettings.h"
#include "commands/LayoutShortcutCoordinator.h"
#include "commands/ShortcutRecorder.h"
#include "persistence/MemoryPreferencesStore.h"
#include "windowing/KeyCodes.h"

#include <gtest/gtest.h>

namespace kova {
namespace {

using enum KovaShortcutAction;
using Outcome = ShortcutRecorder::Outcome;

constexpr std::uint64_t kControlOption = 0xC0000, kControlOptionShift = 0xE0000;
constexpr std::string_view kKey = "KOVA.keyboardShortcuts.v1";

std::string storedText(const MemoryPreferencesStore& store) {
    const auto data = store.data(kKey);
    return data ? data->json : "nothing";
}

TEST(Shortcuts, HaveDefaultsThatAreNotStored) {
    struct Row {
        KovaShortcutAction action;
        std::string_view name, title;
        std::optional<KovaShortcut> shortcut;
    };
    const std::vector<Row> rows = {
        {commandCenter, "commandCenter", "Legacy KOVA Actions", std::nullopt},
        {previousLayout, "previousLayout", "Previous Layout", {{123, kControlOption, "←"}}},
        {nextLayout, "nextLayout", "Next Layout", {{124, kControlOption, "→"}}},
        {arrangeWindows, "arrangeWindows", "Arrange Windows into Zones", {{0, kControlOption, "A"}}},
        {undo, "undo", "Undo Window Action", {{6, kControlOption, "Z"}}},
        {focusLeft, "focusLeft", "Focus Left", {{4, kControlOption, "H"}}},
        {focusRight, "focusRight", "Focus Right", {{37, kControlOption, "L"}}},
        {focusUp, "focusUp", "Focus Up", {{40, kControlOption, "K"}}},
        {focusDown, "focusDown", "Focus Down", {{38, kControlOption, "J"}}},
        {moveLeft, "moveLeft", "Move Window Left", {{4, kControlOptionShift, "H"}}},
        {moveRight, "moveRight", "Move Window Right", {{37, kControlOptionShift, "L"}}},
        {moveUp, "moveUp", "Move Window Up", {{40, kControlOptionShift, "K"}}},
        {moveDown, "moveDown", "Move Window Down", {{38, kControlOptionShift, "J"}}},
        {focusZoom, "focusZoom", "Enter or Exit Focus Mode", {{36, kControlOption, "↩"}}},
        {cycleStack, "cycleStack", "Next Window in Current Zone", {{48, kControlOption, "⇥"}}},
    };
    MemoryPreferencesStore store;
    const KovaShortcutSettings settings(store);
    for (std::size_t i = rows.size(); i < kShortcutActions.size(); ++i) {
        EXPECT_EQ(settings.shortcut(kShortcutActions[i]), std::nullopt) << rawValue(kShortcutActions[i]);
        EXPECT_EQ(shortcutActionFrom(rawValue(kShortcutActions[i])), kShortcutActions[i]);
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(kShortcutActions[i], rows[i].action);
        EXPECT_EQ(rawValue(rows[i].action), rows[i].name);
        EXPECT_EQ(shortcutActionFrom(rows[i].name), rows[i].action);
        EXPECT_EQ(title(rows[i].action), rows[i].title);
        EXPECT_EQ(settings.shortcut(rows[i].action), rows[i].shortcut) << rows[i].name;
    }
    EXPECT_EQ(storedText(store), "nothing") << "unchanged shortcuts are not written";
}

TEST(Shortcuts, AreStoredWithEveryChangeAndRestored) {
    MemoryPreferencesStore store;
    {
        KovaShortcutSettings settings(store);
        for (const auto action : kShortcutActions) EXPECT_TRUE(settings.setShortcut(std::nullopt, action));
        EXPECT_EQ(storedText(store), R"({"additional":{}})");
        EXPECT_TRUE(settings.setShortcut({{0, kControlOption, "Q"}}, arrangeWindows));
        EXPECT_TRUE(settings.setShortcut({{11, 0x180100, "B"}}, undo)); // with a bit that shortcuts do not use
        EXPECT_EQ(storedText(store),
                  R"({"additional":{"undo":{"keyCode":11,"keyLabel":"B","modifierFlagsRawValue":1572864}},)"
                  R"("arrangeWindows":{"keyCode":0,"keyLabel":"Q","modifierFlagsRawValue":786432}})");
    }
    KovaShortcutSettings again(store);
    EXPECT_EQ(again.shortcut(arrangeWindows), (KovaShortcut{0, kControlOption, "Q"}));
    EXPECT_EQ(again.shortcut(undo), (KovaShortcut{11, 0x180000, "B"}));
    EXPECT_EQ(again.shortcut(nextLayout), std::nullopt);
    again.restoreDefaults();
    EXPECT_EQ(*again.configuration, KovaShortcutConfiguration::standard());
    EXPECT_EQ(*KovaShortcutSettings(store).configuration, KovaShortcutConfiguration::standard());
}

TEST(Shortcuts, AreTheDefaultsIfTheStoredConfigurationCannotBeRead) {
    const std::string good = R"({"keyCode":1,"modifierFlagsRawValue":262144,"keyLabel":"S"})";
    const std::vector<std::string> unreadable = {
        "{",
        "[]",
        R"({"undo":)" + good + R"(,"additional":[]})",
        R"({"nextLayout":{"keyCode":1,"modifierFlagsRawValue":262144}})",
        R"({"nextLayout":{"keyCode":65536,"modifierFlagsRawValue":262144,"keyLabel":"S"}})",
        R"({"nextLayout":{"keyCode":-1,"modifierFlagsRawValue":262144,"keyLabel":"S"}})",
        R"({"nextLayout":{"keyCode":1.5,"modifierFlagsRawValue":262144,"keyLabel":"S"}})",
        R"({"nextLayout":{"keyCode":1,"modifierFlagsRawValue":-1,"keyLabel":"S"}})",
        R"({"nextLayout":{"keyCode":1,"modifierFlagsRawValue":262144,"keyLabel":7}})",
        R"({"nextLayout":)" + good + R"(,"additional":{"undo":3}})"};
    for (const std::string& text : unreadable) {
        MemoryPreferencesStore store;
        store.setValue(kKey, PreferenceData{text});
        EXPECT_EQ(*KovaShortcutSettings(store).configuration, KovaShortcutConfiguration::standard()) << text;
    }
    // Missing and unknown members are not errors; a missing action has no shortcut.
    MemoryPreferencesStore store;
    store.setValue(kKey, PreferenceData{R"({"nextLayout":)" + good + R"(,"previousLayout":null,"later":1})"});
    const KovaShortcutSettings settings(store);
    EXPECT_EQ(settings.shortcut(nextLayout), (KovaShortcut{1, 0x40000, "S"}));
    EXPECT_EQ(settings.shortcut(previousLayout), std::nullopt);
    EXPECT_EQ(settings.shortcut(undo), std::nullopt);
}

TEST(Shortcuts, OfActionsThatThisVersionDoesNotKnowAreKept) {
    const std::string good = R"({"keyCode":1,"keyLabel":"S","modifierFlagsRawValue":262144})";
    MemoryPreferencesStore store;
    store.setValue(kKey, PreferenceData{R"({"additional":{"fly":{"keys":[7]},"undo":)" + good + "}}"});
    KovaShortcutSettings settings(store);
    EXPECT_EQ(settings.shortcut(undo), (KovaShortcut{1, 0x40000, "S"}));
    EXPECT_TRUE(store.problems().empty());
    EXPECT_TRUE(settings.setShortcut(std::nullopt, undo));
    EXPECT_EQ(storedText(store), R"({"additional":{"fly":{"keys":[7]}}})");
}

TEST(Shortcuts, OfAnotherActionAreRefused) {
    MemoryPreferencesStore store;
    KovaShortcutSettings settings(store);
    const KovaShortcut ofFocusLeft{4, kControlOption, "H"};
    EXPECT_FALSE(settings.setShortcut(ofFocusLeft, undo));
    EXPECT_EQ(settings.shortcut(undo)->keyLabel, "Z");
    EXPECT_TRUE(settings.setShortcut(ofFocusLeft, focusLeft)) << "an action may get the shortcut that it has";
    EXPECT_EQ(settings.conflictingAction({4, 0x40000, "H"}, undo), std::nullopt) << "the modifiers differ";
    // If several actions conflict, the result is the action that comes first in the order of the actions.
    KovaShortcutConfiguration twice = *settings.configuration;
    twice.setShortcut(ofFocusLeft, cycleStack);
    twice.setShortcut(ofFocusLeft, commandCenter);
    settings.configuration.set(twice);
    EXPECT_EQ(settings.conflictingAction(ofFocusLeft, undo), commandCenter);
    EXPECT_EQ(settings.conflictingAction(ofFocusLeft, commandCenter), focusLeft);
}

TEST(ShortcutRecorder, RecordsClearsCancelsOrRefusesEachPress) {
    struct Row {
        KeyPress press;
        ShortcutRecorder::Step step;
        std::optional<KovaShortcut> shortcut; // of the action afterwards
    };
    const KovaShortcut before{6, kControlOption, "Z"};
    const std::vector<Row> rows = {
        {{51, 0, false, "\x7f"}, {Outcome::cleared, ""}, std::nullopt},
        {{117, 0x100000, false, ""}, {Outcome::cleared, ""}, std::nullopt},
        {{53, 0, false, "\x1b"}, {Outcome::canceled, ""}, before},
        {{53, kControlOption, false, "\x1b"}, {Outcome::canceled, ""}, before},
        {{0, 0, false, "a"}, {Outcome::refused, ""}, before},
        {{0, 0x20000, false, "A"}, {Outcome::refused, ""}, before},
        {{0, 0x10100, false, "a"}, {Outcome::refused, ""}, before}, // Caps Lock is not a modifier
        {{0, 0x60000, false, "a"}, {Outcome::recorded, ""}, {{0, 0x60000, "A"}}},
        {{0, 0x110108, false, "a"}, {Outcome::recorded, ""}, {{0, 0x100000, "A"}}},
        {{24, 0x80000, false, "´"}, {Outcome::recorded, ""}, {{24, 0x80000, "´"}}},
        {{41, 0x40000, false, "ß"}, {Outcome::recorded, ""}, {{41, 0x40000, "SS"}}},
        {{33, 0x40000, false, "å"}, {Outcome::recorded, ""}, {{33, 0x40000, "Å"}}},
        {{93, 0x40000, false, ""}, {Outcome::recorded, ""}, {{93, 0x40000, "Key (event.keyCode)"}}},
        {{76, 0x40000, false, "\x03\r"}, {Outcome::recorded, ""}, {{76, 0x40000, "Key (event.keyCode)"}}},
        {{6, kControlOption, false, "z"}, {Outcome::recorded, ""}, before}, // the action's own shortcut
        {{4, kControlOption, false, "h"}, {Outcome::refused, "This shortcut is already used by “Focus Left”."}, before},
        {{0, kControlOption, false, "a"},
         {Outcome::refused, "This shortcut is already used by “Arrange Windows into Zones”."},
         before},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::to_string(row.press.keyCode) + " with " + std::to_string(row.press.modifierFlags));
        MemoryPreferencesStore store;
        KovaShortcutSettings settings(store);
        ShortcutRecorder recorder(settings, undo);
        const auto step = recorder.take(row.press);
        EXPECT_EQ(step, row.step);
        EXPECT_EQ(step.beeps(), row.step.outcome == Outcome::refused);
        EXPECT_EQ(step.endsRecording(), row.step.outcome != Outcome::refused);
        EXPECT_EQ(settings.shortcut(undo), row.shortcut);
    }
}

TEST(ShortcutRecorder, LabelsAKeyWithItsFixedNameElseWithItsCharacter) {
    const std::map<std::uint16_t, std::string> labels = {
        {36, "↩"},    {48, "⇥"},    {49, "Space"}, {51, "⌫"},     {53, "⎋"},    {117, "⌦"},       {123, "←"},
        {124, "→"},   {125, "↓"},   {126, "↑"},    {115, "Home"}, {119, "End"}, {116, "Page Up"}, {121, "Page Down"},
        {122, "F1"},  {120, "F2"},  {99, "F3"},    {118, "F4"},   {96, "F5"},   {97, "F6"},       {98, "F7"},
        {100, "F8"},  {101, "F9"},  {109, "F10"},  {103, "F11"},  {111, "F12"}, {105, "F13"},     {107, "F14"},
        {113, "F15"}, {106, "F16"}, {64, "F17"},   {79, "F18"},   {80, "F19"},  {90, "F20"}};
    for (std::uint16_t code = 0; code < keyCode::limit; ++code) {
        const auto fixed = labels.find(code);
        EXPECT_EQ(keyLabel({code, 0, false, "x"}), fixed == labels.end() ? "X" : fixed->second) << code;
    }
}

TEST(ShortcutMatching, PicksTheFirstActionWithTheSameKeyAndModifiers) {
    auto configuration = KovaShortcutConfiguration::standard();
    configuration.setShortcut({{8, 0x40000, "C"}}, commandCenter);
    const KovaShortcut shared{9, 0x180000, "V"};
    for (const auto action : {cycleStack, focusLeft, nextLayout}) configuration.setShortcut(shared, action);

    const auto actionOf = [&](std::uint16_t code, std::uint64_t flags) {
        return actionFor(configuration, eventOf({code, flags, false, ""}));
    };
    EXPECT_EQ(actionOf(4, kControlOptionShift), moveLeft);
    EXPECT_EQ(actionOf(37, kControlOption), focusRight);
    EXPECT_EQ(actionOf(37, kControlOption | 0x10000), focusRight) << "with Caps Lock";
    EXPECT_EQ(actionOf(37, kControlOption | 0x800000 | 0x2121), focusRight) << "with Function and left and right bits";
    EXPECT_EQ(actionOf(37, kControlOption | 0x100000), std::nullopt);
    EXPECT_EQ(actionOf(37, 0x40000), std::nullopt);
    EXPECT_EQ(actionOf(6, kControlOptionShift), std::nullopt);
    EXPECT_EQ(actionOf(8, 0x40000), std::nullopt) << "commandCenter has no effect";
    EXPECT_EQ(actionOf(9, 0x180000), nextLayout) << "the first of three actions with this shortcut";
    configuration.setShortcut(std::nullopt, nextLayout);
    EXPECT_EQ(actionOf(9, 0x180000), focusLeft);

    const auto claimed = combinationsOf(configuration);
    EXPECT_EQ(claimed.size(), 12U)
        << "a shared combination counts once, actions without effect or shortcut do not count";
    EXPECT_EQ(std::ranges::count(claimed, KeyCombination{8, 0x40000}), 0);
}

TEST(ShortcutMatching, PicksActionsWithTheSameShortcutInTheOrderOfTheActions) {
    KovaShortcutConfiguration configuration;
    const KovaShortcut shared{9, kControlOption, "V"};
    for (const auto action : kShortcutActions) configuration.setShortcut(shared, action);
    std::string order;
    while (const auto action = actionFor(configuration, eventOf({9, kControlOption, false, ""}))) {
        order += std::string(rawValue(*action)) + " ";
        configuration.setShortcut(std::nullopt, *action);
    }
    EXPECT_TRUE(
        order.starts_with("previousLayout nextLayout arrangeWindows undo focusLeft focusRight focusUp focusDown "
                          "moveLeft moveRight moveUp moveDown focusZoom cycleStack previousInStack "))
        << order;
}

TEST(ShortcutNames, AreParsedAsUsersTypeThem) {
    const auto german = [](std::uint16_t code) -> std::string {
        switch (code) {
        case keyCode::z:
            return "y";
        case keyCode::y:
            return "z";
        case keyCode::leftBracket:
            return "ü";
        case keyCode::rightBracket:
            return "+";
        case keyCode::minus:
            return "ß";
        case keyCode::slash:
            return "-";
        default:
            return std::string(americanCharacterOf(code));
        }
    };
    struct Row {
        std::string_view typed;
        KovaShortcut shortcut;
        std::string_view shown, onAMac;
    };
    const std::vector<Row> rows = {
        {"ctrl+alt+h", {4, kControlOption, "H"}, "Ctrl+Alt+H", "⌃⌥H"},
        {" Control + OPTION + Shift + H ", {4, kControlOptionShift, "H"}, "Ctrl+Alt+Shift+H", "⌃⌥⇧H"},
        {"cmd+z", {16, 0x100000, "Z"}, "Super+Z", "⌘Z"},
        {"super+Ü", {33, 0x100000, "Ü"}, "Super+Ü", "⌘Ü"},
        {"ctrl++", {30, 0x40000, "+"}, "Ctrl++", "⌃+"},
        {"ctrl+-", {44, 0x40000, "-"}, "Ctrl+-", "⌃-"},
        {"alt+7", {26, 0x80000, "7"}, "Alt+7", "⌥7"},
        {"alt+keypad7", {89, 0x80000, "7"}, "Alt+Keypad7", "⌥Keypad7"},
        {"shift+win+pgup", {116, 0x120000, "Page Up"}, "Shift+Super+PageUp", "⇧⌘Page Up"},
        {"ctrl+enter", {36, 0x40000, "↩"}, "Ctrl+Return", "⌃↩"},
        {"alt+left", {123, 0x80000, "←"}, "Alt+Left", "⌥←"},
        {"f20", {90, 0, "F20"}, "F20", "F20"},
    };
    for (const Row& row : rows) {
        const auto parsed = parseShortcut(row.typed, german);
        ASSERT_TRUE(std::holds_alternative<KovaShortcut>(parsed)) << row.typed << ": " << std::get<1>(parsed);
        EXPECT_EQ(std::get<KovaShortcut>(parsed), row.shortcut) << row.typed;
        EXPECT_EQ(shortcutText(row.shortcut, ModifierNames::words), row.shown);
        EXPECT_EQ(shortcutText(row.shortcut, ModifierNames::symbols), row.onAMac);
        for (const std::string_view text : {row.shown, row.onAMac}) {
            const auto again = parseShortcut(text, german);
            ASSERT_TRUE(std::holds_alternative<KovaShortcut>(again)) << text << ": " << std::get<1>(again);
            EXPECT_EQ(std::get<KovaShortcut>(again), row.shortcut) << text << " can be typed again";
        }
    }
    // A layout without Latin letters.
    const auto parsed = parseShortcut("ctrl+h", [](std::uint16_t code) { return code == keyCode::h ? "р" : ""; });
    EXPECT_EQ(std::get<KovaShortcut>(parsed), (KovaShortcut{4, 0x40000, "Р"}));
    const auto withoutLayout = parseShortcut("ctrl+u", [](std::uint16_t) { return ""; });
    EXPECT_EQ(std::get<KovaShortcut>(withoutLayout), (KovaShortcut{32, 0x40000, "U"}))
        << "an unknown keyboard layout counts as American";
    EXPECT_EQ(shortcutText({93, 0x40000, "Key (event.keyCode)"}, ModifierNames::words), "Ctrl+Key 93");

    for (const auto& [typed, complaint] : std::map<std::string, std::string>{{"", "key is missing"},
                                                                             {"ctrl+", "key is missing"},
                                                                             {"ctrl+alt", "key is missing"},
                                                                             {"ctl+h", "“ctl” is no modifier"},
                                                                             {"ctrl+h+j", "“h” is no modifier"},
                                                                             {"ctrl+hh", "“hh” is no key"},
                                                                             {std::string("ctrl+\0", 6), "is no key"},
                                                                             {"ctrl+\xFF", "is no key"}}) {
        const auto refused = parseShortcut(typed, [](std::uint16_t) { return ""; });
        ASSERT_TRUE(std::holds_alternative<std::string>(refused)) << typed;
        EXPECT_NE(std::get<std::string>(refused).find(complaint), std::string::npos) << std::get<std::string>(refused);
    }
}

} // namespace
} // namespace kova
