// One message of a client on the main queue: its requests are carried out in order, one per turn, so that a long batch
// delays no other client. A response may come later. Main thread only.
#pragma once

#include "control/ControlConnection.h"
#include "control/ControlHandling.h"
#include "control/JsonRpc.h"

#include <cstddef>
#include <functional>
#include <memory>

namespace kova {

class ControlExchange : public std::enable_shared_from_this<ControlExchange> {
  public:
    /// Posts work to the main queue; no-op once the server has ended.
    using Turn = std::function<void(std::function<void()>)>;

    /// Requests of a batch after `longestBatchAnswer` bytes of responses are not carried out.
    ControlExchange(Turn turn, ControlHandling& handling, std::shared_ptr<ControlConnection> connection,
                    jsonrpc::Message message, std::size_t longestBatchAnswer);

    /// Carries out the next request; after the last one the answer goes to the client. Not after the server has ended.
    void carryOn();

  private:
    void handleInTime(const jsonrpc::Request& request);
    void carryOut(const jsonrpc::Request& request);
    void answered(const nlohmann::json* reply);

    const Turn turn_;
    ControlHandling& handling_;
    const std::shared_ptr<ControlConnection> connection_;
    const jsonrpc::Message message_;
    const std::size_t longestBatchAnswer_;
    std::size_t at_ = 0;
    std::size_t answerBytes_ = 0; // so far; the connection holds them
};

} // namespace kova
