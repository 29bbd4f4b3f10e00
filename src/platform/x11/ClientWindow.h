// The model of one application window, and how its properties are read. Any program can write properties: a wrong type,
// a wrong length or an impossible number counts as no property.
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

/// The kernel gives out process numbers up to here (PID_MAX_LIMIT on 64 bits).
inline constexpr std::uint32_t kLargestProcess = 4'194'304;
/// Windows without a process on this machine are grouped by connection, under invented process numbers from here on. No
/// process can have such a number; never send a signal to it.
inline constexpr std::uint32_t kFirstMadeUpProcess = 0x40000000;
static_assert(kFirstMadeUpProcess > kLargestProcess);
/// Whether the number can belong to a process; a signal may only be sent to such a number.
constexpr bool isProcess(pid_t number) {
    return number > 0 && static_cast<std::uint32_t>(number) <= kLargestProcess;
}

enum class WindowKind { standard, dialog, dock, desktop, splash, menu, palette, transient };

/// The subrole in the accessibility vocabulary.
std::string_view subroleOf(WindowKind kind);

/// The stale properties: a bit is set when the server announced a change that was not read yet.
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
    topLevel = 1U << 8, // which child of the root holds the window
    events = 1U << 9,   // its events are not selected yet
    all = (1U << 10) - 1,
};
}

/// Space at the edges of the root window that a panel keeps for itself, with the span along each edge.
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
    std::optional<std::uint32_t> sequence; // of the request, once it is sent
};

inline constexpr std::uint32_t kAllDesktops = 0xFFFFFFFFU;

struct ClientWindow {
    xcb_window_t window = kNoWindow;
    xcb_window_t topLevel = kNoWindow; // the root's child that holds it; itself when nothing decorates it
    std::uint32_t stale = stale::all;
    bool isInputOnly = false;

    pid_t processIdentifier = 0;                 // of the window's application
    std::optional<std::uint32_t> claimedProcess; // by the window's property
    std::optional<pid_t> reportedProcess;        // by the X server
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
    // The decorations around the client's area in the present top level, if all of them are visible and announced.
    std::optional<PixelEdges> measuredDecorations;
    std::optional<PixelRect> frameBefore;    // the visible edge, while the frame has no room for the window
    std::optional<PixelRect> minimumAndBase; // width and height only
    WindowSizeHints sizeHints;               // without `around`
    PixelEdges decorationsWhenPlaced;        // at the last request for a frame
    std::uint32_t gravity = XCB_GRAVITY_NORTH_WEST;
    std::optional<Strut> strut, partialStrut;

    // Both the main thread and polls request these. The sequence numbers of the requests whose replies were used last:
    std::optional<std::uint32_t> stateAsked, frameAsked;
    int openStateQuestions = 0; // of the main thread, without a reply yet

    std::optional<Seconds> placedAt; // uptime of the last requested frame
    std::optional<PendingFrame> pending;
    std::optional<PixelRect> lastRequest, lastAnswer; // the last requested frame, and the frame at that time
    int repeats = 0;                                  // how often the same request led to the same frame
    Iconification iconification;

    WindowKind kind() const;
    /// False for the reply to an older request than the last one that was used. Otherwise records it as the last.
    bool admits(std::uint32_t staleBit, std::uint32_t asked);
    /// Whether it repeatedly took another frame than the requested one.
    bool insistsOnItsFrame() const { return repeats > 0; }
    std::string title() const { return netName ? *netName : oldName; }

    bool isManaged() const { return !isInputOnly && (kind() == WindowKind::standard || kind() == WindowKind::dialog); }
};

/// One property that matters: which bit its change sets, and how its value is read.
struct PropertyRule {
    xcb_atom_t property;
    std::uint32_t staleBit;
    std::uint32_t lengthInWords; // at most this much is requested
    void (*take)(ClientWindow&, const PropertyView&, const Atoms&);
};

/// All properties of a client that matter, in the order in which they must be read.
std::vector<PropertyRule> propertyRules(const Atoms& atoms);

/// The 32-bit values of a property of that type (any type when it is XCB_ATOM_NONE); empty for anything else.
std::vector<std::uint32_t> numbersIn(const PropertyView& property, xcb_atom_t type);
/// Text as far as its first zero byte; Latin-1 for STRING, else UTF-8 with every wrong byte replaced by U+FFFD.
std::string textIn(const PropertyView& property, const Atoms& atoms);
std::string repairedUtf8(std::string_view text);
/// True if the name in WM_CLIENT_MACHINE is this machine's; short and full host names are equal.
bool isSameMachine(std::string_view clientMachine, std::string_view hostName);

} // namespace kova::x11
