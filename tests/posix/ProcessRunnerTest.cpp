#include "platform/posix/ProcessRunner.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>

namespace kova {
namespace {

using namespace std::chrono_literals;
using Ending = ProcessOutcome::Ending;

TEST(ProcessRunner, ReportsExitStatusAndOutput) {
    struct Case {
        const char* name;
        std::string program;
        std::vector<std::string> arguments;
        Ending ending;
        int exitCode;
        std::string output, problem;
    };
    const std::vector<Case> cases = {
        {"success", "/bin/sh", {"-c", "echo out; echo err >&2"}, Ending::exited, 0, "out\n", "err\n"},
        {"arguments are passed unchanged",
         "/bin/sh",
         {"-c", "printf '%s|' \"$@\"", "-", "a b", "", "$x"},
         Ending::exited,
         0,
         "a b||$x|",
         ""},
        {"failed", "/bin/sh", {"-c", "exit 7"}, Ending::exited, 7, "", ""},
        {"no input", "/bin/cat", {}, Ending::exited, 0, "", ""},
        {"killed", "/bin/sh", {"-c", "kill -TERM $$; sleep 9"}, Ending::killed, 0, "", ""},
        {"missing program", "/nonexistent/program", {}, Ending::notStarted, 0, "", "No such file or directory"},
        {"leaves a child behind", "/bin/sh", {"-c", "sleep 9 & echo mine"}, Ending::exited, 0, "mine\n", ""},
    };
    for (const Case& c : cases) {
        const auto outcome = ProcessRunner().run(c.program, c.arguments, 8s);
        EXPECT_EQ(outcome.ending, c.ending) << c.name;
        EXPECT_EQ(outcome.exitCode, c.exitCode) << c.name;
        EXPECT_EQ(outcome.output, c.output) << c.name;
        EXPECT_EQ(outcome.problem, c.problem) << c.name;
    }
}

TEST(ProcessRunner, KillsAProgramAndItsChildrenAtTheDeadline) {
    // If the shell or its child survived, this call would last longer than any test may.
    const auto outcome =
        ProcessRunner().run("/bin/sh", {"-c", "trap '' TERM; echo begun; sleep 3600; sleep 3600"}, 300ms);
    EXPECT_EQ(outcome.ending, Ending::timedOut);
    EXPECT_EQ(outcome.output, "begun\n");
}

TEST(ProcessRunner, AnUnknownExitStatusDoesNotCountAsSuccess) {
    // A process may inherit this setting from its parent. The kernel then drops the exit status of each child.
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    const auto outcome = ProcessRunner().run("/bin/sh", {"-c", "exit 7"}, 8s);
    std::signal(SIGCHLD, before);
    EXPECT_FALSE(outcome.hasSucceeded());
    EXPECT_EQ(outcome.problem, "how it ended is not known");
}

TEST(ProcessRunner, OutputBeyondTheLimitIsDroppedAndDoesNotBlockTheProgram) {
    const auto outcome = ProcessRunner().run("/bin/sh", {"-c", "head -c 1000000 /dev/zero"}, 20s);
    EXPECT_EQ(outcome.ending, Ending::exited);
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output.size(), 65536u);
}

} // namespace
} // namespace kova
