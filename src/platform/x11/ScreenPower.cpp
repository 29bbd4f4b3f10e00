#include "platform/x11/ScreenPower.h"

#include <xcb/dpms.h>
#include <xcb/screensaver.h>

#include <utility>

namespace kova::x11 {

std::optional<Seconds> pauseBeforeNextQuery(const ScreenPowerState& state) {
    // A program may switch the screens on without ending the screen saver. The user would notice a longer delay then.
    constexpr Seconds kWhileOff{1.0};
    // The screens may go off some time after the screen saver began; a late reaction to that is harmless.
    constexpr Seconds kWhileSaverActive{5.0};
    if (state.areScreensOff) return kWhileOff;
    if (state.isSaverActive) return kWhileSaverActive;
    return std::nullopt;
}

ScreenPower::ScreenPower(const XConnection& connection) : connection_(connection) {
    xcb_connection_t* c = connection.get();
    const auto* power = xcb_get_extension_data(c, &xcb_dpms_id);
    if (!power || !power->present) return;
    const XReply<xcb_dpms_capable_reply_t> capable(xcb_dpms_capable_reply(c, xcb_dpms_capable(c), nullptr));
    const auto* saver = xcb_get_extension_data(c, &xcb_screensaver_id);
    if (!capable || !capable->capable || !saver || !saver->present) return;
    xcb_screensaver_select_input(c, connection.root(), XCB_SCREENSAVER_EVENT_NOTIFY_MASK);
    saverEvent_ = saver->first_event;
}

void ScreenPower::query(PendingReplies& batch, std::function<void()> known) {
    xcb_connection_t* c = connection_.get();
    batch.add(xcb_dpms_info(c), [this](const void* reply) {
        const auto* info = static_cast<const xcb_dpms_info_reply_t*>(reply);
        state_.areScreensOff = info && info->state && info->power_level != XCB_DPMS_DPMS_MODE_ON;
    });
    batch.add(xcb_screensaver_query_info(c, connection_.root()), [this, known = std::move(known)](const void* reply) {
        const auto* info = static_cast<const xcb_screensaver_query_info_reply_t*>(reply);
        state_.isSaverActive = info && info->state == XCB_SCREENSAVER_STATE_ON;
        known();
    });
}

} // namespace kova::x11
