// Computes displays from the server's monitors and panels: arithmetic on values.
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

/// Identity of a monitor by its EDID.
struct MonitorIdentity {
    std::string device;           // manufacturer, model and serial numbers; stable across connections
    std::string name;             // product name; empty when there is none
    bool hasSerialNumber = false; // has a serial number that distinguishes it from others of its model
    bool operator==(const MonitorIdentity&) const = default;
};

/// Absent if the data are not an EDID block.
std::optional<MonitorIdentity> identityInEdid(std::span<const std::uint8_t> edid);

struct Monitor {
    std::string connector;
    bool isPrimary = false;
    PixelRect rect; // root coordinates
    std::optional<MonitorIdentity> identity;
    bool operator==(const Monitor&) const = default;
};

/// The space that a panel reserves, with the panel's own frame if it is known.
struct Panel {
    Strut strut;
    std::optional<PixelRect> frame; // root coordinates
};

struct DisplayArrangement {
    std::vector<Screen> screens; // the primary first
    PointSpace space;            // its origins are corners of the first screen
    bool operator==(const DisplayArrangement&) const = default;
};

/// `all`: the server has reported all monitors that are on. `none`: the server does not support monitors.
enum class MonitorReport { none, all };
/// If `monitors` is empty, `report` decides: with `all`, all monitors are off and there is no display; with `none`, the
/// root window is the display. A monitor that panels would cover completely keeps its full frame. `workarea` is the
/// part of the root window that no panel covers, as announced by the window manager. It is used only if there is one
/// monitor, since X11 has only one work area for all monitors. `scale`: pixels per point.
DisplayArrangement describeDisplays(std::vector<Monitor> monitors, MonitorReport report, std::span<const Panel> panels,
                                    const std::optional<PixelRect>& workarea, const PixelRect& root, double scale = 1);

/// The part of the monitor that no panel covers; root coordinates.
PixelRect visiblePart(const PixelRect& monitor, std::span<const Panel> panels, const PixelRect& root);

/// A UUID in upper case, computed from the text alone.
std::string stableUuid(const std::string& text);

} // namespace kova::x11
