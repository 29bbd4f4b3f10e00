// The verbs that need more than one request: launching and opening a scene, whose outcome comes later, and ending all
// applications, which the user confirms first.
#pragma once

#include "cli/Verbs.h"

#include <nlohmann/json_fwd.hpp>

namespace kova::cli {

ExitCode runLaunch(const Verb& verb, const Arguments& arguments);
/// With --wait it ends when no window of the scene is pending any more.
ExitCode runSceneOpen(const Verb& verb, const Arguments& arguments);
ExitCode runForceQuitAll(const Verb& verb, const Arguments& arguments);

} // namespace kova::cli
