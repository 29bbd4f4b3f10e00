// JSON-RPC 2.0: from a line to its requests, and from results to the line of the response.
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
    std::optional<nlohmann::json> id; // absent: a notification, which gets no response
};

/// An invalid request, with the id for the response (null if it has no readable id).
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

/// The response to the request with the id.
nlohmann::json replyTo(const nlohmann::json& id, ControlReply reply);
nlohmann::json resultReply(const nlohmann::json& id, nlohmann::json result);
nlohmann::json failureReply(const nlohmann::json& id, const ControlFailure& failure);
nlohmann::json notification(std::string_view method, nlohmann::json parameters);
/// One line of JSON; bytes that are not UTF-8 become U+FFFD.
std::string line(const nlohmann::json& message);

} // namespace kova::jsonrpc
