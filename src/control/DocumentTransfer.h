// The methods that export and import the document of scenes and rules. The client reads and writes the file, so the
// agent never waits for the disk. Main thread only.
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

class MethodTable;

class DocumentTransfer {
  public:
    /// An upload is dropped if the client sends no piece of it for this long.
    static constexpr Seconds kUploadTimeout{60};

    /// Both arguments outlive the transfer.
    DocumentTransfer(WorkspaceController& controller, MainQueue& queue) : controller_(controller), queue_(queue) {}

    void addTo(MethodTable& methods);
    ControlReply exportDocument() const;
    /// Receives the next piece of a document; imports the document with the last piece.
    ControlReply importDocument(const JsonCursor& parameters, const std::shared_ptr<ControlPeer>& peer);

  private:
    struct Upload {
        std::weak_ptr<ControlPeer> peer;
        std::string text;
        Seconds lastPiece{0}; // the uptime at which the last piece arrived
    };

    Upload& uploadOf(const std::shared_ptr<ControlPeer>& peer);
    std::size_t bytesOfAllUploads() const;
    void forget(const std::shared_ptr<ControlPeer>& peer);
    void scheduleSweep();
    void dropAbandoned();
    enum class ImportMode { apply, dryRun };
    ControlReply importDocument(const std::string& text, ImportMode mode);

    WorkspaceController& controller_;
    MainQueue& queue_;
    std::vector<Upload> uploads_; // one for each client with an incomplete document
    std::shared_ptr<ScheduledWork> sweep_;
    Lifetime lifetime_;
};

} // namespace kova
