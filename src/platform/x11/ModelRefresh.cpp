#include "platform/x11/ModelRefresh.h"

#include "platform/x11/FocusRequests.h"
#include "platform/x11/FrameRequests.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace kova::x11 {

namespace {

template <class Reply>
const Reply* as(const void* reply) {
    return static_cast<const Reply*>(reply);
}

PropertyView propertyIn(const void* reply) {
    return viewOf(as<xcb_get_property_reply_t>(reply));
}

xcb_window_t windowIn(const void* reply) {
    const auto windows = numbersIn(propertyIn(reply), XCB_ATOM_WINDOW);
    return windows.empty() ? kNoWindow : windows[0];
}

/// The deepest nesting of a client in window managers' frames.
constexpr int kDeepestFrame = 8;
/// Limit for the length of a window list.
constexpr std::uint32_t kMostWindows = 16384;
/// Limit for the rounds of one update. A reply can make another round necessary: for example, the client list names a
/// window that is not in the model yet.
constexpr int kMostRounds = 4;

} // namespace

ModelRefresh::ModelRefresh(const XConnection& connection, const ClientProcesses& processes, Mutex& mutex,
                           WindowModel& model) :
    connection_(connection),
    processes_(processes), mutex_(mutex), model_(model) {}

/// Sends the batch, waits without the lock, and uses the replies with the lock held.
void ModelRefresh::waitForReplies() {
    if (batch_.isEmpty()) return;
    batch_.wait(connection_);
    if (connection_.isLost()) {
        // Drops the null replies, which the handlers would take for destroyed windows.
        batch_ = {};
        return;
    }
    const MutexLock lock(mutex_);
    batch_.take();
}

RefreshOutcome ModelRefresh::run(Seconds now) {
    outcome_ = {};
    now_ = now;
    {
        const MutexLock lock(mutex_);
        model_.settle(now);
    }
    for (int round = 0; round < kMostRounds; ++round) {
        {
            const MutexLock lock(mutex_);
            if (!model_.isStale()) break;
            requestRoot();
            requestNewTopLevels();
            requestClients();
        }
        // Each step uses the replies of the step before. The steps read the root's properties, then the window
        // manager's own window if the root does not name it, then the properties of that window.
        constexpr int kStepsToManager = 3;
        for (int step = 0; step < kStepsToManager; ++step) waitForReplies();
        findTopLevels();
        measureFrames();
    }
    return outcome_;
}

void ModelRefresh::requestRoot() {
    const Atoms& atoms = connection_.atoms();
    const xcb_window_t root = connection_.root();
    if (std::exchange(model_.staleManager, false)) {
        const auto selectionOwner = std::make_shared<xcb_window_t>(kNoWindow);
        batch_.add(xcb_get_selection_owner(connection_.get(), atoms[Atom::windowManagerSelection]),
                   [selectionOwner](const void* reply) {
                       const auto* owner = as<xcb_get_selection_owner_reply_t>(reply);
                       if (owner) *selectionOwner = owner->owner;
                   });
        batch_.add(connection_.requestProperty(root, atoms[Atom::netSupportingWmCheck], 1),
                   [this, selectionOwner](const void* reply) {
                       mutex_.assertHeld();
                       const xcb_window_t checkWindow = windowIn(reply);
                       if (checkWindow != kNoWindow || *selectionOwner == kNoWindow) {
                           requestManager(checkWindow);
                       } else {
                           findManager(*selectionOwner);
                       }
                   });
    }
    if (std::exchange(model_.staleClientList, false) && model_.windowManager().isPresent) {
        batch_.add(connection_.requestProperty(root, atoms[Atom::netClientList], kMostWindows),
                   [this](const void* reply) {
                       mutex_.assertHeld();
                       model_.setClientList(numbersIn(propertyIn(reply), XCB_ATOM_WINDOW), now_);
                       outcome_.ownersChanged = outcome_.panelsChanged = true;
                   });
    }
    if (std::exchange(model_.staleDesktop, false)) {
        batch_.add(connection_.requestProperty(root, atoms[Atom::netCurrentDesktop], 1), [this](const void* reply) {
            mutex_.assertHeld();
            const auto numbers = numbersIn(propertyIn(reply), XCB_ATOM_CARDINAL);
            model_.currentDesktop = numbers.empty() ? 0 : numbers[0];
            outcome_.panelsChanged = true;
        });
    }
    if (std::exchange(model_.staleWorkarea, false)) {
        batch_.add(connection_.requestProperty(root, atoms[Atom::netWorkarea], 256), [this](const void* reply) {
            mutex_.assertHeld();
            const auto numbers = numbersIn(propertyIn(reply), XCB_ATOM_CARDINAL);
            model_.workareas.clear();
            for (std::size_t i = 0; i + 4 <= numbers.size() && model_.windowManager().isPresent; i += 4) {
                const auto pixel = [&](std::size_t at) {
                    return static_cast<int>(std::min<std::uint32_t>(numbers[i + at], kLargestCoordinate));
                };
                model_.workareas.push_back({pixel(0), pixel(1), pixel(2), pixel(3)});
            }
            outcome_.panelsChanged = true;
        });
    }
}

