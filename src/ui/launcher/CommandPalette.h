// The palette: one field that searches applications, open windows, scenes, layouts and commands. A small picture shows
// the tile that it acts on. A command that needs an argument asks for it in the same field.
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
    void take(const LauncherEntry& entry) override;
    void filter() override;
    void goBack() override;
    void ask();
    const Question* question() const;
    QString tileName() const;
    std::vector<LauncherEntry> windowEntries(const nlohmann::json& result) const;
    std::vector<LauncherEntry> sceneEntries(const nlohmann::json& result) const;
    std::vector<LauncherEntry> layoutEntries(const nlohmann::json& result) const;

    TilePicture* picture_;
    std::optional<LauncherEntry> command_; // whose arguments are being asked for
    nlohmann::json focused_;               // the window with the focus when this opened; it is what commands act on
    std::size_t answered_ = 0;             // of its questions
    unsigned generation_ = 0;              // of the list; answers for an older one are dropped
};

} // namespace kova::ui
