// The output of `kova`.
#include "cli/Terminal.h"
#include "tests/cli/CommandLineStage.h"

#include <gtest/gtest.h>

namespace kova {

namespace {

using nlohmann::json;

TEST_F(CommandLine, WindowsAreListedByTheirTilesAndDriftIsFound) {
    EXPECT_EQ(run({"verify"}).out, "There is no window in a tile.\n");
    desk.arrange();
    EXPECT_EQ(run({"windows"}).out, R"(A: Dual Split (2)
  1  Primary    * Terminal
  2  Secondary  Notes
In no tile:
  Mail “Inbox”, minimized
)");
    EXPECT_EQ(run({"place", "mail", "2", "--dry-run"}).out,
              "Mail “Inbox” would go to Secondary on A\nNotes would wait behind it\n");
    EXPECT_EQ(run({"place", "mail", "2"}).out, "Moved Mail to Secondary\n");
    desk.settle();
    EXPECT_EQ(run({"windows"}).out, R"(A: Dual Split (2)
  1  Primary    * Terminal
  2  Secondary  Mail “Inbox”
                behind: Notes
)");
    EXPECT_EQ(run({"query", "focus"}).out, "window   Terminal  103:48\n"
                                           "tile     display-UUID-OF-A::focus-main\n"
                                           "display  display-UUID-OF-A\n");
    EXPECT_EQ(run({"verify"}).out, "2 windows are where requested.\n");
    desk.desktop.userMoves("Mail", makeRect(1500, 100, 500, 400)); // before the next poll
    const Result drifted = run({"verify"});
    EXPECT_EQ(drifted.code, 1);
    EXPECT_EQ(drifted.out, R"(WINDOW        TILE            REQUESTED          ACTUAL            STATE
Mail “Inbox”  Secondary on A  1291,15 1254x1382  1500,100 500x400  drifted
1 window is where requested.
)");
    EXPECT_NE(run({"verify", "--repair", "--dry-run"}).out.find("\n1 window would be put back.\n"), std::string::npos);
    EXPECT_EQ(run({"verify"}).code, 1) << "the command moves no window back";
    EXPECT_EQ(run({"resume", "--dry-run"}).out, "Nothing would change: KOVA manages windows\n");
    EXPECT_EQ(run({"pause", "--dry-run"}).out, "KOVA would leave all windows alone until “kova resume”\n");
    EXPECT_EQ(run({"status"}).out.find("management  paused"), std::string::npos);
    EXPECT_EQ(run({"pause"}).code, 0);
    EXPECT_EQ(run({"resume", "--dry-run"}).out, "KOVA would manage windows again and put them back into their tiles\n");
    EXPECT_EQ(run({"move", "left"}).err, "KOVA is paused; “kova resume” goes on\n");
    EXPECT_NE(run({"status"}).out.find("management  paused"), std::string::npos);
    EXPECT_EQ(run({"verify", "--repair"}).code, 1);
    EXPECT_EQ(run({"resume"}).out, "KOVA manages windows\n");
    desk.settle();
    EXPECT_EQ(run({"verify"}).code, 0);
    desk.desktop.userMoves("Mail", makeRect(1500, 100, 500, 400));
    EXPECT_EQ(json::parse(run({"verify", "--json"}).out)["isAsRequested"], false);
}

TEST_F(CommandLine, DrawsLayoutsAsWideAsTheTerminal) {
    desk.arrange();
    environment.push_back("COLUMNS=40");
    EXPECT_EQ(run({"layout", "show"}).out, R"(┌───────────────────┬──────────────────┐
│                   │                  │
│                   │                  │
│      Primary      │    Secondary     │
│    focus-main     │   secondary-1    │
│     1254×1382     │    1254×1382     │
│     Terminal      │      Notes       │
│                   │                  │
│                   │                  │
│                   │                  │
└───────────────────┴──────────────────┘
Dual Split (2), jarvis.dual-split
in force on A (2560×1440 points)
)");
    EXPECT_EQ(run({"layout", "show", "command-center", "--width", "48"}).out,
              R"(┌──────────────────────────────┬───────────────┐
│                              │               │
│                              │   Reference   │
│                              │focus-right-top│
│           Primary            │    850×684    │
│          focus-main          │               │
│          1658×1035           │               │
│                              ├───────────────┤
│                              │               │
│                              │   Secondary   │
├──────────────────────────────┤focus-right-bo…│
│           Utility            │    850×648    │
│        focus-utility         │               │
└──────────────────────────────┴───────────────┘
Focus + Utility, jarvis.command-center
as it would be on A (2560×1440 points)
)");
    // Margins and gaps are not drawn, even on a small display, where they are relatively wide.
    desk.display(800, 600, "Small");
    EXPECT_EQ(run({"layout", "show", "dual-stack", "--display", "Small"}).out,
              R"(┌──────────────────────────────────────┐
│                                      │
│               Primary                │
│              focus-main              │
│               770×246                │
│                                      │
│                                      │
├──────────────────────────────────────┤
│                                      │
│              Secondary               │
│             secondary-1              │
│               770×246                │
│                                      │
│                                      │
└──────────────────────────────────────┘
Dual Stack (2), jarvis.dual-stack
as it would be on Small (800×600 points)
)");
    environment[1] = "LANG=C";
    const std::string list = run({"layout", "list"}).out;
    EXPECT_EQ(list.substr(0, list.find("\n\n", 300)), R"(+-----------+-----+  Focus + Utility
|           |     |  jarvis.command-center
|           |     |  4 tiles, standard
|           +-----+  in force on Small
+-----------+     |
|           |     |
+-----------+-----+

+-----------+-----+  Compact Focus
|           |     |  jarvis.compact-16-by-9
|           +-----+  3 tiles, compact16By9
|           |     |
+-----------+-----+)");
    EXPECT_NE(list.find("  in force on A\n"), std::string::npos) << list;
}

TEST_F(CommandLine, TablesAreAlignedAndTitlesCannotControlTheTerminal) {
    desk.desktop.setTitle("Notes", "a\x1b]0;b\x07\u009b\u202E\xFF 漢字");
    desk.arrange();
    EXPECT_EQ(
        run({"query", "windows"}).out,
        R"(ID      APPLICATION  TILE                            TILE NAME       FRAME              STATE      TITLE
101:16  Mail         -                               -               100,100 800x600    minimized  Inbox
102:32  Notes        display-UUID-OF-A::secondary-1  Secondary on A  1291,15 1254x1382  visible    a?]0;b???� 漢字
103:48  Terminal     display-UUID-OF-A::focus-main   Primary on A    15,15 1254x1382    visible    Terminal
)");
    EXPECT_EQ(run({"query", "tiles"}).out,
              R"(TILE                            NAME            FRAME              STACK  WINDOW
display-UUID-OF-A::focus-main   Primary on A    15,15 1254x1382        1  Terminal
display-UUID-OF-A::secondary-1  Secondary on A  1291,15 1254x1382      1  Notes
)");
}

TEST_F(CommandLine, CharactersHaveTheWidthOfTheTerminal) {
    const std::vector<std::pair<const char*, std::size_t>> cases = {
        {"plain", 5}, {"漢字", 4}, {"⭐", 2}, {"⌚⚡", 4}, {"ที่", 1}, {"ਪੰ", 1}, {"e\u0301", 1}, {"─×…", 3}, {"😀", 2},
    };
    for (const auto& [text, columns] : cases) EXPECT_EQ(cli::columnsOf(text), columns) << text;

    // The widths are the same in a locale that is not UTF-8.
    environment[1] = "LANG=C";
    environment.emplace_back("TZ=XYZ-5");
    EXPECT_EQ(run({"scene", "capture", "⭐ ที่"}).code, 0);
    const std::string list = run({"scene", "list"}).out;
    EXPECT_EQ(list.substr(0, list.find(" ", list.find("2023"))), "NAME    CAPTURED             DISPLAYS  WINDOWS  ID\n"
                                                                 "* ⭐ ที่  2023-11-15");
}

TEST_F(CommandLine, HistoryAndDividersAreListed) {
    environment.emplace_back("TZ=XYZ-5");
    EXPECT_EQ(run({"undo"}).out, "Last window action undone\n");
    EXPECT_EQ(run({"history"}).out, "There is nothing to undo.\n");
    desk.layout("jarvis.dual-split").arrange();
    EXPECT_EQ(run({"divider", "drag", "root", "0", "-120"}).out, "The divider root 0 moved by -120 points.\n");
    EXPECT_EQ(run({"divider", "list"}).out,
              R"(SPLIT  BOUNDARY  ROOM                    FRAME            DISPLAY            DISPLAY NAME
root          0  -824 left, +1064 right  1154,10 12x1392  display-UUID-OF-A  A
)");
    EXPECT_EQ(run({"history"}).out, R"(TIME                 ACTION                 WINDOWS
2023-11-15 04:13:25  drag divider           Notes, Terminal
2023-11-15 04:13:23  arrange                Mail, Notes, Terminal
2023-11-15 04:13:20  layout Dual Split (2)  -
)");
    EXPECT_EQ(run({"divider", "reset", "root", "0"}).out, "The dividers of the split root are where their layout puts "
                                                          "them.\n");
    EXPECT_EQ(run({"zoom"}).out, "Focus Mode — Terminal owns this display\n");
    EXPECT_EQ(run({"divider", "list"}).out, "There is no divider.\n");
}

TEST_F(CommandLine, ThemesAndAccentColorsAreListedAndSelected) {
    EXPECT_EQ(run({"theme", "select", "neon"}).out, "The theme is Neon Cyan (jarvis.neon-cyan).\nStored; nothing shows "
                                                    "it, as kova-ui does not run (see “kova ui status”).\n");
    EXPECT_EQ(
        run({"theme", "background", "on"}).out,
        "The theme's background is on.\nStored; nothing shows it, as kova-ui does not run (see “kova ui status”).\n");
    EXPECT_EQ(run({"accent", "select", "AMBER"}).out,
              "The accent color is REACTOR AMBER (reactor-amber).\nStored; nothing shows it, as kova-ui does not run "
              "(see “kova ui status”).\n");
    EXPECT_EQ(run({"theme", "list"}).out,
              R"(NAME         ID                BACKGROUND  PANEL    TEXT     ACCENT
Native       kova.native       #1C1C1F     #2B2B2E  #F5F5F7  #FF9E1F
* Neon Cyan  jarvis.neon-cyan  #03080F     #081421  #E0F7FF  #FF9E1F

The theme's background is on.
The brain is off.
The backgrounds of tiles are on.
Stored; nothing shows it, as kova-ui does not run (see “kova ui status”).
)");
    const std::string accents = run({"accent", "list"}).out;
    EXPECT_NE(accents.find("* REACTOR AMBER  reactor-amber    #FF9E1F  #FFD161\n"), std::string::npos) << accents;

    // Each change is stored under its key and read at the next start.
    EXPECT_EQ(desk.preferences.string("KOVA.accentColor.v1"), "reactor-amber");
    EXPECT_EQ(desk.preferences.boolean("KOVA.useThemeBackground.v1"), true);
    EXPECT_FALSE(desk.preferences.contains("KOVA.showBrain.v1"));
    EXPECT_EQ(run({"theme", "brain", "on"}).code, 0);
    EXPECT_EQ(run({"theme", "tile-backgrounds", "off"}).code, 0);
    EXPECT_EQ(desk.preferences.boolean("KOVA.showBrain.v1"), true);
    EXPECT_EQ(desk.preferences.boolean("KOVA.showTileBackgrounds.v1"), false);
    const WorkspaceController again({desk.desktop, desk.desktop, desk.desktop, desk.desktop, desk.desktop,
                                     desk.preferences, desk.desktop.queue(), desk.desktop.pollingQueue(),
                                     desk.desktop});
    EXPECT_EQ(again.state().profile->themeID, "jarvis.neon-cyan");
    EXPECT_EQ(*again.state().accentColorID, "reactor-amber");
    EXPECT_TRUE(*again.state().useThemeBackground && *again.state().showBrain);
    EXPECT_FALSE(*again.state().showTileBackgrounds);
}

} // namespace

} // namespace kova
