// Announcements of changes, and the times that responses take. Both depend on the style of the desktop.
#include "platform/simulated/SimulatedDesktop.h"

#include <utility>

namespace kova {

AnnouncementResponse SimulatedAnnouncements::request(const AccessibilityElement& element) {
    ++requestCount_;
    if (refusing_.contains(element.processIdentifier)) return AnnouncementResponse::refuses;
    requested_.insert({element.processIdentifier, element.hash});
    dropped_.erase({element.processIdentifier, element.hash});
    return AnnouncementResponse::announces;
}

void SimulatedAnnouncements::end(const AccessibilityElement& element) {
    requested_.erase({element.processIdentifier, element.hash});
    dropped_.erase({element.processIdentifier, element.hash});
}

bool SimulatedAnnouncements::noteChange(pid_t process, std::uint64_t hash) {
    if (style_ == AnnouncementStyle::always) return true;
    if (dropped_.contains({process, hash})) noteLoss();
    if (!requested_.contains({process, hash})) return false;
    if (announcementsToLose_ == 0) return true;
    --announcementsToLose_;
    noteLoss();
    return false;
}

void SimulatedDesktop::setStyle(DesktopStyle style) {
    style_ = style;
    const bool isMac = style == DesktopStyle::mac;
    spaceStyle_ = isMac ? SpaceStyle::listsShown : SpaceStyle::listsAll;
    announcements_.setStyle(isMac ? AnnouncementStyle::onRequest : AnnouncementStyle::always);
    responseTime_ = isMac ? Seconds(0.002) : Seconds(0);
}

std::optional<std::string> SimulatedDesktop::stalePermission() const {
    return isPermissionStale_ ? std::optional<std::string>("Give the permission anew") : std::nullopt;
}

void SimulatedDesktop::setPermissionStale(bool isStale) {
    if (std::exchange(isPermissionStale_, isStale) != isStale) changed();
}

void SimulatedDesktop::setResponseTime(Seconds time) {
    // An application announces neither that it stops to respond nor that it responds again.
    if ((time < kReadDeadline) != (responseTime_ < kReadDeadline)) announcements_.noteLoss();
    responseTime_ = time;
}

bool SimulatedDesktop::isInTime(const Application& application) const {
    return application.responds && responseTime_ < kReadDeadline;
}

bool SimulatedDesktop::waitForResponse(const Application& application) const {
    const bool isInTime = this->isInTime(application);
    if (!pollingQueue_.isRunningJob()) return isInTime || style_ != DesktopStyle::mac;
    if (isInTime && responseTime_ == Seconds(0)) return true;
    pollingQueue_.spend(isInTime ? responseTime_ : kReadDeadline);
    return isInTime;
}

void SimulatedDesktop::setEnhancedUserInterface(std::string_view name, bool isOn) {
    application(name).isEnhanced = isOn;
}

bool SimulatedDesktop::hasEnhancedUserInterface(std::string_view name) const {
    return application(name).isEnhanced;
}

// Requests of KOVA

AnnouncementResponse SimulatedDesktop::requestAnnouncements(const AccessibilityElement& element) {
    if (!pollingQueue_.isRunningJob()) violations_.push_back("requestAnnouncements on the main thread");
    const auto* owner = findApplication(element.processIdentifier);
    if (!owner || !waitForResponse(*owner)) return AnnouncementResponse::noResponse;
    return announcements_.request(element);
}

std::optional<Seconds> SimulatedDesktop::longestIdleTime() const {
    return announcesWithoutRequest() ? std::nullopt : std::optional(Seconds(10));
}

// Announcements of changes

void SimulatedDesktop::announce() {
    ++changeCount_;
    if (announcesAllChanges_) announceChange();
}

void SimulatedDesktop::announceLater() {
    if (announcesWithoutRequest()) return announce();
    queue_.after(SimulatedAnnouncements::kDelay, lifetime_.guard([this] { announce(); }));
}

void SimulatedDesktop::changed() {
    announceLater();
}

void SimulatedDesktop::changed(const SimulatedWindow& window) {
    if (announcements_.noteChange(window.processIdentifier(), window.number())) announceLater();
}

void SimulatedDesktop::changed(const Application& application) {
    if (announcements_.noteChange(application.record.processIdentifier, 0)) announceLater();
}

} // namespace kova
