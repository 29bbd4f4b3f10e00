// The palette: one field over applications, open windows, scenes, layouts and commands. A small picture shows the tile
// that it acts on.
#pragma once

#include "ui/launcher/SearchWindow.h"

namespace kova::ui {

/// The tiles of a display, with one of them marked.
class TilePicture : public QWidget {
    Q_OBJECT

  public:
    explicit TilePicture(WindowServices& services);
    void show(const std::string& tile);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    WindowServices& services_;
    std::string tile_;
};

class CommandPalette final : public SearchWindow {
    Q_OBJECT

  public:
    explicit CommandPalette(WindowServices& services);

  private:
    void load() override;
    QString tileName() const;
    std::vector<LauncherEntry> windowEntries(const nlohmann::json& result) const;
    std::vector<LauncherEntry> sceneEntries(const nlohmann::json& result) const;
    std::vector<LauncherEntry> layoutEntries(const nlohmann::json& result) const;

    TilePicture* picture_;
};

} // namespace kova::ui
