// The process of a window. The X server knows which process opened a connection; the number in the window's own
// property (_NET_WM_PID) may be wrong or belong to another process namespace. KOVA kills a process only if the X
// server names it as the process of the window, and the window names no other process.
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
    std::optional<pid_t> reported{}; // by the X server
    std::optional<pid_t> claimed{};  // by the window
};

OwnerEvidence evidenceOf(const ClientWindow& client);

/// The process that a window is attributed to: the number that the server reports, else the number that the window
/// claims. Absent if there is neither, and for windows of programs on other machines.
std::optional<pid_t> attributedProcess(const OwnerEvidence& evidence);

/// The reason why the window's process must not be killed, as a sentence without its final period; absent if the
/// process may be killed. `innerNumber`: the number of the process in its own process namespace.
std::optional<std::string> whyUnverified(const OwnerEvidence& evidence, std::optional<pid_t> innerNumber);

/// The number of the process in its innermost process namespace, which is the number that the process gets from
/// getpid(); absent if there is no such process.
std::optional<pid_t> innerProcessNumber(pid_t process);

/// Queries the X server (X-Resource 1.2) for the processes of its clients.
class ClientProcesses {
  public:
    /// The constructor waits for the server. The queries are unavailable if `isEnabled` is false, or if the server runs
    /// in another process namespace, where the same numbers mean other processes.
    ClientProcesses(const XConnection& connection, bool isEnabled);

    bool isAvailable() const { return isAvailable_; }
    /// Buffers the request. Only call if `isAvailable`.
    xcb_res_query_client_ids_cookie_t request(xcb_window_t window) const;
    /// The client's process in the reply; absent if the reply is null or the server does not know the process.
    static std::optional<pid_t> processIn(const xcb_res_query_client_ids_reply_t* reply);

  private:
    const XConnection& connection_;
    bool isAvailable_ = false;
};

} // namespace kova::x11