/// Metacity deletes the root's property when it ends, even if another window manager has replaced the property already.
/// The new window manager is then found by its own window: the window's property names the window itself, and its
/// program owns the selection of window managers.
void ModelRefresh::findManager(xcb_window_t selectionOwner) {
    const std::uint32_t connectionBits = ~xcb_get_setup(connection_.get())->resource_id_mask;
    const auto found = std::make_shared<xcb_window_t>(kNoWindow);
    for (const xcb_window_t window : model_.stacking()) {
        if ((window & connectionBits) != (selectionOwner & connectionBits)) continue;
        batch_.add(connection_.requestProperty(window, connection_.atoms()[Atom::netSupportingWmCheck], 1),
                   [window, found](const void* reply) {
                       if (windowIn(reply) == window) *found = window;
                   });
    }
    // The reply itself is not used. Its handler runs after the handlers of the requests above.
    batch_.add(xcb_get_selection_owner(connection_.get(), connection_.atoms()[Atom::windowManagerSelection]),
               [this, found](const void*) {
                   mutex_.assertHeld();
                   requestManager(*found);
               });
}

/// A window manager that has ended leaves its properties on the root. A window manager is present only if the window
/// that the root names has the same property, which names the window itself.
void ModelRefresh::requestManager(xcb_window_t checkWindow) {
    const Atoms& atoms = connection_.atoms();
    const auto manager = std::make_shared<WindowManager>();
    manager->checkWindow = checkWindow;
    batch_.add(xcb_get_window_attributes(connection_.get(), connection_.root()), [manager](const void* reply) {
        const auto* attributes = as<xcb_get_window_attributes_reply_t>(reply);
        // At first this only means that a window manager is running. The last reply shows whether it publishes the
        // list.
        manager->publishesNoClientList =
            attributes && (attributes->all_event_masks & XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT);
    });
    batch_.add(connection_.requestProperty(checkWindow, atoms[Atom::netSupportingWmCheck], 1),
               [manager](const void* reply) {
                   manager->isPresent = manager->checkWindow != kNoWindow && windowIn(reply) == manager->checkWindow;
               });
    batch_.add(connection_.requestProperty(checkWindow, atoms[Atom::netWmName], 64),
               [this, manager](const void* reply) { manager->name = textIn(propertyIn(reply), connection_.atoms()); });
    const auto keepsList = std::make_shared<bool>(false);
    batch_.add(connection_.requestProperty(connection_.root(), atoms[Atom::netClientList], 0),
               [keepsList](const void* reply) {
                   const auto* list = as<xcb_get_property_reply_t>(reply);
                   *keepsList = list && list->type == XCB_ATOM_WINDOW;
               });
    batch_.add(connection_.requestProperty(connection_.root(), atoms[Atom::netSupported], 1024),
               [this, manager, keepsList](const void* reply) {
                   mutex_.assertHeld();
                   const auto supported = numbersIn(propertyIn(reply), XCB_ATOM_ATOM);
                   const auto has = [&](Atom atom) {
                       return std::ranges::find(supported, connection_.atoms()[atom]) != supported.end();
                   };
                   // A window manager that ends may delete properties that its replacement has written already.
                   const bool hasList = supported.empty() ? *keepsList : has(Atom::netClientList);
                   manager->isPresent = manager->isPresent && hasList;
                   manager->movesAndResizes = has(Atom::netMoveresizeWindow);
                   manager->restacks = has(Atom::netRestackWindow);
                   manager->announcesDecorations = has(Atom::netFrameExtents);
                   manager->announcesHidden = has(Atom::netWmStateHidden);
                   manager->publishesNoClientList = manager->publishesNoClientList && !manager->isPresent;
                   WindowManager none;
                   none.publishesNoClientList = manager->publishesNoClientList;
                   model_.setWindowManager(manager->isPresent ? *manager : none, now_);
                   outcome_.ownersChanged = outcome_.panelsChanged = true;
               });
}

