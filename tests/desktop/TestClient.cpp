#include "tests/desktop/TestClient.h"

#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <thread>
#include <utility>

namespace kova::testing {

namespace {

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};
template <class T>
std::unique_ptr<T, FreeDeleter> owned(T* reply) {
    return std::unique_ptr<T, FreeDeleter>(reply);
}

} // namespace

TestClient::TestClient(const std::string& displayName, const std::string& className, std::uint32_t process) :
    connection_(xcb_connect(displayName.c_str(), nullptr)), root_(0), className_(className), process_(process) {
    if (!xcb_connection_has_error(connection_)) root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
}

TestClient::~TestClient() {
    xcb_disconnect(connection_);
}

bool TestClient::waitForManager() {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::seconds(20);
    const auto waitUntil = [&](const auto& condition) {
        while (!condition()) {
            if (Clock::now() > end) return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return true;
    };
    const auto isListed = [&](xcb_window_t window) {
        const auto windows = numbers(root_, "_NET_CLIENT_LIST");
        return std::ranges::find(windows, window) != windows.end();
    };
    const xcb_window_t probe = create({.title = "Probe"});
    // A starting window manager may miss the map request, so the request is repeated. The pause doubles each time,
    // since a slow window manager must manage the window before it is unmapped for the next attempt.
    auto pause = std::chrono::milliseconds(20);
    const bool isReady = waitUntil([&] {
        unmap(probe);
        map(probe);
        const auto nextAttempt = Clock::now() + pause;
        pause *= 2;
        while (!isListed(probe) && Clock::now() < nextAttempt)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        return isListed(probe);
    });
    destroy(probe);
    // A slow window manager may not have read all requests of these attempts yet. The next client may get the same
    // window ids, so its windows must not appear before all those requests are handled.
    const xcb_window_t last = open({.title = "Probe"});
    const bool hasRead = isReady && waitUntil([&] { return isListed(last); });
    destroy(last);
    return hasRead && waitUntil([&] { return !isListed(last); });
}

xcb_window_t TestClient::create(const TestWindow& options) {
    const xcb_window_t window = xcb_generate_id(connection_);
    const std::uint32_t values[] = {options.isOverrideRedirect ? 1U : 0U, XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(
        connection_, XCB_COPY_FROM_PARENT, window, root_, static_cast<std::int16_t>(options.frame.origin.x),
        static_cast<std::int16_t>(options.frame.origin.y), static_cast<std::uint16_t>(options.frame.size.width),
        static_cast<std::uint16_t>(options.frame.size.height), static_cast<std::uint16_t>(options.border),
        XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    std::string classes = className_;
    classes += '\0';
    setText(window, "WM_CLASS", "STRING", classes + classes);
    setText(window, "_NET_WM_NAME", "UTF8_STRING", options.title);
    setNumbers(window, "_NET_WM_PID", "CARDINAL", {process_});
    if (!options.type.empty()) {
        setNumbers(window, "_NET_WM_WINDOW_TYPE", "ATOM", {atom("_NET_WM_WINDOW_TYPE_" + options.type)});
    }
    xcb_size_hints_t hints{};
    xcb_icccm_size_hints_set_position(&hints, 1, static_cast<int>(options.frame.origin.x),
                                      static_cast<int>(options.frame.origin.y));
    if (options.minimumSize) {
        xcb_icccm_size_hints_set_min_size(&hints, static_cast<int>(options.minimumSize->width),
                                          static_cast<int>(options.minimumSize->height));
    }
    if (options.sizeIncrements) {
        xcb_icccm_size_hints_set_resize_inc(&hints, static_cast<int>(options.sizeIncrements->width),
                                            static_cast<int>(options.sizeIncrements->height));
    }
    xcb_icccm_set_wm_normal_hints(connection_, window, &hints);
    if (options.transientFor != XCB_WINDOW_NONE) {
        setNumbers(window, "WM_TRANSIENT_FOR", "WINDOW", {options.transientFor});
    }
    if (options.hasDeleteProtocol)
        setNumbers(window, "WM_PROTOCOLS", "ATOM", {atom("WM_TAKE_FOCUS"), atom("WM_DELETE_WINDOW")});
    return window;
}

xcb_window_t TestClient::open(const TestWindow& options) {
    const xcb_window_t window = create(options);
    map(window);
    return window;
}

void TestClient::map(xcb_window_t window) {
    xcb_map_window(connection_, window);
    sync();
}

void TestClient::unmap(xcb_window_t window) {
    xcb_unmap_window(connection_, window);
    sync();
}

void TestClient::withdraw(xcb_window_t window) {
    xcb_unmap_window(connection_, window);
    xcb_unmap_notify_event_t message{};
    message.response_type = XCB_UNMAP_NOTIFY;
    message.event = root_;
    message.window = window;
    xcb_send_event(connection_, 0, root_, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    sync();
}

void TestClient::destroy(xcb_window_t window) {
    xcb_destroy_window(connection_, window);
    sync();
}

void TestClient::configure(xcb_window_t window, const CGRect& area) {
    const auto word = [](double value) { return static_cast<std::uint32_t>(static_cast<int>(value)); };
    const std::uint32_t values[] = {word(minX(area)), word(minY(area)), word(area.size.width), word(area.size.height)};
    xcb_configure_window(connection_, window,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                         values);
    sync();
}

void TestClient::setTitle(xcb_window_t window, const std::string& bytes) {
    setText(window, "_NET_WM_NAME", "UTF8_STRING", bytes);
}

void TestClient::setNumbers(xcb_window_t window, const std::string& property, const std::string& type,
                            const std::vector<std::uint32_t>& numbers) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), atom(type), 32,
                        static_cast<std::uint32_t>(numbers.size()), numbers.data());
    sync();
}

void TestClient::setText(xcb_window_t window, const std::string& property, const std::string& type,
                         const std::string& bytes) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), atom(type), 8,
                        static_cast<std::uint32_t>(bytes.size()), bytes.data());
    sync();
}

