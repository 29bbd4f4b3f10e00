// JSON-RPC 2.0: reads the requests of a line, and writes responses and notifications as lines.
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

/// An invalid request.
struct Invalid {
    nlohmann::json id; // for the response; null if the request has no readable id
    ControlFailure failure;
};

using Entry = std::variant<Request, Invalid>;

/// The requests of one line, in their order. A line that cannot be read gives one `Invalid`.
struct Message {
    bool isBatch = false;
    std::vector<Entry> entries;
};

Message readMessage(std::string_view line);

/// The response to the request with this id.
nlohmann::json replyTo(const nlohmann::json& id, ControlReply reply);
nlohmann::json resultReply(const nlohmann::json& id, nlohmann::json result);
nlohmann::json failureReply(const nlohmann::json& id, const ControlFailure& failure);
nlohmann::json notification(std::string_view method, nlohmann::json parameters);
/// The message as JSON in one line, without a line break; bytes that are not UTF-8 become U+FFFD.
std::string line(const nlohmann::json& message);

} // namespace kova::jsonrpc
