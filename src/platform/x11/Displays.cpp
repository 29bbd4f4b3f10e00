#include "platform/x11/Displays.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace kova::x11 {

namespace {

constexpr std::size_t kEdidBlock = 128;

/// The text of an EDID descriptor: 13 bytes, ended by a line feed.
std::string descriptorText(std::span<const std::uint8_t> descriptor) {
    std::string text;
    for (const std::uint8_t byte : descriptor.subspan(5, 13)) {
        if (byte == '\n' || byte == 0) break;
        text += byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '?';
    }
    while (!text.empty() && text.back() == ' ') text.pop_back();
    return text;
}

bool overlaps(int start, int end, int from, int to) {
    return start < to && end >= from;
}

/// Whether the panel is on the monitor. A panel without a known frame may be on any monitor.
bool isOn(const Panel& panel, const PixelRect& monitor) {
    return !panel.frame || intersects(*panel.frame, monitor);
}

std::uint64_t hashOf(const std::string& text, std::uint64_t seed) {
    std::uint64_t hash = seed;
    for (const char c : text) {
        hash ^= static_cast<unsigned char>(c);
        hash *= 0x100000001B3ULL;
    }
    // Mixes the bits; otherwise the low bits of similar texts would be equal.
    hash ^= hash >> 33;
    hash *= 0xFF51AFD7ED558CCDULL;
    return hash ^ (hash >> 33);
}

/// Whether another connected monitor has the same identity: some vendors give all monitors the same serial number.
bool hasTwin(const std::vector<Monitor>& monitors, const Monitor& monitor) {
    return std::ranges::count_if(monitors, [&](const Monitor& other) {
               return other.identity && other.identity->device == monitor.identity->device;
           }) > 1;
}

} // namespace

std::optional<MonitorIdentity> identityInEdid(std::span<const std::uint8_t> edid) {
    static constexpr std::array<std::uint8_t, 8> kHeader = {0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0};
    if (edid.size() < kEdidBlock || !std::ranges::equal(edid.first(kHeader.size()), kHeader)) return std::nullopt;
    MonitorIdentity identity;
    // Bytes 8 to 15: manufacturer, model and serial number.
    for (const std::uint8_t byte : edid.subspan(8, 8)) {
        std::array<char, 3> digits{};
        std::snprintf(digits.data(), digits.size(), "%02X", static_cast<unsigned>(byte));
        identity.device += digits.data();
    }
    identity.hasSerialNumber = std::ranges::any_of(edid.subspan(12, 4), [](std::uint8_t byte) { return byte != 0; });
    for (const std::size_t at : {54U, 72U, 90U, 108U}) {
        const auto descriptor = edid.subspan(at, 18);
        if (descriptor[0] != 0 || descriptor[1] != 0) continue; // describes a timing, not a text
        if (descriptor[3] == 0xFC) identity.name = descriptorText(descriptor);
        if (descriptor[3] == 0xFF) {
            const std::string serial = descriptorText(descriptor);
            identity.device += " " + serial;
            identity.hasSerialNumber |= serial.find_first_not_of("0 ") != std::string::npos;
        }
    }
    return identity;
}

std::string stableUuid(const std::string& text) {
    const std::uint64_t high = hashOf(text, 0xCBF29CE484222325ULL);
    const std::uint64_t low = hashOf(text, 0x9AE16A3B2F90404FULL);
    std::array<char, 37> written{};
    // Version 8 of UUIDs is reserved for custom algorithms.
    std::snprintf(written.data(), written.size(), "%08X-%04X-8%03X-%04X-%012llX", static_cast<unsigned>(high >> 32),
                  static_cast<unsigned>(high >> 16) & 0xFFFFU, static_cast<unsigned>(high) & 0xFFFU,
                  (static_cast<unsigned>(low >> 48) & 0x3FFFU) | 0x8000U,
                  static_cast<unsigned long long>(low & 0xFFFFFFFFFFFFULL));
    return written.data();
}

PixelRect visiblePart(const PixelRect& monitor, std::span<const Panel> panels, const PixelRect& root) {
    int left = monitor.x, right = monitor.right(), top = monitor.y, bottom = monitor.bottom();
    for (const Panel& panel : panels) {
        if (!isOn(panel, monitor)) continue;
        const Strut& strut = panel.strut;
        const PixelEdges& depth = strut.depth;
        // Depths are measured from the edge of the root window, even if the panel is on a monitor that does not touch
        // this edge. A strut that would cover all of `monitor` belongs to a panel on a monitor further inside.
        if (depth.left > 0 && depth.left < monitor.right() &&
            overlaps(strut.leftStart, strut.leftEnd, monitor.y, monitor.bottom())) {
            left = std::max(left, depth.left);
        }
        const int rightEdge = root.width - depth.right;
        if (depth.right > 0 && rightEdge > monitor.x &&
            overlaps(strut.rightStart, strut.rightEnd, monitor.y, monitor.bottom())) {
            right = std::min(right, rightEdge);
        }
        if (depth.top > 0 && depth.top < monitor.bottom() &&
            overlaps(strut.topStart, strut.topEnd, monitor.x, monitor.right())) {
            top = std::max(top, depth.top);
        }
        const int bottomEdge = root.height - depth.bottom;
        if (depth.bottom > 0 && bottomEdge > monitor.y &&
            overlaps(strut.bottomStart, strut.bottomEnd, monitor.x, monitor.right())) {
            bottom = std::min(bottom, bottomEdge);
        }
    }
    if (left >= right || top >= bottom) return monitor;
    return {left, top, right - left, bottom - top};
}

DisplayArrangement describeDisplays(std::vector<Monitor> monitors, MonitorReport report, std::span<const Panel> panels,
                                    const std::optional<PixelRect>& workarea, const PixelRect& root, double scale) {
    std::erase_if(monitors, [](const Monitor& monitor) { return monitor.rect.width <= 0 || monitor.rect.height <= 0; });
    if (monitors.empty() && report == MonitorReport::all) return {{}, PointSpace(scale, root)};
    if (monitors.empty()) monitors.push_back({"screen", true, root, std::nullopt});
    std::stable_partition(monitors.begin(), monitors.end(), [](const Monitor& monitor) { return monitor.isPrimary; });

    DisplayArrangement arrangement;
    arrangement.space = PointSpace(scale, monitors.front().rect);
    for (const Monitor& monitor : monitors) {
        PixelRect visible = visiblePart(monitor.rect, panels, root);
        if (workarea && monitors.size() == 1) {
            const int left = std::max(visible.x, workarea->x), right = std::min(visible.right(), workarea->right());
            const int top = std::max(visible.y, workarea->y), bottom = std::min(visible.bottom(), workarea->bottom());
            if (left < right && top < bottom) visible = {left, top, right - left, bottom - top};
        }
        Screen screen;
        screen.frame = arrangement.space.pointsOnScreen(monitor.rect);
        screen.visibleFrame = arrangement.space.pointsOnScreen(visible);
        screen.scale = scale;
        screen.localizedName = monitor.connector;
        if (monitor.identity) {
            if (!monitor.identity->name.empty()) screen.localizedName = monitor.identity->name;
            // Without a serial number the id contains the connector even if no other monitor of the model is connected:
            // the id must not change when a second monitor of the model is connected or disconnected.
            const bool needsConnector = !monitor.identity->hasSerialNumber || hasTwin(monitors, monitor);
            const std::string suffix = needsConnector ? "@" + monitor.connector : "";
            screen.displayUUID = stableUuid(monitor.identity->device + suffix);
        }
        arrangement.screens.push_back(std::move(screen));
    }
    return arrangement;
}

} // namespace kova::x11
