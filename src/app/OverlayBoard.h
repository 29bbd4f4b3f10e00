// Where the overlay's controllers put what they show. Each section of the contents belongs to one controller, which
// fills it on demand: without a watcher a refresh costs a comparison. Main thread only.
#pragma once

#include "control/OverlayContents.h"

#include <functional>
#include <map>

namespace kova {

class OverlayBoard final : public OverlayServing {
  public:
    using Fill = std::function<void(OverlayContents&)>;

    /// From now on the section holds what `fill` writes into it.
    void show(OverlaySection section, Fill fill);
    /// What the section holds may have changed.
    void refresh(OverlaySection section);
    /// The section is empty from now on.
    void close(OverlaySection section);

    void update(OverlayContents& contents, OverlaySections sections) override;
    /// Whether a client draws the contents.
    bool isWatched() const { return changed_ != nullptr; }
    void watch(std::function<void(OverlaySections)> changed) override { changed_ = std::move(changed); }

  private:
    std::map<OverlaySection, Fill> fills_;
    std::function<void(OverlaySections)> changed_;
};

} // namespace kova
