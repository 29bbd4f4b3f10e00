// Runs the real command line against an agent that lives in the test.
#pragma once

#include "tests/control/SocketClient.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace kova {

/// The folder of the log, relative to the folder that a test sets as both HOME and XDG_STATE_HOME.
#if defined(__APPLE__)
inline const std::string kLogFolder = "Library/Logs/KOVA/";
#else
inline const std::string kLogFolder = "kova/";
#endif

/// A command that was started. The destructor kills it. `runAgentOnce` lets the agent in the test process handle its
/// pending events.
class RunningCommand {
  public:
    RunningCommand(const std::vector<std::string>& arguments, const std::vector<std::string>& environment,
                   std::function<void()> runAgentOnce, const char* program = KOVA_COMMAND) :
        runAgentOnce_(std::move(runAgentOnce)) {
        openPipe(out_);
        openPipe(err_);
        std::vector<char*> words{const_cast<char*>(program)};
        for (const auto& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
        words.push_back(nullptr);
        std::vector<char*> variables;
        for (const auto& variable : environment) variables.push_back(const_cast<char*>(variable.c_str()));
        variables.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, out_[1], STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, err_[1], STDERR_FILENO);
        const int error = posix_spawnp(&process_, program, &actions, nullptr, words.data(), variables.data());
        posix_spawn_file_actions_destroy(&actions);
        close(out_[1]);
        close(err_[1]);
        if (error != 0) throw std::runtime_error(std::string("cannot run ") + program);
    }
    ~RunningCommand() {
        stop();
        close(out_[0]);
        close(err_[0]);
    }
    RunningCommand(const RunningCommand&) = delete;
    RunningCommand& operator=(const RunningCommand&) = delete;

    bool waitForOutput(const std::string& text) {
        return waitUntil(runAgentOnce_, [&] {
            drain();
            return out.find(text) != std::string::npos;
        });
    }
    /// The exit code; negative if the command was still running after ten seconds, or was ended by a signal.
    int wait() {
        waitUntil(runAgentOnce_, [&] {
            drain();
            if (process_ > 0 && waitpid(process_, &status_, WNOHANG) == process_) process_ = 0;
            return process_ == 0;
        });
        stop();
        drain();
        return WIFEXITED(status_) ? WEXITSTATUS(status_) : -1;
    }
    void stop() {
        if (process_ <= 0) return;
        kill(process_, SIGKILL);
        waitpid(process_, &status_, 0);
        process_ = 0;
    }

    std::string out;
    std::string err;

  private:
    static void openPipe(std::array<int, 2>& ends) {
        if (pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
        for (const int end : ends) {
            (void)fcntl(end, F_SETFD, FD_CLOEXEC);
            (void)fcntl(end, F_SETFL, O_NONBLOCK);
        }
    }
    void drain() {
        for (const auto& [pipe, text] : {std::pair{out_[0], &out}, std::pair{err_[0], &err}}) {
            std::array<char, 4096> piece;
            for (ssize_t length; (length = read(pipe, piece.data(), piece.size())) > 0;) {
                text->append(piece.data(), static_cast<std::size_t>(length));
            }
        }
    }

    std::array<int, 2> out_{}, err_{};
    pid_t process_ = 0;
    int status_ = 0;
    std::function<void()> runAgentOnce_;
};

} // namespace kova
