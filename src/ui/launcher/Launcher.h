// The launcher of a tile: lists the installed applications, most used first, and launches the chosen application into
// the tile.
#pragma once

#include "ui/launcher/SearchWindow.h"

namespace kova::ui {

class Launcher final : public SearchWindow {
    Q_OBJECT

  public:
    explicit Launcher(WindowServices& services);

  private:
    void load() override;
};

} // namespace kova::ui
