// The model of one application window, and how its properties are read. Any program can write properties: a property
// with a wrong type, a wrong length or an impossible number counts as missing.
#pragma once

#include "platform/x11/Iconification.h"
#include "platform/x11/XConnection.h"
#include "platform/x11/XGeometry.h"
#include "support/MainQueue.h"
#include "windowing/WindowSizeHints.h"

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kova::x11 {

/// The largest process number of the kernel (PID_MAX_LIMIT on 64 bits).
inline constexpr std::uint32_t kLargestProcess = 4'194'304;
/// Windows without a process on this machine are grouped by connection. Each group gets an invented process number, at
/// least this large. No process can have such a number; never send a signal to it.
inline constexpr std::uint32_t kFirstInventedProcess = 0x40000000;
static_assert(kFirstInventedProcess > kLargestProcess);
/// True if the number can belong to a process. Send signals only to such numbers.
constexpr bool isProcess(pid_t number) {
    return number > 0 && static_cast<std::uint32_t>(number) <= kLargestProcess;
}

enum class WindowKind { standard, dialog, dock, desktop, splash, menu, palette, transient };

/// The subrole in the accessibility vocabulary.
std::string_view subroleOf(WindowKind kind);

/// Each bit stands for one part of a window's data. The bit is set when the server announces a change of that part, and
/// cleared when the new value is requested.
namespace stale {
enum Bit : std::uint32_t {
    title = 1U << 0,
    hints = 1U << 1,
    state = 1U << 2,
    kind = 1U << 3,
    frame = 1U << 4, // decorations and shadow
    desktop = 1U << 5,
    owner = 1U << 6, // class, process, machine
    strut = 1U << 7,
    topLevel = 1U << 8, // which child of the root contains the window
    events = 1U << 9,   // its events are not selected yet
    all = (1U << 10) - 1,
};
}

/// Space that a panel reserves at the edges of the root window. Start and end limit the space along each edge.
struct Strut {
    PixelEdges depth;
    int leftStart = 0, leftEnd = kLargestCoordinate;
    int rightStart = 0, rightEnd = kLargestCoordinate;
    int topStart = 0, topEnd = kLargestCoordinate;
    int bottomStart = 0, bottomEnd = kLargestCoordinate;
    bool operator==(const Strut&) const = default;
};

/// A frame that was requested and that no event has confirmed yet.
struct PendingFrame {
    PixelRect outer;
    Seconds since{};
    std::optional<std::uint32_t> sequence; // of the sent request; always absent under a window manager
};

inline constexpr std::uint32_t kAllDesktops = 0xFFFFFFFFU;

struct ClientWindow {
    xcb_window_t window = kNoWindow;
    xcb_window_t topLevel = kNoWindow; // the root's child that contains it; the window itself if it is not decorated
    std::uint32_t stale = stale::all;
    bool isInputOnly = false;

    pid_t processIdentifier = 0;                 // of the window's application
    std::optional<std::uint32_t> claimedProcess; // the number in the window's _NET_WM_PID
    std::optional<pid_t> reportedProcess;        // the number that the X server names
    std::string clientMachine;
    std::string instanceName, className, applicationID;

    std::optional<std::string> netName; // preferred, UTF-8
    std::string oldName;
    std::optional<WindowKind> declaredKind;
    std::optional<xcb_window_t> transientFor; // WM_TRANSIENT_FOR, which may also name the root or an unmanaged window
    xcb_window_t group = kNoWindow;           // the leader that WM_HINTS names
    bool isModal = false;

    bool isIconic = false;      // WM_STATE
    bool isHiddenState = false; // _NET_WM_STATE
    bool isMaximized = false;
    bool isFullScreen = false;
    bool isShaded = false; // rolled up to its title bar
    bool isStickyState = false;
    std::optional<std::uint32_t> desktop;

    std::optional<PixelEdges> announcedDecorations;
    PixelEdges decorations; // between the client's area and the window manager's frame around it
    PixelEdges shadow;      // drawn by the client inside its area, beyond its visible edge
    PixelEdges margins; // from the top level's edge to the visible edge; negative where the decorations lie outside the
                        // top level
    // The distances from the top level's edges to the client's area, as last measured. Absent if they differed from
    // `decorations`.
    std::optional<PixelEdges> measuredDecorations;
    // The visible edge before the window manager began to animate or shade its frame around the window. Absent while
    // that frame is large enough for the window.
    std::optional<PixelRect> frameBeforeAnimation;
    std::optional<PixelRect> minimumElseBase; // minimum size of the hints, else their base size; x and y are unused
    WindowSizeHints sizeHints;                // its member `around` is not set
    PixelEdges decorationsWhenPlaced;         // `decorations` at the time of the last requested frame
    std::uint32_t gravity = XCB_GRAVITY_NORTH_WEST;
    std::optional<Strut> strut, partialStrut;

    // The main thread and polls both request the state and the frame. Sequence numbers of the requests whose replies
    // were used last:
    std::optional<std::uint32_t> stateRequest, frameRequest;
    int pendingStateRequests = 0; // requests of the main thread without a reply yet

    std::optional<Seconds> placedAt; // uptime of the last requested frame
    std::optional<PendingFrame> pending;
    std::optional<PixelRect> lastRequest,
        frameAtLastRequest; // the requested frame, and the window's frame at that time
    int refusals = 0;       // how often in a row `lastRequest` was requested again in vain
    Iconification iconification;

    WindowKind kind() const;
    /// False if the reply to a later request was used already. Otherwise records `request` as the last one.
    bool acceptReply(std::uint32_t staleBit, std::uint32_t request);
    /// Whether the window kept another frame although `lastRequest` was requested repeatedly.
    bool refusesFrames() const { return refusals > 0; }
    std::string title() const { return netName ? *netName : oldName; }

    bool isManaged() const { return !isInputOnly && (kind() == WindowKind::standard || kind() == WindowKind::dialog); }
};

/// One property that KOVA reads: which stale bit its change sets, and how its value is read.
struct PropertyRule {
    xcb_atom_t property;
    std::uint32_t staleBit;
    std::uint32_t lengthInWords; // at most this much is requested
    void (*take)(ClientWindow&, const PropertyView&, const Atoms&);
};

/// All properties of a client that KOVA reads, in the order in which they must be read.
std::vector<PropertyRule> propertyRules(const Atoms& atoms);

/// The 32-bit values of the property; empty if the property has another format or another type than `type`.
/// XCB_ATOM_NONE stands for every type.
std::vector<std::uint32_t> numbersIn(const PropertyView& property, xcb_atom_t type);
/// The property's text up to the first zero byte, as UTF-8: converted from Latin-1 for the type STRING, otherwise with
/// every invalid byte replaced by U+FFFD.
std::string textIn(const PropertyView& property, const Atoms& atoms);
std::string repairedUtf8(std::string_view text);
/// True if WM_CLIENT_MACHINE names this machine, or is empty or "localhost". A short name matches a full name that
/// begins with the same host name.
bool isSameMachine(std::string_view clientMachine, std::string_view hostName);

} // namespace kova::x11
