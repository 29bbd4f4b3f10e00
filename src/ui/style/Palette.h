// The colors of the overlay, computed from a theme's palette and the accent. Text has a contrast of at least 4.5 with
// every background on which it is drawn; lines and icons that carry meaning have at least 3.
#pragma once

#include "ui/client/Contents.h"

#include <QColor>

namespace kova::ui {

enum class Brightness { light, dark };
/// Whether a compositor runs, without which windows cannot be translucent.
enum class Compositing { absent, running };

struct Palette {
    bool isDark = true;
    bool isNeon = false;
    QColor backdropTop, backdropBottom;
    QColor grid;               // translucent; invalid if the backdrop has no grid
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

/// `desktop` is the desktop's preference, used if the theme does not choose between light and dark itself.
Palette paletteFor(const Appearance& appearance, Brightness desktop, Compositing compositing);

} // namespace kova::ui
