#include "platform/x11/RequestQueue.h"

#include <algorithm>
#include <array>

namespace kova::x11 {

namespace {

/// A request that was not confirmed for this long may be sent again.
constexpr Seconds kTimeToConfirm{0.15};
/// The same frame is requested at most this often in a row from a window that keeps another frame.
constexpr int kMostRefusals = 4;

// Words of EWMH messages
constexpr std::uint32_t kFromPager = 2;
constexpr std::uint32_t kRemoveState = 0, kAddState = 1;
constexpr std::uint32_t kMoveresizeFlags = XCB_GRAVITY_NORTH_WEST | (0xFU << 8) | (kFromPager << 12);

constexpr std::uint16_t kPlaceMask =
    XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;

std::uint32_t word(int value) {
    return static_cast<std::uint32_t>(value);
}

/// The length of the decorations before the gravity's reference point, along one axis. The reference point is at the
/// near edge if `part` is 0, in the middle if it is 1, and at the far edge if it is 2.
int decorationBefore(int part, int near, int far) {
    return part == 0 ? 0 : part == 1 ? (near + far) / 2 : near + far;
}

/// The position to request so that the window manager's frame begins at (x, y), by the window's gravity.
std::pair<int, int> positionByGravity(std::uint32_t gravity, int x, int y, const PixelEdges& decorations) {
    if (gravity == XCB_GRAVITY_STATIC) return {x + decorations.left, y + decorations.top};
    if (gravity < XCB_GRAVITY_NORTH_WEST || gravity > XCB_GRAVITY_SOUTH_EAST) return {x, y};
    const int column = static_cast<int>(gravity - XCB_GRAVITY_NORTH_WEST) % 3;
    const int row = static_cast<int>(gravity - XCB_GRAVITY_NORTH_WEST) / 3;
    return {x + decorationBefore(column, decorations.left, decorations.right),
            y + decorationBefore(row, decorations.top, decorations.bottom)};
}

} // namespace

RequestQueue::WindowRequest& RequestQueue::requestFor(xcb_window_t window) {
    const auto known = std::ranges::find(pending_, window, &WindowRequest::window);
    if (known != pending_.end()) return *known;
    pending_.push_back({window, std::nullopt, false, false, false});
    return pending_.back();
}

void RequestQueue::place(ClientWindow& client, const PixelRect& outer, Seconds now) {
    if (model_.isFullScreen(client) || outer.width <= 0 || outer.height <= 0) return;
    client.decorationsWhenPlaced = client.decorations;
    const bool unmaximizes = client.isMaximized && model_.windowManager().isPresent;
    if (!unmaximizes) {
        if (model_.outerFrame(client) == outer) {
            // The window has the requested frame, so its earlier refusals do not count.
            client.refusals = 0;
            client.frameAtLastRequest.reset();
        }
        if (model_.expectedFrame(client, now, kTimeToConfirm) == outer) return;
        // A window that kept another frame each time would refuse further requests as well.
        const bool repeats = client.lastRequest == outer && client.frameAtLastRequest == model_.outerFrame(client);
        client.refusals = repeats ? client.refusals + 1 : 0;
        if (client.refusals >= kMostRefusals) return;
    }
    client.isMaximized = false;
    client.lastRequest = outer;
    client.frameAtLastRequest = model_.outerFrame(client);
    client.pending = PendingFrame{outer, now, std::nullopt};
    client.placedAt = now;
    WindowRequest& request = requestFor(client.window);
    request.outer = outer;
    request.maximize = false;
    request.unmaximize |= unmaximizes;
}

void RequestQueue::maximize(ClientWindow& client) {
    if (!model_.windowManager().isPresent) return;
    client.isMaximized = true;
    client.pending.reset();
    WindowRequest& request = requestFor(client.window);
    request.outer.reset();
    request.unmaximize = false;
    request.maximize = true;
}

void RequestQueue::raise(const ClientWindow& client) {
    raiseAlone(client);
    if (model_.windowManager().isPresent) return; // the window manager keeps dialogs above their windows
    for (const xcb_window_t window : model_.dialogsOf(client)) {
        if (const ClientWindow* dialog = model_.client(window)) raiseAlone(*dialog);
    }
}

void RequestQueue::raiseAlone(const ClientWindow& client) {
    WindowRequest request = requestFor(client.window);
    request.raise = true;
    // The window that is raised last must be on top.
    std::erase_if(pending_, [&](const WindowRequest& known) { return known.window == client.window; });
    pending_.push_back(request);
}

void RequestQueue::activate(const ClientWindow& client) {
    activation_ = {client.window, client.processIdentifier};
}

void RequestQueue::activateApplication(pid_t processIdentifier, const ClientWindow* mainWindow) {
    if (activation_ && activation_->processIdentifier == processIdentifier) return;
    // X11 activates windows, not applications, so this activates the window of the process that was raised last.
    for (auto request = pending_.rbegin(); request != pending_.rend(); ++request) {
        const ClientWindow* raised = model_.client(request->window);
        if (request->raise && raised && raised->processIdentifier == processIdentifier) return activate(*raised);
    }
    if (mainWindow) activate(*mainWindow);
}

void RequestQueue::send() {
    const bool isManaged = model_.windowManager().isPresent;
    for (const WindowRequest& request : std::exchange(pending_, {})) {
        ClientWindow* client = model_.client(request.window);
        if (!client) continue;
        if (isManaged) {
            sendThroughManager(*client, request);
        } else {
            sendDirectly(*client, request);
        }
    }
    if (const auto activation = std::exchange(activation_, std::nullopt)) {
        if (const ClientWindow* client = model_.client(activation->window)) sendActivation(*client);
    }
}

void RequestQueue::sendDirectly(ClientWindow& client, const WindowRequest& request) {
    std::array<std::uint32_t, 5> values{};
    std::size_t count = 0;
    std::uint16_t mask = 0;
    if (request.outer) {
        const TopLevel* top = model_.topLevel(client.topLevel);
        const int borders = top ? 2 * top->border : 0;
        const PixelRect area = grown(*request.outer, client.shadow);
        mask = kPlaceMask;
        values = {word(area.x), word(area.y), word(std::max(1, area.width - borders)),
                  word(std::max(1, area.height - borders))};
        count = 4;
    }
    if (request.raise) {
        mask |= XCB_CONFIG_WINDOW_STACK_MODE;
        values[count] = XCB_STACK_MODE_ABOVE;
    }
    const auto cookie = xcb_configure_window(connection_.get(), client.window, mask, values.data());
    if (request.outer && client.pending) client.pending->sequence = cookie.sequence;
}

void RequestQueue::sendThroughManager(ClientWindow& client, const WindowRequest& request) {
    const WindowManager& manager = model_.windowManager();
    if (request.unmaximize) changeMaximizing(client, kRemoveState);
    if (request.maximize) changeMaximizing(client, kAddState);
    if (request.outer) {
        // The window manager's frame around the client, and the client's size within it.
        const PixelRect frame = grown(*request.outer, client.shadow);
        const TopLevel* top = model_.topLevel(client.topLevel);
        const int borders = top && client.topLevel == client.window ? 2 * top->border : 0;
        const int width = std::max(1, frame.width - client.decorations.horizontal() - borders);
        const int height = std::max(1, frame.height - client.decorations.vertical() - borders);
        if (manager.movesAndResizes) {
            connection_.sendToWindowManager(
                client.window, Atom::netMoveresizeWindow,
                {kMoveresizeFlags, word(frame.x), word(frame.y), word(width), word(height)});
        } else {
            const auto [x, y] = positionByGravity(client.gravity, frame.x, frame.y, client.decorations);
            const std::array<std::uint32_t, 4> values = {word(x), word(y), word(width), word(height)};
            xcb_configure_window(connection_.get(), client.window, kPlaceMask, values.data());
        }
    }
    // Activating a window raises it as well.
    if (!request.raise || (activation_ && activation_->window == client.window)) return;
    if (manager.restacks) {
        connection_.sendToWindowManager(client.window, Atom::netRestackWindow,
                                        {kFromPager, kNoWindow, XCB_STACK_MODE_ABOVE, 0, 0});
    } else {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(connection_.get(), client.window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    }
}

void RequestQueue::changeMaximizing(const ClientWindow& client, std::uint32_t change) {
    const Atoms& atoms = connection_.atoms();
    connection_.sendToWindowManager(
        client.window, Atom::netWmState,
        {change, atoms[Atom::netWmStateMaximizedVert], atoms[Atom::netWmStateMaximizedHorz], kFromPager, 0});
}

void RequestQueue::sendActivation(const ClientWindow& client) {
    if (model_.windowManager().isPresent) {
        connection_.sendToWindowManager(client.window, Atom::netActiveWindow,
                                        {kFromPager, XCB_CURRENT_TIME, model_.activeWindow, 0, 0});
        return;
    }
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_.get(), client.window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    for (const xcb_window_t dialog : model_.dialogsOf(client)) {
        xcb_configure_window(connection_.get(), dialog, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    }
    const auto cookie =
        xcb_set_input_focus(connection_.get(), XCB_INPUT_FOCUS_POINTER_ROOT, client.window, XCB_CURRENT_TIME);
    model_.noteFocusRequest(client.window, cookie.sequence);
}

} // namespace kova::x11
