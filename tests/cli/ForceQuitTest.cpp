// The confirmation before all applications are ended, at a real terminal.
#include "tests/control/AgentStage.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#if defined(__APPLE__)
#include <util.h>
#else
#include <pty.h>
#endif

#include <array>
#include <csignal>

namespace kova {

namespace {

/// `kova force-quit-all` at a terminal into which the test types.
class TerminalCommand {
  public:
    TerminalCommand(const std::string& socketPath, std::function<void()> runAgentOnce) :
        runAgentOnce_(std::move(runAgentOnce)) {
        const std::string socket = "KOVA_SOCKET=" + socketPath;
        std::array<char*, 3> words{const_cast<char*>("kova"), const_cast<char*>("force-quit-all"), nullptr};
        std::array<char*, 3> variables{const_cast<char*>(socket.c_str()), const_cast<char*>("LANG=C.UTF-8"), nullptr};
        process_ = forkpty(&terminal_, nullptr, nullptr, nullptr);
        if (process_ == 0) {
            execve(KOVA_COMMAND, words.data(), variables.data());
            _exit(127);
        }
        fcntl(terminal_, F_SETFL, O_NONBLOCK);
    }
    ~TerminalCommand() {
        if (process_ > 0) kill(process_, SIGKILL);
        if (process_ > 0) waitpid(process_, nullptr, 0);
        close(terminal_);
    }
    TerminalCommand(const TerminalCommand&) = delete;
    TerminalCommand& operator=(const TerminalCommand&) = delete;

    bool waitFor(const std::string& text) {
        return waitUntil(runAgentOnce_, [&] {
            readOutput();
            return output_.find(text) != std::string::npos;
        });
    }
    void type(const std::string& text) {
        EXPECT_EQ(write(terminal_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    /// The exit code; negative if the command does not end.
    int wait() {
        int status = -1;
        const bool hasEnded = waitUntil(runAgentOnce_, [&] {
            readOutput();
            return waitpid(process_, &status, WNOHANG) == process_;
        });
        if (!hasEnded) return -1;
        process_ = 0;
        readOutput();
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    const std::string& output() const { return output_; }

  private:
    void readOutput() {
        std::array<char, 4096> piece;
        for (ssize_t length; (length = read(terminal_, piece.data(), piece.size())) > 0;) {
            for (const char c : std::string_view(piece.data(), static_cast<std::size_t>(length))) {
                if (c != '\r') output_ += c;
            }
        }
    }

    int terminal_ = -1;
    pid_t process_ = 0;
    std::function<void()> runAgentOnce_;
    std::string output_;
};

class ForceQuitAll : public testing::Test, public AgentStage {};

} // namespace

TEST_F(ForceQuitAll, AsksForConfirmationAtTheTerminal) {
    desk.desktop.launch("evil\x1b[2J\nKOVA", {}); // names come from other programs
    desk.settle();
    for (const char* answer : {"\n", "no\n", "yes please\n", "\x04"}) {
        TerminalCommand command(socketPath(), [this] { runAgentOnce(); });
        ASSERT_TRUE(command.waitFor("to force quit all: ")) << command.output();
        EXPECT_EQ(command.output(), "Force Quit All Open Applications?\n"
                                    "This immediately closes 4 applications. Unsaved changes will be lost. KOVA and "
                                    "Finder will stay open.\n\nevil?[2J KOVA\nMail\nNotes\nTerminal\n\n"
                                    "Type “yes” to force quit all: ");
        command.type(answer);
        EXPECT_EQ(command.wait(), 1) << answer;
        EXPECT_NE(command.output().find("Nothing was force quit\n"), std::string::npos) << command.output();
        desk.settle();
        EXPECT_TRUE(desk.desktop.isRunning("Mail"));
    }
    TerminalCommand command(socketPath(), [this] { runAgentOnce(); });
    ASSERT_TRUE(command.waitFor("to force quit all: ")) << command.output();
    command.type("Yes\n");
    EXPECT_EQ(command.wait(), 0);
    EXPECT_NE(command.output().find("Force quit:\n"), std::string::npos) << command.output();
    desk.settle();
    EXPECT_TRUE(desk.desktop.livingWindows().empty());

    TerminalCommand withoutApplications(socketPath(), [this] { runAgentOnce(); });
    EXPECT_EQ(withoutApplications.wait(), 0);
    EXPECT_EQ(withoutApplications.output(),
              "No Open Applications\nThere are no regular applications to close. KOVA and Finder are "
              "always kept open.\n");
}

} // namespace kova
