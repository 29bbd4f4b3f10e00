// Platform interface to the system's Dock, which may hide itself so that tiles have the whole screen.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace kova {

/// A command that reads or changes the Dock could not be run, or failed.
struct DockAutoHideServiceError {
    std::string command; // its name without the folder
    std::string message; // its error output, or why it could not be run

    static DockAutoHideServiceError commandFailed(std::string command, std::string message) {
        return {std::move(command), std::move(message)};
    }
    /// For the user: "Unable to run defaults: ...".
    std::string description() const { return "Unable to run " + command + (message.empty() ? "" : ": " + message); }

    bool operator==(const DockAutoHideServiceError&) const = default;
};

/// Main thread. Nothing here waits: each completion is called once, on the main thread and after the call has returned.
/// The calls are carried out one after the other, in their order.
class DockAutoHideServicing {
  public:
    using ReadCompletion = std::function<void(const std::variant<bool, DockAutoHideServiceError>&)>;
    using WriteCompletion = std::function<void(const std::optional<DockAutoHideServiceError>&)>;

    virtual ~DockAutoHideServicing() = default;
    /// Why this desktop has no such preference, in one sentence; absent if it has one. Call the functions below only if
    /// this is absent.
    virtual std::optional<std::string> unavailableReason() const { return std::nullopt; }
    /// Reads whether the Dock hides itself.
    virtual void readAutoHide(ReadCompletion completion) = 0;
    /// Changes whether the Dock hides itself, which takes a moment. Completes without an error when it is done.
    virtual void writeAutoHide(bool hides, WriteCompletion completion) = 0;
};

} // namespace kova
