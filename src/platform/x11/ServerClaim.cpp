#include "platform/x11/ServerClaim.h"

#include <chrono>
#include <thread>

namespace kova::x11 {

namespace {

/// An agent that is ending shows hidden windows before it releases the claim.
constexpr std::chrono::seconds kTimeToEnd{3};
constexpr std::chrono::milliseconds kPause{50};

/// Makes the claimant the owner of the selection if it has no owner. Returns the present owner, if there is one.
xcb_window_t claimWith(const XConnection& connection, xcb_window_t claimant) {
    xcb_connection_t* c = connection.get();
    const xcb_atom_t selection = connection.atoms()[Atom::kovaAgent];
    // The grab ensures that only one of two agents that start together finds the selection free.
    xcb_grab_server(c);
    const XReply<xcb_get_selection_owner_reply_t> present(
        xcb_get_selection_owner_reply(c, xcb_get_selection_owner(c, selection), nullptr));
    const xcb_window_t owner = present ? present->owner : kNoWindow;
    if (owner == kNoWindow) xcb_set_selection_owner(c, claimant, selection, XCB_CURRENT_TIME);
    xcb_ungrab_server(c);
    xcb_flush(c);
    return owner;
}

} // namespace

std::optional<OtherAgent> claimServer(const XConnection& connection, const ClientProcesses& processes) {
    xcb_connection_t* c = connection.get();
    const xcb_window_t claimant = xcb_generate_id(c);
    xcb_create_window(c, 0, claimant, connection.root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_window_t owner = kNoWindow;
    const auto deadline = std::chrono::steady_clock::now() + kTimeToEnd;
    while ((owner = claimWith(connection, claimant)) != kNoWindow && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(kPause);
    }
    if (owner == kNoWindow) return std::nullopt;
    OtherAgent other;
    if (processes.isAvailable()) {
        const XReply<xcb_res_query_client_ids_reply_t> reply(
            xcb_res_query_client_ids_reply(c, processes.request(owner), nullptr));
        other.process = ClientProcesses::processIn(reply.get());
    }
    return other;
}

} // namespace kova::x11
