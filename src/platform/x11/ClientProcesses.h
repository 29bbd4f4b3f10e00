// The process behind a window. The X server knows which process opened a connection; what a window says of itself
// (_NET_WM_PID) may be wrong, or a number of another process namespace. A process is only ended by force when nothing
// contradicts that it is the window's.
#pragma once

#include "platform/x11/ClientWindow.h"
#include "platform/x11/XConnection.h"

#include <sys/types.h>
#include <xcb/res.h>

#include <cstdint>
#include <optional>
#include <string>

namespace kova::x11 {

/// What is known of a window's process.
struct OwnerEvidence {
    bool isOfThisMachine = true;
    std::optional<pid_t> told{};    // by the X server
    std::optional<pid_t> claimed{}; // by the window
};

OwnerEvidence evidenceOf(const ClientWindow& client);

/// The process that a window is attributed to: the server's word, else the window's; absent when there is neither, and
/// for windows of other machines.
std::optional<pid_t> attributedProcess(const OwnerEvidence& evidence);

/// Why the window's process must not be ended by force, as a sentence without its end; absent when it may be.
/// `innerNumber` is the number that the told process has in its own process namespace.
std::optional<std::string> whyUnverified(const OwnerEvidence& evidence, std::optional<pid_t> innerNumber);

/// The number that the process has in the innermost namespace it belongs to, which is what it takes for its own; absent
/// when there is no such process.
std::optional<pid_t> innerProcessNumber(pid_t process);

/// Asks the X server (X-Resource 1.2) for the processes of its clients.
class ClientProcesses {
  public:
    /// Waits for the server. It counts as knowing no process where its numbers are not this process's: where it runs in
    /// another process namespace.
    /// Nor where it is not to be asked.
    ClientProcesses(const XConnection& connection, bool asks);

    bool canAnswer() const { return canAnswer_; }
    /// Only when it can answer. Sends nothing yet.
    xcb_res_query_client_ids_cookie_t ask(xcb_window_t window) const;
    /// Absent for a null reply and for a client whose process the server does not know.
    static std::optional<pid_t> processIn(const xcb_res_query_client_ids_reply_t* reply);

  private:
    const XConnection& connection_;
    bool canAnswer_ = false;
};

} // namespace kova::x11
