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
    bool yes = false;         // do not ask
    std::optional<int> width; // columns of a picture
};

} // namespace kova::cli
