#include "cli/Verbs.h"

#include "cli/ApplicationOutput.h"
#include "cli/LayoutOutput.h"
#include "cli/Output.h"
#include "cli/SceneOutput.h"
#include "cli/ShortcutVerbs.h"
#include "cli/ThemeOutput.h"
#include "cli/UserInterfaceOutput.h"
#include "cli/WindowVerbs.h"

#include <algorithm>
#include <array>

namespace kova::cli {

namespace {

constexpr std::array kVerbs = std::to_array<Verb>({
    {"arrange", "arrange", "put every window into a tile",
     "Distributes the windows of all displays over the tiles of their layouts: each to the tile that suits it best, by "
     "what "
     "was learnt, by the role of its application and by where it is. Windows for which no tile is left are minimized; "
     "none "
     "is ever closed. One undo step.",
     "kova arrange\nkova arrange --dry-run", kDryRun, printArrangement},
    {"arrange-after-launch", "arrangeAfterLaunch", "arrange windows once after each start of KOVA, or not",
     "Automatically arrange after launch: once the agent knows the windows, as “arrange” would. Windows that it left "
     "in "
     "tiles before are found there again and are not arranged anew.",
     "kova arrange-after-launch on", kSwitch, printArrangeAfterLaunch},
    {"focus", "focus", "focus the window of the neighboring tile",
     "Looks from the focused window in one direction for the nearest tile that holds a window, the one straight ahead "
     "first.",
     "kova focus right", kDirection | kWindowOption | kDisplay, printMessage},
    {"move", "move", "move the focused window to the neighboring tile",
     "The window that was in front there waits behind it. One undo step.", "kova move left",
     kDirection | kWindowOption | kDisplay, printMessage},
    {"stack", "stack", "bring another window of a tile to the front",
     "Goes round the windows that wait behind the focused one, or in the tile that is named. One undo step.",
     "kova stack\nkova stack previous --tile 1", kStackStep | kTileOption | kWindowOption | kDisplay | kDryRun,
     printMessage},
    {"place", "place", "put a window into a tile",
     "The window named, or the focused one, comes to the front of the tile; what was in front waits behind it. A tile "
     "is named by its id, its number in the layout or its name, and lies on the window's display unless --display "
     "names another. One undo step.",
     "kova place mail 2\nkova place --tile focus-main\nkova place mail --tile 1 --dry-run",
     kWindow | kPlaceTile | kDisplay | kDryRun, printWindowPlan},
    {"swap", "swap", "exchange a window with its neighbor or with the window of a tile",
     "Each tile keeps what waits behind in it; into an empty tile the window just moves. With a tile, --display says "
     "on "
     "which display it lies; with a direction, whose window is meant. One undo step.",
     "kova swap right\nkova swap 1 --window mail\nkova swap left --dry-run",
     kSwapWith | kWindowOption | kDisplay | kDryRun, printWindowPlan},
    {"focus window", "focus.window", "bring a window to the front and focus it",
     "One that waits in a tile comes to the front of it, which is one undo step; one that is minimized is restored.",
     "kova focus window mail\nkova focus window mail --dry-run", kRequiredWindow | kDryRun, printWindowPlan},
    {"focus display", "focus.display", "focus a window on another display",
     "The one there that had the keyboard last, else the first in its tiles.",
     "kova focus display 1\nkova focus display 1 --dry-run", kDisplayWord | kDryRun, printWindowPlan},
    {"move display", "move.display", "move a window to another display",
     "Into a free tile, the one of the same name first; without a free one, into the tile of the same name, whose "
     "window then waits behind it. One undo step.",
     "kova move display 1\nkova move display 1 --window mail", kDisplayWord | kWindowOption | kDisplay | kDryRun,
     printWindowPlan},
    {"float", "float", "take a window out of its tile, or put it back into one",
     "Arrangements and rules leave a floating window alone until it is put into a tile again. One that is in no tile "
     "is "
     "put into one, as “tile” does. One undo step.",
     "kova float\nkova float --window mail", kWindowOption | kDisplay | kDryRun, printWindowPlan},
    {"tile", "tile", "put a window that is in no tile into one",
     "Into the nearest free tile of its display; without a free one, into the tile that it lies over, whose window "
     "then "
     "waits behind it. One undo step.",
     "kova tile\nkova tile --window mail", kWindowOption | kDisplay | kDryRun, printWindowPlan},
    {"zoom", "zoom", "give the focused window its whole display, or give it back",
     "The layout stays as it is, and all comes back with the second “kova zoom” or before the next other action. The "
     "history of what can be undone does not change.",
     "kova zoom", kWindowOption | kDisplay, printMessage},
    {"undo", "undo", "step back",
     "Takes back the last action that rearranged windows, a divider or a window moved by hand included: tiles, frames, "
     "minimized and hidden windows, layouts and sizes come back. The last 30 actions can be undone; nothing is redone.",
     "kova undo", kNothing, printMessage},
    {"open", "openURL", "do what a URL asks for",
     "What browsers, launchers and scripts use: kova://action/ with arrange, undo, zoom or stack, or with focus or "
     "move "
     "and a direction (kova://action/focus/left), and kova://scene/ with a scene's name (kova://scene/Deep%20Work). "
     "Without a URL, as when KOVA is chosen in a menu, the agent is started unless it runs.",
     "kova open kova://action/arrange", kUrl, printMessage},
    {"history", "history", "list what can be undone, newest first",
     "When each action was, what it was, and the applications of the windows that it concerned.", "kova history",
     kNothing, printHistory},
    {"divider list", "divider.list", "list the dividers between tiles",
     "The split and the boundary that name each for “divider drag”, how far it has room to move, and where it is.",
     "kova divider list\nkova divider list --display 1", kDisplay, printDividers},
    {"divider drag", "divider.drag", "move a divider between tiles",
     "Windows on both sides follow; the divider stops where one of them cannot shrink any further. One undo step.",
     "kova divider drag root 0 120\nkova divider drag root 0 -120 --display 1",
     kSplit | kBoundary | kTranslation | kDisplay, printDividerDrag},
    {"layout list", "layout.list", "list the layouts, each with a small picture",
     "Lists the catalogue in the order in which “layout next” goes through it.", "kova layout list", kNothing,
     printLayoutList},
    {"layout show", "layout.show", "draw a layout",
     "Draws the layout that is in force on a display, with the sizes that windows get in it and the windows in its "
     "tiles; or any "
     "other "
     "layout as it would be on that display. The drawing is as wide as the terminal.",
     "kova layout show\nkova layout show quad-grid --width 60", kLayout | kDisplay | kWidth, printLayout},
    {"layout next", "layout.next", "go to the next layout",
     "Changes the layout of the current display: that of the focused window, else the one under the pointer, else the "
     "first. "
     "After the last layout comes the first.",
     "kova layout next", kNothing, printLayoutChange},
    {"layout previous", "layout.previous", "go to the previous layout", "Like “layout next”, in the other direction.",
     "kova layout previous", kNothing, printLayoutChange},
    {"layout select", "layout.select", "choose the layout of a display",
     "Names a layout by its id, its name or a part of them that no other layout has; “automatic” lets the display's "
     "shape "
     "decide. Windows stay in the tiles that the old and the new layout have in common; the others move to the nearest "
     "tile.",
     "kova layout select quad-grid\nkova layout select \"Dual Split (2)\" --display 1\nkova layout select automatic",
     kRequiredLayout | kDisplay, printLayoutChange},
    {"layout reset-sizes", "layout.resetSizes", "give all tiles of a display their usual sizes",
     "Forgets how the dividers of the layout in force were moved.",
     "kova layout reset-sizes\nkova layout reset-sizes --display 1", kDisplay, printLayoutChange},
    {"layout prefer", "layout.prefer", "offer a tile to an application before others",
     "From the next arrangement on, a tile of this slot goes to the application if it has a window, whatever its role "
     "and whatever was learnt; only rules come before. It holds in every layout that has the slot.",
     "kova layout prefer focus-main Mail\nkova layout prefer 2 --clear",
     kPreferredTile | kPreferredApplication | kClear, printPreference},
    {"layout inset", "layout.setInset", "set the gap around windows",
     "Sets the gap that is kept on each side between a tile and the window in it, from 0 to 100 points.",
     "kova layout inset 8", kRequiredPoints, printInset},
    {"query displays", "query.displays", "list the displays",
     "Number, name, id, frame and layout of each. Other verbs take any of the first three after --display. Frames are "
     "in "
     "points from the top left of the first display.",
     "kova query displays\nkova query displays --json", kNothing, printDisplays},
    {"query windows", "query.windows", "list the windows", "Every window that is managed, and the tile that it is in.",
     "kova query windows\nkova query windows --json", kNothing, printWindows},
    {"query tiles", "query.tiles", "list the tiles",
     "Every tile of every display: the frame that a window gets in it, the window in front and how many are behind it.",
     "kova query tiles\nkova query tiles --json", kNothing, printTiles},
    {"query focus", "query.focus", "tell the focused window", "And its tile and its display.",
     "kova query focus\nkova query focus --json", kNothing, printFocus},
    {"windows", "windows", "list the windows by their tiles",
     "For every tile the window in front and those that wait behind it, then the windows that are in no tile. The "
     "focused one is marked.",
     "kova windows\nkova windows --json", kNothing, printWindowList},
    {"verify", "verify", "compare the frames of windows with what was requested",
     "Prints the windows that are not where they should be, and exits with 1 when there is one. A window that is "
     "minimized, zoomed, hidden, in full screen or on another desktop is left alone and counts for neither.",
     "kova verify\nkova verify --repair", kRepair, printVerification},
    {"query state", "query.state", "show all of it", "Displays, tiles and windows together, and what was said last.",
     "kova query state\nkova query state --json", kNothing, printState},
    {"explain", "explain", "say why windows are where they are",
     "Without a window: a line for each decision of the last arrangement, with what is so now where a decision no "
     "longer holds, and which rules and preferred applications the next one will heed. With one, named by its id, its "
     "application or its title, or a part of them: where it is, why, and what would be decided now.",
     "kova explain\nkova explain Mail", kWindow, printExplanation},
    {"launch", "launch", "launch an application into a tile",
     "Starts the application, or asks one that runs for a window. The first window of it that has no tile, or that "
     "appears within 20 seconds, is put into the tile. Fails when the application cannot be started.",
     "kova launch maps --tile focus-main\nkova launch maps --tile 1 --display 1", kApplication | kTile | kDisplay,
     printLaunch},
    {"app list", "app.list", "list the applications that can be launched", "What a menu of applications shows.",
     "kova app list", kNothing, printApplications},
    {"app quit", "app.quit", "ask the application of a window to quit",
     "As if its user had: it may ask back, take its time, or stay.", "kova app quit mail", kRequiredWindow,
     printMessage},
    {"app force-quit", "app.forceQuit", "end the application of a window without asking it",
     "What was not saved is lost. What the desktop consists of stays open.", "kova app force-quit notes",
     kRequiredWindow, printMessage},
    {"app forget", "app.forget", "drop what was learned of an application",
     "The minimum sizes that its windows have shown, and the tiles in which it is usually kept. Its windows are then "
     "put into tiles as if they were new, and what they show is learned again.",
     "kova app forget mail", kApplication, printMessage},
    {"force-quit-all", "forceQuitAll", "end all open applications without asking them",
     "Names them and asks first; where there is no terminal to ask at it needs --yes. The agent, the file manager and "
     "what else the desktop consists of stay open.",
     "kova force-quit-all --yes", kYes, printForceQuit},
    {"scene capture", "scene.capture", "save the workspace as a scene",
     "A Scene restores layouts, windows, tile stacks, display roles, and theme. It is added to the list; none is "
     "replaced, also when it has the same name.",
     "kova scene capture Work\nkova scene capture", kSceneName, printMessage},
    {"scene list", "scene.list", "list the scenes", "The newest last; the one opened or captured last is marked.",
     "kova scene list", kNothing, printScenes},
    {"scene show", "scene.show", "show what a scene holds",
     "Its displays with their layouts, and its windows with their tiles.", "kova scene show Work", kScene, printScene},
    {"scene open", "scene.open", "bring a scene back",
     "Layouts, sizes and look come back, and every window goes to its tile and stack. Applications that do not run are "
     "launched behind the others, and their windows follow within 25 seconds. With --wait the command ends when all of "
     "them are there or the time is over, names what became of each, and exits with 1 when some never came. Opening a "
     "scene twice moves nothing the second time. One undo step.",
     "kova scene open Work\nkova scene open work --wait", kScene | kWait, printOpenedScene},
    {"scene diff", "scene.diff", "say what differs between a scene and now",
     "A line for each thing that opening the scene would change; windows are matched as they would be then.",
     "kova scene diff Work", kScene, printDifferences},
    {"scene rename", "scene.rename", "give a scene another name",
     "“undo” does not take this back. Importing what was exported before does, once the scene is deleted: what is "
     "there "
     "wins over what is in a file.",
     "kova scene rename Work Desk", kScene | kNewName, printMessage},
    {"scene delete", "scene.delete", "delete a scene",
     "“undo” does not take this back. To be able to go back, export first (“kova export”); importing "
     "that "
     "file brings the scene back.",
     "kova scene delete Desk", kScene, printMessage},
    {"rule list", "rule.list", "list the rules for windows",
     "In their order: the first that matches a window decides. Rules are explainable and run only when continuous "
     "management is enabled, see “rules on”.",
     "kova rule list", kNothing, printRules},
    {"rule add", "rule.add", "add a rule for the windows of an application",
     "“tile” puts each new window of the application into a tile, “float” and “ignore” leave it alone and out of "
     "arrangements. The rule comes last, where all others go before it.",
     "kova rule add --app org.example.Maps tile focus-main\nkova rule add --app Mail --title inbox tile 2\nkova rule "
     "add "
     "--focused float",
     kRuleApplication | kFocused | kTitle | kDisposition | kSlot, printAddedRule},
    {"rule change", "rule.change", "change what a rule does, or for which titles",
     "The rule keeps its name, its place and its application.",
     "kova rule change 1 float\nkova rule change 1 tile 2 --title inbox\nkova rule change 1 --title ''",
     kRule | kNewDisposition | kSlot | kNewTitle, printChangedRule},
    {"rule enable", "rule.enable", "let a rule act again", "The opposite of “rule disable”.", "kova rule enable 1",
     kRule, printSwitchedRule},
    {"rule disable", "rule.disable", "keep a rule from acting", "It stays in the list, and is passed over.",
     "kova rule disable 1", kRule, printSwitchedRule},
    {"rule move", "rule.move", "change the order of the rules",
     "“undo” does not take this back. Importing what was exported before does, once the rules are deleted: what is "
     "there "
     "keeps its place before what is in a file.",
     "kova rule move 1 2", kRule | kPlace, printMovedRule},
    {"rule test", "rule.test", "say which rule decides for a window, and why",
     "Asks every rule in turn, without doing anything.", "kova rule test Mail", kRequiredWindow, printRuleTest},
    {"rule delete", "rule.delete", "delete a rule",
     "“undo” does not take this back. To be able to go back, export first (“kova export”); importing "
     "that "
     "file brings the rule back, as the last one.",
     "kova rule delete 1", kRule, printDeletedRule},
    {"rules on", "rules.on", "apply the rules to windows as they appear",
     "Continuously apply window rules: to the windows that are there and to each new one, once.", "kova rules on",
     kNothing, printRulesSwitch},
    {"rules off", "rules.off", "stop applying the rules", "Windows stay where they are.", "kova rules off", kNothing,
     printRulesSwitch},
    {"shortcut list", "shortcut.list", "list the keyboard shortcuts",
     "Each action with its keys, those that two actions have, and those that another program holds, so that they do "
     "nothing here.",
     "kova shortcut list\nkova shortcut list --json", kNothing, printShortcuts},
    {"shortcut set", "shortcut.set", "give an action a keyboard shortcut",
     "Modifiers are ctrl, alt, shift and super (on a Mac also control, option and command), of which one other than "
     "shift is needed. The key is what is written on it without shift, by the active keyboard layout, or left, right, up, down, return, tab, space, home, end, "
     "pageup, "
     "pagedown, insert, f1 to f20. It stays the same key on the keyboard when the layout changes.",
     "kova shortcut set focusLeft ctrl+alt+h\nkova shortcut set next-layout super+right",
     kShortcutAction | kShortcutKeys, printShortcut},
    {"shortcut clear", "shortcut.clear", "take an action's keyboard shortcut away",
     "The action can still be asked for in any other way.", "kova shortcut clear focusZoom", kShortcutAction,
     printShortcut},
    {"shortcut record", "shortcut.record", "give an action the keys that are pressed next",
     "Waits for one key press, with at least one of ctrl, alt (Option) and super (Command). Escape ends it and "
     "changes nothing; Delete takes the shortcut away. What another action has is refused, and the next press is "
     "awaited. Recording ends after a minute without an accepted press. No other program hears the keyboard meanwhile, "
     "except on a Mac.",
     "kova shortcut record focusLeft", kShortcutAction, printShortcut},
    {"shortcut restore-defaults", "shortcut.restoreDefaults", "bring back the standard shortcuts",
     "Of all actions. “undo” does not take this back.", "kova shortcut restore-defaults", kNothing, printShortcuts},
    {"theme list", "theme.list", "list the themes",
     "Their colors, with those of the accent color in use, and what is shown of them. The theme in use is marked.",
     "kova theme list\nkova theme list --json", kNothing, printThemes},
    {"theme select", "theme.select", "choose a theme", "Windows stay where they are: all themes have the same layouts.",
     "kova theme select native\nkova theme select \"Neon Cyan\"", kTheme, printTheme},
    {"theme background", "theme.background", "show the theme's background, or not",
     "Behind all windows, in place of the desktop's own.", "kova theme background on", kSwitch,
     printThemeBackgroundSwitch},
    {"theme brain", "theme.brain", "show the brain, or not", "The decoration of the theme's background.",
     "kova theme brain off", kSwitch, printBrainSwitch},
    {"theme tile-backgrounds", "theme.tileBackgrounds", "show the backgrounds of tiles, or not",
     "A pane in the theme's colors in every tile.", "kova theme tile-backgrounds on", kSwitch,
     printTileBackgroundsSwitch},
    {"bring-forward", "bringForward", "bring the next window of a stack forward, or not",
     "When the window in front of a tile is closed or goes to another tile, the next one that waits there takes its "
     "place. On unless it is switched off.",
     "kova bring-forward off", kSwitch, printBringForwardSwitch},
    {"accent list", "accent.list", "list the accent colors", "The one in use is marked.", "kova accent list", kNothing,
     printAccentColors},
    {"accent select", "accent.select", "choose the accent color",
     "It takes the place of the theme's own accent; scenes remember it.",
     "kova accent select reactor-amber\nkova accent select magenta", kAccent, printAccentColor},
    {"export", "export", "write all scenes and rules to a file",
     "Portable JSON · local-first. The file is written aside and moved into place. In a folder it is named "
     "KOVA-Workspace.json. It undoes what "
     "“scene delete” and “rule delete” do after it, when it is imported. A file that is there is overwritten only with "
     "--force; “-” writes to standard output.",
     "kova export desk.json\nkova export --force .\nkova export -", kFile | kForce, printExport},
    {"import", "import", "add the scenes and rules of a file",
     "What is there stays as it is: a scene or rule that is known already is passed over, though it is counted. New "
     "rules "
     "come last. “-” reads from standard input.",
     "kova import desk.json\nkova import KOVA-Workspace.json", kFile, printMessage},
    {"login status", "login.status", "say whether KOVA starts with the session",
     "And what it is that starts it, or keeps it from starting.", "kova login status", kNothing, printStartAtLogin},
    {"login on", "login.on", "start KOVA with the session",
     "Also if the autostart entry was switched off elsewhere before.", "kova login on", kNothing, printStartAtLogin},
    {"login off", "login.off", "start KOVA only when asked to", "The agent that runs goes on.", "kova login off",
     kNothing, printStartAtLogin},
    {"dock status", "dock.status", "say whether the Mac's Dock hides itself", "As far as the agent has seen.",
     "kova dock status", kNothing, printDockAutoHide},
    {"dock on", "dock.on", "let the Mac's Dock hide itself",
     "This changes the system-wide Dock preference. The Dock briefly restarts when the setting changes.",
     "kova dock on", kNothing, printDockAutoHide},
    {"dock off", "dock.off", "let the Mac's Dock stay",
     "This changes the system-wide Dock preference. The Dock briefly restarts when the setting changes.",
     "kova dock off", kNothing, printDockAutoHide},
    {"ui status", "ui.status", "say whether kova-ui runs",
     "The program that shows tile footers, the backdrop and the menu. The agent starts it and keeps it running.",
     "kova ui status", kNothing, printUserInterface},
    {"ui off", "ui.off", "do not start kova-ui", "One that runs ends. Windows stay where they are.", "kova ui off",
     kNothing, printUserInterface},
    {"ui on", "ui.on", "start kova-ui with the agent", "And now. On unless it was switched off.", "kova ui on",
     kNothing, printUserInterface},
    {"ui restart", "ui.restart", "end kova-ui and start it again",
     "Also after it crashed so often that the agent gave up.", "kova ui restart", kNothing, printUserInterface},
    {"ui show", "ui.show", "open KOVA's menu at the pointer",
     "For desktops without a tray, bound to a key for example.", "kova ui show menu", kShown, printShown},
    {"menu", "menu", "list the entries of KOVA's menu", "With the id of each, which “menu choose” takes.",
     "kova menu\nkova menu --json", kNothing, printMenu},
    {"menu choose", "menu.choose", "do what an entry of the menu does", "Refused when the entry is not enabled now.",
     "kova menu choose theme-background", kMenuEntry, printMessage},
    {"subscribe", "subscribe", "follow what changes",
     "Prints the state and then a line for each change, until interrupted. With --json each line is one JSON document.",
     "kova subscribe\nkova subscribe --json", kNothing, nullptr},
    {"pause", "pause", "leave all windows alone",
     "Until “resume”: no window is moved, no rule acts, and of the shortcuts only the one that resumes is heard. "
     "Actions "
     "are refused meanwhile. Windows stay where they are.",
     "kova pause", kNothing, printMessage},
    {"resume", "resume", "manage windows again", "Windows go back into their tiles.", "kova resume", kNothing,
     printMessage},
    {"status", "status", "say how the agent is doing", "One answer from the agent, as short as possible.",
     "kova status\nkova status --json", kNothing, printStatus},
    {"doctor", "doctor", "look for what keeps windows from being arranged",
     "Checks the agent, its connection to the desktop, the permission, the window manager, the displays, applications "
     "that "
     "answer slowly, the preference file and the versions. Exits with 1 when something is wrong.",
     "kova doctor", kNothing, nullptr},
    {"log", "", "print the agent's log",
     "The newest lines, also when no agent runs. Titles of windows are never among them, unless the agent was started "
     "with --verbose.",
     "kova log\nkova log -n 200 --level warning", kFollow | kLines | kLevel, nullptr},
    {"bugreport", "", "write a report about a fault",
     "What “doctor” finds, the versions, the state of the workspace, the preferences, and what was logged in the last "
     "minutes, as text to be read before it is passed on. Titles of windows, names of scenes and messages are "
     "replaced by words made up for this report. Works without an agent, too, as far as it can. A file that is there "
     "is not overwritten; only you may read the new one.",
     "kova bugreport kova-report.txt", kNewFile, nullptr},
    {"quit", "quit", "end the agent", "Windows stay where they are; what the agent had hidden comes back.", "kova quit",
     kNothing, printQuit},
});

constexpr std::string_view kIntroduction = "kova: puts the windows of a desktop into the tiles of a layout.\n"
                                           "\n"
                                           "usage: kova VERB [ARGUMENTS] [--json]\n"
                                           "\n";

constexpr std::string_view kClosing = "  help [VERB]          show this, or all about one verb\n"
                                      "\n"
                                      "  --json               print the agent's answer as JSON\n"
                                      "  --help               like help\n"
                                      "  --version            print the version\n"
                                      "\n"
                                      "Exit codes: 0 done, 1 refused, 2 wrong usage, 3 no agent, 4 no permission.\n";

std::string listed(const Verb& verb) {
    constexpr std::size_t kNameColumn = 21;
    std::string line = "  " + std::string(verb.name);
    line.append(line.size() < kNameColumn + 2 ? kNameColumn + 2 - line.size() : 1, ' ');
    return line + std::string(verb.summary) + "\n";
}

} // namespace

std::span<const Verb> verbs() {
    return kVerbs;
}

const Verb* verbNamed(std::string_view name) {
    const auto all = verbs();
    const auto found = std::find_if(all.begin(), all.end(), [&](const Verb& verb) { return verb.name == name; });
    return found == all.end() ? nullptr : &*found;
}

std::string overview() {
    std::string text(kIntroduction);
    for (const Verb& verb : kVerbs) text += listed(verb);
    return text + std::string(kClosing);
}

std::string groupOverview(std::string_view group) {
    std::string text;
    for (const Verb& verb : kVerbs) {
        if (verb.name.starts_with(group) && verb.name.substr(group.size()).starts_with(' ')) text += listed(verb);
    }
    return text;
}

} // namespace kova::cli
