#include "windowing/ChangeAnnouncements.h"

#include <algorithm>
#include <set>

namespace kova {

void ChangeAnnouncements::endThoseNotIn(const std::map<WindowID, AccessibilityElement>& present) {
    std::erase_if(elements_, [&](const auto& known) {
        if (present.contains(known.first)) return false;
        desktop_.endAnnouncements(known.second.element);
        return true;
    });
}

void ChangeAnnouncements::endAll() {
    endThoseNotIn({});
    unresponsiveSince_.clear();
}

bool ChangeAnnouncements::follow(const WindowEnumeration& found, Seconds now) {
    std::map<WindowID, AccessibilityElement> present;
    std::set<pid_t> processesWithWindows, unresponsive;
    for (const pid_t process : found.applications) {
        const AccessibilityElement application{process, 0, nullptr};
        present.emplace(windowID(process, application), application);
    }
    for (const auto& window : found.listed) {
        present.emplace(window.id, window.element);
        processesWithWindows.insert(window.processIdentifier);
    }
    for (const auto& window : found.unlisted) {
        // No request is made for a window that was never listed: it may be behind a tab that has another id and its own
        // announcements.
        const auto known = elements_.find(window.id);
        if (known == elements_.end()) continue;
        present.emplace(window.id, known->second.element);
        if (!window.isResponding) unresponsive.insert(known->second.element.processIdentifier);
    }
    endThoseNotIn(present);

    bool mayStopPolls = true;
    for (const auto& [id, element] : present) {
        const pid_t process = element.processIdentifier;
        Element& known = elements_.try_emplace(id, Element{element}).first->second;
        if (known.state == State::noResponse && !unresponsive.contains(process)) {
            switch (desktop_.requestAnnouncements(element)) {
            case AnnouncementResponse::announces:
                known.state = State::announces;
                mayStopPolls = false;
                break;
            case AnnouncementResponse::refuses:
                known.state = State::refuses;
                break;
            case AnnouncementResponse::noResponse:
                unresponsive.insert(process);
                break;
            }
        }
        if (known.state == State::refuses && processesWithWindows.contains(process)) mayStopPolls = false;
    }
    std::erase_if(unresponsiveSince_, [&](const auto& entry) { return !unresponsive.contains(entry.first); });
    for (const pid_t process : unresponsive) {
        const Seconds since = unresponsiveSince_.try_emplace(process, now).first->second;
        if (now - since < kPollingAfterTimeout) mayStopPolls = false;
    }
    return mayStopPolls;
}

} // namespace kova
