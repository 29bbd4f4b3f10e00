#include "tests/desktop/PrivateServer.h"

#include "tests/desktop/TestClient.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>

namespace kova::testing {

bool PrivateServer::isInstalled() {
    return access("/usr/bin/Xvfb", X_OK) == 0;
}

PrivateServer::PrivateServer(const std::string& size, ClientProcessNumbers numbers) {
    std::string pattern = (std::filesystem::temp_directory_path() / "kova-desktop-XXXXXX").string();
    if (const char* made = mkdtemp(pattern.data())) folder_ = made;
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return;
    std::vector<std::string> command = {"/usr/bin/Xvfb", "-displayfd", std::to_string(ends[1]),
                                        "-screen",       "0",          size + "x24",
                                        "-nolisten",     "tcp",        "-noreset"};
    if (numbers == ClientProcessNumbers::unreported) command.insert(command.end(), {"-extension", "X-Resource"});
    server_ = ChildProcess(command, {"HOME=" + folder_, "PATH=/usr/bin:/bin"}, ends[1]);
    close(ends[1]);
    std::string number;
    pollfd readable{ends[0], POLLIN, 0};
    while (poll(&readable, 1, 20'000) > 0) {
        char digit = 0;
        if (read(ends[0], &digit, 1) != 1 || digit == '\n') break;
        number += digit;
    }
    close(ends[0]);
    EXPECT_FALSE(number.empty()) << "Xvfb did not start";
    displayName_ = ":" + number;
}

PrivateServer::~PrivateServer() {
    manager_.end();
    server_.end();
    std::error_code ignored;
    if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
}

ChildProcess PrivateServer::start(const std::vector<std::string>& command) const {
    return ChildProcess(command, {"HOME=" + folder_, "XDG_CACHE_HOME=" + folder_, "PATH=/usr/bin:/bin",
                                  "LC_ALL=C.UTF-8", "DISPLAY=" + displayName_});
}

void PrivateServer::startManager() {
    const char* other = std::getenv("KOVA_TEST_WINDOW_MANAGER");
    manager_ = start({"/bin/sh", "-c", std::string("exec ") + (other ? other : "openbox --sm-disable")});
    EXPECT_TRUE(TestClient(displayName_, "Probe", 1).waitForManager()) << "the window manager did not start";
}

void PrivateServer::pauseManager() {
    kill(manager_.process(), SIGSTOP);
}

void PrivateServer::resumeManager() {
    kill(manager_.process(), SIGCONT);
}

} // namespace kova::testing
