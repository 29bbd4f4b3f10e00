// The rows of the verbs for moving and focusing windows.
#pragma once

#include "cli/Output.h"
#include "cli/PlainVerbs.h"
#include "cli/Verbs.h"
#include "cli/WindowVerbs.h"

#include <array>

namespace kova::cli {

inline std::optional<std::string> checkPlacement(const Arguments& arguments) {
    if (!arguments.has("tile")) return "either WINDOW and TILE or --tile is needed";
    return std::nullopt;
}

inline constexpr auto kWindowVerbs = std::to_array<Verb>({
    {"arrange",
     "arrange",
     "put every window into a tile",
     "Distributes the windows of all displays over the tiles of their layouts: each window to the tile that suits it "
     "best, by what was learned, by the role of its application and by where it is. Windows for which no tile is left "
     "are minimized; no window is ever closed. One undo step.",
     "kova arrange\nkova arrange --dry-run",
     {kDryRun},
     printArrangement},
    {"arrange-after-launch",
     "arrangeAfterLaunch",
     "arrange windows once after each start of KOVA, or not",
     "Automatically arrange after launch: the agent arranges windows after its start, as “arrange” does. Windows that "
     "were in tiles when the agent ended stay there. Without “on” or “off”, prints the setting.",
     "kova arrange-after-launch on\nkova arrange-after-launch",
     {kOnOff.optional()},
     printArrangeAfterLaunch},
    {"focus",
     "focus",
     "focus the window of the neighboring tile",
     "Focuses the window in the nearest occupied tile in that direction; tiles straight ahead take precedence.",
     "kova focus right",
     {kDirection, kWindowOption, kDisplay},
     printMessage},
    {"move",
     "move",
     "move the focused window to the neighboring tile",
     "The window that was in front of that tile is stacked behind it. One undo step.",
     "kova move left",
     {kDirection, kWindowOption, kDisplay},
     printMessage},
    {"stack",
     "stack",
     "bring another window of a tile to the front",
     "Cycles through the stack of the focused window's tile, or of TILE. One undo step.",
     "kova stack\nkova stack previous --tile 1",
     {{.kind = Parameter::Kind::choice,
       .key = "step",
       .value = "STEP",
       .meaning = "next (default) or previous",
       .words = "next previous",
       .isRequired = false},
      kTile.asOption("--tile").withMeaning("id, number or name of a tile, in place of the focused window's"),
      kWindowOption,
      kDisplay,
      kDryRun},
     printMessage},
    {"place",
     "place",
     "put a window into a tile",
     "WINDOW, or the focused window, becomes the front window of the tile; the former front window is stacked behind "
     "it. A tile is named by its id, its number in the layout or its name, and is on the window's display unless "
     "--display names another. One undo step.",
     "kova place mail 2\nkova place --tile focus-main\nkova place mail --tile 1 --dry-run",
     {kWindow.optional(), kTile.optional(),
      kTile.asOption("--tile").withMeaning("the tile as an option, so that WINDOW can be left out"), kDisplay, kDryRun},
     printWindowPlan,
     nullptr,
     checkPlacement},
    {"swap",
     "swap",
     "exchange a window with its neighbor or with the window of a tile",
     "Each tile keeps its stacked windows. If the other tile is empty, the window just moves there. With a tile, "
     "--display is the display of that tile; with a direction, the window focused last on that display is swapped. One "
     "undo step.",
     "kova swap right\nkova swap 1 --window mail\nkova swap left --dry-run",
     {{.key = "with",
       .value = "WITH",
       .meaning = "left, right, up, down, or id, number or name of a tile",
       .words = "left right up down",
       .names = tileNames},
      kWindowOption,
      kDisplay,
      kDryRun},
     printWindowPlan},
    {"focus window",
     "focus.window",
     "bring a window to the front and focus it",
     "A stacked window becomes the front window of its tile, which is one undo step; a minimized window is restored.",
     "kova focus window mail\nkova focus window mail --dry-run",
     {kWindow, kDryRun},
     printWindowPlan},
    {"focus display",
     "focus.display",
     "focus a window on another display",
     "Focuses the window that was focused last on that display, else the first window in its tiles.",
     "kova focus display 1\nkova focus display 1 --dry-run",
     {kOtherDisplay, kDryRun},
     printWindowPlan},
    {"move display",
     "move.display",
     "move a window to another display",
     "Moves the window into a free tile of the display, preferably the tile with the same name. Without a free tile, "
     "moves the window into the tile with the same name, whose window is then stacked behind it. One undo step.",
     "kova move display 1\nkova move display 1 --window mail",
     {kOtherDisplay, kWindowOption, kDisplay, kDryRun},
     printWindowPlan},
    {"float",
     "float",
     "take a window out of its tile, or put it back into one",
     "Arrangements and rules do not move a floating window until it is put into a tile again. A window that is in no "
     "tile is put into one, as “tile” does. One undo step.",
     "kova float\nkova float --window mail",
     {kWindowOption, kDisplay, kDryRun},
     printWindowPlan},
    {"tile",
     "tile",
     "put a window that is in no tile into one",
     "Puts the window into the nearest free tile of its display. Without a free tile, puts it into the tile that it "
     "covers most, whose window is then stacked behind it. One undo step.",
     "kova tile\nkova tile --window mail",
     {kWindowOption, kDisplay, kDryRun},
     printWindowPlan},
    {"zoom",
     "zoom",
     "give the focused window its whole display, or give it back",
     "Focus mode: the window fills its display until the second “kova zoom” or the next other action. Then all windows "
     "return to their frames. “kova undo” ends focus mode, too. When it has ended, the undo history is as before.",
     "kova zoom",
     {kWindowOption, kDisplay},
     printMessage},
    {"undo",
     "undo",
     "undo the last action",
     "Undoes the last action that rearranged windows, including drags of dividers and windows: tiles, frames, "
     "minimized and hidden windows, layouts and sizes are restored. The last 30 actions can be undone; there is no "
     "redo.",
     "kova undo",
     {},
     printMessage},
    {"open",
     "openURL",
     "carry out the action of a URL",
     "For browsers, launchers and scripts: kova://action/ with arrange, undo, zoom, stack, float or tile, with "
     "focus, move or swap and a direction (kova://action/focus/left), with focus/display or move/display and next or "
     "previous, or with place and the number of a tile; and kova://scene/ with a scene's name "
     "(kova://scene/Deep%20Work). Without a URL, as when KOVA is chosen in a menu, the agent is started; if one runs, "
     "the settings are shown.",
     "kova open kova://action/arrange",
     {{.key = "url",
       .value = "URL",
       .meaning = "of the scheme kova, such as kova://action/arrange",
       .isRequired = false}},
     printMessage,
     runOpen},
    {"history",
     "history",
     "list what can be undone, newest first",
     "Prints for each action its time, its name, and the applications of the windows concerned.",
     "kova history",
     {},
     printHistory},
});

} // namespace kova::cli
