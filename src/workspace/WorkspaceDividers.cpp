// Dividers in the user's hand: the windows on both sides follow while the weights change.
#include "workspace/WorkspaceController.h"

#include <algorithm>
#include <cmath>

namespace kova {

namespace {

constexpr Seconds kResumeDelay{0.16};

} // namespace

std::vector<DisplayLayoutDivider> WorkspaceController::dividers() const {
    std::vector<DisplayLayoutDivider> all;
    for (const auto& screen : *state_.screens) {
        const std::string id = displayID(screen);
        if (focusMode_.ownsDisplay(id)) continue;
        const auto here = dividersOn(id);
        all.insert(all.end(), here.begin(), here.end());
    }
    return all;
}

std::vector<DisplayLayoutDivider> WorkspaceController::dividersOn(const std::string& id) const {
    const Screen* screen = screenOf(id);
    if (!screen) return {};
    std::vector<DisplayLayoutDivider> all;
    const std::string layoutID = layouts_.resolve(*screen, *state_.profile, catalogue()).id;
    for (const auto& divider : solvedTiles(*screen).dividers) all.push_back({id, layoutID, divider});
    return all;
}

std::optional<CGRect> WorkspaceController::dividerFrameOnScreen(const DisplayLayoutDivider& divider) const {
    const Screen* screen = screenOf(divider.displayID);
    if (!screen) return std::nullopt;
    return kova::tileFrameOnScreen(divider.divider.frame, screen->visibleFrame);
}

Outcome WorkspaceController::beginDividerDrag(const DisplayLayoutDivider& target) {
    if (!mayMoveWindows()) return refuseSilently("Windows cannot be moved now");
    const Screen* screen = screenOf(target.displayID);
    if (!screen || layouts_.resolve(*screen, *state_.profile, catalogue()).id != target.layoutID)
        return refuseSilently("Windows cannot be moved now");
    abandonDrags();
    layouts_.invalidate(target.displayID);
    // A handle was drawn with the minimum sizes of that time; the weights must honor those of now.
    const auto now = dividersOn(target.displayID);
    const auto current =
        std::ranges::find_if(now, [&](const DisplayLayoutDivider& divider) { return isSameDivider(divider, target); });
    if (current == now.end()) return refuseSilently("Windows cannot be moved now");
    std::map<std::string, CGRect> frames;
    for (const auto& [targetID, windowID] : assignments_.assignedWindowIDs) {
        const ManagedWindow* window = findLive(windowID);
        if (window && window->frame && screenOfTarget(targetID) == screen) frames[windowID] = *window->frame;
    }
    pointer_.beginDividerDrag(*current, state_.profile->weights(target.displayID, target.layoutID),
                              captureUndoSnapshot(), std::move(frames));
    return Outcome::done();
}

void WorkspaceController::updateDividerDrag(const DisplayLayoutDivider& target, double translationPoints) {
    if (!pointer_.isDragging(target)) return;
    pointer_.noteMovement();
    pointer_.moveDivider(translationPoints);
}

void WorkspaceController::applyDividerDrag() {
    if (!pointer_.takeDividerTranslation()) return;
    const ActiveDividerDrag& drag = *pointer_.dividerDrag();
    layouts_.setTransientWeights(drag.target.displayID, drag.target.layoutID, drag.overrides);
    layouts_.invalidate(drag.target.displayID);
    writeInteractiveFrames(drag.target.displayID);
    services_.accessibility.flush();
    noteTilesMoved(); // the windows first, then what is drawn around them
}

void WorkspaceController::writeInteractiveFrames(const std::string& id) {
    const Screen* screen = screenOf(id);
    if (!screen) return;
    const auto frames = framesOfTiledWindows(*screen);
    for (ManagedWindow& window : liveWindows_) {
        const auto frame = frames.find(window.id);
        if (frame == frames.end() || isLeftAlone(window)) continue;
        if (!pointer_.noteDividerFrame(window.id, frame->second)) continue;
        windowService_->setFrameInteractive(window, frame->second);
        window.frame = frame->second;
    }
}

void WorkspaceController::endDividerDrag(const DisplayLayoutDivider& target) {
    if (!pointer_.isDragging(target)) return;
    frames_.sizes().notePointer(services_.queue.uptime());
    applyDividerDrag();
    auto ended = pointer_.endDividerDrag();
    const ActiveDividerDrag& drag = ended->drag;
    const std::string id = drag.target.displayID;
    layouts_.clearTransientWeights(id);
    if (drag.didChange()) {
        pushUndoSnapshot({std::string(action::EndDividerDrag::kTraits.undoLabel), applicationsOn(id)},
                         std::move(ended->before));
        storeWeights(id, drag.target.layoutID, drag.overrides);
    }
    layoutChanged(id);
    verifyFrames(id, ended->frames);
    pointer_.resumePollsAfter(kResumeDelay);
}

void WorkspaceController::cancelDividerDrag() {
    const ActiveDividerDrag* drag = pointer_.dividerDrag();
    if (!drag) return;
    const DisplayLayoutDivider target = drag->target;
    updateDividerDrag(target, 0);
    endDividerDrag(target);
}

/// Leaving focus mode may change what the neighbors need, so the divider is where it is found after that.
Outcome WorkspaceController::moveDivider(const DisplayLayoutDivider& target, double translationPoints) {
    const auto find = [&] {
        const auto all = dividersOn(target.displayID);
        const auto found = std::ranges::find_if(all, [&](const DisplayLayoutDivider& each) {
            return each.divider.splitID == target.divider.splitID &&
                   each.divider.boundaryIndex == target.divider.boundaryIndex;
        });
        return found == all.end() ? std::nullopt : std::optional(*found);
    };
    const auto placeOf = [](const LayoutDivider& divider) {
        return divider.axis == LayoutAxis::horizontal ? minX(divider.frame) : minY(divider.frame);
    };
    const auto divider = find();
    if (!divider) return refuseSilently("Windows cannot be moved now");
    if (auto begun = beginDividerDrag(*divider); !begun) return begun;
    updateDividerDrag(*divider, translationPoints);
    endDividerDrag(*divider);
    const auto after = find();
    const double moved = after ? placeOf(after->divider) - placeOf(divider->divider) : 0;
    if (moved == 0 && std::abs(translationPoints) >= 1) {
        return refuseSilently("The divider has no room to move that way");
    }
    return Outcome::done().with(DividerMovement{moved});
}

Outcome WorkspaceController::resetDivider(const DisplayLayoutDivider& target) {
    LayoutWeightOverrides weights = state_.profile->weights(target.displayID, target.layoutID);
    if (!screenOf(target.displayID) || weights.splits.erase(target.divider.splitID) == 0)
        return refuseSilently("The divider is where its layout puts it");
    pushUndoSnapshot({std::string(action::ResetDivider::kTraits.undoLabel), applicationsOn(target.displayID)});
    storeWeights(target.displayID, target.layoutID, std::move(weights));
    layoutChanged(target.displayID);
    return Outcome::done();
}

void WorkspaceController::storeWeights(const std::string& id, const std::string& layoutID,
                                       LayoutWeightOverrides weights) {
    WorkspaceProfile profile = *state_.profile;
    if (weights.splits.empty()) {
        const auto layouts = profile.layoutWeightsByDisplay.find(id);
        if (layouts != profile.layoutWeightsByDisplay.end()) {
            layouts->second.erase(layoutID);
            if (layouts->second.empty()) profile.layoutWeightsByDisplay.erase(layouts);
        }
    } else {
        profile.layoutWeightsByDisplay[id][layoutID] = std::move(weights);
    }
    setProfile(std::move(profile));
}

/// Live writes are not verified; once the hand rests, every window of the display is placed in earnest.
void WorkspaceController::verifyFrames(const std::string& id, const std::map<std::string, CGRect>& written) {
    for (const auto& [windowID, frame] : written) {
        const ManagedWindow* window = findLive(windowID);
        const auto target = frameForWindow(windowID);
        const auto tile = assignments_.targetOf(windowID);
        const Screen* screen = tile ? screenOfTarget(*tile) : nullptr;
        if (!window || !target || !screen || displayID(*screen) != id || isLeftAlone(*window)) continue;
        writeFrame(*window, *target, AccessibilityWindowService::BringToFront::no);
    }
}

void WorkspaceController::abandonDrags() {
    const bool heldPollsBack = pointer_.abandon();
    layouts_.clearAllTransientWeights();
    state_.dropTargetSlotID.set(std::nullopt);
    if (heldPollsBack) refresh(); // what they saw is still to be acted on
}

/// Another action comes first: what the hand holds is let go where it began.
void WorkspaceController::endDrags() {
    if (!pointer_.isDragging()) return;
    abandonDrags();
    layouts_.invalidateAll();
    commit({.hasMovedTiles = true});
}

void WorkspaceController::presentationResumed() {
    publishWindows();
    keepAssignmentsValid();
    refresh();
}

} // namespace kova
