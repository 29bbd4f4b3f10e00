#include "commands/URLHandler.h"

#include "support/Log.h"
#include "support/Overloaded.h"
#include "workspace/WorkspaceController.h"

namespace kova {

namespace {

constexpr std::size_t kMostWithinASecond = 20;

} // namespace

URLHandler::Response URLHandler::handle(std::string_view url) {
    if (exceedsRateLimit()) {
        return {Verdict::dropped, "Too many URLs came within a second, this one was dropped"};
    }
    const auto action = parseURLAction(url);
    if (!action) return {Verdict::notUnderstood, "This URL asks for nothing that KOVA does"};
    const Outcome outcome = run(*action);
    return {outcome ? Verdict::done : Verdict::refused, outcome.message().value_or("")};
}

bool URLHandler::exceedsRateLimit() {
    constexpr Seconds kSecond{1};
    const Seconds now = queue_.uptime();
    while (!handledAt_.empty() && now - handledAt_.front() >= kSecond) handledAt_.pop_front();
    if (handledAt_.size() < kMostWithinASecond) {
        handledAt_.push_back(now);
        return false;
    }
    if (dropped_++ > 0) return true;
    // One line for all dropped URLs, so that they do not flood the log.
    queue_.after(kSecond, lifetime_.guard([this] {
        log(LogLevel::warning, "URLs came faster than " + std::to_string(kMostWithinASecond) + " a second; " +
                                   std::to_string(dropped_) + " of them " + (dropped_ == 1 ? "was" : "were") +
                                   " dropped");
        dropped_ = 0;
    }));
    return true;
}

Outcome URLHandler::run(const URLAction& action) {
    if (const auto* known = std::get_if<WorkspaceAction>(&action)) return workspace_.perform(*known);
    const auto id = workspace_.findScene(std::get<OpenSceneNamed>(action).name);
    return id ? workspace_.perform(action::ActivateScene{*id}) : Outcome::refused("There is no such scene");
}

} // namespace kova
