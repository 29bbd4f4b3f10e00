// The menu of KOVA as values, for the program that draws it.
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
    std::string id{}; // the argument of `choose`; only commands have an id
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
    /// The present entries; call again each time the menu opens.
    virtual std::vector<MenuEntry> entries() const = 0;
    /// Carries out the entry. False if the entry does not exist any more or is disabled, since the menu may have been
    /// open for a while. If the workspace refuses, its status message gives the reason.
    virtual bool choose(std::string_view id) = 0;
};

} // namespace kova
