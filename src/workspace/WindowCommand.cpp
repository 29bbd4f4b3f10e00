#include "workspace/WindowCommand.h"

#include "support/Overloaded.h"
#include "workspace/NeighborTarget.h"
#include "workspace/WindowNames.h"

#include <algorithm>
#include <cmath>

namespace kova {

namespace {

using Kind = WindowStep::Kind;
using Planned = std::variant<WindowPlan, WindowRefusal>;

class CommandPlanner {
  public:
    explicit CommandPlanner(const WindowCommandInput& input) : input_(input) {}

    Planned plan(const command::Place& place) const {
        return onWindow(place.windowID, [&](const ManagedWindow& window) -> Planned {
            const WorkspaceTile* tile = tileWith(place.target);
            if (!tile) return WindowRefusal{"There is no such tile"};
            return placement(window, *tile, "place");
        });
    }

    Planned plan(const command::PlaceInNumbered& place) const {
        return onWindow(place.windowID, [&](const ManagedWindow& window) -> Planned {
            const auto tiles = tilesOn(displayOf(window));
            if (place.number < 1 || place.number > tiles.size()) {
                return WindowRefusal{"There is no tile " + std::to_string(place.number) + " in this layout"};
            }
            return placement(window, *tiles[place.number - 1], "place");
        });
    }

    Planned plan(const command::Swap& swap) const {
        return onWindow(swap.windowID, [&](const ManagedWindow& window) -> Planned {
            const auto own = input_.assignments.targetOf(window.id);
            if (!own || !tileWith(*own)) {
                const bool isStacked = input_.assignments.stackTargetOf(window.id).has_value();
                return WindowRefusal{notInFrontMessage(window, isStacked)};
            }
            const WorkspaceTile* tile =
                std::visit(Overloaded{[&](WorkspaceDirection direction) { return neighborOf(window, direction); },
                                      [&](const TileTarget& target) { return tileWith(target); }},
                           swap.with);
            if (!tile) {
                const auto* direction = std::get_if<WorkspaceDirection>(&swap.with);
                return WindowRefusal{direction
                                         ? "There is no tile " + phraseFor(*direction) + " " + window.applicationName
                                         : "There is no such tile"};
            }
            const ManagedWindow* other = tile->windowID ? windowWith(*tile->windowID) : nullptr;
            if (!other || other == &window || other->isElsewhere) return placement(window, *tile, "swap");
            if (const auto reason = whyNotMovable(*other)) return WindowRefusal{*reason};
            // Each of the two windows goes to the other's tile; for a spanning window, this is its anchor.
            const TileTarget theirs = input_.assignments.targetOf(other->id).value_or(tile->target);
            for (const auto& [moved, target, left] :
                 {std::tuple{&window, theirs, *own}, std::tuple{other, *own, theirs}}) {
                const auto covered = input_.covering(*moved, target);
                const bool coversLeftTile = std::ranges::find(covered, left) != covered.end();
                const bool coversThirdWindow = std::ranges::any_of(covered, [&](const TileTarget& each) {
                    const auto front = input_.assignments.assignedWindowIDs.find(each);
                    return front != input_.assignments.assignedWindowIDs.end() && front->second != window.id &&
                           front->second != other->id;
                });
                if (coversLeftTile || coversThirdWindow) {
                    return WindowRefusal{moved->applicationName + " is too large to trade places with " +
                                         (moved == &window ? *other : window).applicationName};
                }
            }
            const bool isSameApplication = window.applicationName == other->applicationName;
            const auto named = [&](const ManagedWindow& each) {
                return isSameApplication ? nameOf(each) : each.applicationName;
            };
            return WindowPlan{"swap",
                              "Swapped " + named(window) + " and " + named(*other),
                              {{Kind::place, other->id, *own}, {Kind::place, window.id, theirs}}};
        });
    }

    Planned plan(const command::FocusWindow& focus) const {
        const ManagedWindow* fullScreen = focus.windowID ? windowWith(*focus.windowID) : nullptr;
        if (fullScreen && fullScreen->isFullScreen && !fullScreen->isElsewhere) {
            return WindowPlan{
                "", "Focused " + fullScreen->applicationName, {{Kind::focus, fullScreen->id, std::nullopt}}};
        }
        return onWindow(focus.windowID, [&](const ManagedWindow& window) -> Planned {
            WindowPlan plan{"", "Focused " + window.applicationName, {}};
            const bool isInFront = input_.assignments.isAssigned(window.id);
            const auto stack = isInFront ? std::nullopt : input_.assignments.stackTargetOf(window.id);
            if (const WorkspaceTile* tile = stack ? tileWith(*stack) : nullptr) {
                plan = std::get<WindowPlan>(placement(window, *tile, std::string(kBringToFront)));
                plan.message = window.applicationName + " is now active";
            }
            plan.steps.push_back({Kind::focus, window.id, std::nullopt});
            return plan;
        });
    }

