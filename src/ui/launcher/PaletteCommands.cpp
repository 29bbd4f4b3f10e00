#include "ui/launcher/PaletteCommands.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace kova::ui {

namespace {

struct Command {
    const char* title; // translated where it is shown
    const char* method;
    const char* key = nullptr; // name of the only parameter
    const char* value = nullptr;
    enum class Value { kText, kOn, kOff, kDisplay } kind = Value::kText;
};

/// An argument of a command, for which a question asks.
struct Argument {
    const char* key = nullptr;
    Subject subject = Subject::text;
    const char* prompt = nullptr; // translated where it is shown
};
struct CommandWithArguments {
    const char* title;
    const char* method;
    std::array<Argument, 2> arguments;
    const char* key = nullptr; // name of a further parameter, whose value is always `value`
    const char* value = nullptr;
    bool isConfirmedFirst = false;
};

using enum Command::Value;

constexpr const char* kContext = "kova::ui::CommandPalette";

constexpr auto kCommands = std::to_array<Command>({
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Arrange all windows"), "arrange"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Undo the last step"), "undo"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Focus mode for the focused window"), "zoom"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Focus the window on the left"), "focus", "direction", "left"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Focus the window on the right"), "focus", "direction", "right"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Focus the window above"), "focus", "direction", "up"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Focus the window below"), "focus", "direction", "down"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Move the window to the left"), "move", "direction", "left"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Move the window to the right"), "move", "direction", "right"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Move the window up"), "move", "direction", "up"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Move the window down"), "move", "direction", "down"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Swap with the window on the left"), "swap", "with", "left"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Swap with the window on the right"), "swap", "with", "right"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Swap with the window above"), "swap", "with", "up"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Swap with the window below"), "swap", "with", "down"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Next window of the stack"), "stack", "step", "next"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Previous window of the stack"), "stack", "step", "previous"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Float the window, or put it into a tile"), "float"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Put the window into a tile"), "tile"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Focus the next display"), "focus.display", "to", "next"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Focus the previous display"), "focus.display", "to", "previous"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Move the window to the next display"), "move.display", "to",
     "next"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Move the window to the previous display"), "move.display", "to",
     "previous"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Next layout"), "layout.next"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Previous layout"), "layout.previous"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Reset the sizes of the tiles"), "layout.resetSizes", "display",
     nullptr, kDisplay},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Pause KOVA"), "pause"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Resume KOVA"), "resume"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Continuous management on"), "rules.on"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Continuous management off"), "rules.off"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Arrange after launch: on"), "arrangeAfterLaunch", "isOn", nullptr,
     kOn},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Arrange after launch: off"), "arrangeAfterLaunch", "isOn", nullptr,
     kOff},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Bring the next window of a tile forward: on"), "bringForward",
     "isOn", nullptr, kOn},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Bring the next window of a tile forward: off"), "bringForward",
     "isOn", nullptr, kOff},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Theme background on"), "theme.background", "isOn", nullptr, kOn},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Theme background off"), "theme.background", "isOn", nullptr, kOff},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Tile backgrounds on"), "theme.tileBackgrounds", "isOn", nullptr,
     kOn},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Tile backgrounds off"), "theme.tileBackgrounds", "isOn", nullptr,
     kOff},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Decoration on"), "theme.brain", "isOn", nullptr, kOn},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Decoration off"), "theme.brain", "isOn", nullptr, kOff},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Start KOVA at login: on"), "login.on"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Start KOVA at login: off"), "login.off"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Open the settings"), "settings.show"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Open the menu"), "ui.show", "what", "menu"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Restart the user interface"), "ui.restart"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Switch the user interface off"), "ui.off"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Bring the deleted scene back"), "scene.undelete"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Restore the standard shortcuts"), "shortcut.restoreDefaults"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Check the placements and repair them"), "verify", "repair", nullptr,
     kOn},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Ask for the permission"), "permission.ask"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Check for updates"), "updates.check"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Check for updates automatically: on"), "updates.automatic", "isOn",
     nullptr, kOn},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Check for updates automatically: off"), "updates.automatic", "isOn",
     nullptr, kOff},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Download updates automatically: on"), "updates.download", "isOn",
     nullptr, kOn},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Download updates automatically: off"), "updates.download", "isOn",
     nullptr, kOff},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Hide the Dock: on"), "dock.on"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Hide the Dock: off"), "dock.off"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Export scenes and rules"), "menu.choose", "id", "export"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Import scenes and rules"), "menu.choose", "id", "import"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Force quit all open applications"), "menu.choose", "id",
     "force-quit-all"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Open the introduction"), "ui.show", "what", "onboarding"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Close the settings"), "ui.hide", "what", "settings"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Launch an application into a tile"), "ui.launcher"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Settings: General"), "settings.show", "pane", "general"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Settings: Layouts"), "settings.show", "pane", "layouts"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Settings: Shortcuts"), "settings.show", "pane", "shortcuts"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Settings: Rules"), "settings.show", "pane", "rules"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Settings: Scenes"), "settings.show", "pane", "scenes"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Settings: Appearance"), "settings.show", "pane", "appearance"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Settings: Applications"), "settings.show", "pane", "applications"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Settings: About"), "settings.show", "pane", "about"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Quit KOVA"), "quit"},
});

