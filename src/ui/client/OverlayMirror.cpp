#include "ui/client/OverlayMirror.h"

#include "support/Version.h"

namespace kova::ui {

namespace {

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
    const auto waiting = std::exchange(waiting_, {});
    for (const auto& [id, done] : waiting) done({nullptr, "The agent has ended"});
    if (!contents_) return;
    contents_.reset();
    listener_.contentsChanged();
}

std::string OverlayMirror::subscribe() {
    subscription_ = nextRequest_;
    return request("subscribe", {{"topic", "overlay"}}, nullptr);
}

std::string OverlayMirror::request(const std::string& method, nlohmann::json parameters,
                                   std::function<void(const Answer&)> done) {
    const std::uint64_t id = nextRequest_++;
    if (done) waiting_[id] = std::move(done);
    const nlohmann::json message{{"jsonrpc", "2.0"}, {"id", id}, {"method", method}, {"params", std::move(parameters)}};
    return message.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string OverlayMirror::receive(std::string_view line) {
    const nlohmann::json message = nlohmann::json::parse(line, nullptr, false);
    if (!message.is_object()) return {};
    const std::string method = textIn(message, "method");
    if (method == "changed") return takeChanges(memberOf(message, "params"));
    if (method == "show") {
        const nlohmann::json parameters = memberOf(message, "params");
        listener_.showRequested(textIn(parameters, "what"), parameters);
        return {};
    }
    return method.empty() ? takeAnswer(message) : std::string();
}

std::string OverlayMirror::takeAnswer(const nlohmann::json& message) {
    const nlohmann::json id = memberOf(message, "id");
    if (!id.is_number_unsigned()) return {};
    Answer answer{memberOf(message, "result"), {}};
    if (const nlohmann::json error = memberOf(message, "error"); !error.is_null()) {
        answer.error = textIn(error, "message");
        if (answer.error.empty()) answer.error = "The agent refused the request";
    }
    const auto number = id.get<std::uint64_t>();
    if (number == subscription_) return takeState(answer);
    if (const auto found = waiting_.find(number); found != waiting_.end()) {
        const auto done = std::move(found->second);
        waiting_.erase(found);
        done(answer);
    }
    return {};
}

std::string OverlayMirror::takeState(const Answer& answer) {
    subscription_ = 0;
    if (!answer.error.empty()) return refuse("The agent publishes no overlay: " + answer.error);
    try {
        const JsonCursor result(answer.result, "");
        OverlayContents told;
        const JsonCursor state = result.required("state");
        // First, since another version may have sections that cannot be decoded.
        const nlohmann::json version{{"version", state.required("version").value()}};
        applySections(told, JsonCursor(version, "state"));
        if (told.version.contract != kOverlayContract) {
            return refuse("kova-ui " KOVA_VERSION " does not fit kova-agent " + told.version.agent +
                          ". Install the same version of both, then run “kova ui restart”");
        }
        applySections(told, state);
        sequence_ = static_cast<std::uint64_t>(result.required("sequence").integer());
        contents_ = std::move(told);
        sections_ = state.value();
    } catch (const DecodingError& error) {
        return refuse(std::string("The overlay contents that the agent sent cannot be decoded: ") + error.what());
    }
    listener_.contentsChanged();
    return {};
}

std::string OverlayMirror::takeChanges(const nlohmann::json& parameters) {
    if (const std::string topic = textIn(parameters, "topic"); !topic.empty() && topic != "overlay") return {};
    // Until the state is there, changes are older than it.
    if (!contents_ || subscription_ != 0) return {};
    try {
        const JsonCursor at(parameters, "");
        if (static_cast<std::uint64_t>(at.required("sequence").integer()) != sequence_ + 1) return subscribe();
        const JsonCursor changes = at.required("changes");
        mergeChanges(sections_, changes);
        nlohmann::json renewed = nlohmann::json::object();
        for (const auto& [name, change] : changes.members()) renewed[name] = sections_[name];
        OverlayContents told = *contents_;
        applySections(told, JsonCursor(renewed, "changes"));
        ++sequence_;
        if (told == *contents_) return {};
        contents_ = std::move(told);
    } catch (const DecodingError& error) {
        return refuse(std::string("The overlay contents that the agent sent cannot be decoded: ") + error.what());
    }
    listener_.contentsChanged();
    return {};
}

std::string OverlayMirror::refuse(const std::string& reason) {
    const bool hadContents = contents_.has_value();
    contents_.reset();
    if (hadContents) listener_.contentsChanged();
    listener_.notUnderstood(reason);
    return request("ui.report", {{"problem", reason}}, nullptr);
}

} // namespace kova::ui
