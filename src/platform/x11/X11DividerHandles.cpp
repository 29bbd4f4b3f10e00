#include "platform/x11/X11DividerHandles.h"

#include "windowing/DividerGestureRecognizer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string_view>

namespace kova::x11 {

namespace {

constexpr xcb_timestamp_t kDoubleClickTime = 400; // milliseconds
constexpr xcb_button_t kMainButton = 1;
constexpr std::uint32_t kEscapeSymbol = 0xFF1B;
constexpr std::string_view kName = "KOVA divider";

// Numbers of glyphs in the cursor font. The glyph with the next number is the mask.
constexpr std::uint16_t kSidewaysArrow = 108, kUpDownArrow = 116;

std::array<std::uint32_t, 4> numbersOf(const PixelRect& r) {
    return {static_cast<std::uint32_t>(r.x), static_cast<std::uint32_t>(r.y), static_cast<std::uint32_t>(r.width),
            static_cast<std::uint32_t>(r.height)};
}

std::vector<xcb_keycode_t> keysFor(std::uint32_t symbol, xcb_keycode_t first,
                                   const xcb_get_keyboard_mapping_reply_t& mapping) {
    std::vector<xcb_keycode_t> keys;
    const int perKey = mapping.keysyms_per_keycode;
    const int count = xcb_get_keyboard_mapping_keysyms_length(&mapping);
    const xcb_keysym_t* symbols = xcb_get_keyboard_mapping_keysyms(&mapping);
    for (int i = 0; perKey > 0 && i < count; ++i) {
        if (symbols[i] == symbol) keys.push_back(static_cast<xcb_keycode_t>(first + i / perKey));
    }
    return keys;
}

} // namespace

HandlePlace placeOfHandle(const std::string& id, const CGRect& gapOnScreen, LayoutAxis axis, const PointSpace& space) {
    PixelRect gap = space.pixelsFromScreen(gapOnScreen);
    int& start = axis == LayoutAxis::horizontal ? gap.x : gap.y;
    int& thickness = axis == LayoutAxis::horizontal ? gap.width : gap.height;
    int& length = axis == LayoutAxis::horizontal ? gap.height : gap.width;
    const int missing = std::max(0, space.pixels(kThinnestHandle) - thickness);
    start -= missing / 2;
    thickness += missing;
    length = std::max(1, length);
    return {id, gap, axis, space.pixels(kDoubleClickTolerancePoints)};
}

// Creating and moving handles

void DividerHandleWindows::show(const std::vector<HandlePlace>& places) {
    std::vector<Shown> spare;
    std::erase_if(shown_, [&](const Shown& shown) {
        const bool stays = std::ranges::any_of(places, [&](const HandlePlace& place) {
            return place.id == shown.place.id && place.axis == shown.place.axis;
        });
        if (!stays) spare.push_back(shown);
        return !stays;
    });
    mustSend_ = true;
    std::vector<xcb_window_t> made;
    const std::size_t before = shown_.size();
    for (const HandlePlace& place : places) {
        const auto end = shown_.begin() + static_cast<std::ptrdiff_t>(before);
        const auto known =
            std::find_if(shown_.begin(), end, [&](const Shown& shown) { return shown.place.id == place.id; });
        if (known != end) {
            if (known->place != place) move(*known, place);
            continue;
        }
        // Windows are reused, since a new window is an event for every program that watches the stacking order.
        const auto free = std::ranges::find_if_not(spare, [&](const Shown& shown) { return isDragged(shown); });
        if (free == spare.end()) {
            made.push_back(create(place));
            continue;
        }
        reuse(*free, place);
        spare.erase(free);
    }
    for (const Shown& shown : spare) {
        if (isDragged(shown)) {
            cancelDrag();
            drag_.reset();
        }
        xcb_destroy_window(connection_.get(), shown.window);
    }
    if (made.empty()) return;
    restack(); // new windows are on top of all others
    for (const xcb_window_t window : made) xcb_map_window(connection_.get(), window);
}

std::uint32_t DividerHandleWindows::move(Shown& shown, const HandlePlace& place) {
    const auto values = numbersOf(place.rect);
    shown.place = place;
    return xcb_configure_window(connection_.get(), shown.window,
                                XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                                    XCB_CONFIG_WINDOW_HEIGHT,
                                values.data())
        .sequence;
}

void DividerHandleWindows::reuse(Shown shown, const HandlePlace& place) {
    if (shown.place.axis != place.axis) {
        const std::uint32_t cursor = cursorFor(place.axis);
        xcb_change_window_attributes(connection_.get(), shown.window, XCB_CW_CURSOR, &cursor);
    }
    shown.since = move(shown, place);
    shown_.push_back(std::move(shown));
}

xcb_window_t DividerHandleWindows::create(const HandlePlace& place) {
    xcb_connection_t* connection = connection_.get();
    const xcb_window_t window = xcb_generate_id(connection);
    const std::array<std::uint32_t, 3> values = {1, XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW,
                                                 cursorFor(place.axis)};
    xcb_create_window(connection, 0, window, connection_.root(), static_cast<std::int16_t>(place.rect.x),
                      static_cast<std::int16_t>(place.rect.y), static_cast<std::uint16_t>(place.rect.width),
                      static_cast<std::uint16_t>(place.rect.height), 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_CURSOR,
                      values.data());
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(kName.size()), kName.data());
    xcb_grab_button(connection, 0, window,
                    XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_BUTTON_1_MOTION,
                    XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, kMainButton, XCB_MOD_MASK_ANY);
    shown_.push_back({place, window, std::nullopt});
    return window;
}

