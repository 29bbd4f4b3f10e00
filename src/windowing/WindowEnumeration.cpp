// Listing windows. Runs on the polling queue, so nothing here touches the service's state.
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
constexpr int kLongestChain = 16; // of dialogs that open dialogs; a longer one is a circle

/// All that is asked of a window, in one request.
constexpr std::array kWindowAttributes = {
    AccessibilityAttribute::role,      AccessibilityAttribute::subrole,     AccessibilityAttribute::title,
    AccessibilityAttribute::minimized, AccessibilityAttribute::position,    AccessibilityAttribute::size,
    AccessibilityAttribute::minSize,   AccessibilityAttribute::minimumSize, AccessibilityAttribute::fullScreen,
    AccessibilityAttribute::maximized, AccessibilityAttribute::parent,
};

/// The answers to one request for attributes.
class Answers {
  public:
    Answers(const AccessibilityServicing& accessibility, const AccessibilityElement& element,
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

bool isManagedKind(const Answers& answers) {
    const auto* role = answers.get<std::string>(AccessibilityAttribute::role);
    if (!role || *role != "AXWindow") return false;
    const auto* subrole = answers.get<std::string>(AccessibilityAttribute::subrole);
    return !subrole || *subrole == "AXStandardWindow" || *subrole == "AXDialog";
}

std::vector<std::size_t> visibleCandidates(const std::vector<WindowCandidate>& candidates,
                                           std::span<const CGRect> onScreenRectangles) {
    std::vector<VisibilityCandidate> pool;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        if (!candidates[i].isMinimized && candidates[i].frame) pool.push_back({i, *candidates[i].frame});
    }
    return visibleWindows(std::move(pool), onScreenRectangles);
}

/// The window at the head of a dialog's chain of parents; absent for a window that is no dialog of another one of its
/// application, and for a circle.
std::optional<std::string> ownerOf(const WindowCandidate& dialog, const std::vector<WindowCandidate>& candidates) {
    const WindowCandidate* at = &dialog;
    for (int length = 0; length < kLongestChain; ++length) {
        const auto parent =
            !at->parentID ? candidates.end() : std::ranges::find(candidates, *at->parentID, &WindowCandidate::id);
        if (parent == candidates.end()) return at == &dialog ? std::nullopt : std::optional(at->id);
        at = &*parent;
    }
    return std::nullopt;
}

} // namespace

std::vector<ManagedWindow> AccessibilityWindowService::enumerateWindows() const {
    if (!accessibility_.isProcessTrusted()) return {};

    // In this order: a desktop brings what it knows up to date with the first question of a poll.
    const auto running = applications_.runningApplications();
    std::unordered_map<pid_t, std::vector<CGRect>> rectanglesOfProcess;
    for (const auto& window : accessibility_.onScreenWindows()) {
        if (window.layer == 0 && isFinite(window.bounds)) {
            rectanglesOfProcess[window.processIdentifier].push_back(window.bounds);
        }
    }
    std::vector<ManagedWindow> windows;
    for (const auto& application : running) {
        if (application.processIdentifier == applications_.ownProcessIdentifier() || application.isTerminated ||
            application.activationPolicy != ApplicationActivationPolicy::regular) {
            continue;
        }
        auto found = enumerateWindows(application, rectanglesOfProcess[application.processIdentifier]);
        std::move(found.begin(), found.end(), std::back_inserter(windows));
    }
    return windows;
}

