#include "platform/x11/DisplayReader.h"

#include <xcb/randr.h>

#include <utility>

namespace kova::x11 {

DisplayReader::DisplayReader(const XConnection& connection) :
    connection_(connection), reading_(connection, [this](PendingReplies& replies) {
        replies.add(xcb_randr_get_monitors(connection_.get(), connection_.root(), 1),
                    [this](const void* reply) { takeMonitors(reply); });
    }) {
    xcb_connection_t* c = connection.get();
    const auto* extension = xcb_get_extension_data(c, &xcb_randr_id);
    if (!extension || !extension->present) return;
    const XReply<xcb_randr_query_version_reply_t> version(
        xcb_randr_query_version_reply(c, xcb_randr_query_version(c, 1, 5), nullptr));
    // Monitors need version 1.5.
    if (!version || std::pair(version->major_version, version->minor_version) < std::pair(1U, 5U)) return;
    xcb_randr_select_input(c, connection.root(),
                           XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                               XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
    eventBase_ = extension->first_event;
}

void DisplayReader::begin() {
    if (eventBase_) reading_.begin();
}

bool DisplayReader::advance() {
    if (!reading_.advance()) return false;
    monitors_ = std::exchange(newMonitors_, {});
    return true;
}

void DisplayReader::wait() {
    while (isReading()) {
        reading_.waitForStep();
        advance();
    }
}

void DisplayReader::takeMonitors(const void* reply) {
    newMonitors_.clear();
    const auto* monitors = static_cast<const xcb_randr_get_monitors_reply_t*>(reply);
    hasReport_ = monitors != nullptr;
    if (!monitors) return;
    xcb_connection_t* c = connection_.get();
    for (auto it = xcb_randr_get_monitors_monitors_iterator(monitors); it.rem > 0; xcb_randr_monitor_info_next(&it)) {
        const xcb_randr_monitor_info_t& info = *it.data;
        const std::size_t index = newMonitors_.size();
        newMonitors_.push_back({"", info.primary != 0, {info.x, info.y, info.width, info.height}, std::nullopt});
        reading_.replies().add(xcb_get_atom_name(c, info.name), [this, index](const void* name) {
            const auto* text = static_cast<const xcb_get_atom_name_reply_t*>(name);
            if (!text) return;
            newMonitors_[index].connector = repairedUtf8(
                {xcb_get_atom_name_name(text), static_cast<std::size_t>(xcb_get_atom_name_name_length(text))});
        });
        if (xcb_randr_monitor_info_outputs_length(&info) == 0) continue;
        const xcb_randr_output_t output = xcb_randr_monitor_info_outputs(&info)[0];
        reading_.replies().add(
            xcb_randr_get_output_property(c, output, connection_.atoms()[Atom::edid], XCB_ATOM_NONE, 0, 128, 0, 0),
            [this, index](const void* property) {
                const auto* edid = static_cast<const xcb_randr_get_output_property_reply_t*>(property);
                if (!edid || edid->format != 8) return;
                newMonitors_[index].identity =
                    identityInEdid({xcb_randr_get_output_property_data(edid),
                                    static_cast<std::size_t>(xcb_randr_get_output_property_data_length(edid))});
            });
    }
}

} // namespace kova::x11
