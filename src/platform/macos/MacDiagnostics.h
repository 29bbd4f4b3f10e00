// Finds the reasons why windows may not move on a Mac, for `kova doctor`.
#pragma once

#include "platform/macos/MacAccessibility.h"
#include "windowing/ApplicationServicing.h"
#include "windowing/DiagnosticsServicing.h"

namespace kova::macos {

class MacDiagnostics final : public DiagnosticsServicing {
  public:
    /// Both outlive this.
    MacDiagnostics(const MacAccessibility& accessibility, const ApplicationServicing& applications) :
        accessibility_(accessibility), applications_(applications) {}
    std::vector<DiagnosticLine> diagnose() const override;

  private:
    const MacAccessibility& accessibility_;
    const ApplicationServicing& applications_;
};

} // namespace kova::macos
