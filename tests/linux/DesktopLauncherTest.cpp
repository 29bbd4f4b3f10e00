// Tests that launch real programs by their desktop entries.
#include "platform/linux/DesktopLauncher.h"
#include "tests/linux/LoopTime.h"
#include "tests/linux/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>

namespace kova {
namespace {

class Launching : public ::testing::Test {
  protected:
    Launching() {
        setenv("PATH", (folder_.path() / "bin").string().append(":/usr/bin:/bin").c_str(), 1);
        setenv("DESKTOP_STARTUP_ID", "of the agent", 1);
        unsetenv("XDG_CURRENT_DESKTOP");
    }
    ~Launching() override { setenv("PATH", path_.c_str(), 1); }

    void install(const std::string& id, const std::string& keys) {
        folder_.write("data/applications/" + id + ".desktop",
                      "[Desktop Entry]\nType=Application\nName=" + id + "\n" + keys);
    }
    /// Makes a script whose first argument is a path. The script writes its other arguments, its folder, session,
    /// signal masks and descriptors into the file with that path, and then runs `more`.
    std::string program(const std::string& name, const std::string& more = "") {
        const auto path = folder_.path() / "bin" / name;
        folder_.write(
            "bin/" + name,
            "#!/bin/sh\n"
            "out=$1; shift\n"
            "{ for word in \"$@\"; do echo \"word $word\"; done\n"
            "echo \"folder $(pwd)\"; echo \"startup ${DESKTOP_STARTUP_ID-none}\"\n"
            "echo \"session $(ps -o sid= -p $$ | tr -d ' ') $$\"\n"
            "while read -r line; do case $line in SigBlk*|SigIgn*) echo $line;; esac; done < /proc/$$/status\n"
            "ls -l /proc/$$/fd\n"
            "} > \"$out.part\"; mv \"$out.part\" \"$out\"\n" +
                more + "\n");
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path.string();
    }
    LaunchResult launch(const std::string& id, LaunchActivation activation = LaunchActivation::activates) {
        const auto application = launcher_.launchableApplication(BundleID(id));
        if (!application) return {.error = "not listed", .processIdentifier = std::nullopt};
        return launch(*application, activation);
    }
    LaunchResult launch(const LaunchableApplication& application,
                        LaunchActivation activation = LaunchActivation::activates) {
        std::optional<LaunchResult> result;
        int calls = 0;
        launcher_.launch(application, activation, [&](const LaunchResult& reported) {
            result = reported;
            ++calls;
        });
        EXPECT_FALSE(result) << "the completion was called before `launch` returned";
        EXPECT_TRUE(runUntil([&] { return result.has_value(); }));
        EXPECT_EQ(calls, 1);
        return result.value_or(LaunchResult{});
    }
    bool runUntil(const std::function<bool()>& condition) { return letPassUntil(loop_, condition); }
    std::string programReport() {
        EXPECT_TRUE(runUntil([&] { return std::filesystem::exists(reportFile_); }));
        return contentsOf(reportFile_);
    }
    bool isRunning(pid_t process) { return kill(process, 0) == 0; }

