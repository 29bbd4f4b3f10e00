#include "control/JsonRpc.h"

#include "control/client/ControlCodes.h"
#include "support/JsonDecoding.h"

namespace kova::jsonrpc {

namespace {

using nlohmann::json;

constexpr std::size_t kLongestReason = 200; // bytes

Invalid invalidRequest(json id, std::string reason) {
    return {std::move(id), {controlCode::invalidRequest, "Invalid request: " + std::move(reason), nullptr}};
}

Entry readRequest(json& document) {
    if (!document.is_object()) return invalidRequest(nullptr, "a request is an object");
    json id = nullptr;
    const bool hasID = document.contains("id");
    if (hasID) {
        id = document["id"];
        if (!id.is_string() && !id.is_number() && !id.is_null()) {
            return invalidRequest(nullptr, "“id” is a string, a number or null");
        }
    }
    const auto version = document.find("jsonrpc");
    if (version == document.end() || *version != "2.0") return invalidRequest(id, "“jsonrpc” is \"2.0\"");
    const auto method = document.find("method");
    if (method == document.end() || !method->is_string()) return invalidRequest(id, "“method” is a string");

    Request request{{method->get<std::string>(), json::object()}, std::nullopt};
    if (const auto parameters = document.find("params"); parameters != document.end()) {
        if (!parameters->is_object() && !parameters->is_array()) {
            return invalidRequest(id, "“params” is an object");
        }
        if (!parameters->empty()) request.call.parameters = std::move(*parameters);
    }
    if (hasID) request.id = std::move(id);
    return request;
}

} // namespace

Message readMessage(std::string_view line) {
    json document;
    try {
        document = parseJson(line);
    } catch (const DecodingError& error) {
        // The reason is cut, since it quotes the last token, which may be the whole line.
        const std::string reason = std::string(error.what()).substr(0, kLongestReason);
        return {false, {Invalid{nullptr, {controlCode::parseError, "Parse error: " + reason, nullptr}}}};
    }
    if (!document.is_array()) return {false, {readRequest(document)}};
    if (document.empty()) return {false, {invalidRequest(nullptr, "a batch holds at least one request")}};
    if (document.size() > kLargestBatch) {
        return {false,
                {invalidRequest(nullptr, "a batch holds at most " + std::to_string(kLargestBatch) + " requests")}};
    }
    Message message{true, {}};
    for (json& element : document) message.entries.push_back(readRequest(element));
    return message;
}

json resultReply(const json& id, json result) {
    return {{"jsonrpc", "2.0"}, {"id", id}, {"result", std::move(result)}};
}

json failureReply(const json& id, const ControlFailure& failure) {
    json error = {{"code", failure.code}, {"message", failure.message}};
    if (!failure.data.is_null()) error["data"] = failure.data;
    return {{"jsonrpc", "2.0"}, {"id", id}, {"error", std::move(error)}};
}

json replyTo(const json& id, ControlReply reply) {
    if (!reply) return failureReply(id, reply.error());
    return resultReply(id, std::move(*reply));
}

json notification(std::string_view method, json parameters) {
    return {{"jsonrpc", "2.0"}, {"method", method}, {"params", std::move(parameters)}};
}

std::string line(const json& message) {
    return message.dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace kova::jsonrpc
