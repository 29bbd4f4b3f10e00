#include "tests/desktop/PrivateServer.h"

#include "tests/desktop/TestClient.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <utility>

namespace kova::testing {

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

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

bool PrivateServer::isInstalled() {
    return access("/usr/bin/Xvfb", X_OK) == 0;
}

PrivateServer::PrivateServer(const std::string& size) {
    std::string pattern = (std::filesystem::temp_directory_path() / "kova-desktop-XXXXXX").string();
    if (const char* made = mkdtemp(pattern.data())) folder_ = made;
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) return;
    server_ = ChildProcess({"/usr/bin/Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0", size + "x24",
                            "-nolisten", "tcp", "-noreset"},
                           {"HOME=" + folder_, "PATH=/usr/bin:/bin"}, ends[1]);
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

} // namespace kova::testing
