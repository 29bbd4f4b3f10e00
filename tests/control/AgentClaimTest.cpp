#include "control/AgentClaim.h"
#include "tests/linux/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace kova {

namespace {

namespace fs = std::filesystem;

/// The error message; empty if the claim was taken. Sets `holder` to the process that holds the claim already.
std::string refusalOf(const ControlSocketPlace& place, std::optional<pid_t>* holder = nullptr) {
    const auto claim = AgentClaim::take(place);
    const auto* refusal = std::get_if<AgentClaimRefusal>(&claim);
    if (refusal && holder) *holder = refusal->holder;
    return refusal ? refusal->message : "";
}

mode_t modeOf(const fs::path& path) {
    struct stat found {};
    return lstat(path.c_str(), &found) == 0 ? found.st_mode & 07777 : 0;
}

} // namespace

TEST(AgentClaim, IsHeldByOneProcessUntilThatProcessEnds) {
    const TemporaryFolder folder;
    const ControlSocketPlace place{(folder.path() / "kova" / "agent.sock").string(), true};
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t other = fork();
    if (other == 0) {
        const auto claim = AgentClaim::take(place);
        const char isHeld = std::holds_alternative<AgentClaim>(claim) ? 'y' : 'n';
        if (write(ready[1], &isHeld, 1) != 1) _exit(1);
        for (;;) pause();
    }
    char isHeld = 0;
    ASSERT_EQ(read(ready[0], &isHeld, 1), 1);
    EXPECT_EQ(isHeld, 'y');

    std::optional<pid_t> holder;
    EXPECT_EQ(refusalOf(place, &holder),
              "Another KOVA agent (process " + std::to_string(other) + ") already manages this session");
    EXPECT_EQ(holder, other);
    folder.write("kova/agent.sock", "a file that the process leaves behind");
    kill(other, SIGKILL);
    waitpid(other, nullptr, 0);

    const auto claim = AgentClaim::take(place);
    ASSERT_TRUE(std::holds_alternative<AgentClaim>(claim));
    EXPECT_EQ(refusalOf(place, &holder),
              "Another KOVA agent (process " + std::to_string(getpid()) + ") already manages this session");
    EXPECT_EQ(modeOf(folder.path() / "kova"), 0700u);
    EXPECT_EQ(modeOf(folder.path() / "kova" / "agent.sock.lock"), 0600u);
    close(ready[0]);
    close(ready[1]);
}

TEST(AgentClaim, ClosesItsFolderToOtherUsersAndRefusesLinksFilesAndForeignFolders) {
    const TemporaryFolder folder;
    const auto at = [&](const char* name) {
        return ControlSocketPlace{(folder.path() / name / "agent.sock").string(), true};
    };
    fs::create_directory(folder.path() / "open");
    fs::permissions(folder.path() / "open", fs::perms::all);
    EXPECT_EQ(refusalOf(at("open")), "");
    EXPECT_EQ(modeOf(folder.path() / "open"), 0700u);

    fs::create_directory_symlink(folder.path() / "open", folder.path() / "link");
    EXPECT_NE(refusalOf(at("link")), "");
    folder.write("file", "");
    EXPECT_NE(refusalOf(at("file")), "");
    EXPECT_NE(refusalOf(at("missing/below")), "");
    EXPECT_NE(refusalOf(at(std::string(120, 'x').c_str())), "");
    if (geteuid() == 0) {
        fs::create_directory(folder.path() / "foreign");
        ASSERT_EQ(chown((folder.path() / "foreign").c_str(), 1, 1), 0);
        EXPECT_NE(refusalOf(at("foreign")), "");
    }
    // A lock file that is a symbolic link is refused.
    fs::create_symlink(folder.path() / "elsewhere", folder.path() / "open" / "other.sock.lock");
    EXPECT_NE(refusalOf({(folder.path() / "open" / "other.sock").string(), true}), "");
    EXPECT_FALSE(fs::exists(folder.path() / "elsewhere"));
}

TEST(ControlSocketPlace, IsChosenByEnvironmentVariables) {
    const auto placeWith = [](const char* named, const char* runtime) {
        setenv("KOVA_SOCKET", named, 1);
        setenv("XDG_RUNTIME_DIR", runtime, 1);
        return controlSocketPlace();
    };
    EXPECT_EQ(placeWith("/a/b", "/run/user/1").path, "/a/b");
    EXPECT_EQ(placeWith("/a/b", "").folder(), "/a");
#if !defined(__APPLE__)
    EXPECT_EQ(placeWith("", "/run/user/1").path, "/run/user/1/kova/agent.sock");
    EXPECT_EQ(placeWith("", "relative").path, "/tmp/kova-" + std::to_string(geteuid()) + "/agent.sock");
#endif
    unsetenv("KOVA_SOCKET");
    unsetenv("XDG_RUNTIME_DIR");
}

} // namespace kova
