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
     "Distributes the windows of all displays over the tiles of their layouts: each to the tile that suits it best, "
     "by what was learned, by the role of its application and by where it is. Windows for which no tile is left are "
     "minimized; none is ever closed. One undo step.",
     "kova arrange\nkova arrange --dry-run",
     {kDryRun},
     printArrangement},
    {"arrange-after-launch",
     "arrangeAfterLaunch",
     "arrange windows once after each start of KOVA, or not",
     "Automatically arrange after launch: once the agent knows the windows, as “arrange” would. Windows that it left "
     "in tiles before are found there again and are not arranged anew.",
     "kova arrange-after-launch on",
     {kOnOff},
     printArrangeAfterLaunch},
    {"focus",
     "focus",
     "focus the window of the neighboring tile",
     "Focuses the window in the nearest occupied tile in that direction; tiles straight ahead come first.",
     "kova focus right",
     {kDirection, kWindowOption, kDisplay},
     printMessage},
    {"move",
     "move",
     "move the focused window to the neighboring tile",
     "The window that was in front there waits behind it. One undo step.",
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
      kTile.asOption("--tile").meaningThat("id, number or name of a tile, in place of the focused window's"),
      kWindowOption,
      kDisplay,
      kDryRun},
     printMessage},
    {"place",
     "place",
     "put a window into a tile",
     "The window named, or the focused one, comes to the front of the tile; what was in front waits behind it. A tile "
     "is named by its id, its number in the layout or its name, and lies on the window's display unless --display "
     "names another. One undo step.",
     "kova place mail 2\nkova place --tile focus-main\nkova place mail --tile 1 --dry-run",
     {kWindow.optional(), kTile.optional(),
      kTile.asOption("--tile").meaningThat("the same; without WINDOW for the focused one"), kDisplay, kDryRun},
     printWindowPlan,
     nullptr,
     checkPlacement},
    {"swap",
     "swap",
     "exchange a window with its neighbor or with the window of a tile",
     "Each tile keeps what waits behind in it; into an empty tile the window just moves. With a tile, --display says "
     "on which display it lies; with a direction, whose window is meant. One undo step.",
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
     "One that waits in a tile comes to the front of it, which is one undo step; one that is minimized is restored.",
     "kova focus window mail\nkova focus window mail --dry-run",
     {kWindow, kDryRun},
     printWindowPlan},
    {"focus display",
     "focus.display",
     "focus a window on another display",
     "Focuses the window that was focused last on that display, else the first in its tiles.",
     "kova focus display 1\nkova focus display 1 --dry-run",
     {kOtherDisplay, kDryRun},
     printWindowPlan},
    {"move display",
     "move.display",
     "move a window to another display",
     "Moves the window into a free tile of the display, preferably of the same name. If no tile is free, it goes into "
     "the tile of the same name, whose window is then stacked behind it. One undo step.",
     "kova move display 1\nkova move display 1 --window mail",
     {kOtherDisplay, kWindowOption, kDisplay, kDryRun},
     printWindowPlan},
    {"float",
     "float",
     "take a window out of its tile, or put it back into one",
     "Arrangements and rules leave a floating window alone until it is put into a tile again. One that is in no tile "
     "is put into one, as “tile” does. One undo step.",
     "kova float\nkova float --window mail",
     {kWindowOption, kDisplay, kDryRun},
     printWindowPlan},
    {"tile",
     "tile",
     "put a window that is in no tile into one",
     "Moves the window into the nearest free tile of its display. If no tile is free, it goes into the tile that it "
     "lies over, whose window is then stacked behind it. One undo step.",
     "kova tile\nkova tile --window mail",
     {kWindowOption, kDisplay, kDryRun},
     printWindowPlan},
    {"zoom",
     "zoom",
     "give the focused window its whole display, or give it back",
     "The layout stays as it is, and all comes back with the second “kova zoom” or before the next other action. The "
     "history of what can be undone does not change.",
     "kova zoom",
     {kWindowOption, kDisplay},
     printMessage},
    {"undo",
     "undo",
     "step back",
     "Takes back the last action that rearranged windows, a divider or a window moved by hand included: tiles, "
     "frames, minimized and hidden windows, layouts and sizes come back. The last 30 actions can be undone; nothing "
     "is redone.",
     "kova undo",
     {},
     printMessage},
    {"open",
     "openURL",
     "do what a URL asks for",
     "What browsers, launchers and scripts use: kova://action/ with arrange, undo, zoom, stack, float or tile, with "
     "focus, move or swap and a direction (kova://action/focus/left), with focus/display or move/display and next or "
     "previous, or with place and the number of a tile; and kova://scene/ with a scene's name "
     "(kova://scene/Deep%20Work). Without a URL, as when KOVA is chosen in a menu, the agent is started; if it "
     "runs, its settings are shown.",
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
     "When each action was, what it was, and the applications of the windows that it concerned.",
     "kova history",
     {},
     printHistory},
});

} // namespace kova::cli
