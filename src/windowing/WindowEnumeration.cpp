// Listing windows. Runs on the polling queue, so nothing here uses members that the main thread changes.
#include "windowing/AccessibilityWindowService.h"
#include "windowing/VisibilityMatching.h"

#include <algorithm>
#include <unordered_set>

namespace kova {

namespace {

constexpr CGSize kSmallestManagedSize = {120, 80}; // points; anything smaller is a panel or a palette
constexpr std::string_view kUntitled = "Untitled Window";
constexpr std::string_view kUnnamedApplication = "App";
constexpr std::string_view kWindowSymbol = "macwindow";
constexpr int kLongestChain = 16; // the number of dialogs, each of which belongs to the next; a longer chain is a cycle

/// The attributes that a poll reads from each window with one request.
constexpr std::array kWindowAttributes = {
    AccessibilityAttribute::role,      AccessibilityAttribute::subrole,     AccessibilityAttribute::title,
    AccessibilityAttribute::minimized, AccessibilityAttribute::position,    AccessibilityAttribute::size,
    AccessibilityAttribute::minSize,   AccessibilityAttribute::minimumSize, AccessibilityAttribute::fullScreen,
    AccessibilityAttribute::maximized, AccessibilityAttribute::parent,
};

/// The values of one request for attributes.
class AttributeValues {
  public:
    AttributeValues(const AccessibilityServicing& accessibility, const AccessibilityElement& element,
                    std::span<const AccessibilityAttribute> attributes) :
        attributes_(attributes),
        values_(accessibility.readAttributes(element, attributes)) {}

    /// Null when the value is absent or of another type.
    template <class T>
    const T* get(AccessibilityAttribute attribute) const {
        for (std::size_t i = 0; i < values_.size() && i < attributes_.size(); ++i) {
            if (attributes_[i] == attribute) return std::get_if<T>(&values_[i]);
        }
        return nullptr;
    }
    /// Whether the attribute has a value.
    bool has(AccessibilityAttribute attribute) const {
        for (std::size_t i = 0; i < values_.size() && i < attributes_.size(); ++i) {
            if (attributes_[i] == attribute) return !std::holds_alternative<std::monostate>(values_[i]);
        }
        return false;
    }
    bool isTrue(AccessibilityAttribute attribute) const {
        const auto* value = get<bool>(attribute);
        return value && *value;
    }
    std::optional<CGRect> frame() const {
        const auto* position = get<CGPoint>(AccessibilityAttribute::position);
        const auto* size = get<CGSize>(AccessibilityAttribute::size);
        if (!position || !size) return std::nullopt;
        const CGRect frame = {*position, *size};
        if (!isFinite(frame)) return std::nullopt;
        return frame;
    }
    std::optional<CGSize> minimumSize() const {
        for (const auto attribute : {AccessibilityAttribute::minSize, AccessibilityAttribute::minimumSize}) {
            const auto* size = get<CGSize>(attribute);
            if (!size || !isFinite(*size)) continue;
            const CGSize clamped = {std::max(size->width, 0.0), std::max(size->height, 0.0)};
            if (clamped.width > 0 || clamped.height > 0) return clamped;
        }
        return std::nullopt;
    }

