// Why windows are where they are, in plain words.
#pragma once

#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"
#include "workspace/WorkspaceController.h"

#include <string>
#include <vector>

namespace kova {

/// A decision of the last arrangement, and whether it still holds.
struct ExplainedDecision {
    std::string text;
    std::string now; // the present state; empty while the decision holds
};

/// In the arrangement's order; empty before the first.
std::vector<ExplainedDecision> explainLastArrangement(const WorkspaceController& controller);
/// Choices that later arrangements will respect: preferred applications, and rules that leave windows out.
std::vector<std::string> explainStandingChoices(const WorkspaceController& controller);
/// Where the window is, which rule decides for it, what the last arrangement decided and what another would decide.
std::vector<std::string> explainWindow(const WorkspaceController& controller, const ManagedWindow& window);

/// The result of `explain`.
ControlReply explain(const WorkspaceController& controller, const JsonCursor& parameters);

} // namespace kova
