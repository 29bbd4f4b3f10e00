// The document of scenes and rules on its way out of the agent and into it. The client reads and writes the file: the
// agent opens none, and never waits for a disk. Main thread only.
#pragma once

#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"
#include "workspace/WorkspaceController.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace kova {

class DocumentTransfer {
  public:
    /// A client that says nothing for so long in the middle of a document has given up.
    static constexpr Seconds kUploadTimeout{60};

    /// Both outlive the transfer.
    DocumentTransfer(WorkspaceController& controller, MainQueue& queue) : controller_(controller), queue_(queue) {}

    ControlReply exportDocument() const;
    /// Takes the next piece of a document, and the whole in with the last of them.
    ControlReply importDocument(const JsonCursor& parameters, const std::shared_ptr<ControlPeer>& peer);

  private:
    struct Upload {
        std::weak_ptr<ControlPeer> peer;
        std::string text;
        Seconds lastPiece{0}; // uptime
    };

    Upload& uploadOf(const std::shared_ptr<ControlPeer>& peer);
    std::size_t bytesUnderWay() const;
    void forget(const std::shared_ptr<ControlPeer>& peer);
    void scheduleSweep();
    void dropAbandoned();
    enum class Taking { forReal, dryRun };
    ControlReply takeIn(const std::string& text, Taking taking);

    WorkspaceController& controller_;
    MainQueue& queue_;
    std::vector<Upload> uploads_; // of the clients that are in the middle of a document
    std::shared_ptr<ScheduledWork> sweep_;
    Lifetime lifetime_;
};

} // namespace kova