  private:
    std::span<const AccessibilityAttribute> attributes_;
    std::vector<AttributeValue> values_;
};

bool isEmpty(const CGSize& size) {
    return size.width <= 0 || size.height <= 0;
}

bool isManagedKind(const AttributeValues& values) {
    const auto* role = values.get<std::string>(AccessibilityAttribute::role);
    if (!role || *role != "AXWindow") return false;
    const auto* subrole = values.get<std::string>(AccessibilityAttribute::subrole);
    return !subrole || *subrole == "AXStandardWindow" || *subrole == "AXDialog";
}

/// A candidate with its Space.
struct Found {
    WindowCandidate candidate;
    std::optional<std::uint64_t> space;
    bool isElsewhere = false;
};

/// Indices of the visible windows. Windows of another Space are left out, since such a window may have the same frame
/// as a shown window.
std::vector<std::size_t> visibleCandidates(const std::vector<Found>& found,
                                           std::span<const CGRect> onScreenRectangles) {
    std::vector<VisibilityCandidate> pool;
    for (std::size_t i = 0; i < found.size(); ++i) {
        const WindowCandidate& candidate = found[i].candidate;
        if (!candidate.isMinimized && !found[i].isElsewhere && candidate.frame) pool.push_back({i, *candidate.frame});
    }
    return visibleWindows(std::move(pool), onScreenRectangles);
}

/// The ordinary window at the end of the chain of parents that begins with the dialog. Absent if the parent of `dialog`
/// is not in `found`, and for a cycle.
std::optional<WindowID> ownerOf(const WindowCandidate& dialog, const std::vector<Found>& found) {
    const WindowCandidate* at = &dialog;
    for (int length = 0; length < kLongestChain; ++length) {
        const auto parent = !at->parentID ? found.end()
                                          : std::ranges::find(found, *at->parentID,
                                                              [](const Found& each) { return each.candidate.id; });
        if (parent == found.end()) return at == &dialog ? std::nullopt : std::optional(at->id);
        at = &parent->candidate;
    }
    return std::nullopt;
}

std::string titleIn(const AttributeValues& values) {
    const auto* title = values.get<std::string>(AccessibilityAttribute::title);
    return title ? *title : std::string(kUntitled);
}

enum class IsKnown : bool { no, yes };

/// Why a window is not managed; absent for a managed window. A window that is managed already stays managed if it
/// becomes small: its tile may be small.
std::optional<std::string_view> whyNotManaged(const AttributeValues& values, IsKnown isKnown) {
    if (!isManagedKind(values)) return "it is a panel, a menu or another kind of window that is left alone";
    const auto frame = values.frame();
    if (isKnown == IsKnown::yes && frame && !isEmpty(frame->size)) return std::nullopt;
    if (frame && (frame->size.width < kSmallestManagedSize.width || frame->size.height < kSmallestManagedSize.height)) {
        return "it is smaller than 120 × 80 points";
    }
    return std::nullopt;
}

std::optional<WindowCandidate> candidateIn(const AttributeValues& values, const AccessibilityElement& element,
                                           pid_t processIdentifier, IsKnown isKnown) {
    if (whyNotManaged(values, isKnown)) return std::nullopt;
    const auto* parent = values.get<AccessibilityElement>(AccessibilityAttribute::parent);
    const bool isDialog = parent && parent->hash != 0 && parent->processIdentifier == processIdentifier;
    return WindowCandidate{.id = windowID(processIdentifier, element),
                           .element = element,
                           .title = titleIn(values),
                           .isMinimized = values.isTrue(AccessibilityAttribute::minimized),
                           .isFullScreen = values.isTrue(AccessibilityAttribute::fullScreen),
                           .isMaximized = values.isTrue(AccessibilityAttribute::maximized),
                           .frame = values.frame(),
                           .minimumSize = values.minimumSize(),
                           .parentID = isDialog ? std::optional(windowID(processIdentifier, *parent)) : std::nullopt};
}

} // namespace

/// Intermediate results of a poll.
struct AccessibilityWindowService::PollResults {
    std::uint64_t shownSpace = 0;
    std::vector<ManagedWindow> windows;
    std::vector<UnmanagedWindow> unmanaged;
    std::unordered_set<WindowID> listedIDs; // of the managed windows
    std::unordered_set<pid_t> processes;    // of the applications whose windows are managed
    std::unordered_set<WindowID> knownIDs;  // of the windows that were managed before
};

WindowEnumeration AccessibilityWindowService::enumerateWindows(std::span<const KnownWindow> known) const {
    if (!accessibility_.isProcessTrusted()) return {};

    // This call comes first: a desktop updates its model with the first call of a poll.
    const auto running = applications_.runningApplications();
    PollResults results;
    results.shownSpace = accessibility_.shownSpace();
    for (const auto& window : known) results.knownIDs.insert(window.id);
    std::unordered_map<pid_t, std::vector<CGRect>> rectanglesOfProcess;
    for (const auto& window : accessibility_.onScreenWindows()) {
        if (window.layer == 0 && isFinite(window.bounds)) {
            rectanglesOfProcess[window.processIdentifier].push_back(window.bounds);
        }
    }
    for (const auto& application : running) {
        if (application.processIdentifier == applications_.ownProcessIdentifier() || application.isTerminated ||
            application.activationPolicy != ApplicationActivationPolicy::regular) {
            continue;
        }
        enumerateWindows(application, rectanglesOfProcess[application.processIdentifier], results);
    }
    auto unlisted = unlistedWindows(known, results);
    std::vector<pid_t> applications(results.processes.begin(), results.processes.end());
    return {std::move(results.windows), std::move(unlisted), std::move(results.unmanaged), std::move(applications),
            results.shownSpace};
}

void AccessibilityWindowService::enumerateWindows(const RunningApplication& application,
                                                  std::span<const CGRect> onScreenRectangles,
                                                  PollResults& results) const {
    constexpr std::array attributes = {AccessibilityAttribute::windows, AccessibilityAttribute::focusedWindow};
    const pid_t process = application.processIdentifier;
    results.processes.insert(process);
    const AttributeValues values(accessibility_, accessibility_.applicationElement(process), attributes);
    const auto* elements = values.get<std::vector<AccessibilityElement>>(AccessibilityAttribute::windows);
    if (!elements || elements->empty()) return;
    const auto* focused = values.get<AccessibilityElement>(AccessibilityAttribute::focusedWindow);

    const std::string name = application.localizedName.value_or(std::string(kUnnamedApplication));
    std::vector<Found> found;
    std::unordered_set<WindowID> seen;
    for (const auto& element : *elements) {
        const AttributeValues window(accessibility_, element, kWindowAttributes);
        const WindowID id = windowID(process, element);
        const IsKnown isKnown{results.knownIDs.contains(id)};
        auto candidate = candidateIn(window, element, process, isKnown);
        if (const auto reason = whyNotManaged(window, isKnown)) {
            results.unmanaged.push_back({id, name, titleIn(window), std::string(*reason)});
        }
        if (!candidate || !seen.insert(candidate->id).second) continue;
        results.listedIDs.insert(candidate->id);
        const auto space = accessibility_.spaceOf(element);
        found.push_back({std::move(*candidate), space, space && *space != results.shownSpace});
    }

    const auto applicationIcon = icon(application);
    const std::size_t first = results.windows.size();
    results.windows.reserve(first + found.size());
    const auto visible = visibleCandidates(found, onScreenRectangles);
    std::vector<std::optional<WindowID>> owners;
    for (const auto& each : found) owners.push_back(ownerOf(each.candidate, found));
    for (std::size_t i = 0; i < found.size(); ++i) {
        auto& [candidate, space, isElsewhere] = found[i];
        auto hints = accessibility_.sizeHints(candidate.element);
        const bool isFocused = focused && candidate.id == windowID(process, *focused);
        results.windows.push_back({.id = std::move(candidate.id),
                                   .element = std::move(candidate.element),
                                   .processIdentifier = process,
                                   .applicationName = name,
                                   .bundleIdentifier = application.bundleIdentifier,
                                   .title = std::move(candidate.title),
                                   .icon = applicationIcon,
                                   .isMinimized = candidate.isMinimized,
                                   .isVisible = false,
                                   .isFullScreen = candidate.isFullScreen,
                                   .isMaximized = candidate.isMaximized,
                                   .isFocusedOfApplication = isFocused,
                                   .isElsewhere = isElsewhere,
                                   .space = space,
                                   .frame = candidate.frame,
                                   .minimumSize = candidate.minimumSize,
                                   .sizeHints = hints,
                                   .parentID = std::move(owners[i])});
    }
    for (const auto index : visible) results.windows[first + index].isVisible = !application.isHidden;
}

std::vector<UnlistedWindow> AccessibilityWindowService::unlistedWindows(std::span<const KnownWindow> known,
                                                                        const PollResults& results) const {
    std::vector<UnlistedWindow> unlisted;
    std::unordered_set<pid_t> unresponsive; // only the first request to such an application is sent, and times out
    for (const auto& window : known) {
        const pid_t process = window.element.processIdentifier;
        if (results.listedIDs.contains(window.id) || !results.processes.contains(process)) continue;
        const auto presence =
            unresponsive.contains(process) ? WindowPresence::noResponse : accessibility_.presenceOf(window.element);
        switch (presence) {
        case WindowPresence::closed:
            break;
        case WindowPresence::present: {
            auto now = windowCandidate(window.element, process);
            // An application may keep the element of a closed window, then with an empty size.
            const auto frame = now ? now->frame : readFrame(window.element);
            if (frame && isEmpty(frame->size)) break;
            unlisted.push_back({window.id, true, std::move(now)});
            break;
        }
        case WindowPresence::noResponse:
            unresponsive.insert(process);
            unlisted.push_back({window.id, false, std::nullopt});
            break;
        }
    }
    return unlisted;
}

ApplicationIcon AccessibilityWindowService::icon(const RunningApplication& application) const {
    if (!application.icon.isEmpty()) return application.icon;
    if (!application.bundlePath.empty()) {
        if (auto icon = applications_.iconForFile(application.bundlePath); !icon.isEmpty()) return icon;
    }
    return applications_.systemSymbolIcon(std::string(kWindowSymbol));
}

std::optional<WindowCandidate> AccessibilityWindowService::windowCandidate(const AccessibilityElement& element,
                                                                           pid_t processIdentifier) const {
    return candidateIn(AttributeValues(accessibility_, element, kWindowAttributes), element, processIdentifier,
                       IsKnown::no);
}

std::optional<CGRect> AccessibilityWindowService::readFrame(const AccessibilityElement& element) const {
    constexpr std::array attributes = {AccessibilityAttribute::position, AccessibilityAttribute::size};
    return AttributeValues(accessibility_, element, attributes).frame();
}

bool AccessibilityWindowService::readBoolean(AccessibilityAttribute attribute,
                                             const AccessibilityElement& element) const {
    const std::array attributes = {attribute};
    return AttributeValues(accessibility_, element, attributes).isTrue(attribute);
}

} // namespace kova