constexpr auto kCommandsWithArguments = std::to_array<CommandWithArguments>({
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Show a window"),
     "focus.window",
     {{{"window", Subject::window, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which window?")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Put a window into a tile"),
     "place",
     {{{"window", Subject::window, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which window?")},
       {"tile", Subject::tile, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which tile?")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Swap with another window"),
     "swap",
     {{{"with", Subject::window, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which window?")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Move the window to another display"),
     "move.display",
     {{{"to", Subject::display, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which display?")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Focus another display"),
     "focus.display",
     {{{"to", Subject::display, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which display?")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Move a divider"),
     "divider.drag",
     {{{"", Subject::divider, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which divider?")},
       {"points", Subject::number,
        QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Points to the right or downwards")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Put a divider back"),
     "divider.reset",
     {{{"", Subject::divider, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which divider?")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Set the tile inset"),
     "layout.setInset",
     {{{"points", Subject::number, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Points from 0 to 100")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Prefer a tile for an application"),
     "layout.prefer",
     {{{"application", Subject::application, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which application?")},
       {"tile", Subject::slot, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which tile?")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Capture the workspace as a scene"),
     "scene.capture",
     {{{"name", Subject::text, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Name")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Rename a scene"),
     "scene.rename",
     {{{"scene", Subject::scene, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which scene?")},
       {"newName", Subject::text, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "New name")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Delete a scene"),
     "scene.delete",
     {{{"scene", Subject::scene, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which scene?")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Add a rule: always in a tile"),
     "rule.add",
     {{{"window", Subject::window,
        QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "For the application of which window?")},
       {"slot", Subject::slot, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which tile?")}}},
     "disposition",
     "tile"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Add a rule: always float"),
     "rule.add",
     {{{"window", Subject::window,
        QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "For the application of which window?")}}},
     "disposition",
     "float"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Add a rule: leave alone"),
     "rule.add",
     {{{"window", Subject::window,
        QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "For the application of which window?")}}},
     "disposition",
     "ignore"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Change a rule: only windows with a text in their title"),
     "rule.change",
     {{{"rule", Subject::rule, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which rule?")},
       {"title", Subject::text,
        QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Text in the title; empty for all windows")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Enable a rule"),
     "rule.enable",
     {{{"rule", Subject::rule, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which rule?")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Disable a rule"),
     "rule.disable",
     {{{"rule", Subject::rule, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which rule?")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Delete a rule"),
     "rule.delete",
     {{{"rule", Subject::rule, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which rule?")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Move a rule"),
     "rule.move",
     {{{"rule", Subject::rule, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which rule?")},
       {"to", Subject::number, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Place in the list; 1 comes first")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Choose a theme"),
     "theme.select",
     {{{"theme", Subject::theme, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which theme?")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Choose an accent color"),
     "accent.select",
     {{{"accentColor", Subject::accentColor, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which accent color?")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Set a shortcut"),
     "shortcut.set",
     {{{"action", Subject::shortcutAction, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "For which action?")},
       {"keys", Subject::text, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Keys, such as ctrl+alt+h")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Clear a shortcut"),
     "shortcut.clear",
     {{{"action", Subject::shortcutAction, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Of which action?")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Quit an application"),
     "app.quit",
     {{{"window", Subject::window,
        QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "The application of which window?")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Force an application to quit"),
     "app.forceQuit",
     {{{"window", Subject::window, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "The application of which window?")}}},
     nullptr,
     nullptr,
     true},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Forget what was learned of an application"),
     "app.forget",
     {{{"application", Subject::learnedApplication,
        QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Which application?")}}}},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Open a kova:// URL"),
     "openURL",
     {{{"url", Subject::text, QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "URL")}}}},
});

QString translated(const char* text) {
    return QCoreApplication::translate(kContext, text);
}

LauncherEntry entryOf(const char* title, const char* method) {
    return {.title = translated(title),
            .kind = QCoreApplication::translate("kova::ui::CommandPalette", "Command"),
            .words = QString::fromLatin1(method),
            .method = method};
}

} // namespace

bool actsOnFocusedWindow(const std::string& method) {
    static constexpr std::array kMethods{"focus", "move", "zoom",  "swap",        "move.display",
                                         "float", "tile", "stack", "layout.next", "layout.previous"};
    return std::find(kMethods.begin(), kMethods.end(), method) != kMethods.end();
}

std::vector<LauncherEntry> commandEntries(const std::string& display) {
    std::vector<LauncherEntry> entries;
    for (const Command& command : kCommands) {
        LauncherEntry entry = entryOf(command.title, command.method);
        if (command.key) {
            nlohmann::json& value = entry.parameters[command.key];
            if (command.kind == Command::Value::kText) value = command.value;
            if (command.kind == Command::Value::kDisplay) value = display;
            if (command.kind == Command::Value::kOn) value = true;
            if (command.kind == Command::Value::kOff) value = false;
        }
        entries.push_back(std::move(entry));
    }
    for (const CommandWithArguments& command : kCommandsWithArguments) {
        LauncherEntry entry = entryOf(command.title, command.method);
        entry.title += QStringLiteral("…");
        entry.isConfirmedFirst = command.isConfirmedFirst;
        if (command.key) entry.parameters[command.key] = command.value;
        for (const Argument& argument : command.arguments) {
            if (argument.prompt)
                entry.questions.push_back({argument.key, argument.subject, translated(argument.prompt)});
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

} // namespace kova::ui
