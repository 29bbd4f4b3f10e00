// Each parameter of a verb is described by one object. The parser, the help and the completion use this description.
#pragma once

#include "cli/AgentNames.h"

#include <array>
#include <initializer_list>
#include <limits>
#include <span>
#include <string_view>

namespace kova::cli {

struct Parameter {
    enum class Kind {
        flag,        // an option without a value
        name,        // text that is not empty
        text,        // any text
        file,        // a path
        choice,      // one of `words`
        onOff,       // “on” or “off”, a boolean in the request
        wholeNumber, // from `least` to `most`
        number,      // a number with a fraction
    };
    enum class Use { request, local }; // sent to the agent, or used only by the command line

    Kind kind = Kind::name;
    const char* key = "";                        // of the value in `Arguments::request` or `Arguments::local`
    std::string_view optionName{};               // "--display"; empty for a positional parameter
    std::string_view value{};                    // "DISPLAY": the value's placeholder in the help
    std::string_view meaning{};                  // the explanation in the help
    std::string_view words{};                    // "left right": values that the completion offers, besides names
    std::vector<Candidate> (*names)() = nullptr; // names that the agent knows
    double least = 0;
    double most = std::numeric_limits<int>::max(); // this value means no limit
    bool isRequired = true;
    Use use = Use::request;

    constexpr bool isPositional() const { return optionName.empty(); }
    /// A copy that is not required.
    constexpr Parameter optional() const {
        Parameter copy = *this;
        copy.isRequired = false;
        return copy;
    }
    /// A copy that is an option, and not required.
    constexpr Parameter asOption(std::string_view name) const { return optional().with(&Parameter::optionName, name); }
    constexpr Parameter withValue(std::string_view name) const { return with(&Parameter::value, name); }
    constexpr Parameter withMeaning(std::string_view text) const { return with(&Parameter::meaning, text); }

  private:
    constexpr Parameter with(std::string_view Parameter::*text, std::string_view newText) const {
        Parameter copy = *this;
        copy.*text = newText;
        return copy;
    }
};

/// The parameters of one verb: options, and positional parameters in their order.
class ParameterList {
  public:
    constexpr ParameterList() = default;
    constexpr ParameterList(std::initializer_list<Parameter> list) {
        for (const Parameter& each : list) all_.at(count_++) = each;
    }
    constexpr const Parameter* begin() const { return all_.data(); }
    constexpr const Parameter* end() const { return all_.data() + count_; }

  private:
    std::array<Parameter, 6> all_{};
    std::size_t count_ = 0;
};

// Parameters that several verbs have.

inline constexpr Parameter kJson{.kind = Parameter::Kind::flag,
                                 .key = "json",
                                 .optionName = "--json",
                                 .meaning = "print the agent's answer as JSON",
                                 .isRequired = false,
                                 .use = Parameter::Use::local}; // taken by every verb
inline constexpr Parameter kDryRun{.kind = Parameter::Kind::flag,
                                   .key = "dryRun",
                                   .optionName = "--dry-run",
                                   .meaning = "only say what would be done",
                                   .isRequired = false};
inline constexpr Parameter kOnOff{
    .kind = Parameter::Kind::onOff, .key = "isOn", .value = "on|off", .meaning = "on or off", .words = "on off"};
inline constexpr Parameter kDirection{.kind = Parameter::Kind::choice,
                                      .key = "direction",
                                      .value = "DIRECTION",
                                      .meaning = "left, right, up or down",
                                      .words = "left right up down"};
inline constexpr Parameter kDisplay{.key = "display",
                                    .optionName = "--display",
                                    .value = "DISPLAY",
                                    .meaning = "number, name or id of a display (default: the current one)",
                                    .names = displayNames,
                                    .isRequired = false};
inline constexpr Parameter kOtherDisplay{.key = "to",
                                         .value = "TO",
                                         .meaning = "next, previous, or number, name or id of a display",
                                         .words = "next previous",
                                         .names = displayNames};
inline constexpr Parameter kWindow{.key = "window",
                                   .value = "WINDOW",
                                   .meaning = "id, application or title of a window, or a part of them",
                                   .names = windowNames};
inline constexpr Parameter kWindowOption =
    kWindow.asOption("--window").withMeaning("id, application or title of a window (default: the focused one)");
inline constexpr Parameter kTile{.key = "tile",
                                 .value = "TILE",
                                 .meaning = "id, number or name of a tile, on the window's display",
                                 .names = tileNames};
inline constexpr Parameter kApplication{.key = "application",
                                        .value = "APP",
                                        .meaning = "id or name of an application, or a part of it",
                                        .names = applicationNames};
inline constexpr Parameter kListedApplication =
    kApplication.withMeaning("id or name of an application, or a part of it, as “app list” names it");
inline constexpr Parameter kLearnedApplication{
    .key = "application",
    .value = "APP",
    .meaning = "id or name of an application, or a part of it, as “app learned” names it",
    .names = learnedApplicationNames};
inline constexpr Parameter kScene{
    .key = "scene", .value = "SCENE", .meaning = "name of a scene, or its id", .names = sceneNames};
inline constexpr Parameter kRule{.key = "rule",
                                 .value = "RULE",
                                 .meaning = "number, name or id of a rule, as “rule list” shows them, or a part of it",
                                 .names = ruleNames};
inline constexpr Parameter kDisposition{.kind = Parameter::Kind::choice,
                                        .key = "disposition",
                                        .value = "DISPOSITION",
                                        .meaning = "“tile” with a SLOT, “float” or “ignore”",
                                        .words = "tile float ignore"};
inline constexpr Parameter kDispositionSlot{
    .key = "slot",
    .value = "SLOT",
    .meaning = "with “tile”: a slot of any layout, or number or name of a tile in force",
    .names = tileNames,
    .isRequired = false};
inline constexpr Parameter kShortcutAction{.key = "action",
                                           .value = "ACTION",
                                           .meaning = "name or title of an action, or a part of it",
                                           .names = shortcutActionNames};
inline constexpr Parameter kFile{.kind = Parameter::Kind::file,
                                 .key = "file",
                                 .value = "FILE",
                                 .meaning = "a JSON file; “-” for standard input or output",
                                 .use = Parameter::Use::local};

} // namespace kova::cli
