#include "platform/x11/ServerClaim.h"

namespace kova::x11 {

std::optional<OtherAgent> claimServer(const XConnection& connection, const ClientProcesses& processes) {
    xcb_connection_t* c = connection.get();
    const xcb_atom_t selection = connection.atoms()[Atom::kovaAgent];
    const xcb_window_t claimant = xcb_generate_id(c);
    xcb_create_window(c, 0, claimant, connection.root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    // The grab ensures that only one of two agents that start together finds the selection free.
    xcb_grab_server(c);
    const XReply<xcb_get_selection_owner_reply_t> present(
        xcb_get_selection_owner_reply(c, xcb_get_selection_owner(c, selection), nullptr));
    const xcb_window_t owner = present ? present->owner : kNoWindow;
    if (owner == kNoWindow) xcb_set_selection_owner(c, claimant, selection, XCB_CURRENT_TIME);
    xcb_ungrab_server(c);
    xcb_flush(c);
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
