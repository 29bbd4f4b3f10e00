#include "ui/style/WidgetPalette.h"

#include "ui/style/Colors.h"

#include <QApplication>
#include <QFont>
#include <QScreen>

#include <algorithm>

namespace kova::ui {

namespace {
constexpr double kDisabledContrast = 3;
} // namespace

QPalette widgetPalette(const Palette& colors) {
    QPalette palette(colors.raised, colors.panel);
    // The text of disabled controls is clearly paler than the muted text of enabled controls, but readable.
    const QColor disabled =
        legible(mixed(colors.raised, colors.mutedText, 0.4), {colors.panel, colors.raised}, kDisabledContrast);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText,
                            QPalette::ToolTipText, QPalette::BrightText}) {
        palette.setColor(role, colors.text);
        palette.setColor(QPalette::Disabled, role, disabled);
    }
    palette.setColor(QPalette::PlaceholderText, colors.mutedText);
    palette.setColor(QPalette::Disabled, QPalette::PlaceholderText, disabled);
    palette.setColor(QPalette::Base, colors.raised);
    palette.setColor(QPalette::AlternateBase, over(colors.raised, colors.hovered));
    palette.setColor(QPalette::ToolTipBase, colors.raised);
    palette.setColor(QPalette::Highlight, colors.accentFill);
    palette.setColor(QPalette::Link, colors.accentLine);
    palette.setColor(QPalette::LinkVisited, colors.accentLine);
    return palette;
}

void applyWidgetPalette(const Palette& colors) {
    const QPalette palette = widgetPalette(colors);
    QApplication::setPalette(palette);
    QPalette menus = palette;
    menus.setColor(QPalette::Window, colors.raised);
    menus.setColor(QPalette::Base, colors.panel);
    QApplication::setPalette(menus, "QMenu");
}

void applyWidgetFontHeight(int pixels) {
    const QScreen* screen = QGuiApplication::primaryScreen();
    const double pixelsPerInch = screen ? screen->logicalDotsPerInchY() : 96;
    QFont font = QApplication::font();
    font.setPointSizeF(std::max(1, pixels) * 72 / pixelsPerInch);
    QApplication::setFont(font);
}

} // namespace kova::ui
