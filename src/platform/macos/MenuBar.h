// KOVA's item in the menu bar. It shows the entries of KovaMenuBarContent in a menu, and reports the chosen entry to
// the content. The menu is rebuilt each time it opens. The item's symbol is filled while there is a message. Main
// thread only.
#pragma once

#include "app/KovaMenuBarContent.h"

#include <memory>

namespace kova::macos {

class MenuBar {
  public:
    /// Shows the item. The content outlives it.
    explicit MenuBar(KovaMenuBarContent& content);
    /// Removes the item. If its menu is still open, choosing an entry has no effect any more.
    ~MenuBar();
    MenuBar(const MenuBar&) = delete;
    MenuBar& operator=(const MenuBar&) = delete;

    /// Opens the menu, as a click on the item does.
    void open();

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace kova::macos
