#include "workspace/TileMemory.h"

#include "workspace/Renaming.h"

namespace kova {

void TileMemory::keepPlaced(const std::function<bool(const std::string& windowID)>& isLive) {
    std::erase_if(placed_, [&](const std::string& id) { return !isLive(id); });
}

void TileMemory::keepOnly(const std::set<std::string>& windowIDs) {
    spaces_.keepOnly(windowIDs);
    homes_.keepOnly(windowIDs);
    succession_.keepOnly(windowIDs);
}

void TileMemory::rename(const std::string& windowID, const std::string& newID) {
    spaces_.rename(windowID, newID);
    homes_.rename(windowID, newID);
    succession_.rename(windowID, newID);
    renameIn(placed_, windowID, newID);
}

void TileMemory::renameDisplay(const std::string& displayID, const std::string& newID) {
    spaces_.renameDisplay(displayID, newID);
    homes_.renameDisplay(displayID, newID);
}

} // namespace kova
