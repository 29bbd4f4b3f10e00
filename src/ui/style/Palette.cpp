#include "ui/style/Palette.h"

#include "ui/style/Colors.h"

namespace kova::ui {

namespace {

constexpr double kTextContrast = 4.5;
constexpr double kLineContrast = 3;
constexpr double kPanelOpacity = 0.92;

/// The background colors of a theme, from which the rest of the palette follows.
struct Grounds {
    QColor top, bottom, panel, raised, text, muted, line, raisedLine;
};

Grounds darkGrounds(const ThemePalette& theme) {
    const QColor background = colorOf(theme.background), text = colorOf(theme.text);
    const QColor panel = mixed(background, colorOf(theme.panel), 0.5);
    return {.top = mixed(background, QColor(0x4a, 0x58, 0x70), 0.32),
            .bottom = mixed(background, QColor(0x30, 0x3c, 0x4c), 0.2),
            .panel = panel,
            .raised = mixed(panel, text, 0.09),
            .text = text,
            .muted = colorOf(theme.mutedText),
            .line = mixed(panel, text, 0.13),
            .raisedLine = mixed(panel, text, 0.22)};
}

/// Grays for the light appearance; themes define only a dark one.
Grounds lightGrounds() {
    return {.top = QColor(0xdc, 0xe3, 0xea),
            .bottom = QColor(0xc3, 0xcd, 0xd8),
            .panel = QColor(0xf2, 0xf4, 0xf7),
            .raised = QColor(0xff, 0xff, 0xff),
            .text = QColor(0x1d, 0x20, 0x26),
            .muted = QColor(0x56, 0x5d, 0x68),
            .line = QColor(0xd3, 0xd9, 0xe0),
            .raisedLine = QColor(0xc4, 0xcb, 0xd4)};
}

Grounds neonGrounds(const ThemePalette& theme) {
    const QColor background = colorOf(theme.background), panel = colorOf(theme.panel), accent = colorOf(theme.accent);
    return {.top = background,
            .bottom = mixed(mixed(background, QColor(0x14, 0x1c, 0x5a), 0.35), accent, 0.03),
            .panel = mixed(background, panel, 0.7),
            .raised = mixed(panel, accent, 0.12),
            .text = colorOf(theme.text),
            .muted = colorOf(theme.mutedText),
            .line = mixed(panel, accent, 0.28),
            .raisedLine = mixed(panel, accent, 0.45)};
}

} // namespace

Palette paletteFor(const Appearance& appearance, Brightness desktop, Compositing compositing) {
    Palette palette;
    palette.isNeon = appearance.isDark.value_or(false);
    palette.isDark = palette.isNeon || desktop == Brightness::dark;
    const Grounds grounds = palette.isNeon   ? neonGrounds(appearance.palette)
                            : palette.isDark ? darkGrounds(appearance.palette)
                                             : lightGrounds();
    palette.backdropTop = grounds.top;
    palette.backdropBottom = grounds.bottom;
    palette.raised = grounds.raised;
    palette.panelLine = grounds.line;
    palette.raisedLine = grounds.raisedLine;
    palette.panel = compositing == Compositing::running ? withAlpha(grounds.panel, kPanelOpacity) : grounds.panel;
    // Through a translucent panel any wallpaper may shine.
    const QColor overWhite = over(Qt::white, palette.panel), overBlack = over(Qt::black, palette.panel);

    palette.hovered = withAlpha(grounds.text, 0.07);
    const QColor hovered = over(grounds.raised, palette.hovered);
    const QColor hoveredWhite = over(overWhite, palette.hovered), hoveredBlack = over(overBlack, palette.hovered);
    palette.tileFill = withAlpha(palette.isNeon ? colorOf(appearance.palette.accent) : grounds.text, 0.05);
    const QColor tileTop = over(grounds.top, palette.tileFill), tileBottom = over(grounds.bottom, palette.tileFill);
    const auto text = [&](const QColor& wanted) {
        return legible(wanted,
                       {overWhite, overBlack, hoveredWhite, hoveredBlack, grounds.raised, hovered, tileTop, tileBottom},
                       kTextContrast);
    };
    palette.text = text(grounds.text);
    palette.mutedText = text(grounds.muted);

    const QColor accent = colorOf(appearance.palette.accent);
    palette.accentLine =
        legible(accent, {overWhite, overBlack, grounds.raised, grounds.top, grounds.bottom}, kLineContrast);
    palette.accentFill = mixed(grounds.raised, accent, 0.18);
    palette.accentText =
        legible(accent, {palette.accentFill, over(palette.accentFill, palette.hovered)}, kTextContrast);
    palette.tileLine =
        palette.isNeon ? mixed(grounds.panel, accent, 0.55) : mixed(tileTop, grounds.text, palette.isDark ? 0.25 : 0.3);
    if (palette.isNeon) palette.grid = withAlpha(accent, 0.07);
    palette.particle = withAlpha(palette.accentLine, palette.isNeon ? 0.8 : 0.55);
    return palette;
}

} // namespace kova::ui
