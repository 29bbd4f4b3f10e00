// The client's end of the socket.
#include "control/client/ControlClient.h"
#include "control/client/ControlSocket.h"
#include "tests/linux/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>

namespace kova {

TEST(ControlClient, DistinguishesASilentAgentFromAMissingAgent) {
    const TemporaryFolder folder;
    const std::string path = (folder.path() / "s").string();
    const auto failureAt = [](const std::string& place) {
        auto connected = ControlClient::connect(place);
        if (!connected) return connected.error().kind;
        connected->setTimeout(std::chrono::milliseconds(30));
        EXPECT_EQ(connected->send("x"), std::nullopt);
        return connected->receive().error().kind;
    };
    EXPECT_EQ(failureAt(path), ConnectionFailure::Kind::noAgent);
    EXPECT_EQ(failureAt(std::string(200, 'x')), ConnectionFailure::Kind::noAgent);
    const int listening = socket(AF_UNIX, SOCK_STREAM, 0);
    const auto address = *controlSocketAddress(path);
    ASSERT_EQ(bind(listening, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(failureAt(path), ConnectionFailure::Kind::noAgent) << "a socket that a dead agent left";
    ASSERT_EQ(::listen(listening, 1), 0);
    EXPECT_EQ(failureAt(path), ConnectionFailure::Kind::silent);
    {
        // The last line of an agent that closes the connection is received, although requests cannot be sent any more.
        auto connected = ControlClient::connect(path);
        close(accept(listening, nullptr, nullptr)); // the connection that the last `failureAt` opened
        const int accepted = accept(listening, nullptr, nullptr);
        ASSERT_EQ(write(accepted, "full\n", 5), 5);
        close(accepted);
        EXPECT_EQ(connected->send("x"), std::nullopt);
        EXPECT_EQ(*connected->receive(), "full");
    }
    close(listening);
    if (geteuid() != 0) return; // only root can run an agent of another user
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t foreignAgent = fork();
    if (foreignAgent == 0) {
        const int foreignSocket = socket(AF_UNIX, SOCK_STREAM, 0);
        unlink(path.c_str());
        const bool isListening =
            setuid(1) == 0 && bind(foreignSocket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
            ::listen(foreignSocket, 1) == 0;
        if (write(ready[1], isListening ? "y" : "n", 1) != 1) _exit(1);
        for (;;) pause();
    }
    char isListening = 0;
    EXPECT_EQ(read(ready[0], &isListening, 1), 1);
    EXPECT_EQ(isListening, 'y');
    EXPECT_EQ(failureAt(path), ConnectionFailure::Kind::foreignAgent);
    kill(foreignAgent, SIGKILL);
    waitpid(foreignAgent, nullptr, 0);
}

} // namespace kova
