// Names a tile of a display. The layout in force on the display need not have this tile.
#pragma once

#include "support/Identifiers.h"

#include <compare>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace kova {

struct TileTarget {
    DisplayID display;
    SlotID slot;

    TileTarget() = default;
    TileTarget(DisplayID onDisplay, SlotID ofLayout) : display(std::move(onDisplay)), slot(std::move(ofLayout)) {}
    /// Implicit for literals only, whose meaning is visible in the code.
    template <std::size_t size>
    TileTarget(const char (&literal)[size]) : TileTarget(from(literal)) {}

    /// Display id, "::", slot id: the tile's id in files and on the socket.
    std::string text() const;
    /// The tile with this text. If the text has no "::", it is the display's id, and the slot's id is empty.
    static TileTarget from(std::string_view text);

    /// In JSON a tile is its text.
    template <class Json>
    friend void to_json(Json& json, const TileTarget& target) {
        json = target.text();
    }

    template <class Json, class Value>
    friend void to_json(Json& json, const std::map<TileTarget, Value>& map) = delete;

    friend bool operator==(const TileTarget&, const TileTarget&) = default;
    /// Orders tiles by their texts. Files list tiles in this order, and it decides ties.
    friend std::strong_ordering operator<=>(const TileTarget& left, const TileTarget& right);
    /// For the messages of failed tests.
    template <class Stream>
    friend Stream& operator<<(Stream& stream, const TileTarget& target) {
        stream << target.text();
        return stream;
    }
};

/// The tile; if its display has the former id, with the new id instead.
TileTarget withDisplayRenamed(TileTarget target, const DisplayID& formerID, const DisplayID& newID);

} // namespace kova
