// KOVA's item in the menu bar: shows the content and passes choices to it. The menu is rebuilt each time it opens; the
// symbol is filled while there is a message. Main thread only.
#pragma once

#include "app/KovaMenuBarContent.h"

#include <memory>

namespace kova::macos {

class MenuBar {
  public:
    /// Shows the item. The content outlives it.
    explicit MenuBar(KovaMenuBarContent& content);
    /// Removes the item; choosing an entry of a menu that is still open has no effect.
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
