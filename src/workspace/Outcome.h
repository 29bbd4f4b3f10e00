// The result of an operation: done, with a message and further results, or refused, with the reason and a code. An
// outcome converts to true if the operation was done.
#pragma once

#include "workspace/ForceQuitting.h"
#include "workspace/WorkspaceRecords.h"

#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace kova {

enum class RefusalCode {
    impossible,   // in the present state
    noPermission, // the permission is missing, or KOVA cannot manage windows in this login session
};

struct DividerMovement {
    double points = 0; // how far the divider moved
};
struct ForgottenApplications {
    std::vector<std::string> names;
};
/// Further results of some actions.
using OutcomeDetails =
    std::variant<std::monostate, DividerMovement, ForgottenApplications, ForceQuitOutcome, WorkspaceImportCounts>;

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

    Outcome&& with(OutcomeDetails details) && {
        details_ = std::move(details);
        return std::move(*this);
    }

    operator bool() const { return !code_; } // NOLINT: an outcome is tested like a bool
    /// The message for the user. Always present if the operation was refused.
    const std::optional<std::string>& message() const { return message_; }
    /// Absent when the operation was done.
    std::optional<RefusalCode> code() const { return code_; }
    /// Null if the outcome has no details of this type.
    template <class Details>
    const Details* details() const {
        return std::get_if<Details>(&details_);
    }

  private:
    OutcomeDetails details_;
    std::optional<std::string> message_;
    std::optional<RefusalCode> code_;
};

} // namespace kova
