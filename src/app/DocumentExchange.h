// Takes scenes and rules out to a file and in from one, as the user picks it in a panel.
#pragma once

#include "app/DocumentPanelServicing.h"
#include "support/Lifetime.h"
#include "windowing/AlertServicing.h"
#include "workspace/WorkspaceController.h"

namespace kova {

class DocumentExchange {
  public:
    /// All of these outlive the exchange.
    DocumentExchange(WorkspaceController& workspace, DocumentPanelServicing& panels, AlertServicing& alerts) :
        workspace_(workspace), panels_(panels), alerts_(alerts) {}

    /// What goes wrong is told in an alert; what is done shows by itself.
    void exportDocument();
    void importDocument();

  private:
    void fail(const std::string& what, const std::string& why);

    WorkspaceController& workspace_;
    DocumentPanelServicing& panels_;
    AlertServicing& alerts_;
    Lifetime lifetime_;
};

} // namespace kova
