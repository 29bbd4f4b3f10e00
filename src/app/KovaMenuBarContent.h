// The entries of the menu and their actions. The platform draws the menu and reports the chosen entry. This code uses
// no toolkit, so that the whole menu can be tested on systems without a menu bar. Main thread only.
#pragma once

#include "app/AppDelegate.h"
#include "app/UpdateChecker.h"
#include "commands/KovaShortcut.h"
#include "control/DocumentExchangeControl.h"
#include "control/MenuServing.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

/// The character that stands for the key in a Mac's menus; empty if there is none.
std::string menuKeyEquivalent(const KovaShortcut& shortcut);

/// Services that the menu's entries use. The entries of a null service are left out. All services outlive the menu.
struct MenuBarServices {
    AppDelegate& delegate;
    DocumentExchangeControl* documents = nullptr;
    UpdateChecker* updates = nullptr;
    std::function<void()> quit{};
};

/// How the item in the menu bar is drawn.
enum class MenuBarSymbol { usual, message };

class KovaMenuBarContent final : public MenuServing {
  public:
    explicit KovaMenuBarContent(MenuBarServices services) : services_(std::move(services)) {}

    std::vector<MenuEntry> entries() const override;
    bool choose(std::string_view id) override;
    /// `message` while the workspace has a status message, which is then the first line of the menu.
    MenuBarSymbol symbol() const;
    /// Calls back whenever the symbol may have changed.
    [[nodiscard]] Subscription observeSymbol(std::function<void()> changed);

  private:
    class Build;
    MenuBarServices services_;
};

} // namespace kova