xcb_cursor_t DividerHandleWindows::cursorFor(LayoutAxis axis) {
    xcb_cursor_t& cursor = axis == LayoutAxis::horizontal ? sidewaysCursor_ : upDownCursor_;
    if (cursor != XCB_NONE) return cursor;
    xcb_connection_t* connection = connection_.get();
    if (cursorFont_ == XCB_NONE) {
        constexpr std::string_view kFont = "cursor";
        cursorFont_ = xcb_generate_id(connection);
        xcb_open_font(connection, cursorFont_, kFont.size(), kFont.data());
    }
    const std::uint16_t glyph = axis == LayoutAxis::horizontal ? kSidewaysArrow : kUpDownArrow;
    constexpr std::uint16_t kWhite = 0xFFFF;
    cursor = xcb_generate_id(connection);
    xcb_create_glyph_cursor(connection, cursor, cursorFont_, cursorFont_, glyph, glyph + 1, 0, 0, 0, kWhite, kWhite,
                            kWhite);
    return cursor;
}

const DividerHandleWindows::Shown* DividerHandleWindows::find(xcb_window_t window) const {
    const auto found = std::ranges::find(shown_, window, &Shown::window);
    return found == shown_.end() ? nullptr : &*found;
}

// The stacking order

DividerHandleWindows::Neighbors DividerHandleWindows::neighbors() const {
    Neighbors found;
    for (const xcb_window_t window : model_.stacking()) {
        const ClientWindow* client = model_.clientIn(window);
        if (!client || !model_.isShown(*client)) continue;
        if (client->kind() == WindowKind::desktop) {
            found.below = window;
        } else if (found.above == kNoWindow) {
            found.above = window;
        }
    }
    return found;
}

bool DividerHandleWindows::isMisplaced() const {
    if (shown_.empty() || isRestacking_) return false;
    const Neighbors wanted = neighbors();
    std::size_t handles = 0;
    for (const xcb_window_t window : model_.stacking()) {
        if (find(window)) {
            ++handles;
            continue;
        }
        if (window == wanted.above) return handles != shown_.size();
        const TopLevel* top = model_.topLevel(window);
        const bool isBetween = wanted.above != kNoWindow ? top && top->isMapped : window == wanted.below;
        if (isBetween && handles != 0) return true;
    }
    return false;
}

void DividerHandleWindows::keepInOrder() {
    if (isMisplaced()) restack();
}

void DividerHandleWindows::restack() {
    const auto [below, above] = neighbors();
    const bool hasAbove = above != kNoWindow;
    for (const Shown& shown : shown_) {
        // The first request lowers the handle below all windows. The handle stays there if the second request fails
        // because the sibling was destroyed.
        const std::uint32_t atTheBottom = XCB_STACK_MODE_BELOW;
        xcb_configure_window(connection_.get(), shown.window, XCB_CONFIG_WINDOW_STACK_MODE, &atTheBottom);
        if (!hasAbove && below == kNoWindow) continue;
        const std::array<std::uint32_t, 2> values = {
            hasAbove ? above : below,
            static_cast<std::uint32_t>(hasAbove ? XCB_STACK_MODE_BELOW : XCB_STACK_MODE_ABOVE)};
        xcb_configure_window(connection_.get(), shown.window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE,
                             values.data());
    }
    mustSend_ = true;
    if (std::exchange(isRestacking_, true)) return;
    // Until the server has replied, `isMisplaced` is false, so that the handles are not restacked again.
    pendingReplies_.emplace_back().add(xcb_get_input_focus(connection_.get()),
                                       [this](const void*) { isRestacking_ = false; });
}

// Pointer events

bool DividerHandleWindows::take(const xcb_generic_event_t& event) {
    switch (event.response_type) { // ignores events that other clients have sent, which have bit 0x80 set
    case XCB_BUTTON_PRESS:
        pressed(reinterpret_cast<const xcb_button_press_event_t&>(event), event.full_sequence);
        return true;
    case XCB_MOTION_NOTIFY: {
        const auto& motion = reinterpret_cast<const xcb_motion_notify_event_t&>(event);
        moved(motion.root_x, motion.root_y);
        return true;
    }
    case XCB_BUTTON_RELEASE:
        released(reinterpret_cast<const xcb_button_release_event_t&>(event));
        return true;
    case XCB_ENTER_NOTIFY:
        crossed(reinterpret_cast<const xcb_enter_notify_event_t&>(event), DividerHandleEvent::Kind::entered);
        return true;
    case XCB_LEAVE_NOTIFY:
        crossed(reinterpret_cast<const xcb_enter_notify_event_t&>(event), DividerHandleEvent::Kind::left);
        return true;
    case XCB_KEY_PRESS:
        keysPressed_.push_back(reinterpret_cast<const xcb_key_press_event_t&>(event).detail);
        return true;
    case XCB_KEY_RELEASE:
        return true;
    default:
        return false;
    }
}

