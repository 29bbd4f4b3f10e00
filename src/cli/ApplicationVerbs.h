// Verbs that do not end with the response to their first request. `launch` and `scene open` wait for a notification of
// the outcome. `force-quit-all` asks the user to confirm, and then sends a second request.
#pragma once

#include "cli/Verbs.h"

#include <nlohmann/json_fwd.hpp>

namespace kova::cli {

ExitCode runLaunch(const Verb& verb, const Arguments& arguments);
/// With --wait the command ends when KOVA waits for no further window of the scene.
ExitCode runSceneOpen(const Verb& verb, const Arguments& arguments);
ExitCode runForceQuitAll(const Verb& verb, const Arguments& arguments);

} // namespace kova::cli
