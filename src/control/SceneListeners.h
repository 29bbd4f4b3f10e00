// Notifies the clients that wait until a scene has been opened. Each gets the final report once.
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
    /// The client gets a notification “sceneOpened” when this opening of a scene has ended.
    void add(const Uuid& opening, const std::shared_ptr<ControlPeer>& peer);

  private:
    void notify(const SceneReport& report);

    std::vector<std::pair<Uuid, std::weak_ptr<ControlPeer>>> listeners_;
    Subscription subscription_;
};

/// The report as JSON for clients.
nlohmann::json record(const SceneReport& report);

} // namespace kova
