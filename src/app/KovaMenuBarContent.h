// What the menu-bar menu shows and what its entries do. The platform draws it and reports what was chosen; it decides
// nothing. Pure of any toolkit, so that the whole menu is tried where there is no menu bar. Main thread only.
#pragma once

#include "app/AppDelegate.h"
#include "app/DocumentExchange.h"
#include "app/UpdateChecker.h"
#include "commands/KovaShortcut.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

struct MenuEntry {
    enum class Kind { command, submenu, separator, heading };
    Kind kind = Kind::command;
    std::string id{}; // what `choose` wants; of commands only
    std::string title{};
    bool isEnabled = true;
    bool isChecked = false;
    std::optional<KovaShortcut> shortcut{}; // shown beside the title; the menu does not listen for it
    std::vector<MenuEntry> entries{};       // of a submenu
    bool operator==(const MenuEntry&) const = default;
};

/// The character by which the Mac's menus know the key; empty when they know none.
std::string menuKeyEquivalent(const KovaShortcut& shortcut);

/// What the menu is about. What is null is not there, and neither are its entries. All of it outlives the menu.
struct MenuBarServices {
    AppDelegate& delegate;
    DocumentExchange* documents = nullptr;
    UpdateChecker* updates = nullptr;
    std::function<void()> quit{};
};

class KovaMenuBarContent {
  public:
    explicit KovaMenuBarContent(MenuBarServices services) : services_(std::move(services)) {}

    /// As things stand now; asked for anew each time the menu opens.
    std::vector<MenuEntry> entries() const;
    /// Does what the entry is for. False, and nothing is done, when there is no such entry any more or it is not
    /// enabled: the menu may have been open for long. What the workspace refuses it says in its status message.
    bool choose(std::string_view id);

  private:
    class Build;
    MenuBarServices services_;
};

} // namespace kova
