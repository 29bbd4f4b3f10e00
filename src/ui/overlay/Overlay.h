// Creates, changes and removes the windows of the overlay so that they show the agent's contents. Main thread only.
#pragma once

#include "ui/overlay/Decoration.h"
#include "ui/overlay/FooterWindow.h"
#include "ui/overlay/PictureWindows.h"
#include "ui/overlay/WindowSet.h"

#include <QTimer>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace kova::ui {

/// The desktop's preferences for drawing.
struct DesktopStyle {
    Brightness brightness = Brightness::dark;
    bool areAnimationsEnabled = true;
    QString fontFamily;
    IconSource icon;
};

class Overlay {
  public:
    Overlay(OverlayPlatform& platform, OverlayActions& actions);
    ~Overlay();

    void setDesktopStyle(DesktopStyle style);
    /// Shows the agent's new contents. Absent contents show nothing, for example while no agent is connected.
    void show(const std::optional<OverlayContents>& contents);
    /// Call after a compositor has started or ended: creates all windows again.
    void compositingChanged();
    /// Call after the platform's `firstDisplay` has changed.
    void firstDisplayMoved();

    const std::map<std::string, std::unique_ptr<FooterWindow>>& footers() const { return footers_.shown(); }
    /// Whether the launch indicator turns or the decoration moves.
    bool isMoving() const { return spinner_.isActive() || decoration_.isMoving(); }

  private:
    Style styleFor(const std::string& display) const;
    bool showsEmptyTile(const TileContents& tile) const;
    std::vector<QRect> controlsOn(const DisplayContents& display, const Style& style) const;
    std::set<std::string> idsOfTiles(const std::function<bool(const TileContents&)>& isIncluded) const;
    void refresh();
    void refreshBackdrops();
    void refreshEmptyTiles();
    void refreshFooters();
    void refreshDividers();
    void refreshHighlights();
    void refreshMessage();
    void refreshSpinner();
    /// Handles the drag of a footer's entry; `at` is in pixels on the screen.
    void dragEntry(const std::string& window, QPoint at, FooterWindow::DragEvent dragEvent);
    void endLostDrag();
    const DisplayContents* displayAt(QPoint pixels) const;
    const TileContents* tileAt(QPoint pixels) const;

    OverlayPlatform& platform_;
    OverlayActions& actions_;
    DesktopStyle desktopStyle_;
    std::optional<OverlayContents> contents_;
    std::optional<WindowDrag> draggedEntry_;                             // the drag of a footer's entry
    std::map<std::string, std::unique_ptr<BackdropWindow>> backdrops_;   // by display
    WindowSet<EmptyTileWindow> emptyTiles_;                              // by tile
    WindowSet<FooterWindow> footers_;                                    // by tile
    std::map<std::string, std::unique_ptr<DividerWindow>> dividers_;     // by divider
    std::map<std::string, std::unique_ptr<HighlightWindow>> highlights_; // by display
    std::unique_ptr<MessageWindow> message_;
    Decoration decoration_;
    QTimer spinner_;         // turns the launch indicators
    double spinnerTurn_ = 0; // 0 to 1
};

} // namespace kova::ui
