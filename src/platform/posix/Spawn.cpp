#include "platform/posix/Spawn.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <unistd.h>

extern char** environ;

namespace kova {

namespace {

std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (const auto& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

/// The descriptors of the new process. Frees the memory that the functions of posix_spawn allocate.
struct FileActions {
    posix_spawn_file_actions_t actions{};
    FileActions() { posix_spawn_file_actions_init(&actions); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { posix_spawn_file_actions_destroy(&actions); }
    /// Makes `descriptor` of this process the descriptor `as` of the new process; -1 stands for /dev/null.
    void use(int descriptor, int as) {
        if (descriptor >= 0) {
            posix_spawn_file_actions_adddup2(&actions, descriptor, as);
        } else {
            posix_spawn_file_actions_addopen(&actions, as, "/dev/null", O_RDWR, 0);
        }
    }
};

struct Attributes {
    posix_spawnattr_t value{};
    Attributes() { posix_spawnattr_init(&value); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;
    ~Attributes() { posix_spawnattr_destroy(&value); }
};

} // namespace

Spawned spawn(const SpawnPlan& plan) {
    FileActions files;
    files.use(-1, STDIN_FILENO);
    files.use(plan.output, STDOUT_FILENO);
    files.use(plan.error, STDERR_FILENO);

    Attributes attributes;
    sigset_t blocked; // no signals
    sigemptyset(&blocked);
    sigset_t toReset; // the signals that an agent ignores or handles
    sigemptyset(&toReset);
    for (const int signal : {SIGPIPE, SIGTERM, SIGINT, SIGHUP}) sigaddset(&toReset, signal);
    posix_spawnattr_setsigmask(&attributes.value, &blocked);
    posix_spawnattr_setsigdefault(&attributes.value, &toReset);
    int flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
#if defined(POSIX_SPAWN_CLOEXEC_DEFAULT)
    flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
#endif
#if defined(POSIX_SPAWN_SETSID)
    if (plan.startsNewSession) flags |= POSIX_SPAWN_SETSID;
#endif
    if (!plan.startsNewSession) {
        posix_spawnattr_setpgroup(&attributes.value, 0);
        flags |= POSIX_SPAWN_SETPGROUP;
    }
    posix_spawnattr_setflags(&attributes.value, static_cast<short>(flags));

    const auto words = pointersTo(plan.words);
    const auto environment = pointersTo(plan.environment);
    Spawned spawned;
    spawned.error = posix_spawn(&spawned.process, words[0], &files.actions, &attributes.value, words.data(),
                                plan.environment.empty() ? environ : environment.data());
    return spawned;
}

std::vector<std::string> ownEnvironment() {
    std::vector<std::string> environment;
    for (char** variable = environ; variable && *variable; ++variable) environment.emplace_back(*variable);
    return environment;
}

} // namespace kova
