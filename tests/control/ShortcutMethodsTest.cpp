// Keyboard shortcuts over the agent's socket.
#include "control/ShortcutMethods.h"
#include "tests/control/MethodCalls.h"
#include "windowing/KeyCodes.h"

namespace kova {

namespace {

using nlohmann::json;

constexpr std::uint64_t kControlOption = modifierFlag::control | modifierFlag::option;

class ShortcutsOverTheSocket : public MethodCalls {
  protected:
    /// The next notification as text, for example "recorded refused", followed by its message if there is one.
    std::string nextNotification(SocketClient& by) {
        const json message = by.message();
        if (!message.is_object()) return message.dump();
        const std::string name = message["method"];
        EXPECT_EQ(schemaViolation(schema, "notification:" + name, message["params"]), "");
        const json& what = message["params"];
        if (name == "claimed") return name + " " + shown(what["shortcut"]);
        const json& reason = what["message"];
        return name + " " + what["outcome"].get<std::string>() +
               (reason.is_null() ? "" : ": " + reason.get<std::string>());
    }
    static std::string shown(const json& shortcut) {
        const std::string keys = shortcut["keys"].is_null() ? "-" : shortcut["keys"].get<std::string>();
        return keys + (shortcut["isHeldByOther"].get<bool>() ? " held" : "");
    }
    json shortcutOf(const std::string& action) {
        const json list = result("shortcut.list");
        for (const json& shortcut : list["shortcuts"]) {
            if (shortcut["action"] == action) return shortcut;
        }
        return {};
    }
    SimulatedKeyboard& keyboard() { return desk.desktop.keyboard(); }
};

} // namespace

TEST_F(ShortcutsOverTheSocket, AreSetClearedAndRestored) {
    EXPECT_EQ(result("shortcut.list")["shortcuts"].size(), kShortcutActions.size());
    EXPECT_EQ(shown(result("shortcut.set", {{"action", "Focus-Left"}, {"keys", "super+f2"}})["shortcut"]), "Super+F2");
    EXPECT_EQ(nextNotification(connection), "claimed Super+F2");
    EXPECT_EQ(shown(result("shortcut.clear", {{"action", "move window left"}})["shortcut"]), "-");
    EXPECT_FALSE(keyboard().claimed().contains({keyCode::h, kControlOption}));
    EXPECT_EQ(refusal("shortcut.set", {{"action", "undo"}, {"keys", "ctrl+alt+a"}}),
              "This shortcut is already used by “Arrange Windows into Zones”.");
    EXPECT_NE(refusal("shortcut.set", {{"action", "undo"}, {"keys", "shift+u"}}).find("needs ctrl, alt or super"),
              std::string::npos);
    EXPECT_EQ(refusal("shortcut.set", {{"action", "undo"}, {"keys", "hyper+u"}}, controlCode::invalidParameters),
              "keys: “hyper” is no modifier; there are ctrl, alt, shift and super");
    EXPECT_NE(refusal("shortcut.clear", {{"action", "fly"}}).find("focusLeft  Focus Left"), std::string::npos);
    EXPECT_EQ(shortcutOf("undo")["keys"], "Ctrl+Alt+Z");
    result("shortcut.restoreDefaults");
    EXPECT_EQ(shown(shortcutOf("focusLeft")), "Ctrl+Alt+H");
    EXPECT_EQ(shortcutOf("moveLeft")["modifiers"], json({"control", "option", "shift"}));
    // A configuration edited by hand may have the same keys twice.
    auto twice = *shortcuts.configuration;
    twice.setShortcut({{keyCode::h, kControlOption, "H"}}, KovaShortcutAction::undo);
    shortcuts.configuration.set(twice);
    EXPECT_EQ(shortcutOf("focusLeft")["conflict"], "undo");
    EXPECT_EQ(shortcutOf("undo")["conflict"], "focusLeft");
    // With another keyboard layout a key is named by its new character.
    keyboard().setLayout({{keyCode::a, "q"}, {keyCode::q, "a"}});
    EXPECT_EQ(shortcutOf("arrangeWindows")["keys"], "Ctrl+Alt+Q");
    EXPECT_EQ(shortcutOf("arrangeWindows")["label"], "A");
    EXPECT_EQ(result("shortcut.set", {{"action", "arrange-windows"}, {"keys", "ctrl+alt+a"}})["shortcut"]["keyCode"],
              keyCode::q);
}

TEST_F(ShortcutsOverTheSocket, AreReportedWhenAnotherProgramHoldsThem) {
    keyboard().claimByOther({keyCode::g, modifierFlag::command});
    EXPECT_EQ(result("status")["shortcutsHeldByOthers"], json::array());
    result("shortcut.set", {{"action", "undo"}, {"keys", "super+g"}});
    EXPECT_EQ(nextNotification(connection), "claimed Super+G held");
    EXPECT_EQ(result("status")["shortcutsHeldByOthers"], json({"Super+G (Undo Window Action)"}));
    bool isReported = false;
    const json report = result("doctor");
    for (const json& check : report["checks"]) {
        if (check["subject"] != "shortcuts") continue;
        isReported = check["verdict"] == "note" &&
                     check["text"].get<std::string>().find("Super+G (Undo Window Action)") != std::string::npos;
    }
    EXPECT_TRUE(isReported);
    keyboard().releaseByOther({keyCode::g, modifierFlag::command});
    EXPECT_EQ(result("status")["shortcutsHeldByOthers"], json::array());

    EXPECT_NE(result("doctor").dump().find("No other program holds"), std::string::npos);
}

TEST_F(ShortcutsOverTheSocket, AreShownAsSymbolsOnAMacWhereTheSystemCanHoldThem) {
    keyboard().setDelivery(SimulatedKeyboard::Delivery::observed);
    EXPECT_EQ(shown(shortcutOf("focusLeft")), "⌃⌥H");
    EXPECT_EQ(shown(result("shortcut.set", {{"action", "undo"}, {"keys", "⌃⌘←"}})["shortcut"]), "⌃⌘←");
    EXPECT_EQ(nextNotification(connection), "claimed ⌃⌘←");
    EXPECT_EQ(refusal("shortcut.set", {{"action", "undo"}, {"keys", "shift+u"}}),
              "A shortcut needs control, option or command: without them “⇧U” could not be typed any more");
    const auto says = [&](const std::string& text) { return result("doctor").dump().find(text) != std::string::npos; };
    EXPECT_FALSE(says("No other program holds")) << "whether programs hold keys is unknown";
    keyboard().claimByOther({keyCode::left, modifierFlag::control | modifierFlag::command});
    EXPECT_TRUE(says("The system itself acts on these keys, too: ⌃⌘← (Undo Window Action)"));
    EXPECT_FALSE(says("nother program"));
    EXPECT_EQ(shortcutOf("undo")["heldBy"], "system");
    EXPECT_EQ(result("status")["shortcutHolder"], "system");
}

TEST_F(ShortcutsOverTheSocket, AreRecordedUnlessTheCombinationIsNotAllowedOrInUse) {
    EXPECT_EQ(result("shortcut.record", {{"action", "undo"}})["prompt"], "Type Shortcut…");
    EXPECT_TRUE(result("shortcut.list")["isRecording"].get<bool>());
    keyboard().repeat(keyCode::returnKey, 0); // the user still holds the key that entered the command
    keyboard().press(keyCode::u, modifierFlag::shift);
    EXPECT_EQ(nextNotification(connection), "recorded refused");
    keyboard().press(keyCode::h, kControlOption);
    EXPECT_EQ(nextNotification(connection), "recorded refused: This shortcut is already used by “Focus Left”.");
    disk.isHeld = true;
    keyboard().press(keyCode::u, modifierFlag::control | modifierFlag::shift);
    desk.settle();
    EXPECT_EQ(connection.request(R"({"jsonrpc": "2.0", "id": 9, "method": "query.focus"})")["id"], 9)
        << "the change is not on disk yet";
    disk.isHeld = false;
    std::exchange(disk.waiting, {}).front()(std::nullopt);
    EXPECT_EQ(nextNotification(connection), "recorded recorded");
    EXPECT_EQ(nextNotification(connection), "claimed Ctrl+Shift+U");
    EXPECT_FALSE(*shortcuts.isRecording);
    EXPECT_TRUE(keyboard().takeTyped().empty());

    const std::vector<std::pair<KeyCombination, std::string>> endings = {
        {{keyCode::escape, 0}, "recorded cancelled"},
        {{keyCode::deleteForward, modifierFlag::shift}, "recorded cleared"}};
    for (const auto& [pressed, outcome] : endings) {
        result("shortcut.record", {{"action", "undo"}});
        keyboard().press(pressed.keyCode, pressed.modifierFlags);
        EXPECT_EQ(nextNotification(connection), outcome);
        EXPECT_FALSE(*shortcuts.isRecording);
    }
    EXPECT_EQ(shown(shortcutOf("undo")), "-");
    result("shortcut.record", {{"action", "undo"}});
    keyboard().press(keyCode::c, modifierFlag::control);
    EXPECT_EQ(nextNotification(connection), "recorded recorded") << "only at a terminal Ctrl+C ends the command";
    EXPECT_EQ(nextNotification(connection), "claimed Ctrl+C");
}

TEST_F(ShortcutsOverTheSocket, ReleaseTheKeyboardWhenARecordingEndsForAnyReason) {
    const auto isKeyboardReleased = [&] {
        desk.advance(Seconds(1));
        return !*shortcuts.isRecording && keyboard().claimed().contains({keyCode::h, kControlOption});
    };
    std::optional<SocketClient> disconnecting(client());
    call(*disconnecting, "shortcut.record", {{"action", "undo"}});
    EXPECT_TRUE(*shortcuts.isRecording);
    EXPECT_TRUE(keyboard().claimed().empty());
    disconnecting.reset();
    EXPECT_TRUE(waitUntil([&] { runAgentOnce(); }, isKeyboardReleased));

    result("shortcut.record", {{"action", "undo"}});
    SocketClient other = client();
    call(other, "shortcut.record", {{"action", "focusUp"}});
    EXPECT_EQ(nextNotification(connection), "recorded cancelled: Another shortcut is being recorded");
    keyboard().press(keyCode::u, modifierFlag::command);
    EXPECT_EQ(nextNotification(other), "recorded recorded");
    EXPECT_TRUE(isKeyboardReleased());
    EXPECT_EQ(shown(shortcutOf("focusUp")), "Super+U");

    result("shortcut.record", {{"action", "undo"}});
    desk.advance(ShortcutMethods::kRecordingTimeout + Seconds(1));
    EXPECT_EQ(nextNotification(connection), "recorded cancelled: Nothing was typed for a minute");
    EXPECT_TRUE(isKeyboardReleased());

    keyboard().setKeyboardHeldByOther(true);
    result("shortcut.record", {{"action", "undo"}});
    EXPECT_EQ(nextNotification(connection), "recorded failed: Another program holds the keyboard");
    EXPECT_TRUE(isKeyboardReleased());
    keyboard().setKeyboardHeldByOther(false);

    // The lock screen needs the keyboard, and a password must not become a shortcut.
    const std::string why = "Suspended while the screen is asleep, locked or another user's";
    result("shortcut.record", {{"action", "undo"}});
    desk.controller().suspendForSystemTransition();
    EXPECT_EQ(nextNotification(connection), "recorded cancelled: " + why);
    EXPECT_TRUE(isKeyboardReleased());
    EXPECT_EQ(refusal("shortcut.record", {{"action", "undo"}}), why);
    EXPECT_FALSE(*shortcuts.isRecording);
}

} // namespace kova
