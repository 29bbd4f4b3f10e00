// Measures the time of commands from spawn to exit, and compares them with the smallest possible client. Each round
// runs the trivial client with a server that only echoes, the trivial client with the agent, and some `kova` commands.
// The commands alternate, so that other load affects all of them equally. For each command the program prints the
// median of its times and the median of its ratios to the first command of the same round.
//
//   command_benchmark [ROUNDS]        An agent must run.
#include "control/client/ControlSocket.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

extern char** environ; // not declared in the headers of all systems

namespace {

using Microseconds = double;
struct Command {
    const char* name;
    std::vector<std::string> arguments; // the first is the program
};

constexpr int kWarmUpRounds = 5;
constexpr useconds_t kPauseMicroseconds = 2'000;
constexpr const char* kRequest = R"({"jsonrpc":"2.0","id":1,"method":"status"})";

/// Starts a server that sends back what a client writes to the socket at the path. Returns the server's process id,
/// or a negative number on failure.
pid_t startEchoServer(const std::string& path) {
    const auto address = kova::controlSocketAddress(path);
    const int listening = socket(AF_UNIX, SOCK_STREAM, 0);
    if (!address || bind(listening, reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0 ||
        listen(listening, 16) != 0) {
        return -1;
    }
    const pid_t server = fork();
    while (server == 0) {
        const int client = accept(listening, nullptr, nullptr);
        std::array<char, 4096> text;
        const auto length = read(client, text.data(), text.size());
        if (length > 0 && write(client, text.data(), static_cast<std::size_t>(length)) < 0) _exit(1);
        close(client);
    }
    close(listening);
    return server;
}

/// Returns a negative number if the command fails.
Microseconds timeOf(const Command& command, const posix_spawn_file_actions_t& withoutOutput) {
    std::vector<char*> arguments;
    for (const auto& argument : command.arguments) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    pid_t process = 0;
    int status = 0;
    const auto start = std::chrono::steady_clock::now();
    if (posix_spawn(&process, arguments[0], &withoutOutput, nullptr, arguments.data(), environ) != 0) return -1;
    waitpid(process, &status, 0);
    const std::chrono::duration<Microseconds, std::micro> taken = std::chrono::steady_clock::now() - start;
    return status == 0 ? taken.count() : -1;
}

Microseconds median(std::vector<Microseconds> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Prints the results. Returns the exit code.
int measure(const std::vector<Command>& commands, int rounds) {
    posix_spawn_file_actions_t withoutOutput;
    posix_spawn_file_actions_init(&withoutOutput);
    posix_spawn_file_actions_addopen(&withoutOutput, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    std::vector<std::vector<Microseconds>> times(commands.size()), ratios(commands.size());
    for (int round = -kWarmUpRounds; round < rounds; ++round) {
        Microseconds timeOfFirst = 0;
        for (std::size_t i = 0; i < commands.size(); ++i) {
            usleep(kPauseMicroseconds);
            const Microseconds taken = timeOf(commands[i], withoutOutput);
            if (taken < 0) return std::fprintf(stderr, "%s: failed; does an agent run?\n", commands[i].name), 1;
            if (i == 0) timeOfFirst = taken;
            if (round < 0) continue;
            times[i].push_back(taken);
            ratios[i].push_back(taken / timeOfFirst);
        }
    }
    for (std::size_t i = 0; i < commands.size(); ++i) {
        std::printf("%-36s %6.0f us  x %.2f\n", commands[i].name, median(times[i]), median(ratios[i]));
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const int rounds = std::max(argc > 1 ? std::atoi(argv[1]) : 301, 15);
    const std::string agentPath = kova::controlSocketPlace().path;
    const std::string echoPath = "/tmp/kova-echo-" + std::to_string(getpid());
    const pid_t echoServer = startEchoServer(echoPath);
    if (echoServer < 0) return std::fprintf(stderr, "cannot start an echo server at %s\n", echoPath.c_str()), 1;
    const int code = measure({{"trivial client, echo", {KOVA_TRIVIAL_CLIENT, echoPath, kRequest}},
                              {"trivial client, agent", {KOVA_TRIVIAL_CLIENT, agentPath, kRequest}},
                              {"kova status", {KOVA_COMMAND, "status"}},
                              {"kova status --json", {KOVA_COMMAND, "status", "--json"}},
                              {"kova query tiles", {KOVA_COMMAND, "query", "tiles"}}},
                             rounds);
    kill(echoServer, SIGTERM);
    waitpid(echoServer, nullptr, 0);
    unlink(echoPath.c_str());
    return code;
}
