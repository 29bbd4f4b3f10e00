#include "workspace/FocusMode.h"

#include "layout/TileTarget.h"

#include <utility>

namespace kova {

void FocusMode::enter(WorkspaceFocusMode mode, Before before) {
    before_ = std::move(before);
    published_.set(std::move(mode));
}

std::optional<FocusMode::Before> FocusMode::leave() {
    auto before = std::exchange(before_, std::nullopt);
    published_.set(std::nullopt);
    return before;
}

bool FocusMode::isZoomed(const WindowID& windowID) const {
    return mode() && mode()->windowID == windowID;
}

bool FocusMode::ownsDisplay(const DisplayID& displayID) const {
    return mode() && mode()->displayID == displayID;
}

std::optional<DisplayID> FocusMode::displayOf(const WindowID& windowID) const {
    return isZoomed(windowID) ? std::optional(mode()->displayID) : std::nullopt;
}

void FocusMode::forgetApplication(const std::string& applicationKey) {
    if (!before_) return;
    before_->snapshot.forgetApplication(applicationKey);
    for (auto& entry : before_->history) entry.snapshot.forgetApplication(applicationKey);
}

void FocusMode::rename(const WindowID& windowID, const WindowID& newID) {
    if (!before_) return;
    before_->snapshot.rename(windowID, newID);
    for (auto& entry : before_->history) entry.snapshot.rename(windowID, newID);
    if (!isZoomed(windowID)) return;
    auto zoomed = mode();
    zoomed->windowID = newID;
    published_.set(std::move(zoomed));
}

void FocusMode::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    if (!before_) return;
    before_->snapshot.renameDisplay(displayID, newID);
    for (auto& entry : before_->history) entry.snapshot.renameDisplay(displayID, newID);
    if (!ownsDisplay(displayID)) return;
    auto zoomed = mode();
    if (zoomed->anchor.display == displayID) {
        zoomed->anchor.display = newID;
    }
    zoomed->displayID = newID;
    published_.set(std::move(zoomed));
}

} // namespace kova
