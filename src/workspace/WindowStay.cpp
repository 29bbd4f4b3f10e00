#include "workspace/WindowStay.h"

#include <cmath>

namespace kova {

namespace {

std::string sizeAndPlace(const CGRect& frame) {
    const auto number = [](double value) { return std::to_string(std::lround(value)); };
    return number(frame.size.width) + " × " + number(frame.size.height) + " at " + number(frame.origin.x) + ", " +
           number(frame.origin.y);
}

std::string refusalSentence(const RefusedFrame& refusal, int attempts) {
    if (refusal.isAccepted) {
        return "It is left where it was when KOVA started, " + sizeAndPlace(refusal.actual) +
               ", until its tile changes or it moves.";
    }
    return "It refuses the frame of its tile: after " + std::to_string(attempts) + " requests for " +
           sizeAndPlace(refusal.wanted) + " it is still " + sizeAndPlace(refusal.actual) +
           ". KOVA requests the frame again when the tile changes or the window moves.";
}

} // namespace

std::vector<std::string> whyItStays(const WindowSituation& situation) {
    std::vector<std::string> causes;
    if (situation.obstacle) causes.push_back("No window is moved now: " + *situation.obstacle + ".");
    if (situation.isDragUnderWay) causes.push_back("No window is moved while the pointer drags something.");
    if (situation.leftAlone) {
        const std::string what(describe(*situation.leftAlone));
        causes.push_back((situation.hasTile ? "It is not put into its tile while it " : "It is left alone while it ") +
                         what + ".");
    } else if (situation.hasTile && situation.refusal) {
        causes.push_back(refusalSentence(*situation.refusal, situation.attempts));
    } else if (situation.isPlacementPending) {
        causes.push_back("KOVA has just requested its frame and is verifying whether the window takes it.");
    }
    if (situation.isOffScreen && !situation.leftAlone) {
        causes.push_back("It is on no screen although it is neither minimized nor hidden, so KOVA cannot show it.");
    }
    if (situation.manager) causes.push_back(*situation.manager);
    if (situation.isFloating) causes.push_back("It floats until it is put into a tile.");
    if (situation.rule) causes.push_back("An arrangement leaves it alone: the rule " + *situation.rule + ".");
    if (situation.isWaitingForItsDisplay) {
        causes.push_back("An arrangement leaves it alone for a moment: its display was unplugged and may come back.");
    }
    if (situation.isAwaitedByLaunch) causes.push_back("A tile waits for a window of its application.");
    if (situation.isAwaitedByScene)
        causes.push_back("The scene that was opened last waits for a window of its application.");
    return causes;
}

} // namespace kova
