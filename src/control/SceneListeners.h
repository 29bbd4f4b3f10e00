// Clients that wait for the end of a scene's opening: each gets the final report once.
#pragma once

#include "control/ControlHandling.h"
#include "workspace/WorkspaceController.h"

#include <memory>
#include <utility>
#include <vector>

namespace kova {

class SceneListeners {
  public:
    explicit SceneListeners(const WorkspaceController& controller);
    /// The client gets a `sceneOpened` notification when the opening has ended.
    void add(const Uuid& opening, const std::shared_ptr<ControlPeer>& peer);

  private:
    void notify(const SceneReport& report);

    std::vector<std::pair<Uuid, std::weak_ptr<ControlPeer>>> listeners_;
    Subscription subscription_;
};

/// The report as clients see it.
nlohmann::json record(const SceneReport& report);

} // namespace kova