void DividerHandleWindows::pressed(const xcb_button_press_event_t& event, std::uint32_t sequence) {
    const Shown* shown = find(event.event);
    if (!shown || event.detail != kMainButton) return;
    const bool isForFormerDivider = shown->since && static_cast<std::int32_t>(sequence - *shown->since) < 0;
    if (isForFormerDivider) return; // the window was another divider's handle at that time
    const std::string& id = shown->place.id;
    const auto before = std::exchange(lastClick_, std::nullopt);
    const bool isDouble = before && before->id == id && event.time - before->when <= kDoubleClickTime;
    drag_ = Drag{id,           shown->window, event.time,   shown->place.doubleClickTolerancePixels,
                 event.root_x, event.root_y,  event.root_x, event.root_y,
                 isDouble};
    if (!isDouble) lastClick_ = Click{id, event.time};
    mustGrabKeyboard_ = !isDouble;
    const auto kind = isDouble ? DividerHandleEvent::Kind::doubleClicked : DividerHandleEvent::Kind::pressed;
    events_.push_back({kind, id, event.root_x, event.root_y});
}

void DividerHandleWindows::crossed(const xcb_enter_notify_event_t& event, DividerHandleEvent::Kind kind) {
    if (const Shown* shown = find(event.event)) events_.push_back({kind, shown->place.id, event.root_x, event.root_y});
}

void DividerHandleWindows::moved(int x, int y) {
    if (!drag_) return;
    drag_->x = x;
    drag_->y = y;
    if (std::hypot(x - drag_->startX, y - drag_->startY) > drag_->doubleClickTolerancePixels) lastClick_.reset();
    if (drag_->isOver) return;
    // The newest position replaces an earlier one that was not reported yet.
    const bool isNewer = !events_.empty() && events_.back().kind == DividerHandleEvent::Kind::moved;
    if (isNewer) events_.pop_back();
    events_.push_back({DividerHandleEvent::Kind::moved, drag_->id, x, y});
}

void DividerHandleWindows::released(const xcb_button_release_event_t& event) {
    if (!drag_ || event.detail != kMainButton) return;
    if (!drag_->isOver) events_.push_back({DividerHandleEvent::Kind::released, drag_->id, event.root_x, event.root_y});
    drag_.reset();
    mustGrabKeyboard_ = false;
}

void DividerHandleWindows::cancelDrag() {
    if (!std::exchange(drag_->isOver, true))
        events_.push_back({DividerHandleEvent::Kind::canceled, drag_->id, drag_->x, drag_->y});
}

bool DividerHandleWindows::act() {
    if (std::exchange(mustGrabKeyboard_, false) && drag_) grabKeyboard();
    if (escapeKeys_) {
        for (const xcb_keycode_t key : std::exchange(keysPressed_, {})) {
            if (drag_ && std::ranges::find(*escapeKeys_, key) != escapeKeys_->end()) cancelDrag();
        }
    }
    if (!drag_ || drag_->isOver) ungrabKeyboard();
    return std::exchange(mustSend_, false);
}

void DividerHandleWindows::grabKeyboard() {
    xcb_connection_t* connection = connection_.get();
    const auto grabbed =
        xcb_grab_keyboard(connection, 0, drag_->window, drag_->since, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    // If another program has grabbed the keyboard, Escape does not work.
    xcb_discard_reply(connection, grabbed.sequence);
    hasKeyboard_ = true;
    escapeKeys_.reset();
    keysPressed_.clear();
    const xcb_setup_t* setup = xcb_get_setup(connection);
    const xcb_keycode_t first = setup->min_keycode;
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - first + 1);
    pendingReplies_.emplace_back().add(
        xcb_get_keyboard_mapping(connection, first, count), [this, first](const void* reply) {
            const auto* mapping = static_cast<const xcb_get_keyboard_mapping_reply_t*>(reply);
            escapeKeys_ = mapping ? keysFor(kEscapeSymbol, first, *mapping) : std::vector<xcb_keycode_t>{};
        });
    mustSend_ = true;
}

void DividerHandleWindows::ungrabKeyboard() {
    if (!std::exchange(hasKeyboard_, false)) return;
    xcb_ungrab_keyboard(connection_.get(), XCB_CURRENT_TIME);
    keysPressed_.clear();
    mustSend_ = true;
}

} // namespace kova::x11
