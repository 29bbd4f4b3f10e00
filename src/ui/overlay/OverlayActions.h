// The user's actions on the overlay, as the overlay reports them; points are pixels on the screen.
#pragma once

#include <QPoint>

#include <string>

namespace kova::ui {

enum class StackStep { next, previous };

class OverlayActions {
  public:
    virtual ~OverlayActions() = default;
    virtual void bringForward(const std::string& window) = 0;
    virtual void stepStack(const std::string& tile, StackStep step) = 0;
    virtual void place(const std::string& window, const std::string& tile) = 0;
    /// By the method of the agent that the message names.
    virtual void undo(const std::string& method) = 0;
    /// Lists the applications, to launch one in the tile.
    virtual void chooseApplication(const std::string& tile) = 0;
    virtual void showEntryMenu(const std::string& tile, const std::string& window, QPoint at) = 0;
    /// Lists all windows of the tile.
    virtual void showStackMenu(const std::string& tile, QPoint at) = 0;
};

} // namespace kova::ui
