// One message of a client on its way through the main queue: its requests are carried out in their order, one a turn,
// so that a long batch holds no other client up, and a request may be answered later. Main thread only.
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
    /// Has the work run on the main queue, after what waits there already; once the server has ended it does nothing.
    using Turn = std::function<void(std::function<void()>)>;

    /// What would come after `longestBatchAnswer` bytes of answers is not carried out.
    ControlExchange(Turn turn, ControlHandling& handling, std::shared_ptr<ControlConnection> connection,
                    jsonrpc::Message message, std::size_t longestBatchAnswer);

    /// Carries out the next request; after the last one the answer goes to the client. Not after the server has ended.
    void carryOn();

  private:
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
