// Exports scenes and rules to a file, and imports them, with panels in which the user picks the file.
#pragma once

#include "app/DocumentPanelServicing.h"
#include "control/DocumentExchangeControl.h"
#include "support/Lifetime.h"
#include "windowing/AlertServicing.h"
#include "workspace/WorkspaceController.h"

namespace kova {

class DocumentExchange final : public DocumentExchangeControl {
  public:
    /// All arguments outlive the exchange.
    DocumentExchange(WorkspaceController& workspace, DocumentPanelServicing& panels, AlertServicing& alerts) :
        workspace_(workspace), panels_(panels), alerts_(alerts) {}

    bool canAsk() const override { return true; }
    void exportDocument() override;
    void importDocument() override;

  private:
    void fail(const std::string& what, const std::string& why);

    WorkspaceController& workspace_;
    DocumentPanelServicing& panels_;
    AlertServicing& alerts_;
    Lifetime lifetime_;
};

} // namespace kova
