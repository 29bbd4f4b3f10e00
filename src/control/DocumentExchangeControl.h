// Export and import of scenes and rules in which the user picks the file. Main thread only.
#pragma once

namespace kova {

class DocumentExchangeControl {
  public:
    virtual ~DocumentExchangeControl() = default;
    /// Whether a file can be asked for now.
    virtual bool canAsk() const = 0;
    /// Errors are shown where the user picks the file, or in an alert; success is not reported. Neither waits.
    virtual void exportDocument() = 0;
    virtual void importDocument() = 0;
};

} // namespace kova
