// The colors of the overlay, made of a theme's palette and the accent. Text has a contrast of at least 4.5 with every
// background that it is drawn on, lines and icons that carry meaning at least 3.
#pragma once

#include "ui/client/Contents.h"

#include <QColor>

namespace kova::ui {

enum class Brightness { light, dark };
/// Whether panels may let the desktop shine through: only a compositor mixes windows.
enum class Compositing { absent, running };

struct Palette {
    bool isDark = true;
    bool isNeon = false;
    QColor backdropTop, backdropBottom;
    QColor grid;               // translucent; invalid where there is none
    QColor panel, panelLine;   // of footers and cards; translucent with a compositor
    QColor raised, raisedLine; // of the front window's entry, buttons and the message
    QColor hovered;            // translucent, over panel and raised
    QColor text, mutedText;    // on panel, raised and the backdrop
    QColor accentLine;         // on panel and backdrop
    QColor accentFill;         // of a button on raised
    QColor accentText;         // on accentFill
    QColor tileFill, tileLine; // of empty tiles; translucent over the theme's background
    QColor particle;           // of the decoration, translucent
    bool operator==(const Palette&) const = default;
};

/// `desktop` decides where the theme leaves it to the desktop.
Palette paletteFor(const Appearance& appearance, Brightness desktop, Compositing compositing);

} // namespace kova::ui