void TestClient::remove(xcb_window_t window, const std::string& property) {
    xcb_delete_property(connection_, window, atom(property));
    sync();
}

void TestClient::sendToManager(const std::string& type, xcb_window_t window,
                               const std::vector<std::uint32_t>& numbers) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom(type);
    std::copy(numbers.begin(), numbers.end(), message.data.data32);
    xcb_send_event(connection_, 0, root_, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    sync();
}

void TestClient::requestState(xcb_window_t window, const std::string& first, const std::string& second,
                              StateRequest request) {
    constexpr std::uint32_t kPager = 2;
    sendToManager("_NET_WM_STATE", window,
                  {request == StateRequest::add ? 1U : 0U, atom(first), second.empty() ? 0U : atom(second), kPager});
}

void TestClient::readEvents() {
    sync();
    while (const auto event = owned(xcb_poll_for_event(connection_))) {
        const int type = event->response_type & 0x7F;
        if (type == XCB_CLIENT_MESSAGE) {
            const auto* message = reinterpret_cast<const xcb_client_message_event_t*>(event.get());
            const bool isCloseRequest = message->type == atom("WM_PROTOCOLS") && message->format == 32 &&
                                        message->data.data32[0] == atom("WM_DELETE_WINDOW");
            if (isCloseRequest) ++closeRequestCounts_[message->window];
        }
        if (type != XCB_CONFIGURE_NOTIFY) continue;
        ++configureCounts_[reinterpret_cast<const xcb_configure_notify_event_t*>(event.get())->window];
    }
}

int TestClient::closeRequestCount(xcb_window_t window) {
    readEvents();
    return closeRequestCounts_[window];
}

int TestClient::takeConfigureCount(xcb_window_t window) {
    readEvents();
    return std::exchange(configureCounts_[window], 0);
}

int TestClient::takeConfigureCount(const std::vector<xcb_window_t>& windows) {
    int count = 0;
    for (const auto window : windows) count += takeConfigureCount(window);
    return count;
}

CGRect TestClient::area(xcb_window_t window) const {
    const auto read = [&] {
        const auto sizeRequest = xcb_get_geometry(connection_, window);
        const auto originRequest = xcb_translate_coordinates(connection_, window, root_, 0, 0);
        const auto size = owned(xcb_get_geometry_reply(connection_, sizeRequest, nullptr));
        const auto origin = owned(xcb_translate_coordinates_reply(connection_, originRequest, nullptr));
        if (!size || !origin) return CGRect{};
        return makeRect(origin->dst_x, origin->dst_y, size->width, size->height);
    };
    // The window may change between the two requests, so both are repeated until two readings are equal.
    CGRect area = read();
    for (CGRect again = read(); again != area; again = read()) area = again;
    return area;
}

CGRect TestClient::outerFrame(xcb_window_t window) const {
    const auto edges = numbers(window, "_NET_FRAME_EXTENTS");
    CGRect r = area(window);
    if (edges.size() < 4) return r;
    return makeRect(minX(r) - edges[0], minY(r) - edges[2], r.size.width + edges[0] + edges[1],
                    r.size.height + edges[2] + edges[3]);
}

bool TestClient::isViewable(xcb_window_t window) const {
    const auto attributes =
        owned(xcb_get_window_attributes_reply(connection_, xcb_get_window_attributes(connection_, window), nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

std::vector<std::uint32_t> TestClient::numbers(xcb_window_t window, const std::string& property) const {
    const auto reply = owned(xcb_get_property_reply(
        connection_, xcb_get_property(connection_, 0, window, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, 1024),
        nullptr));
    if (!reply || reply->format != 32) return {};
    const auto* first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + xcb_get_property_value_length(reply.get()) / 4};
}

xcb_window_t TestClient::windowTitled(const std::string& title) const {
    const auto found = windowsTitled(title);
    return found.empty() ? 0 : found.front();
}

std::vector<xcb_window_t> TestClient::windowsTitled(const std::string& title) const {
    std::vector<xcb_window_t> windows = {root_}, found;
    for (std::size_t at = 0; at < windows.size(); ++at) {
        const auto name = owned(xcb_get_property_reply(
            connection_, xcb_get_property(connection_, 0, windows[at], XCB_ATOM_WM_NAME, XCB_ATOM_ANY, 0, 64),
            nullptr));
        if (name && title == std::string_view(static_cast<const char*>(xcb_get_property_value(name.get())),
                                              static_cast<std::size_t>(xcb_get_property_value_length(name.get()))))
            found.push_back(windows[at]);
        const auto tree = owned(xcb_query_tree_reply(connection_, xcb_query_tree(connection_, windows[at]), nullptr));
        if (!tree) continue;
        const xcb_window_t* children = xcb_query_tree_children(tree.get());
        windows.insert(windows.end(), children, children + xcb_query_tree_children_length(tree.get()));
    }
    return found;
}

xcb_window_t TestClient::focus() const {
    const auto reply = owned(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    return reply ? reply->focus : 0;
}

xcb_atom_t TestClient::atom(const std::string& name) const {
    auto& known = atoms_[name];
    if (known != 0) return known;
    const auto reply = owned(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.c_str()), nullptr));
    return known = reply ? reply->atom : 0;
}

void TestClient::sync() const {
    owned(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

} // namespace kova::testing
