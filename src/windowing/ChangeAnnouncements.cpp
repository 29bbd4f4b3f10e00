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
    silentSince_.clear();
}

bool ChangeAnnouncements::follow(const WindowEnumeration& found, Seconds now) {
    std::map<WindowID, AccessibilityElement> present;
    std::set<pid_t> withWindows, silent;
    for (const pid_t process : found.applications) {
        const AccessibilityElement application{process, 0, nullptr};
        present.emplace(windowID(process, application), application);
    }
    for (const auto& window : found.listed) {
        present.emplace(window.id, window.element);
        withWindows.insert(window.processIdentifier);
    }
    for (const auto& window : found.unlisted) {
        // A window that was listed before has got its request. If it was not, no request is made: it may be behind a
        // tab that has another id and has got its own request.
        const auto known = elements_.find(window.id);
        if (known == elements_.end()) continue;
        present.emplace(window.id, known->second.element);
        if (!window.answers) silent.insert(known->second.element.processIdentifier);
    }
    endThoseNotIn(present);

    bool mayBeIdle = true;
    for (const auto& [id, element] : present) {
        const pid_t process = element.processIdentifier;
        Element& known = elements_.try_emplace(id, Element{element}).first->second;
        if (known.state == State::silent && !silent.contains(process)) {
            switch (desktop_.requestAnnouncements(element)) {
            case AnnouncementAnswer::announces:
                known.state = State::announces;
                mayBeIdle = false;
                break;
            case AnnouncementAnswer::refuses:
                known.state = State::refuses;
                break;
            case AnnouncementAnswer::noAnswer:
                silent.insert(process);
                break;
            }
        }
        if (known.state == State::refuses && withWindows.contains(process)) mayBeIdle = false;
    }
    std::erase_if(silentSince_, [&](const auto& entry) { return !silent.contains(entry.first); });
    for (const pid_t process : silent) {
        const Seconds since = silentSince_.try_emplace(process, now).first->second;
        if (now - since < kPollingAfterTimeout) mayBeIdle = false;
    }
    return mayBeIdle;
}

} // namespace kova
