// The entries of KOVA's menu as values, for the program that draws the menu.
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
    std::optional<KovaShortcut> shortcut{}; // shown beside the title; it also works while the menu is closed
    std::vector<MenuEntry> entries{};       // of a submenu
    bool operator==(const MenuEntry&) const = default;
};

/// Main thread only.
class MenuServing {
  public:
    virtual ~MenuServing() = default;
    /// The entries as they are now. Call this function each time the menu opens.
    virtual std::vector<MenuEntry> entries() const = 0;
    /// Carries out the entry with this id. Returns false if the entry has disappeared or become disabled while the menu
    /// was open. If the workspace refuses the action, the status message gives the reason.
    virtual bool choose(std::string_view id) = 0;
};

} // namespace kova
