// The interface to which the overlay reports the user's actions; points are pixels on the screen.
#pragma once

#include <QPoint>

#include <string>

namespace kova::ui {

enum class StackStep { next, previous };

class OverlayActions {
  public:
    virtual ~OverlayActions() = default;
    virtual void bringForward(const std::string& window) = 0;
    /// Brings the next or the previous window of the tile's stack to the front.
    virtual void stepStack(const std::string& tile, StackStep step) = 0;
    virtual void place(const std::string& window, const std::string& tile) = 0;
    /// `method` is the `undoMethod` of the status message.
    virtual void undo(const std::string& method) = 0;
    /// Lets the user choose an application to launch in the tile.
    virtual void chooseApplication(const std::string& tile) = 0;
    /// Shows the context menu of the window's entry in the footer.
    virtual void showEntryMenu(const std::string& tile, const std::string& window, QPoint at) = 0;
    /// Shows a menu of all windows of the tile.
    virtual void showStackMenu(const std::string& tile, QPoint at) = 0;
};

} // namespace kova::ui
