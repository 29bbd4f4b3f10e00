#include "control/ControlExchange.h"

#include "control/client/ControlCodes.h"
#include "support/Decoded.h"

#include <exception>
#include <string>
#include <utility>
#include <variant>

namespace kova {

namespace {

ControlFailure batchTooLarge(std::size_t bytes) {
    return {controlCode::refused,
            "Not carried out: the answers to this batch are larger than " + std::to_string(bytes >> 20) +
                " MiB; send its requests one by one",
            nullptr};
}

} // namespace

ControlExchange::ControlExchange(Post post, ControlHandling& handling, std::shared_ptr<ControlConnection> connection,
                                 jsonrpc::Message message, std::size_t longestBatchResponse) :
    post_(std::move(post)),
    handling_(handling), connection_(std::move(connection)), message_(std::move(message)),
    longestBatchResponse_(longestBatchResponse) {}

void ControlExchange::carryOutNext() {
    const auto& entry = message_.entries[nextEntry_];
    if (const auto* request = std::get_if<jsonrpc::Request>(&entry)) return carryOutWhenCurrent(*request);
    const auto& invalid = std::get<jsonrpc::Invalid>(entry);
    const auto reply = jsonrpc::failureReply(invalid.id, invalid.failure);
    respond(&reply);
}

void ControlExchange::carryOutWhenCurrent(const jsonrpc::Request& request) {
    // `ready` may be called after the server has ended. Then `post_` drops the request.
    auto ready = [self = shared_from_this(), &request] { self->post_([self, &request] { self->carryOut(request); }); };
    if (!handling_.deferUntilCurrent(request.call, std::move(ready))) carryOut(request);
}

void ControlExchange::carryOut(const jsonrpc::Request& request) {
    const ControlResponder respond = [self = shared_from_this(), id = request.id](ControlReply reply) {
        if (!id) return self->respond(nullptr);
        const auto line = jsonrpc::replyTo(*id, std::move(reply));
        self->respond(&line);
    };
    if (responseBytes_ > longestBatchResponse_) return respond(batchTooLarge(longestBatchResponse_));
    try {
        handling_.handle(request.call, connection_, respond);
    } catch (const DecodingError& error) {
        respond(ControlFailure{controlCode::invalidParameters, error.what(), nullptr});
    } catch (const std::exception& error) {
        respond(ControlFailure{controlCode::internalError, std::string("Internal error: ") + error.what(), nullptr});
    }
}

/// `reply` is null for a notification, which gets no response.
void ControlExchange::respond(const nlohmann::json* reply) {
    std::string response = reply ? jsonrpc::line(*reply) : std::string();
    responseBytes_ += response.size();
    if (++nextEntry_ == message_.entries.size())
        return connection_->finishMessage(std::move(response), message_.isBatch);
    connection_->addToBatch(response);
    post_([self = shared_from_this()] { self->carryOutNext(); });
}

} // namespace kova
