#include "platform/x11/ClientWindow.h"

#include <xcb/xcb_icccm.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace kova::x11 {

namespace {

/// A length in pixels; absent if it is too large for a window.
std::optional<int> pixels(std::uint32_t value) {
    if (value > static_cast<std::uint32_t>(kLargestCoordinate)) return std::nullopt;
    return static_cast<int>(value);
}

std::optional<PixelEdges> edgesIn(const PropertyView& property) {
    const auto numbers = numbersIn(property, XCB_ATOM_CARDINAL);
    if (numbers.size() < 4) return std::nullopt;
    const auto left = pixels(numbers[0]), right = pixels(numbers[1]), top = pixels(numbers[2]),
               bottom = pixels(numbers[3]);
    if (!left || !right || !top || !bottom) return std::nullopt;
    return PixelEdges{*left, *right, *top, *bottom};
}

void takeNetName(ClientWindow& window, const PropertyView& property, const Atoms& atoms) {
    window.netName.reset();
    if (property.format != 8 || (property.type != atoms[Atom::utf8String] && property.type != XCB_ATOM_STRING)) return;
    window.netName = textIn(property, atoms);
}

void takeOldName(ClientWindow& window, const PropertyView& property, const Atoms& atoms) {
    window.oldName = textIn(property, atoms);
}

double aspectOf(std::uint32_t numerator, std::uint32_t denominator) {
    const auto across = pixels(numerator), down = pixels(denominator);
    return across && down && *across > 0 && *down > 0 ? static_cast<double>(*across) / *down : 0;
}

/// From the 18 numbers of WM_NORMAL_HINTS. Values that contradict each other are ignored.
WindowSizeHints sizeHintsIn(const std::vector<std::uint32_t>& numbers) {
    WindowSizeHints hints;
    if (numbers.size() < 15) return hints;
    const auto has = [&](std::uint32_t flag) { return (numbers[0] & flag) != 0; };
    const auto sizeAt = [&](std::size_t at) {
        return CGSize{static_cast<double>(pixels(numbers[at]).value_or(0)),
                      static_cast<double>(pixels(numbers[at + 1]).value_or(0))};
    };
    const bool hasBase = numbers.size() >= 18 && has(XCB_ICCCM_SIZE_HINT_BASE_SIZE);
    if (has(XCB_ICCCM_SIZE_HINT_P_MIN_SIZE)) hints.minimum = sizeAt(5);
    if (has(XCB_ICCCM_SIZE_HINT_P_MAX_SIZE)) hints.maximum = sizeAt(7);
    if (has(XCB_ICCCM_SIZE_HINT_P_RESIZE_INC)) hints.increment = sizeAt(9);
    if (hasBase) hints.base = hints.aspectBase = sizeAt(15);
    if (!hasBase) hints.base = hints.minimum;
    if (has(XCB_ICCCM_SIZE_HINT_P_ASPECT)) {
        hints.leastAspect = aspectOf(numbers[11], numbers[12]);
        hints.mostAspect = aspectOf(numbers[13], numbers[14]);
        if (hints.mostAspect > 0 && hints.leastAspect > hints.mostAspect) hints.leastAspect = hints.mostAspect = 0;
    }
    if (hints.maximum.width < hints.minimum.width) hints.maximum.width = 0;
    if (hints.maximum.height < hints.minimum.height) hints.maximum.height = 0;
    return hints;
}

void takeHints(ClientWindow& window, const PropertyView& property, const Atoms&) {
    window.minimumElseBase.reset();
    window.sizeHints = sizeHintsIn(numbersIn(property, XCB_ATOM_WM_SIZE_HINTS));
    window.gravity = XCB_GRAVITY_NORTH_WEST;
    window.refusals = 0; // with other hints the window may accept the frame
    const auto numbers = numbersIn(property, XCB_ATOM_WM_SIZE_HINTS);
    // Before ICCCM version 1 the property had 15 numbers, without base size and gravity.
    if (numbers.size() < 15) return;
    const std::uint32_t flags = numbers[0];
    const auto takeSize = [&](std::size_t at) {
        const auto width = pixels(numbers[at]), height = pixels(numbers[at + 1]);
        if (width && height && (*width > 0 || *height > 0)) window.minimumElseBase = PixelRect{0, 0, *width, *height};
    };
    if (flags & XCB_ICCCM_SIZE_HINT_P_MIN_SIZE) {
        takeSize(5);
    } else if (numbers.size() >= 18 && (flags & XCB_ICCCM_SIZE_HINT_BASE_SIZE)) {
        takeSize(15);
    }
    if (numbers.size() >= 18 && (flags & XCB_ICCCM_SIZE_HINT_P_WIN_GRAVITY) && numbers[17] <= XCB_GRAVITY_STATIC) {
        window.gravity = numbers[17];
    }
}

void takeNetState(ClientWindow& window, const PropertyView& property, const Atoms& atoms) {
    const auto states = numbersIn(property, XCB_ATOM_ATOM);
    const auto has = [&](Atom state) { return std::ranges::find(states, atoms[state]) != states.end(); };
    window.isHiddenState = has(Atom::netWmStateHidden);
    window.isFullScreen = has(Atom::netWmStateFullscreen);
    window.isMaximized = has(Atom::netWmStateMaximizedVert) || has(Atom::netWmStateMaximizedHorz);
    window.isShaded = has(Atom::netWmStateShaded);
    window.isStickyState = has(Atom::netWmStateSticky);
    window.isModal = has(Atom::netWmStateModal);
}

void takeWmState(ClientWindow& window, const PropertyView& property, const Atoms& atoms) {
    const auto numbers = numbersIn(property, atoms[Atom::wmState]);
    window.isIconic = !numbers.empty() && numbers[0] == XCB_ICCCM_WM_STATE_ICONIC;
}

void takeType(ClientWindow& window, const PropertyView& property, const Atoms& atoms) {
    static constexpr std::array<std::pair<Atom, WindowKind>, 13> kKinds = {{
        {Atom::typeNormal, WindowKind::standard},
        {Atom::typeDialog, WindowKind::dialog},
        {Atom::typeDock, WindowKind::dock},
        {Atom::typeDesktop, WindowKind::desktop},
        {Atom::typeSplash, WindowKind::splash},
        {Atom::typeUtility, WindowKind::palette},
        {Atom::typeToolbar, WindowKind::palette},
        {Atom::typeMenu, WindowKind::menu},
        {Atom::typeDropdownMenu, WindowKind::menu},
        {Atom::typePopupMenu, WindowKind::menu},
        {Atom::typeTooltip, WindowKind::transient},
        {Atom::typeNotification, WindowKind::transient},
        {Atom::typeCombo, WindowKind::transient},
    }};
    window.declaredKind.reset();
    for (const std::uint32_t type : numbersIn(property, XCB_ATOM_ATOM)) {
        if (type == atoms[Atom::typeDragIcon]) window.declaredKind = WindowKind::transient;
        for (const auto& [atom, kind] : kKinds) {
            if (type == atoms[atom]) window.declaredKind = kind;
        }
        if (window.declaredKind)
            return; // the first known type counts, since the types are in the application's order of preference
    }
}

void takeTransientFor(ClientWindow& window, const PropertyView& property, const Atoms&) {
    const auto numbers = numbersIn(property, XCB_ATOM_WINDOW);
    window.transientFor.reset();
    if (!numbers.empty() && numbers[0] != kNoWindow) window.transientFor = numbers[0];
}

void takeGroup(ClientWindow& window, const PropertyView& property, const Atoms&) {
    constexpr std::size_t kGroupAt = 8;
    const auto numbers = numbersIn(property, XCB_ATOM_WM_HINTS);
    const bool isGiven = numbers.size() > kGroupAt && (numbers[0] & XCB_ICCCM_WM_HINT_WINDOW_GROUP);
    window.group = isGiven ? numbers[kGroupAt] : kNoWindow;
}

void takeFrameExtents(ClientWindow& window, const PropertyView& property, const Atoms&) {
    window.announcedDecorations = edgesIn(property);
}

void takeShadow(ClientWindow& window, const PropertyView& property, const Atoms&) {
    window.shadow = edgesIn(property).value_or(PixelEdges{});
}

void takeDesktop(ClientWindow& window, const PropertyView& property, const Atoms&) {
    const auto numbers = numbersIn(property, XCB_ATOM_CARDINAL);
    window.desktop = numbers.empty() ? std::nullopt : std::optional(numbers[0]);
}

void takeClass(ClientWindow& window, const PropertyView& property, const Atoms& atoms) {
    window.instanceName.clear();
    window.className.clear();
    if (property.format != 8) return;
    const auto separator = std::ranges::find(property.bytes, std::uint8_t{0});
    const auto instanceLength = static_cast<std::size_t>(separator - property.bytes.begin());
    window.instanceName = textIn({property.type, 8, property.bytes.first(instanceLength)}, atoms);
    if (separator == property.bytes.end()) return;
    window.className = textIn({property.type, 8, property.bytes.subspan(instanceLength + 1)}, atoms);
}

void takeApplicationId(ClientWindow& window, const PropertyView& property, const Atoms& atoms) {
    window.applicationID = textIn(property, atoms);
}

void takeProcess(ClientWindow& window, const PropertyView& property, const Atoms&) {
    const auto numbers = numbersIn(property, XCB_ATOM_CARDINAL);
    window.claimedProcess.reset();
    if (!numbers.empty() && numbers[0] > 0 && numbers[0] <= kLargestProcess) window.claimedProcess = numbers[0];
}

void takeMachine(ClientWindow& window, const PropertyView& property, const Atoms& atoms) {
    window.clientMachine = textIn(property, atoms);
}

void takeStrut(ClientWindow& window, const PropertyView& property, const Atoms&) {
    window.strut.reset();
    if (const auto depth = edgesIn(property)) {
        window.strut = Strut{};
        window.strut->depth = *depth;
    }
}

void takePartialStrut(ClientWindow& window, const PropertyView& property, const Atoms&) {
    window.partialStrut.reset();
    const auto depth = edgesIn(property);
    const auto numbers = numbersIn(property, XCB_ATOM_CARDINAL);
    if (!depth || numbers.size() < 12) return;
    std::array<int, 12> n{};
    for (std::size_t i = 4; i < 12; ++i) n[i] = pixels(numbers[i]).value_or(kLargestCoordinate);
    window.partialStrut = Strut{*depth, n[4], n[5], n[6], n[7], n[8], n[9], n[10], n[11]};
}

/// Length of the valid UTF-8 sequence at the start of the text; 0 if there is none.
std::size_t sequenceLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(0);
    if (first < 0x80) return 1;
    const std::size_t length = first >= 0xC2 && first < 0xE0   ? 2
                               : (first & 0xF0) == 0xE0        ? 3
                               : first >= 0xF0 && first < 0xF5 ? 4
                                                               : 0;
    if (length == 0 || text.size() < length) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return 0;
    }
    // Rejects overlong forms, surrogates, and numbers beyond the last code point.
    if ((first == 0xE0 && byte(1) < 0xA0) || (first == 0xED && byte(1) > 0x9F) || (first == 0xF0 && byte(1) < 0x90) ||
        (first == 0xF4 && byte(1) > 0x8F)) {
        return 0;
    }
    return length;
}