void ModelRefresh::requestTopLevel(xcb_window_t window) {
    const auto top = std::make_shared<TopLevel>();
    const auto cookie = xcb_get_geometry(connection_.get(), window);
    batch_.add(cookie, [top](const void* reply) {
        const auto* geometry = as<xcb_get_geometry_reply_t>(reply);
        if (!geometry) return;
        top->border = geometry->border_width;
        top->rect = {geometry->x, geometry->y, geometry->width + 2 * top->border, geometry->height + 2 * top->border};
    });
    const auto take = [this, window, top, request = cookie.sequence](const void* reply) {
        mutex_.assertHeld();
        const auto* attributes = as<xcb_get_window_attributes_reply_t>(reply);
        if (!attributes || top->rect.width == 0) return; // the window was destroyed; an event will report that
        top->isMapped = attributes->map_state != XCB_MAP_STATE_UNMAPPED;
        top->isOverrideRedirect = attributes->override_redirect != 0;
        model_.takeTopLevel(window, *top, request);
    };
    batch_.add(xcb_get_window_attributes(connection_.get(), window), take);
}

void ModelRefresh::readTopLevels() {
    batch_.add(xcb_query_tree(connection_.get(), connection_.root()), [this](const void* reply) {
        mutex_.assertHeld();
        const auto* tree = as<xcb_query_tree_reply_t>(reply);
        if (!tree) return;
        const xcb_window_t* children = xcb_query_tree_children(tree);
        model_.setStacking({children, children + xcb_query_tree_children_length(tree)});
        for (const xcb_window_t child : model_.stacking()) requestTopLevel(child);
    });
    waitForReplies();
    waitForReplies();
}

void ModelRefresh::requestNewTopLevels() {
    for (const xcb_window_t window : model_.takeUnknownTopLevels()) requestTopLevel(window);
}

void ModelRefresh::requestClients() {
    if (model_.staleClients == 0) return;
    const bool isManaged = model_.windowManager().isPresent;
    bool mayHaveMissedFocus = false;
    for (const xcb_window_t window : model_.clientOrder()) {
        ClientWindow* client = model_.client(window);
        if (!client || client->stale == 0) continue;
        const std::uint32_t bits = model_.takeStale(*client);
        if (bits & stale::events) {
            // A window manager announces the focused window. Without one KOVA needs focus events of the windows, and
            // events of the pointer, since the focus may follow the pointer.
            constexpr std::uint32_t kFocus = XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_ENTER_WINDOW;
            const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE | (isManaged ? 0U : kFocus);
            xcb_change_window_attributes(connection_.get(), window, XCB_CW_EVENT_MASK, &mask);
            mayHaveMissedFocus = !isManaged;
            batch_.add(xcb_get_window_attributes(connection_.get(), window), [this, window](const void* reply) {
                mutex_.assertHeld();
                const auto* attributes = as<xcb_get_window_attributes_reply_t>(reply);
                if (!attributes) return model_.forget(window); // the window was destroyed, although it is still listed
                if (ClientWindow* known = model_.client(window))
                    known->isInputOnly = attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY;
            });
            requestProcess(window);
        }
        requestProperties(window, bits);
        if (bits & stale::topLevel) unplaced_.push_back(window);
        if (bits & (stale::frame | stale::topLevel)) unmeasured_.push_back(window);
    }
    // A window may have got the focus before its events were selected.
    if (mayHaveMissedFocus) queryFocus(batch_, connection_, model_);
}

/// Call before `requestProperties`: when the window's own _NET_WM_PID arrives, this reply must be known, since it has
/// precedence.
void ModelRefresh::requestProcess(xcb_window_t window) {
    if (!processes_.isAvailable()) return;
    batch_.add(processes_.request(window), [this, window](const void* reply) {
        mutex_.assertHeld();
        if (ClientWindow* known = model_.client(window))
            known->reportedProcess = ClientProcesses::processIn(as<xcb_res_query_client_ids_reply_t>(reply));
    });
}

