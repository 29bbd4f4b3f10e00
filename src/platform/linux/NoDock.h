// Linux desktops have many kinds of docks and panels, and no common setting that hides them.
#pragma once

#include "app/DockAutoHideServicing.h"

namespace kova {

class NoDock final : public DockAutoHideServicing {
  public:
    std::optional<std::string> unavailableReason() const override {
        return "This desktop has no common preference for hiding its dock or panel; its own settings may have one.";
    }
    /// Never completes: there is nothing to read.
    void readAutoHide(ReadCompletion) override {}
    void writeAutoHide(bool, WriteCompletion) override {}
};

} // namespace kova
