#include "app/SystemDockAutoHideService.h"

#include <utility>

namespace kova {

namespace {

std::string trimmed(const std::string& text) {
    constexpr const char* kBlank = " \t\r\n";
    const auto first = text.find_first_not_of(kBlank);
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

DockAutoHideServiceError failure(const std::string& program, const ProcessOutcome& outcome) {
    // Most programs write errors to standard error, some to standard output.
    std::string message = trimmed(outcome.problem);
    if (message.empty()) message = trimmed(outcome.output);
    if (message.empty()) {
        switch (outcome.ending) {
        case ProcessOutcome::Ending::exited:
            message = "it ended with exit code " + std::to_string(outcome.exitCode);
            break;
        case ProcessOutcome::Ending::killed:
            message = "it was ended by a signal";
            break;
        case ProcessOutcome::Ending::notStarted:
            message = "it could not be started";
            break;
        case ProcessOutcome::Ending::timedOut:
            message = "it did not end in time";
            break;
        }
    }
    return DockAutoHideServiceError::commandFailed(program.substr(program.find_last_of('/') + 1), message);
}

} // namespace

void SystemDockAutoHideService::readAutoHide(ReadCompletion completion) {
    workQueue_.post([&runner = runner_, &queue = queue_, commands = commands_, completion = std::move(completion)] {
        const auto outcome = runner.run(commands.defaults, {"read", "com.apple.dock", "autohide"}, kDeadline);
        std::variant<bool, DockAutoHideServiceError> answer = false;
        if (outcome.hasSucceeded()) {
            const std::string value = trimmed(outcome.output);
            answer = value == "1" || value == "true" || value == "YES";
        } else if (outcome.ending != ProcessOutcome::Ending::exited) {
            answer = failure(commands.defaults, outcome);
        } // else the command failed because the value was never set: the Dock does not hide
        queue.post([completion, answer] { completion(answer); });
    });
}

void SystemDockAutoHideService::writeAutoHide(bool hides, WriteCompletion completion) {
    workQueue_.post(
        [&runner = runner_, &queue = queue_, commands = commands_, hides, completion = std::move(completion)] {
            std::optional<DockAutoHideServiceError> error;
            const auto run = [&](const std::string& program, const std::vector<std::string>& arguments) {
                const auto outcome = runner.run(program, arguments, kDeadline);
                if (!outcome.hasSucceeded()) error = failure(program, outcome);
                return !error;
            };
            if (run(commands.defaults, {"write", "com.apple.dock", "autohide", "-bool", hides ? "true" : "false"})) {
                run(commands.killall, {"Dock"});
            }
            queue.post([completion, error] { completion(error); });
        });
}

} // namespace kova
