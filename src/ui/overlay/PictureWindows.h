// The windows of the overlay other than the footers; each shows one picture.
#pragma once

#include "ui/overlay/OverlayActions.h"
#include "ui/overlay/OverlayWindow.h"
#include "ui/overlay/Pictures.h"

namespace kova::ui {

/// Whether pictures look the same in both styles.
bool drawsAlike(const Style& one, const Style& other);

class BackdropWindow final : public OverlayWindow {
  public:
    explicit BackdropWindow(OverlayPlatform& platform) : OverlayWindow(platform, Layer::backdrop, "KOVA backdrop") {}
    void show(const QRect& area, const Style& style);
    void paint(QPainter& painter) override;

  private:
    Style style_;
    bool isShown_ = false;
};

class EmptyTileWindow final : public OverlayWindow {
  public:
    EmptyTileWindow(OverlayPlatform& platform, OverlayActions& actions) :
        OverlayWindow(platform, Layer::emptyTile, "KOVA empty tile"), actions_(actions) {}
    /// `backdrop`: the display's area on the screen when the theme's background is shown, else empty.
    void show(const TileContents& tile, const QRect& area, const QRect& backdrop, const Style& style);
    void paint(QPainter& painter) override;

  protected:
    bool event(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void forget() override { isHovered_ = false; }

  private:
    void hover(bool isHovered);
    TileBackground background() const { return backdrop_.isEmpty() ? TileBackground::desktop : TileBackground::theme; }

    OverlayActions& actions_;
    TileContents tile_;
    Style style_;
    QRect backdrop_;
    EmptyTileLayout layout_;
    bool isHovered_ = false;
};

class DividerWindow final : public OverlayWindow {
  public:
    explicit DividerWindow(OverlayPlatform& platform) : OverlayWindow(platform, Layer::divider, "KOVA divider") {}
    void show(const QRect& line, const Style& style);
    void paint(QPainter& painter) override;

  private:
    Style style_;
};

/// The outlines of the tiles of a display while a window is dragged over the display. Clicks pass through.
class HighlightWindow final : public OverlayWindow {
  public:
    explicit HighlightWindow(OverlayPlatform& platform) :
        OverlayWindow(platform, Layer::highlight, "KOVA drop target") {}
    void show(std::vector<OutlinedTile> tiles, const QRect& area, const Style& style);
    void paint(QPainter& painter) override;

  private:
    Style style_;
    std::vector<OutlinedTile> tiles_;
};

class MessageWindow final : public OverlayWindow {
  public:
    MessageWindow(OverlayPlatform& platform, OverlayActions& actions) :
        OverlayWindow(platform, Layer::message, "KOVA message"), actions_(actions) {}
    /// `area` is in pixels on the screen, and has the size that `layOutMessage` returns.
    void show(const StatusMessage& message, const QRect& area, int widestPixels, const Style& style);
    void paint(QPainter& painter) override;

  protected:
    bool event(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void forget() override { isHovered_ = false; }

  private:
    void hover(bool isHovered);

    OverlayActions& actions_;
    StatusMessage message_;
    Style style_;
    MessageLayout layout_;
    bool isHovered_ = false;
};

} // namespace kova::ui
