// Every verb of the command line, with its help: one entry each, from which the parser, the help and the tests work.
#pragma once

#include "cli/Arguments.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kova::cli {

/// What a verb takes; `--json` and `--help` belong to all.
enum Takes : std::uint64_t {
    kNothing = 0,
    kDryRun = 1U << 0,
    kLayout = 1U << 1, // a layout, if the user wants to name one
    kRequiredLayout = 1U << 2,
    kDisplay = 1U << 3,
    kWindow = 1U << 4, // a window, if the user wants to name one
    kRequiredPoints = 1U << 5,
    kWidth = 1U << 6,
    kDirection = 1U << 7,
    kSplit = 1U << 8,
    kBoundary = 1U << 9,
    kTranslation = 1U << 10,
    kApplication = 1U << 11,
    kTile = 1U << 12,
    kRequiredWindow = 1U << 13,
    kYes = 1U << 14,
    kScene = 1U << 15,
    kSceneName = 1U << 16, // a name, if the user wants to give one
    kNewName = 1U << 17,
    kRuleApplication = 1U << 18,
    kFocused = 1U << 19,
    kTitle = 1U << 20,
    kDisposition = 1U << 21,
    kSlot = 1U << 22, // of a disposition that asks for one
    kRule = 1U << 23,
    kPlace = 1U << 24,
    kFile = 1U << 25,
    kUrl = 1U << 26, // a URL, if the user wants to give one
    kTheme = 1U << 27,
    kAccent = 1U << 28,
    kSwitch = 1U << 29,
    kShortcutAction = 1U << 30,
    kShortcutKeys = 1U << 31,
    kFollow = 1ULL << 40,
    kLines = 1ULL << 41,
    kLevel = 1ULL << 42,
    kNewFile = 1ULL << 43,
    kNewDisposition = 1ULL << 44, // a disposition, if the user wants another one
    kNewTitle = 1ULL << 45,
    kWindowOption = 1ULL << 46,
    kPlaceTile = 1ULL << 47,  // a tile as a word, if the user names a window before it
    kTileOption = 1ULL << 48, // a tile by its option, if the user wants to name one
    kSwapWith = 1ULL << 49,
    kDisplayWord = 1ULL << 50,
    kStackStep = 1ULL << 51, // a step, if the user wants to name one
    kRepair = 1ULL << 52,
    kForce = 1ULL << 53,
    kPreferredTile = 1ULL << 55,
    kPreferredApplication = 1ULL << 56,
    kClear = 1ULL << 57,
    kWait = 1ULL << 58,
    kShown = 1ULL << 59, // what kova-ui is to open
    kMenuEntry = 1ULL << 60,
};

struct Verb {
    std::string_view name;    // "layout select"
    std::string_view method;  // of the agent
    std::string_view summary; // one line
    std::string_view description;
    std::string_view examples; // one command a line
    std::uint64_t takes = kNothing;
    /// The answer as people read it.
    std::string (*print)(const nlohmann::json& result, const Arguments& arguments) = nullptr;
};

std::span<const Verb> verbs();
/// Null when there is none.
const Verb* verbNamed(std::string_view name);

/// "kova", the verbs and what they do.
std::string overview();
/// The verbs of a group such as "layout"; empty when there is no such group.
std::string groupOverview(std::string_view group);

} // namespace kova::cli
