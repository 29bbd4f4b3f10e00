#include "workspace/PlacementReport.h"

#include "support/Quoted.h"
#include "support/SameFrame.h"
#include "workspace/RuleMatching.h"
#include "workspace/WorkspaceParts.h"

#include <algorithm>

namespace kova {

using BringToFront = AccessibilityWindowService::BringToFront;

PlacementReport::PlacementReport(WorkspaceParts& parts, WorkspaceAccess& access, TileGeometry& geometry,
                                 WindowPresenter& presenter, Arrangement& arrangement) :
    services_(parts.services),
    sharedService_(parts.windowService), windowService_(*parts.windowService), state_(parts.state),
    liveWindows_(parts.liveWindows), assignments_(parts.assignments), displays_(parts.displays),
    floating_(parts.floating), pointer_(parts.pointer), frames_(parts.frames), awaited_(parts.awaited), access_(access),
    geometry_(geometry), presenter_(presenter), arrangement_(arrangement) {}

/// Collects all reasons, since `explain` prints all of them.
std::vector<std::string> PlacementReport::whyItStays(const ManagedWindow& window) const {
    WindowSituation situation;
    const auto isGranted = *state_.permissionState == AccessibilityPermissionState::granted;
    if (!isGranted)
        situation.obstacle = access_.permissionProblem();
    else
        situation.obstacle = access_.whyNoWindowMayMove();
    situation.isDragUnderWay = pointer_.isPausingPolls();
    situation.hasTile = assignments_.isAssigned(window.id);
    situation.leftAlone = presenter_.whyLeftAlone(window);
    // KOVA itself hides stacked windows, so being hidden is not the reason why a stacked window is not moved.
    const bool isWaiting = assignments_.isInAnyTile(window.id) && !situation.hasTile;
    if (isWaiting && (situation.leftAlone == LeftAloneReason::minimized ||
                      situation.leftAlone == LeftAloneReason::applicationHidden))
        situation.leftAlone.reset();
    situation.refusal = frames_.refusal(window.id);
    situation.attempts = FrameKeeper::kAttempts;
    situation.isPlacementPending = windowService_.pendingFrame(window.id).has_value();
    situation.isOffScreen = presenter_.isOffScreen(window);
    situation.manager = arrangement_.whyWindowsStay();
    situation.isFloating = floating_.contains(window.id);
    if (arrangement_.isExcludedByRules(window)) {
        const WorkspaceRule& rule = (*state_.rules)[*decidingRule(*state_.rules, window)];
        situation.rule = "“" + rule.name + "” says " + kova::describe(rule.disposition, geometry_.catalogue());
    }
    situation.isWaitingForItsDisplay = displays_.isWaitingForItsDisplay(window.id);
    const bool isInTile = assignments_.isInAnyTile(window.id);
    situation.isAwaitedByLaunch = !isInTile && std::ranges::any_of(awaited_.launches(), [&](const auto& entry) {
        return entry.second.isAwaiting(window);
    });
    situation.isAwaitedByScene = !isInTile && std::ranges::any_of(awaited_.scene().pending, [&](const auto& pending) {
        return pending.window.bundleIdentifier && pending.window.bundleIdentifier == window.bundleIdentifier;
    });
    return kova::whyItStays(situation);
}

void PlacementReport::readFrames(std::function<void()> read) {
    std::vector<std::pair<WindowID, AccessibilityElement>> windows;
    for (const auto& [windowID, requested] : geometry_.framesOfTiledWindows()) {
        if (const ManagedWindow* window = liveWindows_.find(windowID)) windows.emplace_back(windowID, window->element);
    }
    auto take = lifetime_.guard([this, read = std::move(read)](const Frames& frames) {
        framesRead_ = frames;
        read();
        services_.queue.post(lifetime_.guard([this] { framesRead_.clear(); }));
    });
    services_.pollingQueue.post([service = sharedService_, &queue = services_.queue, windows = std::move(windows),
                                 take = std::move(take)]() mutable {
        Frames frames;
        for (const auto& [windowID, element] : windows) frames[windowID] = service->readFrame(element);
        // The job's copy keeps the service alive; the last reference is released on the main thread.
        queue.post([frames = std::move(frames), service = std::move(service), take = std::move(take)]() mutable {
            take(frames);
        });
    });
}

std::vector<PlacementFinding> PlacementReport::verifyPlacements() const {
    std::vector<PlacementFinding> findings;
    for (const auto& [windowID, requested] : geometry_.framesOfTiledWindows()) {
        const ManagedWindow* window = liveWindows_.find(windowID);
        if (!window) continue;
        PlacementFinding finding{windowID, *assignments_.targetOf(windowID), requested, window->frame, {}};
        if (const auto read = framesRead_.find(windowID); read != framesRead_.end()) finding.actualFrame = read->second;
        using enum PlacementVerdict;
        if (presenter_.isLeftAlone(*window) || !window->isVisible) {
            finding.verdict = leftAlone;
        } else if (finding.actualFrame && nearlyEqual(*finding.actualFrame, requested, kFrameTolerancePoints)) {
            finding.verdict = asRequested;
        } else {
            finding.verdict = windowService_.pendingFrame(windowID) ? underWay : drifted;
        }
        findings.push_back(std::move(finding));
    }
    return findings;
}

Outcome PlacementReport::repairPlacements() {
    for (const auto& finding : verifyPlacements()) {
        const ManagedWindow* window = liveWindows_.find(finding.windowID);
        if (!window || finding.verdict != PlacementVerdict::drifted) continue;
        frames_.forgetRefusal(finding.windowID); // so that the window gets all its attempts again
        presenter_.writeFrame(ManagedWindow(*window), finding.requestedFrame, BringToFront::no);
    }
    return Outcome::done();
}

} // namespace kova
