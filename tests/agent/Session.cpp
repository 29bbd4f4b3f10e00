#include "tests/agent/Session.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace kova::testing {

namespace {

using namespace std::chrono_literals;

int exitCodeOf(int status) {
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace

bool eventually(const std::function<bool()>& holds, std::chrono::seconds timeout) {
    const auto end = std::chrono::steady_clock::now() + timeout;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(20ms);
    }
    return true;
}

bool movementEnds(const std::function<int()>& takeMoves, std::chrono::milliseconds quietFor) {
    constexpr std::chrono::milliseconds kCheckInterval(100);
    std::chrono::milliseconds quiet(0);
    return eventually([&] {
        std::this_thread::sleep_for(kCheckInterval);
        quiet = takeMoves() == 0 ? quiet + kCheckInterval : std::chrono::milliseconds(0);
        return quiet >= quietFor;
    });
}

Session::Session(const std::string& folder, const std::string& displayName) :
    folder_(folder), environment_{{"HOME", folder},
                                  {"PATH", "/usr/bin:/bin"},
                                  {"LC_ALL", "C.UTF-8"},
                                  {"XDG_RUNTIME_DIR", folder + "/runtime"},
                                  {"XDG_CONFIG_HOME", folder + "/config"},
                                  {"XDG_STATE_HOME", folder + "/state"},
                                  {"KOVA_UI", ""}} {
    std::filesystem::create_directories(folder + "/runtime");
    if (!displayName.empty()) environment_["DISPLAY"] = displayName;
}

Session::~Session() {
    if (agent_ <= 0) return;
    kill(agent_, SIGKILL);
    waitpid(agent_, nullptr, 0);
}

pid_t Session::start(const std::vector<std::string>& command, int output) const {
    auto arguments = command;
    std::vector<std::string> variables;
    for (const auto& [name, value] : environment_) variables.push_back(name + "=" + value);
    const auto argumentPointers = pointersTo(arguments), variablePointers = pointersTo(variables);
    const pid_t child = fork();
    if (child != 0) return child;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(open("/dev/null", O_RDONLY), 0);
    dup2(output, 1);
    dup2(output, 2);
    execvpe(argumentPointers[0], argumentPointers.data(), variablePointers.data());
    _exit(127);
}

Finished Session::run(const std::vector<std::string>& command) const {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    const pid_t child = start(command, ends[1]);
    close(ends[1]);
    Finished finished;
    std::array<char, 4096> bytes{};
    for (ssize_t count = 0; (count = read(ends[0], bytes.data(), bytes.size())) > 0;) {
        finished.output.append(bytes.data(), static_cast<std::size_t>(count));
    }
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    finished.exitCode = exitCodeOf(status);
    return finished;
}

Finished Session::kova(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), KOVA_COMMAND);
    return run(arguments);
}

nlohmann::json Session::query(const std::string& what) const {
    const auto finished = kova({"query", what, "--json"});
    return nlohmann::json::parse(finished.output).at(what);
}

pid_t Session::startAgent(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), KOVA_AGENT);
    const int output = open((folder_ + "/agent.output").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    agent_ = start(arguments, output);
    close(output);
    return agent_;
}

bool Session::agentResponds() const {
    return eventually([&] { return kova({"status"}).exitCode == 0; });
}

void Session::signalAgent(int signal) const {
    kill(agent_, signal);
}

std::optional<Finished> Session::waitForAgent() {
    int status = 0;
    if (!eventually([&] { return waitpid(agent_, &status, WNOHANG) == agent_; })) return std::nullopt;
    agent_ = -1;
    std::ifstream output(folder_ + "/agent.output");
    return Finished{exitCodeOf(status), {std::istreambuf_iterator<char>(output), {}}};
}

std::string text(const CGRect& r) {
    const auto number = [](double value) { return std::to_string(std::lround(value)); };
    return number(minX(r)) + "," + number(minY(r)) + " " + number(r.size.width) + "x" + number(r.size.height);
}

} // namespace kova::testing
