#include "control/DocumentTransfer.h"

#include "control/MethodTable.h"
#include "control/Refusal.h"
#include "control/client/ControlCodes.h"
#include "persistence/WorkspaceDocumentCoding.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

using nlohmann::json;

static_assert(kLargestDocument == kMaximumImportBytes);

ControlFailure importFailure(const std::string& reason) {
    return refusal("Import failed: " + reason);
}

} // namespace

ControlReply DocumentTransfer::exportDocument() const {
    auto exported = controller_.exportWorkspaceDocument();
    if (const auto* error = std::get_if<DecodingError>(&exported)) {
        return refusal(std::string("Export failed: ") + error->what());
    }
    return json{{"scenes", controller_.state().scenes->size()},
                {"rules", controller_.state().rules->size()},
                {"text", std::get<std::string>(std::move(exported))}};
}

ControlReply DocumentTransfer::importDocument(const JsonCursor& parameters, const std::shared_ptr<ControlPeer>& peer) {
    std::string piece = parameters.required("text").string();
    const auto more = parameters.optional("more");
    const bool isLast = !more || !more->boolean();
    const auto dryRun = parameters.optional("dryRun");
    const auto mode = dryRun && dryRun->boolean() ? ImportMode::dryRun : ImportMode::apply;
    dropAbandoned();
    Upload& upload = uploadOf(peer);
    // All uploads together may be as long as the largest document, so that clients cannot fill the memory.
    if (bytesOfAllUploads() + piece.size() > kLargestDocument) {
        const bool isOnlyUpload = uploads_.size() == 1;
        forget(peer);
        if (!isOnlyUpload) return importFailure("too much is being imported at once");
        return importFailure("larger than " + std::to_string(kLargestDocument >> 20) + " MiB");
    }
    upload.text.append(piece);
    if (!isLast) {
        upload.lastPiece = queue_.uptime();
        scheduleSweep();
        return json{{"scenes", nullptr}, {"rules", nullptr}, {"message", nullptr}, {"added", nullptr}};
    }
    const std::string text = std::move(upload.text);
    forget(peer);
    return importDocument(text, mode);
}

ControlReply DocumentTransfer::importDocument(const std::string& text, ImportMode mode) {
    WorkspaceImportCounts counts;
    if (mode == ImportMode::dryRun) {
        const auto preview = controller_.previewImport(text);
        if (const auto* error = std::get_if<DecodingError>(&preview)) return importFailure(error->what());
        counts = std::get<WorkspaceImportCounts>(preview);
    } else {
        const auto imported = controller_.perform(action::ImportDocument{text});
        if (!imported) return importFailure(*imported.message());
        counts = *imported.details<WorkspaceImportCounts>();
    }
    return json{{"scenes", counts.scenes},
                {"rules", counts.rules},
                {"message", counts.message},
                {"added", {{"scenes", counts.newScenes}, {"rules", counts.newRules}}}};
}

DocumentTransfer::Upload& DocumentTransfer::uploadOf(const std::shared_ptr<ControlPeer>& peer) {
    const auto found =
        std::find_if(uploads_.begin(), uploads_.end(), [&](const Upload& each) { return each.peer.lock() == peer; });
    if (found != uploads_.end()) return *found;
    return uploads_.emplace_back(Upload{peer, {}, queue_.uptime()});
}

std::size_t DocumentTransfer::bytesOfAllUploads() const {
    std::size_t bytes = 0;
    for (const Upload& upload : uploads_) bytes += upload.text.size();
    return bytes;
}

void DocumentTransfer::forget(const std::shared_ptr<ControlPeer>& peer) {
    std::erase_if(uploads_, [&](const Upload& each) { return each.peer.lock() == peer; });
    scheduleSweep();
}

void DocumentTransfer::scheduleSweep() {
    if (sweep_) sweep_->cancel();
    sweep_.reset();
    if (uploads_.empty()) return;
    sweep_ = queue_.after(kUploadTimeout + Seconds(1), lifetime_.guard([this] { dropAbandoned(); }));
}

void DocumentTransfer::dropAbandoned() {
    const Seconds now = queue_.uptime();
    std::erase_if(uploads_, [&](const Upload& upload) {
        const auto peer = upload.peer.lock();
        return !peer || !peer->isConnected() || now - upload.lastPiece > kUploadTimeout;
    });
    scheduleSweep();
}

void DocumentTransfer::addTo(MethodTable& methods) {
    methods.add("export", {}, [this](const MethodCall&) { return exportDocument(); });
    methods.addSaved("import", {"text", "more", "dryRun"},
                     [this](const MethodCall& call) { return importDocument(call.parameters, call.peer); });
}

} // namespace kova