std::vector<ManagedWindow>
AccessibilityWindowService::enumerateWindows(const RunningApplication& application,
                                             std::span<const CGRect> onScreenRectangles) const {
    constexpr std::array asked = {AccessibilityAttribute::windows, AccessibilityAttribute::focusedWindow};
    const auto applicationElement = accessibility_.applicationElement(application.processIdentifier);
    const Answers answers(accessibility_, applicationElement, asked);
    const auto* elements = answers.get<std::vector<AccessibilityElement>>(AccessibilityAttribute::windows);
    if (!elements || elements->empty()) return {};
    const auto* focused = answers.get<AccessibilityElement>(AccessibilityAttribute::focusedWindow);

    std::vector<WindowCandidate> candidates;
    std::unordered_set<std::string> seen;
    for (const auto& element : *elements) {
        auto candidate = windowCandidate(element, application.processIdentifier);
        if (candidate && seen.insert(candidate->id).second) candidates.push_back(std::move(*candidate));
    }

    const std::string name = application.localizedName.value_or(std::string(kUnnamedApplication));
    const auto applicationIcon = icon(application);
    std::vector<ManagedWindow> windows;
    windows.reserve(candidates.size());
    const auto visible = visibleCandidates(candidates, onScreenRectangles);
    std::vector<std::optional<std::string>> owners;
    for (const auto& candidate : candidates) owners.push_back(ownerOf(candidate, candidates));
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        WindowCandidate& candidate = candidates[i];
        const bool isFocused = focused && candidate.id == windowID(application.processIdentifier, *focused);
        auto hints = accessibility_.sizeHints(candidate.element);
        windows.push_back({.id = std::move(candidate.id),
                           .element = std::move(candidate.element),
                           .processIdentifier = application.processIdentifier,
                           .applicationName = name,
                           .bundleIdentifier = application.bundleIdentifier,
                           .title = std::move(candidate.title),
                           .icon = applicationIcon,
                           .isMinimized = candidate.isMinimized,
                           .isVisible = false,
                           .isFullScreen = candidate.isFullScreen,
                           .isMaximized = candidate.isMaximized,
                           .isFocusedOfApplication = isFocused,
                           .frame = candidate.frame,
                           .minimumSize = candidate.minimumSize,
                           .sizeHints = std::move(hints),
                           .parentID = std::move(owners[i])});
    }
    for (const auto index : visible) windows[index].isVisible = !application.isHidden;
    return windows;
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
    const Answers answers(accessibility_, element, kWindowAttributes);
    if (!isManagedKind(answers)) return std::nullopt;
    const auto frame = answers.frame();
    if (frame && (frame->size.width < kSmallestManagedSize.width || frame->size.height < kSmallestManagedSize.height)) {
        return std::nullopt;
    }
    const auto* title = answers.get<std::string>(AccessibilityAttribute::title);
    const auto* parent = answers.get<AccessibilityElement>(AccessibilityAttribute::parent);
    const bool isInWindow = parent && parent->hash != 0 && parent->processIdentifier == processIdentifier;
    return WindowCandidate{.id = windowID(processIdentifier, element),
                           .element = element,
                           .title = title ? *title : std::string(kUntitled),
                           .isMinimized = answers.isTrue(AccessibilityAttribute::minimized),
                           .isFullScreen = answers.isTrue(AccessibilityAttribute::fullScreen),
                           .isMaximized = answers.isTrue(AccessibilityAttribute::maximized),
                           .frame = frame,
                           .minimumSize = answers.minimumSize(),
                           .parentID = isInWindow ? std::optional(windowID(processIdentifier, *parent)) : std::nullopt};
}

std::optional<CGRect> AccessibilityWindowService::readFrame(const AccessibilityElement& element) const {
    constexpr std::array asked = {AccessibilityAttribute::position, AccessibilityAttribute::size};
    return Answers(accessibility_, element, asked).frame();
}

bool AccessibilityWindowService::readsAs(AccessibilityAttribute state, const AccessibilityElement& element) const {
    const std::array asked = {state};
    return Answers(accessibility_, element, asked).isTrue(state);
}

std::optional<CGSize> AccessibilityWindowService::readMinimumSize(const AccessibilityElement& element) const {
    constexpr std::array asked = {AccessibilityAttribute::minSize, AccessibilityAttribute::minimumSize};
    return Answers(accessibility_, element, asked).minimumSize();
}

} // namespace kova
