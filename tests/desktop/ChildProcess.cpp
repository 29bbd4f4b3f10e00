#include "tests/desktop/ChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <utility>

namespace kova::testing {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

ChildProcess::ChildProcess(const std::vector<std::string>& command, const std::vector<std::string>& environment,
                           int inherited) {
    auto arguments = command, variables = environment;
    const auto argumentPointers = pointersTo(arguments);
    const auto variablePointers = pointersTo(variables);
    process_ = fork();
    if (process_ != 0) return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (inherited >= 0) fcntl(inherited, F_SETFD, 0);
    const int quiet = open("/dev/null", O_RDWR);
    for (const int descriptor : {0, 1, 2}) dup2(quiet, descriptor);
    execvpe(argumentPointers[0], argumentPointers.data(), variablePointers.data());
    _exit(127);
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept : process_(std::exchange(other.process_, -1)) {}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
    std::swap(process_, other.process_);
    return *this;
}

ChildProcess::~ChildProcess() {
    end();
}

void ChildProcess::end() {
    if (process_ <= 0) return;
    kill(process_, SIGKILL);
    waitpid(std::exchange(process_, -1), nullptr, 0);
}

int ChildProcess::wait() {
    int status = 0;
    if (process_ <= 0 || waitpid(std::exchange(process_, -1), &status, 0) < 0) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace kova::testing
