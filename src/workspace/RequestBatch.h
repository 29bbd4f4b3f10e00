// Sends the requests to windows together, once for each operation: the end of the outermost batch flushes.
#pragma once

#include "windowing/AccessibilityServicing.h"

namespace kova {

class RequestBatch {
  public:
    explicit RequestBatch(AccessibilityServicing& accessibility) : accessibility_(accessibility) {}

    /// A batch that lasts as long as this object.
    class Scope {
      public:
        explicit Scope(RequestBatch& batch) : batch_(batch) { ++batch_.depth_; }
        ~Scope() {
            if (--batch_.depth_ == 0) batch_.accessibility_.flush();
        }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

      private:
        RequestBatch& batch_;
    };

  private:
    AccessibilityServicing& accessibility_;
    int depth_ = 0;
};

} // namespace kova
