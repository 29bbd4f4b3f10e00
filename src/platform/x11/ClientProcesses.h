// The process of a window. The X server knows which process opened a connection; the number in the window's own
// property (_NET_WM_PID) may be wrong or belong to another process namespace. A process is killed only if nothing
// contradicts that it owns the window.
#pragma once

#include "platform/x11/ClientWindow.h"
#include "platform/x11/XConnection.h"

#include <sys/types.h>
#include <xcb/res.h>

#include <cstdint>
#include <optional>
#include <string>

namespace kova::x11 {

/// The two sources for a window's process.
struct OwnerEvidence {
    bool isOfThisMachine = true;
    std::optional<pid_t> told{};    // by the X server
    std::optional<pid_t> claimed{}; // by the window
};

OwnerEvidence evidenceOf(const ClientWindow& client);

/// The process that a window is attributed to: the server's number, else the window's. Absent when there is neither,
/// and for windows of other machines.
std::optional<pid_t> attributedProcess(const OwnerEvidence& evidence);

/// Why the window's process must not be killed, as a sentence without its full stop; absent when it may be.
/// `innerNumber` is the number that the process has in its own process namespace.
std::optional<std::string> whyUnverified(const OwnerEvidence& evidence, std::optional<pid_t> innerNumber);

/// The number of the process in its innermost process namespace, which is the one that it knows itself; absent when
/// there is no such process.
std::optional<pid_t> innerProcessNumber(pid_t process);

/// Asks the X server (X-Resource 1.2) for the processes of its clients.
class ClientProcesses {
  public:
    /// Waits for the server. Unavailable if the server runs in another process namespace, so that its numbers mean
    /// other processes here, or if `asks` is false.
    ClientProcesses(const XConnection& connection, bool asks);

    bool canAnswer() const { return canAnswer_; }
    /// Buffers the request. Only when it is available.
    xcb_res_query_client_ids_cookie_t ask(xcb_window_t window) const;
    /// Absent for a null reply and for a client whose process the server does not know.
    static std::optional<pid_t> processIn(const xcb_res_query_client_ids_reply_t* reply);

  private:
    const XConnection& connection_;
    bool canAnswer_ = false;
};

} // namespace kova::x11
