// Sample contents of an overlay, as the agent would send them, and a platform that draws windows into pictures.
#pragma once

#include "ui/overlay/Overlay.h"

#include <QBrush>
#include <QImage>

#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <vector>

namespace kova::ui::testing {

enum class ThemeVariant { dark, light, neon };

struct Sample {
    int windows = 6;
    double scale = 1;
    ThemeVariant theme = ThemeVariant::dark;
    bool useThemeBackground = true;
    bool isDragging = false;
    bool hasMessage = true;
    bool hasNotice = false;     // in two footers; one of them is too narrow for the whole notice
    bool isRightToLeft = false; // names and the message are Arabic and Hebrew; some do not fit
    bool hasBrain = false;      // the particles of the backdrop are drawn
    bool hasSpan =
        false;           // a window covers the tiles "primary" and "utility"; "reference" is too narrow for its windows
    bool isBusy = false; // applications are being launched into two tiles, and the pointer is on a divider
};
/// A display of 800 by 500 points with four tiles. Tile "utility" is empty; the windows are in the other three.
nlohmann::json sampleState(const Sample& sample = {});
OverlayContents contentsOf(const nlohmann::json& state);
DesktopStyle desktopStyleOf(ThemeVariant theme);

/// Stores each window's picture, and counts how often the window was drawn.
class PicturePlatform final : public OverlayPlatform {
  public:
    struct WindowRecord {
        QImage picture;
        QRegion visible, clickable;
        int drawings = 0;
        bool isConcealed = false;
    };
    explicit PicturePlatform(bool isComposited = true) : isComposited_(isComposited) {}

    bool isComposited() const override { return isComposited_; }
    void adopt(OverlayWindow& window) override { windows_[&window]; }
    void release(OverlayWindow& window) override { windows_.erase(&window); }
    void stack(OverlayWindow&) override {}
    void conceal(OverlayWindow& window) override { windows_.at(&window).isConcealed = true; }
    void reveal(OverlayWindow& window) override { windows_.at(&window).isConcealed = false; }
    void shape(OverlayWindow& window, const QRegion& visible, const QRegion& clickable) override;
    void draw(OverlayWindow& window, const QRegion& dirty) override;
    void exposed(OverlayWindow&) override {}

    /// All windows, including concealed ones.
    const std::map<OverlayWindow*, WindowRecord>& windows() const { return windows_; }
    int drawings() const;
    int windowCountOf(Layer layer) const;
    /// A picture of the screen: all windows in their stacking order, above a wallpaper.
    QImage screen(QSize size, const QBrush& wallpaper = QColor(0x6b, 0x7f, 0x95)) const;

  private:
    bool isComposited_;
    std::map<OverlayWindow*, WindowRecord> windows_;
};

/// Records the requested actions as texts, for example "bringForward 3".
class RecordedActions final : public OverlayActions {
  public:
    void bringForward(const std::string& window) override { recorded.push_back("bringForward " + window); }
    void stepStack(const std::string& tile, StackStep step) override {
        recorded.push_back((step == StackStep::next ? "next " : "previous ") + tile);
    }
    void place(const std::string& window, const std::string& tile) override {
        recorded.push_back("place " + window + " " + tile);
    }
    void undo(const std::string& method) override { recorded.push_back(method); }
    void chooseApplication(const std::string& tile) override { recorded.push_back("choose " + tile); }
    void showEntryMenu(const std::string& tile, const std::string& window, QPoint) override {
        recorded.push_back("menu " + tile + " " + window);
    }
    void showStackMenu(const std::string& tile, QPoint) override { recorded.push_back("stack " + tile); }

    std::vector<std::string> recorded;
};

} // namespace kova::ui::testing
