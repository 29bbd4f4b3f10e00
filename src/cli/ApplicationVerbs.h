// The verbs that take more than one question and an answer: launching, whose outcome comes later, and ending all
// applications, which a person has to confirm.
#pragma once

#include "cli/Verbs.h"

#include <nlohmann/json_fwd.hpp>

namespace kova::cli {

ExitCode runLaunch(const Verb& verb, const Arguments& arguments, const nlohmann::json& parameters);
/// With --wait it ends when no window of the scene is awaited any more.
ExitCode runSceneOpen(const Verb& verb, const Arguments& arguments, const nlohmann::json& parameters);
ExitCode runForceQuitAll(const Verb& verb, const Arguments& arguments);

} // namespace kova::cli
