#include "workspace/WindowRecognition.h"

#include "support/SameFrame.h"

#include <cmath>
#include <functional>
#include <map>

namespace kova {

namespace {

bool near(double a, double b) {
    return std::abs(a - b) <= kFrameTolerancePoints;
}

bool isSameOrigin(const CGRect& a, const CGRect& b) {
    return near(minX(a), minX(b)) && near(minY(a), minY(b));
}

bool isSameSize(const CGRect& a, const CGRect& b) {
    return near(a.size.width, b.size.width) && near(a.size.height, b.size.height);
}

bool isSameKind(const ManagedWindowRecoveryIdentity& identity, const ManagedWindow& window) {
    return identity.processIdentifier == window.processIdentifier &&
           identity.bundleIdentifier == window.bundleIdentifier && identity.title == window.title && identity.frame &&
           window.frame;
}

bool isSameFrame(const CGRect& a, const CGRect& b) {
    return isSameOrigin(a, b) && isSameSize(a, b);
}

using Fits = std::function<bool(const ManagedWindowRecoveryIdentity&, const ManagedWindow&)>;

/// Finds pairs of a missing window and a candidate that fit each other and no other window. Moves these pairs from the
/// lists to `successors`. Removes missing windows with an ambiguous match from `missing`.
void pairUp(std::vector<const ManagedWindowRecoveryIdentity*>& missing, std::vector<const ManagedWindow*>& candidates,
            const Fits& fits, std::vector<WindowSuccessor>& successors) {
    std::map<const ManagedWindowRecoveryIdentity*, std::vector<const ManagedWindow*>> choices;
    std::map<const ManagedWindow*, int> fitCounts;
    for (const auto* identity : missing) {
        for (const auto* window : candidates) {
            if (!fits(*identity, *window)) continue;
            choices[identity].push_back(window);
            ++fitCounts[window];
        }
    }
    std::erase_if(missing, [&](const auto* identity) {
        const auto choice = choices.find(identity);
        if (choice == choices.end()) return false;
        const ManagedWindow* only = choice->second.front();
        if (choice->second.size() > 1 || fitCounts[only] > 1) return true; // ambiguous
        successors.push_back({identity->id, only->id});
        std::erase(candidates, only);
        return true;
    });
}

} // namespace

ManagedWindowRecoveryIdentity recoveryIdentity(const ManagedWindow& window) {
    return {window.id, window.processIdentifier, window.bundleIdentifier, window.title, window.frame};
}

std::vector<WindowSuccessor> recognizeWindows(const std::vector<ManagedWindowRecoveryIdentity>& missing,
                                              const std::vector<const ManagedWindow*>& candidates) {
    std::vector<WindowSuccessor> successors;
    std::vector<const ManagedWindowRecoveryIdentity*> identities;
    for (const auto& identity : missing) identities.push_back(&identity);
    auto windows = candidates;
    pairUp(
        identities, windows,
        [](const auto& identity, const auto& window) {
            return isSameKind(identity, window) && isSameFrame(*identity.frame, *window.frame);
        },
        successors);
    pairUp(
        identities, windows,
        [](const auto& identity, const auto& window) {
            return isSameKind(identity, window) &&
                   (isSameOrigin(*identity.frame, *window.frame) || isSameSize(*identity.frame, *window.frame));
        },
        successors);
    return successors;
}

std::vector<WindowSuccessor> recognizeTabs(const std::vector<ManagedWindowRecoveryIdentity>& missing,
                                           const std::vector<const ManagedWindow*>& candidates) {
    std::vector<WindowSuccessor> successors;
    std::vector<const ManagedWindowRecoveryIdentity*> identities;
    for (const auto& identity : missing) identities.push_back(&identity);
    auto windows = candidates;
    pairUp(
        identities, windows,
        [](const auto& identity, const auto& window) {
            return identity.processIdentifier == window.processIdentifier && identity.frame && window.frame &&
                   isSameFrame(*identity.frame, *window.frame);
        },
        successors);
    return successors;
}

} // namespace kova
