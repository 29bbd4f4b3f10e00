// Starts a program with posix_spawn.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace kova {

struct SpawnPlan {
    std::vector<std::string> words{};       // the first one is the program, by its full path
    std::vector<std::string> environment{}; // the whole environment, as NAME=value; empty: that of this process
    int output = -1, error = -1;            // descriptors that the program's two outputs go to; -1: /dev/null
    bool startsNewSession = false;          // false: only a new process group
};

struct Spawned {
    pid_t process = 0;
    int error = 0; // errno; 0 if the program was started
};

/// The program starts with the default signal handling, without input, and in the current folder. It gets only the
/// given descriptors if the system supports that; otherwise it also gets all descriptors that are not marked
/// close-on-exec.
Spawned spawn(const SpawnPlan& plan);

/// The environment of this process, as NAME=value.
std::vector<std::string> ownEnvironment();

} // namespace kova
