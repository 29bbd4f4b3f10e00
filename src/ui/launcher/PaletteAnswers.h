// The possible answers to a question of the palette. Plain values.
#pragma once

#include "ui/launcher/Entries.h"

#include <string>
#include <vector>

namespace kova::ui {

/// The agent's method that lists the possible answers; empty if the user types the answer.
std::string methodOf(Subject subject);
/// The possible answers in the method's result. Does not throw; invalid elements are left out.
std::vector<LauncherEntry> answersIn(const nlohmann::json& result, const Question& question);
/// The answer that consists of the typed text.
LauncherEntry typedAnswer(const Question& question, const QString& typed);

} // namespace kova::ui
