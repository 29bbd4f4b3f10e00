#include "commands/URLHandler.h"

#include "support/Log.h"
#include "support/Overloaded.h"
#include "workspace/WorkspaceController.h"

namespace kova {

namespace {

constexpr std::size_t kMostWithinASecond = 20;

} // namespace

URLHandler::Outcome URLHandler::handle(std::string_view url) {
    if (isOneTooMany()) return Outcome::dropped;
    const auto action = parseURLAction(url);
    if (!action) return Outcome::notUnderstood;
    return run(*action) ? Outcome::done : Outcome::refused;
}

bool URLHandler::isOneTooMany() {
    constexpr Seconds kSecond{1};
    const Seconds now = queue_.uptime();
    while (!handledAt_.empty() && now - handledAt_.front() >= kSecond) handledAt_.pop_front();
    if (handledAt_.size() < kMostWithinASecond) {
        handledAt_.push_back(now);
        return false;
    }
    if (dropped_++ > 0) return true;
    // One line for a whole flood, which must not become a flood of the log.
    queue_.after(kSecond, lifetime_.guard([this] {
        log(LogLevel::warning, "URLs came faster than " + std::to_string(kMostWithinASecond) + " a second; " +
                                   std::to_string(dropped_) + " of them " + (dropped_ == 1 ? "was" : "were") +
                                   " dropped");
        dropped_ = 0;
    }));
    return true;
}

bool URLHandler::run(const URLAction& action) {
    return std::visit(Overloaded{[&](const WorkspaceAction& known) { return workspace_.perform(known); },
                                 [&](const OpenSceneNamed& scene) {
                                     const auto id = workspace_.findScene(scene.name);
                                     return id && workspace_.perform(action::ActivateScene{*id});
                                 }},
                      action);
}

} // namespace kova
