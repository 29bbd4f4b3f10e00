// Connects the overlay's controllers with the overlay's contents. Each section of the contents belongs to one
// controller, which fills it only when the section is read. Main thread only.
#pragma once

#include "control/OverlayContents.h"

#include <functional>
#include <map>

namespace kova {

class OverlayBoard final : public OverlayServing {
  public:
    using Fill = std::function<void(OverlayContents&)>;

    /// Registers `fill`, which writes the section's contents from now on.
    void provide(OverlaySection section, Fill fill);
    /// Call when the section's contents may have changed.
    void refresh(OverlaySection section);
    /// Empties the section.
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
