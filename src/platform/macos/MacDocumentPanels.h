// Lets the user choose a file in the system's save and open panels. The file is read or written on the disk queue.
#pragma once

#include "app/DocumentPanelServicing.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"

namespace kova::macos {

class MacDocumentPanels final : public DocumentPanelServicing {
  public:
    /// Both queues live as long as the process.
    MacDocumentPanels(MainQueue& queue, WorkQueue& diskQueue) : queue_(queue), diskQueue_(diskQueue) {}
    void saveDocument(const std::string& proposedName, std::string json,
                      std::function<void(const std::optional<FileProblem>&)> completion) override;
    void openDocument(std::function<void(const std::variant<std::string, FileProblem>&)> completion) override;

  private:
    MainQueue& queue_;
    WorkQueue& diskQueue_;
    Lifetime lifetime_;
};

} // namespace kova::macos
