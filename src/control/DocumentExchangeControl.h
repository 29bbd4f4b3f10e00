// Export and import of scenes and rules in which the user picks the file. Main thread only.
#pragma once

namespace kova {

class DocumentExchangeControl {
  public:
    virtual ~DocumentExchangeControl() = default;
    /// Whether the user can be asked for a file now.
    virtual bool canAsk() const = 0;
    /// Errors are shown where the user picks the file, or in an alert; success is not reported. Neither function waits.
    virtual void exportDocument() = 0;
    virtual void importDocument() = 0;
};

} // namespace kova
