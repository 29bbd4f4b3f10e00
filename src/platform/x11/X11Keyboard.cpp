#include "platform/x11/X11Keyboard.h"

#include "platform/x11/XkbProtocol.h"

#include <xcb/xinput.h>

#include <algorithm>
#include <map>

namespace kova::x11 {

namespace {

constexpr std::uint16_t kXkbMajor = 1, kXkbMinor = 0;
constexpr xcb_xkb_device_spec_t kCoreKeyboard = XCB_XKB_ID_USE_CORE_KBD;
constexpr std::uint16_t kMapParts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
/// How often KOVA tries to grab the keyboard: long enough for an open menu to close.
constexpr int kRecordingTries = 20;

} // namespace

Keyboard::Keyboard(const XConnection& connection, std::deque<PendingReplies>& pendingReplies,
                   std::function<void()> scheduleRecordingRetry) :
    connection_(connection),
    pendingReplies_(pendingReplies), scheduleRecordingRetry_(std::move(scheduleRecordingRetry)) {
    xcb_connection_t* server = connection_.get();
    const auto* extension = xcb_get_extension_data(server, &xcb_xkb_id);
    if (!extension || !extension->present) return;
    const XReply<xcb_xkb_use_extension_reply_t> used(
        xcb_xkb_use_extension_reply(server, xcb_xkb_use_extension(server, kXkbMajor, kXkbMinor), nullptr));
    if (!used || !used->supported) return;
    firstEvent_ = extension->first_event;
    const auto* input = xcb_get_extension_data(server, &xcb_input_id);
    hasInputExtension_ = input && input->present;
    configureExtension();
    requestMap();
    pendingReplies_.back().wait(connection_);
    auto batch = std::move(pendingReplies_.back());
    pendingReplies_.pop_back();
    batch.take();
}

void Keyboard::configureExtension() {
    // With detectable auto-repeat a pressed key sends press events repeatedly, but only one release event.
    const auto flags =
        xcb_xkb_per_client_flags(connection_.get(), kCoreKeyboard, XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
                                 XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT, 0, 0, 0);
    xcb_discard_reply(connection_.get(), flags.sequence);
    xcb_xkb_select_events_details_t details{};
    details.affectNewKeyboard = details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES | XCB_XKB_NKN_DETAIL_DEVICE_ID;
    details.affectState = details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
    constexpr std::uint16_t kEvents =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    xcb_xkb_select_events_aux(connection_.get(), kCoreKeyboard, kEvents, 0, 0, kMapParts, kMapParts, &details);
}

// The map

void Keyboard::requestMap() {
    isMapDue_ = false;
    isMapRequested_ = true;
    mustSend_ = true;
    xcb_connection_t* server = connection_.get();
    PendingReplies& batch = pendingReplies_.emplace_back();
    batch.add(xcb_xkb_get_state(server, kCoreKeyboard), [this](const void* reply) {
        if (reply) group_ = static_cast<const xcb_xkb_get_state_reply_t*>(reply)->group;
    });
    // The replies of one batch are used one after the other, and stay valid until all are used.
    const auto names = std::make_shared<const void*>(nullptr);
    batch.add(xcb_xkb_get_names(server, kCoreKeyboard, XCB_XKB_NAME_DETAIL_KEY_NAMES),
              [names](const void* reply) { *names = reply; });
    batch.add(xcb_xkb_get_map(server, kCoreKeyboard, kMapParts, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0),
              [this, names](const void* reply) { takeMap(*names, reply); });
}

void Keyboard::takeMap(const void* names, const void* map) {
    isMapRequested_ = false;
    if (!names || !map) return;
    KeyboardMap newMap = keyboardMapOf(*static_cast<const xcb_xkb_get_names_reply_t*>(names),
                                       *static_cast<const xcb_xkb_get_map_reply_t*>(map));
    map_ = std::move(newMap);
    updateClaims();
    retryGrabs();
}

// Events

bool Keyboard::take(const xcb_generic_event_t& event) {
    if (firstEvent_ == 0) return false;
    switch (event.response_type) { // ignores events that other clients have sent, which have bit 0x80 set
    case 0:
        return takeError(event);
    case XCB_KEY_PRESS:
        return takeKey(reinterpret_cast<const xcb_key_press_event_t&>(event), true);
    case XCB_KEY_RELEASE:
        return takeKey(reinterpret_cast<const xcb_key_press_event_t&>(event), false);
    case XCB_MAPPING_NOTIFY:
        isMapDue_ = true;
        return true;
    default:
        break;
    }
    if (event.response_type != firstEvent_) return false;
    // All XKB events have their type at the same offset.
    const auto& notice = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
    if (notice.xkbType == XCB_XKB_STATE_NOTIFY) {
        group_ = notice.group;
    } else {
        isMapDue_ = true;
    }
    return true;
}

bool Keyboard::takeError(const xcb_generic_event_t& event) {
    const auto& error = reinterpret_cast<const xcb_generic_error_t&>(event);
    const auto grab = std::ranges::find(pendingGrabs_, error.full_sequence, &Grab::sequence);
    if (grab == pendingGrabs_.end()) return false;
    noteRefusal(grab->combination);
    return true;
}

bool Keyboard::takeKey(const xcb_key_press_event_t& event, bool isPress) {
    if (event.event != connection_.root()) return false; // the event is for a divider's handle
    if (!isPress) {
        if (pressedKeys_.release(event.detail) && !hasKeyboard_) stopExpectingReleases();
        return true;
    }
    const bool isRepetition = pressedKeys_.press(event.detail, event.time);
    const auto code = map_.macKeyCode(event.detail);
    if (!code || !(hasKeyboard_ || isListening_)) return true;
    events_.push_back({hasKeyboard_ ? KeyboardEvent::Kind::recorded : KeyboardEvent::Kind::pressed,
                       {*code, map_.flagsOf(event.state), isRepetition, map_.characters(*code, group_)}});
    return true;
}

/// Keys that are still pressed may be released unnoticed. The server's repeat delay then shows whether a press is a
/// repetition.
void Keyboard::stopExpectingReleases() {
    pressedKeys_.stopExpectingReleases();
    mustSend_ = true;
    pendingReplies_.emplace_back().add(
        xcb_xkb_get_controls(connection_.get(), kCoreKeyboard), [this](const void* reply) {
            if (reply)
                pressedKeys_.setRepeatDelay(static_cast<const xcb_xkb_get_controls_reply_t*>(reply)->repeatDelay);
        });
}

bool Keyboard::act() {
    if (isMapDue_ && !isMapRequested_) requestMap();
    if (std::exchange(areGrabResultsKnown_, false)) useGrabResults();
    return std::exchange(mustSend_, false);
}

// Claims

void Keyboard::claim(std::vector<KeyCombination> combinations) {
    wanted_ = std::move(combinations);
    updateClaims();
    retryGrabs();
    mustReport_ = true;
    requestGrabResults();
}

void Keyboard::listen(bool listens) {
    isListening_ = listens;
    updateClaims();
}

std::vector<KeyCombination> Keyboard::heldByOthers() const {
    std::vector<KeyCombination> held;
    for (const Claim& claim : claims_) {
        if (claim.isHeldByOther) held.push_back(claim.combination);
    }
    return held;
}

std::vector<Keyboard::Claim> Keyboard::wantedClaims() const {
    std::vector<Claim> claims;
    if (!isListening_ || isRecording_ || firstEvent_ == 0) return claims;
    for (const KeyCombination& combination : wanted_) {
        Claim claim{.combination = combination, .grabs = {}};
        const auto state = map_.stateOf(combination.modifierFlags);
        if (!state) continue;
        for (const xcb_keycode_t key : map_.keysOf(combination.keyCode)) {
            for (const std::uint16_t locks : map_.lockStates()) {
                claim.grabs.emplace_back(key, static_cast<std::uint16_t>(*state | locks));
            }
        }
        claims.push_back(std::move(claim));
    }
    return claims;
}

void Keyboard::updateClaims() {
    auto wanted = wantedClaims();
    const auto sameIn = [](std::vector<Claim>& claims, const Claim& claim) {
        return std::ranges::find_if(claims, [&](const Claim& other) {
            return other.combination == claim.combination && other.grabs == claim.grabs;
        });
    };
    bool hasChanged = false;
    for (Claim& claim : claims_) {
        if (sameIn(wanted, claim) != wanted.end()) continue;
        hasChanged |= claim.isHeldByOther;
        ungrab(claim);
    }
    // New combinations may share keys with old ones, so they are grabbed after those were released.
    for (Claim& claim : wanted) {
        const auto known = sameIn(claims_, claim);
        if (known != claims_.end()) {
            claim = std::move(*known);
        } else {
            grab(claim);
            hasChanged = true;
        }
    }
    claims_ = std::move(wanted);
    if (!hasChanged) return;
    mustReport_ = true;
    requestGrabResults();
}

void Keyboard::retryGrabs() {
    bool any = false;
    for (Claim& claim : claims_) {
        if (!claim.isHeldByOther) continue;
        // Releases the grab at once: a grab that succeeded only for some lock states would take these presses from the
        // other program.
        grab(claim);
        ungrab(claim);
        any = true;
    }
    if (any) requestGrabResults();
}

void Keyboard::grab(Claim& claim) {
    claim.isRefused = false;
    claim.isGrabbed = true;
    mustSend_ = true;
    for (const auto& [key, state] : claim.grabs) {
        const auto sent = xcb_grab_key(connection_.get(), 0, connection_.root(), state, key, XCB_GRAB_MODE_ASYNC,
                                       XCB_GRAB_MODE_ASYNC);
        pendingGrabs_.push_back({sent.sequence, claim.combination});
    }
    if (hasInputExtension_) probeInputExtensionGrab(claim);
}

/// The server allows an XInput grab of a combination that has a core grab, and sends presses to the client that grabbed
/// last. To find out whether another program has an XInput grab, KOVA tries one and releases it at once.
void Keyboard::probeInputExtensionGrab(const Claim& claim) {
    std::map<xcb_keycode_t, std::vector<std::uint32_t>> statesByKey;
    for (const auto& [key, state] : claim.grabs) statesByKey[key].push_back(state);
    for (const auto& [key, states] : statesByKey) {
        const auto count = static_cast<std::uint16_t>(states.size());
        constexpr std::uint32_t kMask = XCB_INPUT_XI_EVENT_MASK_KEY_PRESS;
        const auto grabbed = xcb_input_xi_passive_grab_device(
            connection_.get(), XCB_CURRENT_TIME, connection_.root(), XCB_CURSOR_NONE, key, XCB_INPUT_DEVICE_ALL_MASTER,
            count, 1, XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_INPUT_GRAB_MODE_22_ASYNC,
            XCB_INPUT_GRAB_OWNER_NO_OWNER, &kMask, states.data());
        xcb_input_xi_passive_ungrab_device(connection_.get(), connection_.root(), key, XCB_INPUT_DEVICE_ALL_MASTER,
                                           count, XCB_INPUT_GRAB_TYPE_KEYCODE, states.data());
        pendingReplies_.emplace_back().add(grabbed, [this, combination = claim.combination](const void* reply) {
            const auto* grab = static_cast<const xcb_input_xi_passive_grab_device_reply_t*>(reply);
            if (grab && grab->num_modifiers > 0) noteRefusal(combination);
        });
    }
}

void Keyboard::noteRefusal(const KeyCombination& combination) {
    const auto claim = std::ranges::find(claims_, combination, &Claim::combination);
    if (claim != claims_.end()) claim->isRefused = true;
}

void Keyboard::ungrab(Claim& claim) {
    claim.isGrabbed = false;
    mustSend_ = true;
    for (const auto& [key, state] : claim.grabs) xcb_ungrab_key(connection_.get(), key, connection_.root(), state);
}

/// A failed grab causes an error event, a successful grab causes nothing. The reply to a later request shows that all
/// errors have arrived.
void Keyboard::requestGrabResults() {
    mustSend_ = true;
    ++pendingResultRequests_;
    pendingReplies_.emplace_back().add(xcb_get_input_focus(connection_.get()), [this](const void*) {
        if (--pendingResultRequests_ == 0) areGrabResultsKnown_ = true;
    });
}

/// Call once all errors have been handled.
void Keyboard::useGrabResults() {
    if (pendingResultRequests_ != 0) return; // there was another request since
    pendingGrabs_.clear();
    bool hasChanged = std::exchange(mustReport_, false);
    bool isAnyFree = false;
    for (Claim& claim : claims_) {
        if (claim.isHeldByOther && !claim.isRefused && !claim.isGrabbed) {
            grab(claim);
            isAnyFree = true;
            continue;
        }
        // A combination that works with some lock states only would confuse the user.
        if (claim.isRefused && claim.isGrabbed) ungrab(claim);
        hasChanged |= std::exchange(claim.isHeldByOther, claim.isRefused) != claim.isRefused;
    }
    if (isAnyFree) {
        mustReport_ = hasChanged;
        requestGrabResults();
    } else if (hasChanged) {
        events_.push_back({KeyboardEvent::Kind::grabResultsKnown, {}});
    }
}

// Recording

void Keyboard::record(bool records) {
    if (records == isRecording_) return;
    isRecording_ = records;
    recordingTries_ = 0;
    if (!records && std::exchange(hasKeyboard_, false)) {
        xcb_ungrab_keyboard(connection_.get(), XCB_CURRENT_TIME);
        stopExpectingReleases();
    }
    updateClaims();
    if (records) tryRecording();
}

void Keyboard::tryRecording() {
    if (!isRecording_ || hasKeyboard_) return;
    mustSend_ = true;
    PendingReplies& batch = pendingReplies_.emplace_back();
    // Keys that are pressed already do not belong to the shortcut.
    const auto down = std::make_shared<PressedKeys::Bits>();
    batch.add(xcb_query_keymap(connection_.get()), [down](const void* reply) {
        if (reply) std::ranges::copy(static_cast<const xcb_query_keymap_reply_t*>(reply)->keys, down->begin());
    });
    const auto grabbed = xcb_grab_keyboard(connection_.get(), 0, connection_.root(), XCB_CURRENT_TIME,
                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    batch.add(grabbed, [this, down](const void* reply) {
        const auto* grab = static_cast<const xcb_grab_keyboard_reply_t*>(reply);
        const bool isOurs = grab && grab->status == XCB_GRAB_STATUS_SUCCESS;
        if (!isRecording_) {
            // The recording ended before the reply.
            if (isOurs) xcb_ungrab_keyboard(connection_.get(), XCB_CURRENT_TIME);
            mustSend_ |= isOurs;
        } else if (isOurs) {
            hasKeyboard_ = true;
            pressedKeys_.setPressed(*down);
        } else if (++recordingTries_ < kRecordingTries) {
            scheduleRecordingRetry_();
        } else {
            events_.push_back({KeyboardEvent::Kind::recordingFailed, {}});
        }
    });
}

} // namespace kova::x11
