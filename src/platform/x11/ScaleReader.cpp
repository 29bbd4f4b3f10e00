#include "platform/x11/ScaleReader.h"

#include <string>

namespace kova::x11 {

namespace {

/// A limit far above the length of the settings that desktops write.
constexpr std::uint32_t kMostSettingWords = 65536;

PropertyView settingsIn(const void* reply) {
    return viewOf(static_cast<const xcb_get_property_reply_t*>(reply));
}

int screenNumberOf(const XConnection& connection) {
    int number = 0;
    for (auto it = xcb_setup_roots_iterator(xcb_get_setup(connection.get())); it.rem > 0; xcb_screen_next(&it)) {
        if (it.data->root == connection.root()) return number;
        ++number;
    }
    return 0;
}

} // namespace

ScaleReader::ScaleReader(const XConnection& connection) :
    connection_(connection), reading_(connection, [this](PendingReplies& replies) { addRequests(replies); }) {
    const std::string name = "_XSETTINGS_S" + std::to_string(screenNumberOf(connection));
    const XReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection.get(), xcb_intern_atom(connection.get(), 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    if (reply) selection_ = reply->atom;
}

bool ScaleReader::isHint(const xcb_generic_event_t& event) const {
    const bool hasOwner = owner_ != kNoWindow;
    switch (event.response_type) {
    case XCB_PROPERTY_NOTIFY: {
        const auto& changed = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (changed.window == connection_.root()) return changed.atom == XCB_ATOM_RESOURCE_MANAGER;
        return hasOwner && changed.window == owner_ && changed.atom == connection_.atoms()[Atom::xsettings];
    }
    case XCB_DESTROY_NOTIFY:
        return hasOwner && reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == owner_;
    case XCB_CLIENT_MESSAGE | 0x80: {
        // The announcement of a new XSETTINGS manager.
        const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
        return message.type == connection_.atoms()[Atom::manager] && message.format == 32 &&
               message.data.data32[1] == selection_;
    }
    default:
        return false;
    }
}

void ScaleReader::addRequests(PendingReplies& replies) {
    replies.add(
        connection_.requestProperty(connection_.root(), XCB_ATOM_RESOURCE_MANAGER, kMostSettingWords),
        [this](const void* reply) {
            const PropertyView property = settingsIn(reply);
            const auto* text = reinterpret_cast<const char*>(property.bytes.data());
            resourceDotsPerInch_ = property.format == 8 ? dotsPerInchIn({text, property.bytes.size()}) : std::nullopt;
        });
    replies.add(xcb_get_selection_owner(connection_.get(), selection_),
                [this](const void* reply) { takeOwner(reply); });
}

void ScaleReader::takeOwner(const void* reply) {
    const auto* selection = static_cast<const xcb_get_selection_owner_reply_t*>(reply);
    owner_ = selection ? selection->owner : kNoWindow;
    shared_ = {};
    if (owner_ == kNoWindow) return;
    // Events are selected before the settings are requested, so that no change is lost.
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_.get(), owner_, XCB_CW_EVENT_MASK, &mask);
    reading_.replies().add(connection_.requestProperty(owner_, connection_.atoms()[Atom::xsettings], kMostSettingWords),
                           [this](const void* settings) {
                               const PropertyView property = settingsIn(settings);
                               if (property.format == 8) shared_ = sharedSettingsIn(property.bytes);
                           });
}

bool ScaleReader::advance() {
    if (!reading_.advance()) return false;
    const double before = std::exchange(scale_, scaleOf(shared_, resourceDotsPerInch_));
    return scale_ != before;
}

void ScaleReader::wait() {
    while (isReading()) {
        reading_.waitForStep();
        advance();
    }
}

} // namespace kova::x11