std::string fromLatin1(std::string_view text) {
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            result += c;
        } else {
            result += static_cast<char>(0xC0 | (byte >> 6));
            result += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return result;
}

} // namespace

std::string_view subroleOf(WindowKind kind) {
    switch (kind) {
    case WindowKind::standard:
        return "AXStandardWindow";
    case WindowKind::dialog:
        return "AXDialog";
    case WindowKind::dock:
        return "AXDock";
    case WindowKind::desktop:
        return "AXDesktop";
    case WindowKind::splash:
        return "AXSplash";
    case WindowKind::menu:
        return "AXMenu";
    case WindowKind::palette:
        return "AXFloatingWindow";
    case WindowKind::transient:
        return "AXUnknown";
    }
    return "AXUnknown";
}

WindowKind ClientWindow::kind() const {
    if (declaredKind) return *declaredKind;
    return transientFor ? WindowKind::dialog : WindowKind::standard;
}

bool ClientWindow::acceptReply(std::uint32_t staleBit, std::uint32_t request) {
    if (staleBit != stale::state && staleBit != stale::frame) return true;
    auto& latest = staleBit == stale::state ? stateRequest : frameRequest;
    if (latest && *latest != request && isAtOrAfter(*latest, request)) return false;
    latest = request;
    return true;
}

