// The menu of KOVA as values, for whatever draws it.
#pragma once

#include "commands/KovaShortcut.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

struct MenuEntry {
    enum class Kind { command, submenu, separator, heading };
    Kind kind = Kind::command;
    std::string id{}; // what `choose` takes; of commands only
    std::string title{};
    bool isEnabled = true;
    bool isChecked = false;
    std::optional<KovaShortcut> shortcut{}; // shown beside the title; the menu does not listen for it
    std::vector<MenuEntry> entries{};       // of a submenu
    bool operator==(const MenuEntry&) const = default;
};

/// Main thread only.
class MenuServing {
  public:
    virtual ~MenuServing() = default;
    /// As things stand now; asked for anew each time the menu opens.
    virtual std::vector<MenuEntry> entries() const = 0;
    /// Carries out what the entry is for. False, and nothing is done, when there is no such entry any more or it is not
    /// enabled: the menu may have been open for long. What the workspace refuses it says in its status message.
    virtual bool choose(std::string_view id) = 0;
};

} // namespace kova