    Planned plan(const command::FocusDisplay& focus) const {
        const Screen* screen = chosenScreen(focus.display, input_.currentDisplayID);
        if (!screen) return WindowRefusal{noSuchDisplayMessage(focus.display)};
        const ManagedWindow* window = mostRecentOn(displayID(*screen));
        if (!window) return WindowRefusal{"No window on " + screen->localizedName + " can be focused"};
        return WindowPlan{"", "Focused " + window->applicationName, {{Kind::focus, window->id, std::nullopt}}};
    }

    Planned plan(const command::MoveToDisplay& move) const {
        return onWindow(move.windowID, [&](const ManagedWindow& window) -> Planned {
            const auto from = displayOf(window);
            const Screen* screen = chosenScreen(move.display, from);
            if (!screen) return WindowRefusal{noSuchDisplayMessage(move.display)};
            const DisplayID id = displayID(*screen);
            if (from == id) {
                return WindowPlan{"", window.applicationName + " is on " + screen->localizedName + " already", {}};
            }
            const WorkspaceTile* tile = tileToMoveTo(window, id);
            if (!tile) return WindowRefusal{screen->localizedName + " has no tile"};
            auto planned = placement(window, *tile, "move to " + screen->localizedName);
            std::get<WindowPlan>(planned).message += " on " + screen->localizedName;
            return planned;
        });
    }

    Planned plan(const command::Float& wanted) const {
        return onWindow(wanted.windowID, [&](const ManagedWindow& window) -> Planned {
            if (input_.floatingWindowIDs.contains(window.id))
                return WindowPlan{"", window.applicationName + " floats already", {}};
            return WindowPlan{"float",
                              window.applicationName + " floats until it is put into a tile",
                              {{Kind::floating, window.id, std::nullopt}}};
        });
    }

    Planned plan(const command::Tile& wanted) const {
        return onWindow(wanted.windowID, [&](const ManagedWindow& window) -> Planned {
            const auto own = input_.assignments.targetOf(window.id);
            if (const WorkspaceTile* tile = own ? tileWith(*own) : nullptr) {
                return WindowPlan{"", window.applicationName + " is in " + tile->slot.name + " already", {}};
            }
            const auto display = displayOf(window);
            const WorkspaceTile* tile = display ? nearestTile(window, *display) : nullptr;
            if (!tile) return WindowRefusal{"There is no tile for " + window.applicationName};
            return placement(window, *tile, "tile");
        });
    }

    Planned plan(const command::ToggleFloating& toggle) const {
        return onWindow(toggle.windowID, [&](const ManagedWindow& window) -> Planned {
            const bool isTiled = input_.assignments.isInAnyTile(window.id);
            return isTiled ? plan(command::Float{window.id}) : plan(command::Tile{window.id});
        });
    }

  private:
    template <class Make>
    Planned onWindow(const std::optional<WindowID>& wanted, Make make) const {
        const auto& id = wanted ? wanted : input_.focusedWindowID;
        const ManagedWindow* window = id ? windowWith(*id) : nullptr;
        if (!window) return WindowRefusal{wanted ? "There is no such window" : "No managed window has the focus"};
        if (const auto reason = whyNotMovable(*window)) return WindowRefusal{*reason};
        return make(*window);
    }

    const ManagedWindow* windowWith(const WindowID& id) const {
        const auto found = std::ranges::find(input_.windows, id, &ManagedWindow::id);
        return found == input_.windows.end() ? nullptr : &*found;
    }
    const WorkspaceTile* tileWith(const TileTarget& target) const {
        const auto found = std::ranges::find(input_.tiles, target, &WorkspaceTile::target);
        return found == input_.tiles.end() ? nullptr : &*found;
    }
    std::vector<const WorkspaceTile*> tilesOn(const std::optional<DisplayID>& display) const {
        std::vector<const WorkspaceTile*> tiles;
        for (const auto& tile : input_.tiles) {
            if (tile.displayID == display) tiles.push_back(&tile);
        }
        return tiles;
    }
    std::optional<DisplayID> displayOf(const ManagedWindow& window) const {
        const auto found = input_.displayIDByWindowID.find(window.id);
        return found == input_.displayIDByWindowID.end() ? input_.currentDisplayID : std::optional(found->second);
    }

    static std::string phraseFor(WorkspaceDirection direction) {
        switch (direction) {
        case WorkspaceDirection::left:
            return "to the left of";
        case WorkspaceDirection::right:
            return "to the right of";
        case WorkspaceDirection::up:
            return "above";
        case WorkspaceDirection::down:
            return "below";
        }
        return "";
    }
    static std::string noSuchDisplayMessage(const DisplayChoice& choice) {
        return std::holds_alternative<DisplayStep>(choice) ? "There is no other display" : "There is no such display";
    }

    /// The plan that makes the window the front window of the tile. The present front windows are displaced.
    Planned placement(const ManagedWindow& window, const WorkspaceTile& tile, std::string action) const {
        if (input_.assignments.targetOf(window.id) == tile.target) {
            return WindowPlan{"", window.applicationName + " is in " + tile.slot.name + " already", {}};
        }
        WindowPlan plan{std::move(action), "Moved " + window.applicationName + " to " + tile.slot.name, {}};
        plan.steps.push_back({Kind::place, window.id, tile.target});
        std::set<WindowID> displaced;
        for (const auto& target : input_.covering(window, tile.target)) {
            const auto front = input_.assignments.assignedWindowIDs.find(target);
            if (front == input_.assignments.assignedWindowIDs.end() || front->second == window.id) continue;
            if (displaced.insert(front->second).second) {
                plan.steps.push_back({Kind::wait, front->second, tile.target});
            }
        }
        return plan;
    }

