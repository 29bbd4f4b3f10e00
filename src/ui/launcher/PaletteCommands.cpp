#include "ui/launcher/PaletteCommands.h"

#include <QCoreApplication>

#include <array>

namespace kova::ui {

namespace {

struct Command {
    const char* title; // translated where it is shown
    const char* method;
    const char* key = nullptr; // of its one parameter
    const char* value = nullptr;
    enum class Value { text, on, off, display } kind = Value::text;
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
     nullptr, display},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Pause KOVA"), "pause"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Resume KOVA"), "resume"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Continuous management on"), "rules.on"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Continuous management off"), "rules.off"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Arrange after launch: on"), "arrangeAfterLaunch", "isOn", nullptr,
     on},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Arrange after launch: off"), "arrangeAfterLaunch", "isOn", nullptr,
     off},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Bring the next window of a tile forward: on"), "bringForward",
     "isOn", nullptr, on},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Bring the next window of a tile forward: off"), "bringForward",
     "isOn", nullptr, off},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Theme background on"), "theme.background", "isOn", nullptr, on},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Theme background off"), "theme.background", "isOn", nullptr, off},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Tile backgrounds on"), "theme.tileBackgrounds", "isOn", nullptr,
     on},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Tile backgrounds off"), "theme.tileBackgrounds", "isOn", nullptr,
     off},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Decoration on"), "theme.brain", "isOn", nullptr, on},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Decoration off"), "theme.brain", "isOn", nullptr, off},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Start with the session: on"), "login.on"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Start with the session: off"), "login.off"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Open the settings"), "settings.show"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Open the menu"), "ui.show", "what", "menu"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Restart the user interface"), "ui.restart"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Switch the user interface off"), "ui.off"},
    {QT_TRANSLATE_NOOP("kova::ui::CommandPalette", "Quit KOVA"), "quit"},
});

} // namespace

std::vector<LauncherEntry> commandEntries(const std::string& display) {
    std::vector<LauncherEntry> entries;
    for (const Command& command : kCommands) {
        LauncherEntry entry{.title = QCoreApplication::translate(kContext, command.title),
                            .kind = QCoreApplication::translate(kContext, "Command"),
                            .words = QString::fromLatin1(command.method),
                            .method = command.method};
        if (command.key) {
            nlohmann::json& value = entry.parameters[command.key];
            if (command.kind == Command::Value::text) value = command.value;
            if (command.kind == Command::Value::display) value = display;
            if (command.kind == Command::Value::on) value = true;
            if (command.kind == Command::Value::off) value = false;
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

} // namespace kova::ui
