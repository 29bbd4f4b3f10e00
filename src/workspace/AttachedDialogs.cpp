#include "workspace/AttachedDialogs.h"

#include "support/SameFrame.h"
#include "workspace/VisibleArea.h"

#include <algorithm>

namespace kova {

std::vector<ManagedWindow> AttachedDialogs::takeFrom(std::vector<ManagedWindow> found) {
    const auto firstDialog =
        std::stable_partition(found.begin(), found.end(), [](const ManagedWindow& window) { return !window.parentID; });
    dialogs_.assign(std::make_move_iterator(firstDialog), std::make_move_iterator(found.end()));
    found.erase(firstDialog, found.end());
    std::erase_if(places_, [this](const auto& entry) { return !find(entry.first); });
    for (const ManagedWindow& dialog : dialogs_) {
        const auto owner = std::ranges::find(found, *dialog.parentID, &ManagedWindow::id);
        if (owner == found.end()) continue;
        owner->isFocusedOfApplication |= dialog.isFocusedOfApplication;
        if (!owner->frame || !dialog.frame) continue;
        const CGPoint origin = dialog.frame->origin;
        const auto [place, isNew] = places_.try_emplace(dialog.id);
        if (!isNew && isSamePlace(place->second.origin, origin)) continue;
        place->second = {{origin.x - owner->frame->origin.x, origin.y - owner->frame->origin.y}, origin};
    }
    return found;
}

const ManagedWindow* AttachedDialogs::find(const WindowID& id) const {
    const auto found = std::ranges::find(dialogs_, id, &ManagedWindow::id);
    return found == dialogs_.end() ? nullptr : &*found;
}

WindowID AttachedDialogs::ownerOf(const WindowID& id) const {
    const ManagedWindow* dialog = find(id);
    return dialog ? *dialog->parentID : id;
}

std::vector<AttachedDialogs::Move> AttachedDialogs::moveWithWindow(const WindowID& windowID, const CGRect& frame,
                                                                   const CGRect& visibleArea) {
    std::vector<Move> moves;
    for (ManagedWindow& dialog : dialogs_) {
        const auto place = places_.find(dialog.id);
        if (dialog.parentID != windowID || !dialog.frame || place == places_.end()) continue;
        const CGPoint offset = place->second.offset;
        const CGRect wanted{{frame.origin.x + offset.x, frame.origin.y + offset.y}, dialog.frame->size};
        const CGPoint origin = movedIntoArea(wanted, visibleArea).origin;
        if (isSamePlace(dialog.frame->origin, origin)) continue;
        place->second.origin = dialog.frame->origin = origin;
        moves.push_back({dialog, origin});
    }
    return moves;
}

} // namespace kova