void ModelRefresh::requestProperties(xcb_window_t window, std::uint32_t bits) {
    if (bits & stale::owner) outcome_.ownersChanged = true;
    const ClientWindow* known = model_.client(window);
    const auto& rules = model_.rules();
    for (std::uint32_t i = 0; i < rules.size(); ++i) {
        if (!(bits & rules[i].staleBit)) continue;
        // WM_NAME is only read for windows without _NET_WM_NAME.
        if (rules[i].property == XCB_ATOM_WM_NAME && known && known->netName) continue;
        // The captures are small on purpose: there can be hundreds of these callbacks.
        const auto cookie = connection_.requestProperty(window, rules[i].property, rules[i].lengthInWords);
        batch_.add(cookie, [this, window, i, request = cookie.sequence](const void* reply) {
            mutex_.assertHeld();
            takeProperty(window, model_.rules()[i], reply, request);
        });
    }
}

void ModelRefresh::takeProperty(xcb_window_t window, const PropertyRule& rule, const void* reply,
                                std::uint32_t request) {
    ClientWindow* client = model_.client(window);
    if (!client || !client->acceptReply(rule.staleBit, request)) return;
    const bool hadNetName = client->netName.has_value();
    rule.take(*client, propertyIn(reply), connection_.atoms());
    switch (rule.staleBit) {
    case stale::strut:
        outcome_.panelsChanged = true;
        break;
    case stale::kind:
        outcome_.ownersChanged = true;
        break;
    case stale::owner:
        updateOwner(*client);
        break;
    case stale::state:
        // Some window managers iconify without unmapping the window.
        if (model_.isMinimized(*client) && client->iconification.isRestoreDueAfterMinimize(now_))
            outcome_.returning.push_back(window);
        break;
    case stale::title:
        // Changes of WM_NAME were not followed while _NET_WM_NAME existed.
        if (hadNetName && !client->netName) model_.markStale(*client, stale::title);
        break;
    default:
        break;
    }
}

void ModelRefresh::updateOwner(ClientWindow& client) {
    if (const auto process = attributedProcess(evidenceOf(client))) return model_.setOwner(client, *process);
    // The ids of all windows of one connection have the same upper bits. Ids have at most 29 bits.
    const std::uint32_t connection = client.window & ~xcb_get_setup(connection_.get())->resource_id_mask;
    model_.setOwner(client, static_cast<pid_t>((connection & (kFirstInventedProcess - 1)) | kFirstInventedProcess));
}

/// Climbs from each client to the root's child that contains it. Each round trip climbs one level for all clients.
void ModelRefresh::findTopLevels() {
    struct Climb {
        xcb_window_t client;
        xcb_window_t at;
    };
    std::vector<Climb> climbs;
    for (const xcb_window_t window : std::exchange(unplaced_, {})) climbs.push_back({window, window});
    for (int depth = 0; depth < kDeepestFrame && !climbs.empty(); ++depth) {
        std::vector<Climb> higher;
        for (const Climb& climb : climbs) {
            batch_.add(xcb_query_tree(connection_.get(), climb.at), [this, climb, &higher](const void* reply) {
                mutex_.assertHeld();
                const auto* tree = as<xcb_query_tree_reply_t>(reply);
                ClientWindow* client = model_.client(climb.client);
                if (!tree || !client) return;
                if (tree->parent == connection_.root()) {
                    model_.setTopLevelOf(*client, climb.at);
                } else if (tree->parent != kNoWindow) {
                    higher.push_back({climb.client, tree->parent});
                }
            });
        }
        waitForReplies();
        climbs = std::move(higher);
    }
}

void ModelRefresh::measureFrames() {
    {
        const MutexLock lock(mutex_);
        for (const xcb_window_t window : std::exchange(unmeasured_, {})) {
            ClientWindow* client = model_.client(window);
            if (!client || client->topLevel == kNoWindow) continue;
            if (client->topLevel != window) {
                requestFrame(batch_, connection_, model_, *client);
                continue;
            }
            // Without a window manager the announced decorations are out of date.
            const bool isDecorated = model_.windowManager().isPresent && client->announcedDecorations;
            client->decorations = isDecorated ? *client->announcedDecorations : PixelEdges{};
            client->margins = client->shadow - client->decorations;
        }
    }
    waitForReplies();
}

} // namespace kova::x11
