#include "platform/macos/MacChildProcesses.h"

#include "platform/macos/Contained.h"
#include "platform/posix/Spawn.h"

#include <sys/wait.h>

#include <cerrno>
#include <utility>

namespace kova::macos {

struct MacChildProcesses::Child {
    Ended ended;
    dispatch_source_t end = nil;

    ~Child() {
        if (end) dispatch_source_cancel(end);
    }
};

MacChildProcesses::MacChildProcesses(MainQueue& queue) : queue_(queue) {}

MacChildProcesses::~MacChildProcesses() = default;

std::optional<pid_t> MacChildProcesses::start(const Command& command, Started started, Ended ended) {
    const Spawned spawned =
        spawn({.words = command.words, .environment = command.environment, .startsNewSession = true});
    if (spawned.error != 0) {
        queue_.post(lifetime_.guard([started = std::move(started), error = spawned.error] {
            started(StartFailure{StartFailure::Step::running, error});
        }));
        return std::nullopt;
    }
    const pid_t process = spawned.process;
    queue_.post(lifetime_.guard([started = std::move(started), process] { started(process); }));
    auto child = std::make_unique<Child>();
    child->ended = std::move(ended);
    // The source also fires for a process that has already ended.
    child->end = dispatch_source_create(DISPATCH_SOURCE_TYPE_PROC, static_cast<uintptr_t>(process), DISPATCH_PROC_EXIT,
                                        dispatch_get_main_queue());
    const auto reapIt = std::make_shared<std::function<void()>>(lifetime_.guard([this, process] { reap(process); }));
    dispatch_source_set_event_handler(child->end, ^{
      contained(*reapIt);
    });
    dispatch_resume(child->end);
    children_[process] = std::move(child);
    return process;
}

void MacChildProcesses::reap(pid_t process) {
    const auto found = children_.find(process);
    if (found == children_.end()) return;
    int status = 0;
    // Does not block, since the process has ended.
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    const Ended ended = std::move(found->second->ended);
    children_.erase(found);
    if (ended) ended(process, status);
}

} // namespace kova::macos
