// The time of a command from spawn to exit, compared with the smallest possible client: `kova status`, the same request
// by the trivial client, and the trivial client with a server that only echoes. The commands run alternately, so that
// other load affects all of them equally; the result is the median of the ratios of all rounds.
//
//   command_benchmark [ROUNDS]        (an agent must run)
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
    std::vector<std::string> words;
};

constexpr int kRoundsNotCounted = 5;
constexpr useconds_t kPause = 2'000;
constexpr const char* kRequest = R"({"jsonrpc":"2.0","id":1,"method":"status"})";

/// Starts a process that echoes each line on a socket at the path; negative on failure.
pid_t startEcho(const std::string& path) {
    const auto address = kova::controlSocketAddress(path);
    const int listening = socket(AF_UNIX, SOCK_STREAM, 0);
    if (!address || bind(listening, reinterpret_cast<const sockaddr*>(&*address), sizeof *address) != 0 ||
        listen(listening, 16) != 0) {
        return -1;
    }
    const pid_t echo = fork();
    while (echo == 0) {
        const int client = accept(listening, nullptr, nullptr);
        std::array<char, 4096> text;
        const auto length = read(client, text.data(), text.size());
        if (length > 0 && write(client, text.data(), static_cast<std::size_t>(length)) < 0) _exit(1);
        close(client);
    }
    close(listening);
    return echo;
}

/// Negative if the command fails.
Microseconds timeOf(const Command& command, const posix_spawn_file_actions_t& quiet) {
    std::vector<char*> words;
    for (const auto& word : command.words) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    pid_t process = 0;
    int status = 0;
    const auto start = std::chrono::steady_clock::now();
    if (posix_spawn(&process, words[0], &quiet, nullptr, words.data(), environ) != 0) return -1;
    waitpid(process, &status, 0);
    const std::chrono::duration<Microseconds, std::micro> taken = std::chrono::steady_clock::now() - start;
    return status == 0 ? taken.count() : -1;
}

Microseconds median(std::vector<Microseconds> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Returns the exit code.
int measure(const std::vector<Command>& commands, int rounds) {
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addopen(&quiet, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    std::vector<std::vector<Microseconds>> times(commands.size()), ratios(commands.size());
    for (int round = -kRoundsNotCounted; round < rounds; ++round) {
        Microseconds first = 0;
        for (std::size_t i = 0; i < commands.size(); ++i) {
            usleep(kPause);
            const Microseconds taken = timeOf(commands[i], quiet);
            if (taken < 0) return std::fprintf(stderr, "%s: failed; does an agent run?\n", commands[i].name), 1;
            if (i == 0) first = taken;
            if (round < 0) continue;
            times[i].push_back(taken);
            ratios[i].push_back(taken / first);
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
    const pid_t echo = startEcho(echoPath);
    if (echo < 0) return std::fprintf(stderr, "no echo at %s\n", echoPath.c_str()), 1;
    const int code = measure({{"trivial client, echo", {KOVA_TRIVIAL_CLIENT, echoPath, kRequest}},
                              {"trivial client, agent", {KOVA_TRIVIAL_CLIENT, agentPath, kRequest}},
                              {"kova status", {KOVA_COMMAND, "status"}},
                              {"kova status --json", {KOVA_COMMAND, "status", "--json"}},
                              {"kova query tiles", {KOVA_COMMAND, "query", "tiles"}}},
                             rounds);
    kill(echo, SIGTERM);
    waitpid(echo, nullptr, 0);
    unlink(echoPath.c_str());
    return code;
}