std::vector<PropertyRule> propertyRules(const Atoms& atoms) {
    return {
        {atoms[Atom::netWmName], stale::title, 256, takeNetName},
        {XCB_ATOM_WM_NAME, stale::title, 256, takeOldName},
        {XCB_ATOM_WM_NORMAL_HINTS, stale::hints, 18, takeHints},
        {atoms[Atom::netWmState], stale::state, 64, takeNetState},
        {atoms[Atom::wmState], stale::state, 2, takeWmState},
        {atoms[Atom::netWmWindowType], stale::kind, 16, takeType},
        {XCB_ATOM_WM_TRANSIENT_FOR, stale::kind, 1, takeTransientFor},
        {XCB_ATOM_WM_HINTS, stale::kind, 9, takeGroup},
        {atoms[Atom::netFrameExtents], stale::frame, 4, takeFrameExtents},
        {atoms[Atom::gtkFrameExtents], stale::frame, 4, takeShadow},
        {atoms[Atom::netWmDesktop], stale::desktop, 1, takeDesktop},
        {XCB_ATOM_WM_CLASS, stale::owner, 128, takeClass},
        {atoms[Atom::gtkApplicationId], stale::owner, 64, takeApplicationId},
        {atoms[Atom::netWmPid], stale::owner, 1, takeProcess},
        {atoms[Atom::wmClientMachine], stale::owner, 64, takeMachine},
        {atoms[Atom::netWmStrut], stale::strut, 4, takeStrut},
        {atoms[Atom::netWmStrutPartial], stale::strut, 12, takePartialStrut},
    };
}

