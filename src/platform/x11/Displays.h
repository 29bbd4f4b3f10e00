// From what the server says of monitors and panels to displays: plain arithmetic on values.
#pragma once

#include "platform/x11/ClientWindow.h"
#include "platform/x11/PointSpace.h"
#include "windowing/ScreenServicing.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kova::x11 {

/// What a monitor says of itself.
struct MonitorIdentity {
    std::string device;        // manufacturer, model and serial numbers; the same after every plugging in
    std::string name;          // as printed on it; empty when it does not say
    bool isSerialised = false; // it has a serial number, so that another of its kind is another device
    bool operator==(const MonitorIdentity&) const = default;
};

/// Absent when the data are no EDID block.
std::optional<MonitorIdentity> identityInEdid(std::span<const std::uint8_t> edid);

struct Monitor {
    std::string connector;
    bool isPrimary = false;
    PixelRect rect; // root coordinates
    std::optional<MonitorIdentity> identity;
    bool operator==(const Monitor&) const = default;
};

/// A panel's wish for room, with the panel's own frame when it is known.
struct Panel {
    Strut strut;
    std::optional<PixelRect> frame; // root coordinates
};

struct DisplayArrangement {
    std::vector<Screen> screens; // the primary first
    PointSpace space;            // of the first screen
    bool operator==(const DisplayArrangement&) const = default;
};

/// `workarea` is what the window manager leaves of the root window; with several monitors it says too little and is not
/// asked. A monitor that panels would cover whole keeps its full frame.
/// `scale`: pixels to a point.
/// Without monitors there is no display where the server tells of them (`MonitorsTold::all`): all are off. Where it
/// does not, the root window is the display.
enum class MonitorsTold { none, all };
DisplayArrangement describeDisplays(std::vector<Monitor> monitors, MonitorsTold told, std::span<const Panel> panels,
                                    const std::optional<PixelRect>& workarea, const PixelRect& root, double scale = 1);

/// The part of the monitor that the panels leave; root coordinates.
PixelRect visiblePart(const PixelRect& monitor, std::span<const Panel> panels, const PixelRect& root);

/// A UUID in upper case that is the same for the same text.
std::string stableUuid(const std::string& text);

} // namespace kova::x11
