// Starts a program with posix_spawn.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace kova {

struct SpawnPlan {
    std::vector<std::string> words{};       // the first one is the program, by its full path
    std::vector<std::string> environment{}; // the whole environment, as NAME=value; empty: this process's
    int output = -1, error = -1;            // this process's descriptors for the program's output; -1: /dev/null
    bool isSessionOfItsOwn = false;         // true: in a new session; false: only in a new process group
};

struct Spawned {
    pid_t process = 0;
    int error = 0; // errno; 0 when the program runs
};

/// The program begins with default signals, without input, and in the current folder. It gets only the given
/// descriptors if the system supports that; otherwise it also gets all descriptors that are not marked close-on-exec.
Spawned spawn(const SpawnPlan& plan);

/// The environment of this process, as NAME=value.
std::vector<std::string> ownEnvironment();

} // namespace kova
