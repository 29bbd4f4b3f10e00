// What stands behind a verb on the command line.
#pragma once

#include <optional>
#include <string>

namespace kova::cli {

enum class ExitCode { done = 0, refused = 1, wrongUsage = 2, noAgent = 3, noPermission = 4 };

struct Arguments {
    bool json = false;
    bool dryRun = false;
    std::optional<std::string> layout;
    std::optional<std::string> display;
    std::optional<std::string> window;
    std::optional<double> points;
    std::optional<std::string> direction;
    std::optional<std::string> split;
    std::optional<int> boundary;
    std::optional<std::string> application;
    std::optional<std::string> tile;
    bool yes = false; // do not ask
    std::optional<std::string> scene;
    std::optional<std::string> name; // of a scene that is captured
    std::optional<std::string> newName;
    std::optional<std::string> rule;
    std::optional<int> place; // of a rule in the list, from 1
    bool focused = false;     // for the focused window's application
    std::optional<std::string> title;
    std::optional<std::string> disposition;
    std::optional<std::string> slot;
    std::optional<std::string> file;
    std::optional<std::string> url;
    std::optional<std::string> theme;
    std::optional<std::string> accent;
    std::optional<std::string> choice; // “on” or “off”
    std::optional<std::string> action; // that a shortcut is for
    std::optional<std::string> keys;   // of a shortcut
    bool follow = false;               // print what is added, until interrupted
    std::optional<int> lines;          // of the log, the newest
    std::optional<std::string> level;  // the least that is printed of the log
    std::optional<int> width;          // columns of a picture
    std::optional<std::string> with;   // a direction or a tile, to swap with
    std::optional<std::string> to;     // “next”, “previous” or a display
    std::optional<std::string> step;   // “next” or “previous” of a stack
    bool repair = false;               // request frames again
    bool force = false;                // overwrite a file
    bool clear = false;                // take away what was chosen
    bool wait = false;                 // for what follows later
    std::optional<std::string> what;   // that kova-ui is to open
    std::optional<std::string> entry;  // of the menu
};

} // namespace kova::cli
