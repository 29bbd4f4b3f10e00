// The palette: one field that searches applications, open windows, scenes, layouts and commands. A small picture shows
// the tile on which the palette acts. The arguments of a command are typed into the same field.
#pragma once

#include "ui/launcher/SearchWindow.h"

#include <cstddef>
#include <optional>

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
    void entryChosen(const LauncherEntry& entry) override;
    void filter() override;
    void goBack() override;
    void askNext();
    const Question* question() const;
    QString tileName() const;
    std::vector<LauncherEntry> windowEntries(const nlohmann::json& result) const;
    std::vector<LauncherEntry> sceneEntries(const nlohmann::json& result) const;
    std::vector<LauncherEntry> layoutEntries(const nlohmann::json& result) const;

    TilePicture* picture_;
    std::optional<LauncherEntry> command_; // the chosen command, whose questions are asked
    nlohmann::json lastFocused_;           // id of the window that was focused before the palette opened
    std::size_t answered_ = 0;             // number of answered questions of `command_`
    unsigned generation_ = 0;              // counts the lists of entries; responses for an older list are dropped
};

} // namespace kova::ui
