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

ControlExchange::ControlExchange(Turn turn, ControlHandling& handling, std::shared_ptr<ControlConnection> connection,
                                 jsonrpc::Message message, std::size_t longestBatchAnswer) :
    turn_(std::move(turn)),
    handling_(handling), connection_(std::move(connection)), message_(std::move(message)),
    longestBatchAnswer_(longestBatchAnswer) {}

void ControlExchange::carryOn() {
    const auto& entry = message_.entries[at_];
    if (const auto* request = std::get_if<jsonrpc::Request>(&entry)) return handleInTime(*request);
    const auto& invalid = std::get<jsonrpc::Invalid>(entry);
    const auto reply = jsonrpc::failureReply(invalid.id, invalid.failure);
    answered(&reply);
}

void ControlExchange::handleInTime(const jsonrpc::Request& request) {
    // Posted, since the server may end before the response.
    auto ready = [self = shared_from_this(), &request] { self->turn_([self, &request] { self->carryOut(request); }); };
    if (!handling_.mustWait(request.call, std::move(ready))) carryOut(request);
}

void ControlExchange::carryOut(const jsonrpc::Request& request) {
    const ControlAnswer answer = [self = shared_from_this(), id = request.id](ControlReply reply) {
        if (!id) return self->answered(nullptr);
        const auto line = jsonrpc::replyTo(*id, std::move(reply));
        self->answered(&line);
    };
    if (answerBytes_ > longestBatchAnswer_) return answer(batchTooLarge(longestBatchAnswer_));
    try {
        handling_.handle(request.call, connection_, answer);
    } catch (const DecodingError& error) {
        answer(ControlFailure{controlCode::invalidParameters, error.what(), nullptr});
    } catch (const std::exception& error) {
        answer(ControlFailure{controlCode::internalError, std::string("Internal error: ") + error.what(), nullptr});
    }
}

/// Null for a notification, which has no answer.
void ControlExchange::answered(const nlohmann::json* reply) {
    std::string answer = reply ? jsonrpc::line(*reply) : std::string();
    answerBytes_ += answer.size();
    if (++at_ == message_.entries.size()) return connection_->finishMessage(std::move(answer), message_.isBatch);
    connection_->addToBatch(answer);
    turn_([self = shared_from_this()] { self->carryOn(); });
}

} // namespace kova