    TemporaryFolder folder_;
    const std::string path_ = getenv("PATH");
    const std::filesystem::path reportFile_ = folder_.path() / "out";
    EventLoop loop_;
    XdgFolders folders_{.configHome = {},
                        .configFolders = {},
                        .stateHome = {},
                        .dataHome = folder_.path() / "data",
                        .dataFolders = {},
                        .runtime = {}};
    DesktopEntries entries_{folders_, "C"};
    DesktopLauncher launcher_{entries_, loop_};
};

TEST_F(Launching, StartsAProgramInANewSessionWithoutTheAgentsDescriptors) {
    program("reporter");
    install("org.example.Mail", "Exec=reporter " + reportFile_.string() + " \"a  b\" %U $HOME\nPath=/usr\n");
    const int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
    const int inheritable = fcntl(null, F_DUPFD, 100); // above the numbers that a shell uses; without close-on-exec
    close(null);
    sigset_t blocked, before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigprocmask(SIG_BLOCK, &blocked, &before);
    const auto handlerBefore = std::signal(SIGPIPE, SIG_IGN);
    const auto result = launch("org.example.Mail");
    std::signal(SIGPIPE, handlerBefore);
    sigprocmask(SIG_SETMASK, &before, nullptr);
    close(inheritable);
    ASSERT_EQ(result.error, std::nullopt);
    ASSERT_TRUE(result.processIdentifier);
    const std::string number = std::to_string(*result.processIdentifier);
    const std::string report = programReport();
    EXPECT_TRUE(report.starts_with("word a  b\nword $HOME\nfolder /usr\nstartup none\nsession " + number + " " +
                                   number + "\nSigBlk: 0000000000000000\nSigIgn: 0000000000000000\n"))
        << report;
    for (const char* fd : {" 0 -> /dev/null\n", " 2 -> /dev/null\n"})
        EXPECT_NE(report.find(fd), std::string::npos) << report;
    EXPECT_EQ(report.find(" " + std::to_string(inheritable) + " -> /dev/null"), std::string::npos) << report;
    EXPECT_EQ(report.find("pipe"), std::string::npos) << report;
    EXPECT_TRUE(runUntil([&] { return !isRunning(*result.processIdentifier); })) << "the process was not reaped";

    std::filesystem::remove(reportFile_);
    EXPECT_EQ(launch("org.example.Mail", LaunchActivation::inBackground).error, std::nullopt);
    EXPECT_NE(programReport().find("_TIME0\n"), std::string::npos)
        << "only the user time 0 keeps window managers from focusing the application";
}

TEST_F(Launching, ReportsErrors) {
    program("reporter");
    folder_.write("bin/text", "no program");
    folder_.write("bin/nonsense", "neither a script nor a program");
    std::filesystem::permissions(folder_.path() / "bin/nonsense", std::filesystem::perms::owner_all);
    folder_.write("bin/orphan", "#!/nowhere/interpreter\n");
    std::filesystem::permissions(folder_.path() / "bin/orphan", std::filesystem::perms::owner_all);
    const std::string bin = (folder_.path() / "bin/").string();
    struct Case {
        std::string keys, error;
    };
    const Case cases[] = {
        {"Exec=missing-program\n", "cannot be started: there is no program “missing-program”"},
        {"Exec=/nowhere/mail\n", "cannot be started: there is no program “/nowhere/mail”"},
        {"Exec=text\n", "cannot be started: there is no program “text”"},
        {"Exec=" + bin + "\n", "cannot be started: there is no program “" + bin + "”"},
        {"Exec=nonsense\n", "cannot be started: " + bin + "nonsense: Exec format error"},
        {"Exec=orphan\n", "cannot be started: " + bin + "orphan: No such file or directory"},
        {"Exec=reporter x\nPath=/nowhere\n", "cannot be started in /nowhere: No such file or directory"},
        {"Exec=reporter x\nTryExec=missing-program\n", "is not installed: there is no program “missing-program”"},
        {"Exec=reporter \"x\n", "has an Exec line with a quote that does not end"},
        {"Exec=reporter %q\n", "has an Exec line with an unknown field code, %q"},
        {"DBusActivatable=true\n", "has a desktop entry without an Exec line"},
    };
    int number = 0;
    for (const auto& c : cases) {
        const std::string id = "broken" + std::to_string(++number);
        install(id, c.keys);
        const LaunchableApplication application{.identifier = id,
                                                .name = id,
                                                .bundleIdentifier = BundleID(id),
                                                .location =
                                                    (folder_.path() / "data/applications" / (id + ".desktop")).string(),
                                                .icon = {}};
        const auto result = launch(application);
        EXPECT_EQ(result.error.value_or("started"), id + " " + c.error);
        EXPECT_EQ(result.processIdentifier, std::nullopt);
    }
    const LaunchableApplication uninstalled{.identifier = "gone",
                                            .name = "Gone",
                                            .bundleIdentifier = "gone",
                                            .location = "/nowhere/gone.desktop",
                                            .icon = {}};
    EXPECT_EQ(launch(uninstalled).error, "Gone is not installed any more");
}

TEST_F(Launching, AnEntryWithTerminalTrueIsLaunchedInATerminal) {
    program("reporter");
    folder_.write("bin/xdg-terminal-exec",
                  "#!/bin/sh\necho terminal > " + (folder_.path() / "terminal").string() + "\nexec \"$@\"\n");
    std::filesystem::permissions(folder_.path() / "bin/xdg-terminal-exec", std::filesystem::perms::owner_all);
    install("mutt", "Exec=reporter " + reportFile_.string() + " \"a b\"\nTerminal=true\n");
    EXPECT_EQ(launch("mutt").error, std::nullopt);
    EXPECT_NE(programReport().find("word a b\n"), std::string::npos);
    EXPECT_EQ(contentsOf(folder_.path() / "terminal"), "terminal\n");
}

TEST_F(Launching, ManyProgramsAreStartedAndReapedAtOnce) {
    install("quick", "Exec=true\n");
    install("broken", "Exec=/bin/true\nPath=/nowhere\n");
    const auto descriptors = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
    const auto before = descriptors();
    int started = 0, failed = 0;
    std::vector<pid_t> processes;
    for (int i = 0; i < 40; ++i) {
        launcher_.launch(*launcher_.launchableApplication(i % 2 == 0 ? BundleID("quick") : BundleID("broken")),
                         LaunchActivation::activates, [&](const LaunchResult& result) {
                             if (result.processIdentifier) processes.push_back(*result.processIdentifier);
                             ++(result.error ? failed : started);
                         });
    }
    EXPECT_TRUE(runUntil([&] { return started == 20 && failed == 20; })) << started << " and " << failed;
    EXPECT_TRUE(runUntil([&] {
        return std::none_of(processes.begin(), processes.end(), [&](pid_t process) { return isRunning(process); });
    }));
    EXPECT_TRUE(runUntil([&] { return descriptors() == before; })) << descriptors() << ", before " << before;
}

TEST_F(Launching, OnlyAProcessThatEndedWithStatusZeroHasSucceeded) {
    install("good", "Exec=true\n");
    install("bad", "Exec=false\n");
    install("killed", "Exec=sh -c \"kill -9 \\\\$\\\\$\"\n");
    install("running", "Exec=sleep 60\n");
    for (const auto& [id, succeeds] : {std::pair("good", true), {"bad", false}, {"killed", false}}) {
        const pid_t process = launch(id).processIdentifier.value();
        EXPECT_TRUE(runUntil([&] { return !isRunning(process); })) << id;
        EXPECT_EQ(launcher_.hasLaunchedProcessSucceeded(process), succeeds) << id;
    }
    const pid_t process = launch("running").processIdentifier.value();
    EXPECT_FALSE(launcher_.hasLaunchedProcessSucceeded(process));
    kill(process, SIGKILL);
}

TEST_F(Launching, OnlyApplicationsThatMenusShowAreListed) {
    install("org.example.Zoo", "Exec=true\nIcon=zoo\n");
    install("org.example.apple", "Exec=true\nName[de]=Apfel\n");
    install("secret", "Exec=true\nNoDisplay=true\n");
    install("hidden", "Exec=true\nHidden=true\n");
    install("missing", "Exec=true\nTryExec=missing-program\n");
    install("dbus", "DBusActivatable=true\n");
    install("elsewhere", "Exec=true\nOnlyShowIn=KDE;\n");
    install("nothere", "Exec=true\nNotShowIn=GNOME;XFCE;\n");
    setenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME", 1);
    std::string ids;
    for (const auto& application : launcher_.launchableApplications()) ids += application.identifier + " ";
    EXPECT_EQ(ids, "org.example.apple org.example.Zoo ");
    const auto zoo = launcher_.launchableApplication("org.example.Zoo");
    ASSERT_TRUE(zoo);
    EXPECT_EQ(zoo->location, (folder_.path() / "data/applications/org.example.Zoo.desktop").string());
    EXPECT_EQ(zoo->bundleIdentifier, "org.example.Zoo");
    EXPECT_EQ(zoo->icon.name, "zoo");
    EXPECT_TRUE(launcher_.launchableApplication("secret"));
    EXPECT_FALSE(launcher_.launchableApplication("hidden"));
    install("late", "Exec=true\n");
    EXPECT_TRUE(launcher_.launchableApplication("late"));
}

} // namespace
} // namespace kova