    const WorkspaceTile* neighborOf(const ManagedWindow& window, WorkspaceDirection direction) const {
        if (!window.frame) return nullptr;
        std::map<TileTarget, CGRect> frames;
        for (const WorkspaceTile* tile : tilesOn(displayOf(window))) {
            if (tile->windowID != window.id) frames[tile->target] = tile->frameOnScreen;
        }
        const auto target = neighborTarget(flipped(*window.frame, input_.firstScreenMaxY), direction, frames);
        return target ? tileWith(*target) : nullptr;
    }

    const Screen* chosenScreen(const DisplayChoice& choice, const std::optional<DisplayID>& from) const {
        const auto& screens = input_.screens;
        const auto indexOf = [&](const DisplayID& id) {
            return static_cast<std::size_t>(
                std::ranges::find_if(screens, [&](const Screen& screen) { return displayID(screen) == id; }) -
                screens.begin());
        };
        if (const auto* id = std::get_if<DisplayID>(&choice)) {
            const std::size_t index = indexOf(*id);
            return index < screens.size() ? &screens[index] : nullptr;
        }
        const std::size_t index = from ? indexOf(*from) : screens.size();
        if (screens.size() < 2 || index == screens.size()) return nullptr;
        const std::size_t step = std::get<DisplayStep>(choice) == DisplayStep::next ? 1 : screens.size() - 1;
        return &screens[(index + step) % screens.size()];
    }

    const ManagedWindow* mostRecentOn(const DisplayID& display) const {
        const auto isVisibleOnDisplay = [&](const ManagedWindow& window) {
            return window.isVisible && !window.isMinimized && displayOf(window) == display;
        };
        for (const auto& id : input_.focusOrder) {
            const ManagedWindow* window = windowWith(id);
            if (window && isVisibleOnDisplay(*window)) return window;
        }
        for (const WorkspaceTile* tile : tilesOn(display)) {
            const ManagedWindow* window = tile->windowID ? windowWith(*tile->windowID) : nullptr;
            if (window && isVisibleOnDisplay(*window)) return window;
        }
        const auto any = std::ranges::find_if(input_.windows, isVisibleOnDisplay);
        return any == input_.windows.end() ? nullptr : &*any;
    }

    /// If the display has free tiles: the free tile of the same slot, else the first free tile. If it has none: the
    /// tile of the same slot, else the first tile.
    const WorkspaceTile* tileToMoveTo(const ManagedWindow& window, const DisplayID& display) const {
        const auto own = input_.assignments.targetOf(window.id);
        const WorkspaceTile* ownTile = own ? tileWith(*own) : nullptr;
        const WorkspaceTile* best = nullptr;
        int bestRank = -1;
        for (const WorkspaceTile* tile : tilesOn(display)) {
            const int rank = (tile->windowID ? 0 : 2) + (ownTile && ownTile->slot.id == tile->slot.id ? 1 : 0);
            if (rank <= bestRank) continue;
            best = tile;
            bestRank = rank;
        }
        return best;
    }

    const WorkspaceTile* nearestTile(const ManagedWindow& window, const DisplayID& display) const {
        const auto tiles = tilesOn(display);
        const bool hasFree = std::ranges::any_of(tiles, [](const auto* tile) { return !tile->windowID; });
        const CGPoint middle = window.frame ? center(flipped(*window.frame, input_.firstScreenMaxY)) : CGPoint{};
        const WorkspaceTile* best = nullptr;
        double bestDistance = 0;
        for (const WorkspaceTile* tile : tiles) {
            if (hasFree && tile->windowID) continue;
            const CGPoint to = center(tile->frameOnScreen);
            const double distance =
                containsPoint(tile->frameOnScreen, middle) ? -1 : std::hypot(to.x - middle.x, to.y - middle.y);
            if (best && distance >= bestDistance) continue;
            best = tile;
            bestDistance = distance;
        }
        return best;
    }

    const WindowCommandInput& input_;
};

} // namespace

std::string_view describe(WindowStep::Kind kind) {
    switch (kind) {
    case Kind::place:
        return "place";
    case Kind::wait:
        return "wait";
    case Kind::focus:
        return "focus";
    case Kind::floating:
        return "float";
    }
    return "";
}

std::optional<std::string> whyNotMovable(const ManagedWindow& window) {
    if (window.isFullScreen) return window.applicationName + " is in full screen; end that first";
    if (window.isElsewhere) return window.applicationName + " is on another desktop; go there first";
    return std::nullopt;
}

std::variant<WindowPlan, WindowRefusal> planWindowCommand(const WindowCommand& command,
                                                          const WindowCommandInput& input) {
    return std::visit([&](const auto& wanted) { return CommandPlanner(input).plan(wanted); }, command);
}

} // namespace kova
