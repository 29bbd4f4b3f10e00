// Patterns of the texts that the agent writes, with %1 and %2 in place of names and numbers. This file compiles without
// the toolkit, since tests of the agent check that each message has a pattern.
#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#ifndef QT_TRANSLATE_NOOP
#define QT_TRANSLATE_NOOP(context, text) text
#define KOVA_WITHOUT_TOOLKIT
#endif

namespace kova::ui {

/// A text is translated by the first pattern that it matches.
inline constexpr std::array kAgentTexts{
    // Titles of the menu
    QT_TRANSLATE_NOOP("AgentTexts", "Allow Accessibility Access…"),
    QT_TRANSLATE_NOOP("AgentTexts", "Arrange Windows into Zones"),
    QT_TRANSLATE_NOOP("AgentTexts", "Undo Window Action"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Mode"),
    QT_TRANSLATE_NOOP("AgentTexts", "Next Window in Current Zone"),
    QT_TRANSLATE_NOOP("AgentTexts", "Previous Window in Current Zone"),
    QT_TRANSLATE_NOOP("AgentTexts", "Float Window"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Left"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Right"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Up"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Down"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Next Display"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Previous Display"),
    QT_TRANSLATE_NOOP("AgentTexts", "Move"),
    QT_TRANSLATE_NOOP("AgentTexts", "Move Window Left"),
    QT_TRANSLATE_NOOP("AgentTexts", "Move Window Right"),
    QT_TRANSLATE_NOOP("AgentTexts", "Move Window Up"),
    QT_TRANSLATE_NOOP("AgentTexts", "Move Window Down"),
    QT_TRANSLATE_NOOP("AgentTexts", "Move Window to Next Display"),
    QT_TRANSLATE_NOOP("AgentTexts", "Move Window to Previous Display"),
    QT_TRANSLATE_NOOP("AgentTexts", "Swap"),
    QT_TRANSLATE_NOOP("AgentTexts", "Swap with Window Left"),
    QT_TRANSLATE_NOOP("AgentTexts", "Swap with Window Right"),
    QT_TRANSLATE_NOOP("AgentTexts", "Swap with Window Above"),
    QT_TRANSLATE_NOOP("AgentTexts", "Swap with Window Below"),
    QT_TRANSLATE_NOOP("AgentTexts", "Place Window in Zone"),
    QT_TRANSLATE_NOOP("AgentTexts", "Layout on Current Display"),
    QT_TRANSLATE_NOOP("AgentTexts", "Layout on %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "Next Layout on Current Display"),
    QT_TRANSLATE_NOOP("AgentTexts", "Previous Layout on Current Display"),
    QT_TRANSLATE_NOOP("AgentTexts", "Reset Layout Sizes on Current Display"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scenes"),
    QT_TRANSLATE_NOOP("AgentTexts", "Capture Workspace as Scene"),
    QT_TRANSLATE_NOOP("AgentTexts", "Continuously apply window rules"),
    QT_TRANSLATE_NOOP("AgentTexts", "Rules are explainable and run only when continuous management is enabled."),
    QT_TRANSLATE_NOOP("AgentTexts", "Use Theme Background"),
    QT_TRANSLATE_NOOP("AgentTexts", "Settings"),
    QT_TRANSLATE_NOOP("AgentTexts", "Introduction to KOVA"),
    QT_TRANSLATE_NOOP("AgentTexts", "Quick Settings"),
    QT_TRANSLATE_NOOP("AgentTexts", "Automatically arrange after launch"),
    QT_TRANSLATE_NOOP("AgentTexts", "Show Tile Backgrounds"),
    QT_TRANSLATE_NOOP("AgentTexts", "Bring Next Window Forward"),
    QT_TRANSLATE_NOOP("AgentTexts", "Start at Login"),
    QT_TRANSLATE_NOOP("AgentTexts", "Hide the Dock Automatically"),
    QT_TRANSLATE_NOOP("AgentTexts", "Check for Updates Automatically"),
    QT_TRANSLATE_NOOP("AgentTexts", "Download Updates Automatically"),
    QT_TRANSLATE_NOOP("AgentTexts", "Export Scenes and Rules…"),
    QT_TRANSLATE_NOOP("AgentTexts", "Import Scenes and Rules…"),
    QT_TRANSLATE_NOOP("AgentTexts", "Portable JSON · local-first"),
    QT_TRANSLATE_NOOP("AgentTexts", "Pause KOVA"),
    QT_TRANSLATE_NOOP("AgentTexts", "Force Quit All Open Applications…"),
    QT_TRANSLATE_NOOP("AgentTexts", "Recheck Accessibility"),
    QT_TRANSLATE_NOOP("AgentTexts", "Check for Updates…"),
    QT_TRANSLATE_NOOP("AgentTexts", "Quit KOVA"),
    // Messages
    QT_TRANSLATE_NOOP("AgentTexts", "Windows arranged into zones — Undo is available"),
    QT_TRANSLATE_NOOP("AgentTexts", "There is no window to arrange"),
    QT_TRANSLATE_NOOP("AgentTexts", "Last window action undone"),
    QT_TRANSLATE_NOOP("AgentTexts", "There is nothing to undo"),
    QT_TRANSLATE_NOOP("AgentTexts", "Accessibility permission is required"),
    QT_TRANSLATE_NOOP("AgentTexts", "No managed window has the focus"),
    QT_TRANSLATE_NOOP("AgentTexts", "No display is connected"),
    QT_TRANSLATE_NOOP("AgentTexts", "KOVA is paused; “kova resume” goes on"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Mode closed — workspace restored"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Mode closed because its window is no longer available"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focus Mode — %1 owns this display"),
    QT_TRANSLATE_NOOP("AgentTexts", "This display already uses a single-pane layout"),
    QT_TRANSLATE_NOOP("AgentTexts", "No occupied zone left of the focused window"),
    QT_TRANSLATE_NOOP("AgentTexts", "No occupied zone right of the focused window"),
    QT_TRANSLATE_NOOP("AgentTexts", "No occupied zone up of the focused window"),
    QT_TRANSLATE_NOOP("AgentTexts", "No occupied zone down of the focused window"),
    QT_TRANSLATE_NOOP("AgentTexts", "No zone left of the focused window"),
    QT_TRANSLATE_NOOP("AgentTexts", "No zone right of the focused window"),
    QT_TRANSLATE_NOOP("AgentTexts", "No zone up of the focused window"),
    QT_TRANSLATE_NOOP("AgentTexts", "No zone down of the focused window"),
    QT_TRANSLATE_NOOP("AgentTexts", "Moved %1 to the left zone"),
    QT_TRANSLATE_NOOP("AgentTexts", "Moved %1 to the right zone"),
    QT_TRANSLATE_NOOP("AgentTexts", "Moved %1 to the up zone"),
    QT_TRANSLATE_NOOP("AgentTexts", "Moved %1 to the down zone"),
    QT_TRANSLATE_NOOP("AgentTexts", "Moved %1 to %2"),
    QT_TRANSLATE_NOOP("AgentTexts", "Swapped %1 and %2"),
    QT_TRANSLATE_NOOP("AgentTexts", "Focused %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 is now active"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 floats until the next arrangement"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 floats until it is put into a tile"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 floats already"),
    QT_TRANSLATE_NOOP("AgentTexts", "Rule added for %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "Rule “%1” placed %2"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scene “%1” captured"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scene “%1” deleted"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scene “%1” restored to the list"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scene “%1” restored"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scene “%1” renamed to “%2”"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scene fully restored"),
    QT_TRANSLATE_NOOP("AgentTexts", "Restoring Scene “%1” — waiting for %2 app window"),
    QT_TRANSLATE_NOOP("AgentTexts", "Restoring Scene “%1” — waiting for %2 app windows"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scene restored — %1 app window was unavailable"),
    QT_TRANSLATE_NOOP("AgentTexts", "Scene restored — %1 app windows were unavailable"),
    QT_TRANSLATE_NOOP("AgentTexts", "Layout sizes reset on %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "Imported %1 scenes and %2 rules"),
    QT_TRANSLATE_NOOP("AgentTexts", "Quit requested for %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "Force quit requested for %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "No open applications were force quit"),
    QT_TRANSLATE_NOOP("AgentTexts",
                      "%1 did not fit in the selected tile, so KOVA automatically claimed %2 additional tiles"),
    QT_TRANSLATE_NOOP("AgentTexts", "There is no such window"),
    QT_TRANSLATE_NOOP("AgentTexts", "There is no such tile"),
    QT_TRANSLATE_NOOP("AgentTexts", "There is no tile %1 in this layout"),
    QT_TRANSLATE_NOOP("AgentTexts", "There is no tile to the left of %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "There is no tile to the right of %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "There is no tile above %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "There is no tile below %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "There is no tile for %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "There is no other display"),
    QT_TRANSLATE_NOOP("AgentTexts", "There is no such display"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 has no tile"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 is too large to trade places with %2"),
    QT_TRANSLATE_NOOP("AgentTexts", "No window on %1 can be focused"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 is on %2 already"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 is in %2 already"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 is on another desktop; go there first"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 is in full screen; end that first"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 is in no tile. Put it into one with “kova tile” or “kova place”"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 waits behind another window. Bring it to the front with “kova focus window”"),
    QT_TRANSLATE_NOOP("AgentTexts", "No other window waits in that tile"),
    QT_TRANSLATE_NOOP("AgentTexts", "No other window waits behind it in its tile"),
    QT_TRANSLATE_NOOP("AgentTexts", "No focused application window found"),
    QT_TRANSLATE_NOOP("AgentTexts", "The window lies on no display"),
    QT_TRANSLATE_NOOP("AgentTexts", "The screen is locked"),
    QT_TRANSLATE_NOOP("AgentTexts", "Suspended while the screen is asleep, locked or another user's"),
    QT_TRANSLATE_NOOP("AgentTexts", "A scene needs a name"),
    QT_TRANSLATE_NOOP("AgentTexts", "A rule needs an application or a part of a title"),
    QT_TRANSLATE_NOOP("AgentTexts", "Not changed, because it could not be stored: %1"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 belongs to the desktop and stays open"),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 was not force quit: %2"),
    QT_TRANSLATE_NOOP(
        "AgentTexts",
        "%1 places windows itself, so they stay where it puts them. Only windows that float there can be arranged; use KOVA with a window manager that lets windows float."),
    QT_TRANSLATE_NOOP(
        "AgentTexts",
        "No window goes where it is sent: the window manager places them itself. Only windows that float there can be arranged; use KOVA with a window manager that lets windows float."),
    QT_TRANSLATE_NOOP("AgentTexts", "%1 cannot be started: %2"),
    QT_TRANSLATE_NOOP("AgentTexts", "This is a Wayland session. Log in to an X11 session instead."),
    // Alerts
    QT_TRANSLATE_NOOP("AgentTexts", "No Open Applications"),
    QT_TRANSLATE_NOOP("AgentTexts",
                      "There are no regular applications to close. KOVA and Finder are always kept open."),
    QT_TRANSLATE_NOOP("AgentTexts", "Force Quit All Open Applications?"),
    QT_TRANSLATE_NOOP("AgentTexts", "This immediately closes %1 applications. Unsaved changes will be lost. KOVA and "
                                    "Finder will stay open."),
    QT_TRANSLATE_NOOP("AgentTexts", "Force Quit All"),
    QT_TRANSLATE_NOOP("AgentTexts", "KOVA cannot show the overlay"),
    QT_TRANSLATE_NOOP("AgentTexts", "kova-ui %1 does not fit kova-agent %2. Install the same version of both, then run "
                                    "“kova ui restart”"),
    QT_TRANSLATE_NOOP("AgentTexts", "Cancel"),
};

#ifdef KOVA_WITHOUT_TOOLKIT
#undef QT_TRANSLATE_NOOP
#undef KOVA_WITHOUT_TOOLKIT
#endif

/// The parts of the text that %1 and %2 of the pattern stand for; empty if the pattern has neither. Absent if the text
/// does not match the pattern, or matches it in several ways.
inline std::optional<std::vector<std::string>> namesIn(std::string_view text, std::string_view pattern) {
    using Names = std::vector<std::string>;
    constexpr auto kNone = std::string_view::npos;
    const auto first = pattern.find("%1"), second = pattern.find("%2");
    if (first == kNone) return text == pattern ? std::optional(Names()) : std::nullopt;
    const std::string_view head = pattern.substr(0, first);
    const std::string_view tail = pattern.substr((second == kNone ? first : std::max(first, second)) + 2);
    if (text.size() <= head.size() + tail.size() || !text.starts_with(head) || !text.ends_with(tail))
        return std::nullopt;
    const std::string_view names = text.substr(head.size(), text.size() - head.size() - tail.size());
    if (second == kNone) return Names{std::string(names)};
    const std::string_view between = pattern.substr(first + 2, second - first - 2);
    const auto at = names.find(between);
    if (at == kNone || at == 0 || at != names.rfind(between) || at + between.size() == names.size())
        return std::nullopt;
    return Names{std::string(names.substr(0, at)), std::string(names.substr(at + between.size()))};
}

} // namespace kova::ui
