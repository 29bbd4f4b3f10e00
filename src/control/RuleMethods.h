// Rules for windows, as methods of the socket.
#pragma once

#include "control/ControlHandling.h"
#include "support/JsonDecoding.h"
#include "workspace/WorkspaceController.h"

#include <cstdint>

namespace kova {

inline constexpr std::int64_t kMostRules = 1'000'000; // the largest place that a rule can be moved to

/// Lists the rules in their order; the first rule that matches a window decides.
ControlReply listRules(const WorkspaceController& controller);
ControlReply addRule(WorkspaceController& controller, const JsonCursor& parameters);
/// Changes a rule's disposition, its title text, or both; its name, position and application stay.
ControlReply changeRule(WorkspaceController& controller, const JsonCursor& parameters);
enum class RuleSwitch { disable, enable };
ControlReply switchRule(WorkspaceController& controller, const JsonCursor& parameters, RuleSwitch direction);
ControlReply deleteRule(WorkspaceController& controller, const JsonCursor& parameters);
ControlReply moveRule(WorkspaceController& controller, const JsonCursor& parameters);
enum class RulesSwitch { off, on };
ControlReply switchRules(WorkspaceController& controller, RulesSwitch direction);
/// Which rule decides for a window, and the result of the others.
ControlReply testRules(const WorkspaceController& controller, const JsonCursor& parameters);

} // namespace kova
