#include "workspace/WorkspaceAction.h"

namespace kova {

std::string_view describe(WorkspaceDirection direction) {
    switch (direction) {
    case WorkspaceDirection::left:
        return "left";
    case WorkspaceDirection::right:
        return "right";
    case WorkspaceDirection::up:
        return "up";
    case WorkspaceDirection::down:
        return "down";
    }
    return "";
}

} // namespace kova
