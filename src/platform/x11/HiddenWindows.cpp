#include "platform/x11/HiddenWindows.h"

#include "support/posix/AtomicFile.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

namespace kova::x11 {

namespace {

/// After this time, a window that is still on the screen counts as shown.
constexpr Seconds kTimeToLeaveScreen{1.0};
/// The longest time that a busy window manager takes to iconify a window.
constexpr Seconds kLongestTimeToLeaveScreen{60};
/// How long a window may be missing, or returning, before its entry is dropped.
constexpr Seconds kReturnTimeout{2.5};

/// Also true for a window that has left the screen and returned between two polls.
bool hasLeft(const ClientWindow& client, const WindowModel& model) {
    return client.iconification.wasUnmapped() || (!model.isShown(client) && !client.iconification.isMapAwaited());
}

bool isLate(const HiddenWindow& hidden, bool isShown, Seconds now) {
    return isShown && !hidden.isReturning && !hidden.hasLeftScreen && now - hidden.since > kTimeToLeaveScreen;
}

bool isOverdue(const HiddenWindow& hidden, Seconds now) {
    return now - hidden.since > kLongestTimeToLeaveScreen;
}

constexpr const char* word(HiddenBy how) {
    return how == HiddenBy::application ? "hidden" : "unmapped";
}

} // namespace

std::vector<HiddenWindow> HiddenWindows::readFile() const {
    std::ifstream file(path_);
    if (path_.empty() || !file) return {};
    const auto document = nlohmann::json::parse(file, nullptr, false);
    const auto list = document.is_object() ? document.find("windows") : document.end();
    if (!document.is_object() || list == document.end() || !list->is_array()) return {};
    std::vector<HiddenWindow> windows;
    for (const auto& entry : *list) {
        if (!entry.is_object()) continue;
        const auto window = entry.find("window"), process = entry.find("process"), how = entry.find("how");
        if (window == entry.end() || process == entry.end() || !window->is_number_unsigned() ||
            !process->is_number_integer()) {
            continue;
        }
        HiddenWindow hidden;
        hidden.window = window->get<xcb_window_t>();
        hidden.processIdentifier = process->get<pid_t>();
        if (how != entry.end() && *how == word(HiddenBy::unmapping)) hidden.how = HiddenBy::unmapping;
        windows.push_back(hidden);
    }
    return windows;
}

bool HiddenWindows::isHiddenWithApplication(const HiddenWindow& hidden) {
    return !hidden.isReturning && !hidden.isLate && hidden.how == HiddenBy::application;
}

void HiddenWindows::countHidden(const HiddenWindow& hidden, int change) {
    if (!isHiddenWithApplication(hidden)) return;
    int& count = hiddenByProcess_[hidden.processIdentifier];
    count += change;
    if (count == 0) hiddenByProcess_.erase(hidden.processIdentifier);
}

void HiddenWindows::erase(Place place) {
    countHidden(*place, -1);
    places_.erase(place->window);
    windows_.erase(place);
    isWritten_ = false;
}

void HiddenWindows::setReturning(HiddenWindow& hidden, Seconds now) {
    countHidden(hidden, -1);
    hidden.isReturning = true;
    hidden.since = now;
}

void HiddenWindows::setLate(HiddenWindow& hidden, bool isLate) {
    countHidden(hidden, -1);
    hidden.isLate = isLate;
    countHidden(hidden, +1);
}

void HiddenWindows::add(const std::vector<HiddenWindow>& windows) {
    for (const HiddenWindow& added : windows) {
        remove(added.window);
        places_[added.window] = windows_.insert(windows_.end(), added);
        countHidden(added, +1);
        isWritten_ = false;
    }
}

std::vector<xcb_window_t> HiddenWindows::markApplicationReturning(pid_t processIdentifier, Seconds now) {
    std::vector<xcb_window_t> returning;
    for (HiddenWindow& hidden : windows_) {
        if (hidden.processIdentifier != processIdentifier || hidden.isReturning) continue;
        if (hidden.how != HiddenBy::application) continue;
        setReturning(hidden, now);
        returning.push_back(hidden.window);
    }
    return returning;
}

void HiddenWindows::markReturning(xcb_window_t window, Seconds now) {
    if (const auto known = places_.find(window); known != places_.end()) setReturning(*known->second, now);
}

void HiddenWindows::remove(xcb_window_t window) {
    if (const auto known = places_.find(window); known != places_.end()) erase(known->second);
}

std::vector<xcb_window_t> HiddenWindows::markAllReturning(Seconds now) {
    std::vector<xcb_window_t> returning;
    for (HiddenWindow& hidden : windows_) {
        setReturning(hidden, now);
        returning.push_back(hidden.window);
    }
    return returning;
}

bool HiddenWindows::isHiddenWithApplication(xcb_window_t window) const {
    const auto known = places_.find(window);
    return known != places_.end() && isHiddenWithApplication(*known->second);
}

bool HiddenWindows::isApplicationHidden(pid_t processIdentifier, const WindowModel& model) const {
    if (!hiddenByProcess_.contains(processIdentifier)) return false;
    return std::ranges::none_of(model.windowsOf(processIdentifier), [&](xcb_window_t window) {
        if (isHiddenWithApplication(window)) return false;
        const ClientWindow* client = model.client(window);
        return client && client->isManaged() && model.isShown(*client);
    });
}

bool HiddenWindows::isOutdated(const WindowModel& model, Seconds now) const {
    return std::ranges::any_of(windows_, [&](const HiddenWindow& hidden) {
        const ClientWindow* client = model.client(hidden.window);
        if (!client || hidden.isReturning) return true;
        const bool isShown = model.isShown(*client);
        const bool hasLeftScreen = hidden.hasLeftScreen || hasLeft(*client, model);
        return hasLeftScreen != hidden.hasLeftScreen || (isShown && hasLeftScreen) ||
               isLate(hidden, isShown, now) != hidden.isLate || (isShown && isOverdue(hidden, now));
    });
}

void HiddenWindows::followModel(const WindowModel& model, Seconds now) {
    if (!isOutdated(model, now)) return;
    const auto isShown = [&](const HiddenWindow& hidden) {
        const ClientWindow* client = model.client(hidden.window);
        return client && model.isShown(*client);
    };
    for (HiddenWindow& hidden : windows_) {
        const ClientWindow* client = model.client(hidden.window);
        hidden.hasLeftScreen |= !client || hasLeft(*client, model);
        setLate(hidden, isLate(hidden, client && model.isShown(*client), now));
        if (client) {
            hidden.missingSince.reset();
        } else if (!hidden.missingSince) {
            hidden.missingSince = now;
        }
    }
    // While window managers change, no entry is dropped: the new window manager may hide a shown window again.
    if (model.isSettling()) return;
    const auto isOver = [&](const HiddenWindow& hidden) {
        if (hidden.missingSince) return now - *hidden.missingSince > kReturnTimeout;
        const ClientWindow* client = model.client(hidden.window);
        const bool mustLeaveFirst =
            client->iconification.isRestoreDueAfterMinimize(now) && now - hidden.since < kTimeToLeaveScreen;
        if (hidden.isReturning) {
            return (model.hasReturned(*client) && !mustLeaveFirst) || now - hidden.since > kReturnTimeout;
        }
        return isShown(hidden) && (hidden.hasLeftScreen || isOverdue(hidden, now));
    };
    for (Place place = windows_.begin(); place != windows_.end();) {
        const Place next = std::next(place);
        if (isOver(*place)) erase(place);
        place = next;
    }
}

void HiddenWindows::writeFile() {
    if (path_.empty() || std::exchange(isWritten_, true)) return;
    problem_.clear();
    if (windows_.empty()) {
        std::remove(path_.c_str());
        return;
    }
    // Not written with the JSON library, which is too slow for thousands of windows while the user waits.
    std::string list;
    for (const HiddenWindow& hidden : windows_) {
        list += (list.empty() ? "\n" : ",\n");
        list += R"(    {"window": )" + std::to_string(hidden.window) + R"(, "process": )" +
                std::to_string(hidden.processIdentifier) + R"(, "how": ")" + word(hidden.how) + R"("})";
    }
    // Not synced to the disk: hidden windows do not survive the end of the X server.
    const FileReplacement how{.mode = 0600, .durability = Durability::survivesProcess};
    const int error = replaceFileAtomically(path_, "{\n  \"windows\": [" + list + "\n  ]\n}\n", how);
    // Windows are hidden in any case: the record is needed only if the agent is killed.
    if (error != 0) problem_ = "cannot write " + path_ + ": " + std::generic_category().message(error);
}

} // namespace kova::x11
