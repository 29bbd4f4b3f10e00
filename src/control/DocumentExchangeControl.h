// Exports and imports scenes and rules with a dialog in which the user picks the file. Main thread only.
#pragma once

namespace kova {

class DocumentExchangeControl {
  public:
    virtual ~DocumentExchangeControl() = default;
    /// True if the dialog can be shown now.
    virtual bool canAsk() const = 0;
    /// Both functions open the dialog and return at once. Errors are shown in the dialog or in an alert; success is not
    /// reported.
    virtual void exportDocument() = 0;
    virtual void importDocument() = 0;
};

} // namespace kova
