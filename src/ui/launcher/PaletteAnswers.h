// The possible answers to a question of the palette. Plain values.
#pragma once

#include "ui/launcher/Entries.h"

#include <string>
#include <vector>

namespace kova::ui {

/// The agent's method that lists the answers; empty where the answer is typed.
std::string methodOf(Subject subject);
/// The answers in the method's result. Does not throw; invalid entries are left out.
std::vector<LauncherEntry> answersIn(const nlohmann::json& result, const Question& question);
/// The typed text as an answer.
LauncherEntry typedAnswer(const Question& question, const QString& typed);

} // namespace kova::ui
