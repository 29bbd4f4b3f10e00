// Tests of kova-ui as a child process. Shell scripts are used instead of kova-ui.
#include "platform/posix/UserInterfaceProcess.h"

#include "platform/linux/ChildProcesses.h"
#include "platform/linux/DesktopEntries.h"
#include "tests/linux/LoopTime.h"
#include "tests/linux/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>

namespace kova {
namespace {

class UserInterfaceProgram : public ::testing::Test {
  protected:
    UserInterfaceProgram() { unsetenv("KOVA_UI"); }
    ~UserInterfaceProgram() override {
        unsetenv("KOVA_UI");
        setenv("PATH", path_.c_str(), 1);
    }
    std::string program(const std::string& name, const std::string& script) {
        folder_.write(name, "#!/bin/sh\n" + script + "\n");
        const auto file = folder_.path() / name;
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
        return file.string();
    }
    std::string contentsOf(const std::string& name) const {
        std::ifstream stream(folder_.path() / name);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    /// The path of the program that the variable KOVA_UI names.
    static std::optional<std::string> findByVariable() { return findUserInterface("", findProgram); }
    bool hasEnded(pid_t process) const { return kill(process, 0) != 0; }

    TemporaryFolder folder_;
    const std::string path_ = std::getenv("PATH");
    EventLoop loop_;
    ChildProcesses children_{loop_};
    std::vector<UserInterfaceEnd> ends_;
    const std::function<void(UserInterfaceEnd)> ended_ = [this](UserInterfaceEnd how) { ends_.push_back(how); };
};

TEST_F(UserInterfaceProgram, IsFoundBesideTheAgentInLibexecOrInPath) {
    const std::string agent = (folder_.path() / "bin/kova-agent").string();
    setenv("PATH", (folder_.path() / "path").string().c_str(), 1);
    EXPECT_EQ(findUserInterface(agent, findProgram), std::nullopt);
    EXPECT_NE(UserInterfaceProcess([] { return std::nullopt; }, "/socket", loop_, children_).unavailableReason(),
              std::nullopt);
    for (const char* place :
         {"path/kova-ui", "Helpers/kova-ui.app/Contents/MacOS/kova-ui", "libexec/kova/kova-ui", "bin/kova-ui"}) {
        const std::string expected = program(place, "");
        EXPECT_EQ(findUserInterface(agent, findProgram), expected)
            << "each path has precedence over the paths before it";
    }
    setenv("KOVA_UI", program("other", "").c_str(), 1);
    EXPECT_EQ(findUserInterface(agent, findProgram), (folder_.path() / "other").string());
    for (const char* none : {"", "/nonexistent/kova-ui"}) {
        setenv("KOVA_UI", none, 1);
        EXPECT_EQ(findUserInterface(agent, findProgram), std::nullopt) << none;
    }
}

TEST_F(UserInterfaceProgram, GetsTheSocketAndReportsItsEnd) {
    const std::string report = (folder_.path() / "report").string();
    const std::vector<std::pair<std::string, UserInterfaceEnd>> endings = {
        {"exit 0", UserInterfaceEnd::byItself},
        {"exit 3", UserInterfaceEnd::unexpectedly},
        {"kill -SEGV $$", UserInterfaceEnd::unexpectedly},
    };
    for (const auto& [script, how] : endings) {
        setenv("KOVA_UI",
               program("ui", "echo \"$KOVA_SOCKET $KOVA_AGENT_PROCESS\" > " + report + "; " + script).c_str(), 1);
        UserInterfaceProcess process(findByVariable, "/the/socket", loop_, children_);
        ends_.clear();
        process.start(ended_);
        EXPECT_NE(process.process(), std::nullopt);
        ASSERT_TRUE(letPassUntil(loop_, [&] { return !ends_.empty(); })) << script;
        EXPECT_EQ(ends_, std::vector{how}) << script;
        EXPECT_EQ(process.process(), std::nullopt);
        EXPECT_EQ(contentsOf("report"), "/the/socket " + std::to_string(getpid()) + "\n");
    }
    setenv("KOVA_UI", program("ui", "").c_str(), 1);
    folder_.write("ui", "neither a script nor a program\n");
    UserInterfaceProcess process(findByVariable, "/the/socket", loop_, children_);
    ends_.clear();
    process.start(ended_);
    ASSERT_TRUE(letPassUntil(loop_, [&] { return !ends_.empty(); }));
    EXPECT_EQ(ends_, std::vector{UserInterfaceEnd::notStarted});
    EXPECT_EQ(process.process(), std::nullopt);
}

TEST_F(UserInterfaceProgram, EndsOnRequestEvenIfItIgnoresSigtermAndCanBeStartedAgainAtOnce) {
    const std::string ready = (folder_.path() / "ready").string();
    setenv("KOVA_UI", program("ui", "trap '' TERM; : > " + ready + "; while :; do sleep 0.05; done").c_str(), 1);
    UserInterfaceProcess process(findByVariable, "/socket", loop_, children_);
    process.start(ended_);
    const pid_t first = process.process().value_or(0);
    ASSERT_TRUE(letPassUntil(loop_, [&] { return std::filesystem::exists(ready); }));
    process.end();
    EXPECT_EQ(process.process(), std::nullopt);
    process.start(ended_);
    const pid_t second = process.process().value_or(0);
    EXPECT_NE(first, second);
    EXPECT_TRUE(letPassUntil(loop_, [&] { return hasEnded(first); }));
    EXPECT_EQ(process.process(), second);
    EXPECT_TRUE(ends_.empty()) << "a requested end is not reported";
    process.end();
    EXPECT_TRUE(letPassUntil(loop_, [&] { return hasEnded(second); }));
}

TEST_F(UserInterfaceProgram, IsKilledWhenTheAgentIsKilled) {
    const std::string processFile = (folder_.path() / "process").string();
    setenv("KOVA_UI",
           program("ui", "trap '' TERM; echo $$ > " + processFile + ".part; mv " + processFile + ".part " +
                             processFile + "; while :; do sleep 0.05; done")
               .c_str(),
           1);
    const pid_t agent = fork();
    if (agent == 0) {
        EventLoop loop;
        ChildProcesses children(loop);
        UserInterfaceProcess process(findByVariable, "/socket", loop, children);
        process.start({});
        loop.run();
        _exit(0);
    }
    ASSERT_TRUE(letPassUntil(loop_, [&] { return std::filesystem::exists(processFile); }));
    const pid_t program = std::stoi(contentsOf("process"));
    EXPECT_FALSE(hasEnded(program));
    kill(agent, SIGKILL);
    waitpid(agent, nullptr, 0);
    // The new parent process of kova-ui may reap kova-ui late or never, so a zombie counts as dead.
    const auto isDead = [&] {
        std::ifstream stream("/proc/" + std::to_string(program) + "/stat");
        const std::string stat{std::istreambuf_iterator<char>(stream), {}};
        return stat.empty() || stat.find(") Z ") != std::string::npos;
    };
    EXPECT_TRUE(letPassUntil(loop_, isDead));
}

} // namespace
} // namespace kova
