#include "ui/style/Palette.h"

#include "ui/style/Colors.h"

namespace kova::ui {

namespace {

constexpr double kTextContrast = 4.5;
constexpr double kLineContrast = 3;
constexpr double kPanelOpacity = 0.92;

/// The colors of a theme from which the palette is computed.
struct BaseColors {
    QColor top, bottom, panel, raised, text, muted, line, raisedLine;
};

BaseColors darkColors(const ThemePalette& theme) {
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
BaseColors lightColors() {
    return {.top = QColor(0xdc, 0xe3, 0xea),
            .bottom = QColor(0xc3, 0xcd, 0xd8),
            .panel = QColor(0xf2, 0xf4, 0xf7),
            .raised = QColor(0xff, 0xff, 0xff),
            .text = QColor(0x1d, 0x20, 0x26),
            .muted = QColor(0x56, 0x5d, 0x68),
            .line = QColor(0xd3, 0xd9, 0xe0),
            .raisedLine = QColor(0xc4, 0xcb, 0xd4)};
}

BaseColors neonColors(const ThemePalette& theme) {
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
    const BaseColors base = palette.isNeon   ? neonColors(appearance.palette)
                            : palette.isDark ? darkColors(appearance.palette)
                                             : lightColors();
    palette.backdropTop = base.top;
    palette.backdropBottom = base.bottom;
    palette.raised = base.raised;
    palette.panelLine = base.line;
    palette.raisedLine = base.raisedLine;
    palette.panel = compositing == Compositing::running ? withAlpha(base.panel, kPanelOpacity) : base.panel;
    // Any wallpaper may be visible through a translucent panel.
    const QColor overWhite = over(Qt::white, palette.panel), overBlack = over(Qt::black, palette.panel);

    palette.hovered = withAlpha(base.text, 0.07);
    const QColor hovered = over(base.raised, palette.hovered);
    const QColor hoveredWhite = over(overWhite, palette.hovered), hoveredBlack = over(overBlack, palette.hovered);
    palette.tileFill = withAlpha(palette.isNeon ? colorOf(appearance.palette.accent) : base.text, 0.05);
    const QColor tileTop = over(base.top, palette.tileFill), tileBottom = over(base.bottom, palette.tileFill);
    const auto text = [&](const QColor& wanted) {
        return legible(wanted,
                       {overWhite, overBlack, hoveredWhite, hoveredBlack, base.raised, hovered, tileTop, tileBottom},
                       kTextContrast);
    };
    palette.text = text(base.text);
    palette.mutedText = text(base.muted);

    const QColor accent = colorOf(appearance.palette.accent);
    palette.accentLine = legible(accent, {overWhite, overBlack, base.raised, base.top, base.bottom}, kLineContrast);
    palette.accentFill = mixed(base.raised, accent, 0.18);
    palette.accentText =
        legible(accent, {palette.accentFill, over(palette.accentFill, palette.hovered)}, kTextContrast);
    palette.tileLine =
        palette.isNeon ? mixed(base.panel, accent, 0.55) : mixed(tileTop, base.text, palette.isDark ? 0.25 : 0.3);
    if (palette.isNeon) palette.grid = withAlpha(accent, 0.07);
    palette.particle = withAlpha(palette.accentLine, palette.isNeon ? 0.8 : 0.55);
    return palette;
}

} // namespace kova::ui
