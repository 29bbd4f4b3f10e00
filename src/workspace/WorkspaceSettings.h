// Changes the settings that move no window: theme, accent color, the parts of the overlay, and the settings of
// arrangements and rules.
#pragma once

#include "workspace/Outcome.h"
#include "workspace/RefreshCycle.h"
#include "workspace/TileGeometry.h"
#include "workspace/TileKeeper.h"
#include "workspace/WorkspaceAction.h"
#include "workspace/WorkspaceServices.h"
#include "workspace/WorkspaceState.h"

#include <optional>
#include <string>

namespace kova {

struct WorkspaceParts;

class WorkspaceSettings {
  public:
    WorkspaceSettings(WorkspaceParts& parts, RefreshCycle& refreshCycle, TileGeometry& geometry, TileKeeper& keeper);

    void setSetting(action::Setting setting, bool isOn);
    Outcome selectTheme(const std::string& id);
    void selectAccentColor(const std::string& id);
    void setPreferredApplication(const SlotID& slotID, const std::optional<std::string>& applicationKey);

  private:
    const WorkspaceServices& services_;
    WorkspaceState& state_;
    RefreshCycle& refreshCycle_;
    TileGeometry& geometry_;
    TileKeeper& keeper_;
};

} // namespace kova
