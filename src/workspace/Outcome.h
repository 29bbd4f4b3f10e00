// What became of an operation: done, with what there is to say about it, or refused, with the reason. Converts to
// whether it was done.
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace kova {

enum class RefusalCode {
    impossible,   // as things are now
    noPermission, // windows may not be managed, or cannot be in this session
};

class Outcome {
  public:
    static Outcome done(std::optional<std::string> message = std::nullopt) {
        Outcome outcome;
        outcome.message_ = std::move(message);
        return outcome;
    }
    static Outcome refused(std::string reason, RefusalCode code = RefusalCode::impossible) {
        Outcome outcome;
        outcome.message_ = std::move(reason);
        outcome.code_ = code;
        return outcome;
    }

    operator bool() const { return !code_; } // NOLINT: meant to be tested like the flag that it replaces
    /// What the user is told. Always there when the operation was refused.
    const std::optional<std::string>& message() const { return message_; }
    /// Absent when the operation was done.
    std::optional<RefusalCode> code() const { return code_; }

  private:
    std::optional<std::string> message_;
    std::optional<RefusalCode> code_;
};

} // namespace kova
