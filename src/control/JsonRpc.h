// The envelope of JSON-RPC 2.0: from a line to the requests in it, and from results to the line that answers them.
#pragma once

#include "control/ControlHandling.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kova::jsonrpc {

inline constexpr std::size_t kLargestBatch = 100;

struct Request {
    ControlRequest call;
    std::optional<nlohmann::json> id; // absent: a notification, which nobody answers
};

/// A request that is not one, with the id to answer under (null when it has none that can be told).
struct Invalid {
    nlohmann::json id;
    ControlFailure failure;
};

using Entry = std::variant<Request, Invalid>;

/// The requests of one line, in their order. A line that cannot be read is one `Invalid`.
struct Message {
    bool isBatch = false;
    std::vector<Entry> entries;
};

Message readMessage(std::string_view line);

nlohmann::json resultReply(const nlohmann::json& id, nlohmann::json result);
nlohmann::json failureReply(const nlohmann::json& id, const ControlFailure& failure);
nlohmann::json notification(std::string_view method, nlohmann::json parameters);
/// One line of JSON; bytes that are not UTF-8 become U+FFFD.
std::string line(const nlohmann::json& message);

/// The line that answers the message, when `handle` gives the reply to each request; empty when nobody expects one.
template <class Handle>
std::string answer(const Message& message, Handle handle) {
    nlohmann::json replies = nlohmann::json::array();
    for (const Entry& entry : message.entries) {
        if (const auto* invalid = std::get_if<Invalid>(&entry)) {
            replies.push_back(failureReply(invalid->id, invalid->failure));
            continue;
        }
        const auto& request = std::get<Request>(entry);
        ControlReply reply = handle(request.call);
        if (!request.id) continue;
        if (const auto* failure = std::get_if<ControlFailure>(&reply)) {
            replies.push_back(failureReply(*request.id, *failure));
        } else {
            replies.push_back(resultReply(*request.id, std::move(std::get<nlohmann::json>(reply))));
        }
    }
    if (replies.empty()) return {};
    return line(message.isBatch ? replies : replies.front());
}

} // namespace kova::jsonrpc
