#include "workspace/TileMemory.h"

#include "workspace/Renaming.h"

namespace kova {

void TileMemory::keepHandledByRules(const std::function<bool(const WindowID& windowID)>& isLive) {
    std::erase_if(handledByRules_, [&](const WindowID& id) { return !isLive(id); });
}

void TileMemory::keepOnly(const std::set<WindowID>& windowIDs) {
    spaces_.keepOnly(windowIDs);
    rememberedLayouts_.keepOnly(windowIDs);
    stackPromotion_.keepOnly(windowIDs);
}

void TileMemory::rename(const WindowID& windowID, const WindowID& newID) {
    spaces_.rename(windowID, newID);
    rememberedLayouts_.rename(windowID, newID);
    stackPromotion_.rename(windowID, newID);
    renameIn(handledByRules_, windowID, newID);
}

void TileMemory::renameDisplay(const DisplayID& displayID, const DisplayID& newID) {
    spaces_.renameDisplay(displayID, newID);
    rememberedLayouts_.renameDisplay(displayID, newID);
    stackPromotion_.renameDisplay(displayID, newID);
}

} // namespace kova