std::vector<std::uint32_t> numbersIn(const PropertyView& property, xcb_atom_t type) {
    if (property.format != 32 || (type != XCB_ATOM_NONE && property.type != type)) return {};
    std::vector<std::uint32_t> numbers(property.bytes.size() / 4);
    if (!numbers.empty()) std::memcpy(numbers.data(), property.bytes.data(), numbers.size() * 4);
    return numbers;
}

std::string textIn(const PropertyView& property, const Atoms& atoms) {
    if (property.format != 8) return {};
    std::string_view text(reinterpret_cast<const char*>(property.bytes.data()), property.bytes.size());
    text = text.substr(0, text.find('\0'));
    return property.type == XCB_ATOM_STRING && property.type != atoms[Atom::utf8String] ? fromLatin1(text)
                                                                                        : repairedUtf8(text);
}

std::string repairedUtf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = sequenceLength(text);
        if (length == 0) {
            result += "\xEF\xBF\xBD";
            text.remove_prefix(1);
        } else {
            result += text.substr(0, length);
            text.remove_prefix(length);
        }
    }
    return result;
}

bool isSameMachine(std::string_view clientMachine, std::string_view hostName) {
    if (clientMachine.empty() || clientMachine == "localhost" || clientMachine == hostName) return true;
    const bool oneIsShort =
        (clientMachine.find('.') == std::string_view::npos) != (hostName.find('.') == std::string_view::npos);
    return oneIsShort && clientMachine.substr(0, clientMachine.find('.')) == hostName.substr(0, hostName.find('.'));
}

} // namespace kova::x11
