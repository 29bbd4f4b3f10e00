#include "ui/client/OverlayMirror.h"

#include "support/Version.h"

namespace kova::ui {

namespace {

/// The longest text of a report, in bytes. The agent accepts 1000 bytes. The other 10 bytes are a reserve: shortening a
/// text may cut its last character, and the replacement character may be longer than the part that is left.
constexpr std::size_t kLongestReport = 990;

nlohmann::json memberOf(const nlohmann::json& object, const char* key) {
    const auto found = object.is_object() ? object.find(key) : object.end();
    return found == object.end() ? nlohmann::json() : *found;
}

std::string textIn(const nlohmann::json& object, const char* key) {
    const nlohmann::json member = memberOf(object, key);
    return member.is_string() ? member.get<std::string>() : std::string();
}

} // namespace

std::string OverlayMirror::connected() {
    disconnected();
    return subscribe();
}

void OverlayMirror::disconnected() {
    subscription_ = 0;
    const auto pending = std::exchange(pendingRequests_, {});
    for (const auto& [id, done] : pending) done({nullptr, "The agent has ended"});
    if (!contents_) return;
    contents_.reset();
    listener_.contentsChanged();
}

std::string OverlayMirror::subscribe() {
    subscription_ = nextRequest_;
    return request("subscribe", {{"topic", "overlay"}}, nullptr);
}

std::string OverlayMirror::request(const std::string& method, nlohmann::json parameters,
                                   std::function<void(const Response&)> done) {
    const std::uint64_t id = nextRequest_++;
    if (done) pendingRequests_[id] = std::move(done);
    const nlohmann::json message{{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", std::move(parameters)}};
    return message.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string OverlayMirror::receive(std::string_view line) {
    const nlohmann::json message = nlohmann::json::parse(line, nullptr, false);
    if (!message.is_object()) return {};
    const std::string method = textIn(message, "method");
    if (method == "changed") return receiveChanges(memberOf(message, "params"));
    if (method == "show") {
        const nlohmann::json parameters = memberOf(message, "params");
        listener_.showRequested(textIn(parameters, "what"), parameters);
        return {};
    }
    return method.empty() ? receiveResponse(message) : std::string();
}

std::string OverlayMirror::receiveResponse(const nlohmann::json& message) {
    const nlohmann::json id = memberOf(message, "id");
    if (!id.is_number_unsigned()) return {};
    Response response{memberOf(message, "result"), {}};
    if (const nlohmann::json error = memberOf(message, "error"); !error.is_null()) {
        response.error = textIn(error, "message");
        if (response.error.empty()) response.error = "The agent refused the request";
    }
    const auto number = id.get<std::uint64_t>();
    if (number == subscription_) return receiveState(response);
    if (const auto found = pendingRequests_.find(number); found != pendingRequests_.end()) {
        const auto done = std::move(found->second);
        pendingRequests_.erase(found);
        done(response);
    }
    return {};
}

std::string OverlayMirror::receiveState(const Response& response) {
    subscription_ = 0;
    if (!response.error.empty()) return rejectContents("The agent publishes no overlay: " + response.error);
    try {
        const JsonCursor result(response.result, "");
        OverlayContents updated;
        const JsonCursor state = result.required("state");
        // The version is decoded first, because sections of another version may not be decodable.
        const nlohmann::json version{{"version", state.required("version").value()}};
        applySections(updated, JsonCursor(version, "state"));
        if (updated.version.contract != kOverlayContract) {
            return rejectContents("kova-ui " KOVA_VERSION " does not fit kova-agent " + updated.version.agent +
                                  ". Install the same version of both, then run “kova ui restart”");
        }
        applySections(updated, state);
        sequence_ = static_cast<std::uint64_t>(result.required("sequence").integer());
        contents_ = std::move(updated);
        sections_ = state.value();
    } catch (const DecodingError& error) {
        return rejectContents(std::string("The overlay contents that the agent sent cannot be decoded: ") +
                              error.what());
    }
    listener_.contentsChanged();
    return {};
}

std::string OverlayMirror::receiveChanges(const nlohmann::json& parameters) {
    if (const std::string topic = textIn(parameters, "topic"); !topic.empty() && topic != "overlay") return {};
    // Changes that arrive before the requested state are already part of that state.
    if (!contents_ || subscription_ != 0) return {};
    try {
        const JsonCursor at(parameters, "");
        if (static_cast<std::uint64_t>(at.required("sequence").integer()) != sequence_ + 1) return subscribe();
        const JsonCursor changes = at.required("changes");
        mergeChanges(sections_, changes);
        nlohmann::json changedSections = nlohmann::json::object();
        for (const auto& [name, change] : changes.members()) changedSections[name] = sections_[name];
        OverlayContents updated = *contents_;
        applySections(updated, JsonCursor(changedSections, "changes"));
        ++sequence_;
        if (updated == *contents_) return {};
        contents_ = std::move(updated);
    } catch (const DecodingError& error) {
        return rejectContents(std::string("The overlay contents that the agent sent cannot be decoded: ") +
                              error.what());
    }
    listener_.contentsChanged();
    return {};
}

std::string OverlayMirror::rejectContents(const std::string& reason) {
    const bool hadContents = contents_.has_value();
    contents_.reset();
    if (hadContents) listener_.contentsChanged();
    listener_.contentsRejected(reason);
    return request("ui.report", {{"problem", reason.substr(0, kLongestReport)}}, nullptr);
}

} // namespace kova::ui
