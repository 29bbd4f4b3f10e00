// KOVA's item in the menu bar: draws what the content says and tells it what was chosen. The menu is put together anew
// each time it opens. Main thread only.
#pragma once

#include "app/KovaMenuBarContent.h"

#include <memory>

namespace kova::macos {

class MenuBar {
  public:
    /// Shows the item. The content outlives it.
    explicit MenuBar(KovaMenuBarContent& content);
    /// Takes the item away; a menu that is open does nothing more.
    ~MenuBar();
    MenuBar(const MenuBar&) = delete;
    MenuBar& operator=(const MenuBar&) = delete;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace kova::macos
