#include "platform/linux/AutostartEntry.h"
#include "tests/linux/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace kova {
namespace {

using Status = LaunchAtLoginStatus;

constexpr const char* kRegisteredEntry =
    "[Desktop Entry]\nType=Application\nName=KOVA\nComment=Puts windows into tiles\n"
    "TryExec=/bin/true\nExec=/bin/true\nNoDisplay=true\nTerminal=false\n";

class AutostartEntryTest : public ::testing::Test {
  protected:
    AutostartEntry autostart(const std::string& program = "/bin/true") const {
        XdgFolders folders;
        folders.configHome = folder.path() / "home";
        folders.configFolders = {folder.path() / "xdg"};
        return {folders, program, folder.path() / "systemd"};
    }
    bool hasEntry() const { return std::filesystem::exists(folder.path() / kUserFile); }
    std::string entryText() const { return contentsOf(folder.path() / kUserFile); }

    static constexpr const char* kUserFile = "home/autostart/kova-agent.desktop";
    static constexpr const char* kSystemWideFile = "xdg/autostart/kova-agent.desktop";
    TemporaryFolder folder;
};

TEST_F(AutostartEntryTest, IsWrittenByRegisteringAndRemovedByUnregistering) {
    auto login = autostart();
    EXPECT_EQ(login.status(), Status::notRegistered);
    EXPECT_EQ(login.unregisterAtLogin(), std::nullopt);
    EXPECT_FALSE(hasEntry());
    EXPECT_EQ(login.registerAtLogin(), std::nullopt);
    EXPECT_EQ(entryText(), kRegisteredEntry);
    EXPECT_EQ(login.status(), Status::enabled);
    EXPECT_EQ(login.unregisterAtLogin(), std::nullopt);
    EXPECT_FALSE(hasEntry());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path() / "home/autostart"), {}), 0);
}

TEST_F(AutostartEntryTest, RespectsEditsOfTheUser) {
    struct Case {
        const char* name;
        std::string before;
        Status status;
        std::string afterRegistering, afterUnregistering; // contents of the file; empty if there is none
    };
    const std::string theirs = "# mine\n[Desktop Entry]\nType=Application\nName=Tiles\nExec=/bin/true --verbose\n"
                               "OnlyShowIn=XFCE;\n\n[X-Other]\nHidden=true\n";
    const auto with = [](std::string text, const std::string& line) {
        const std::string group = "[Desktop Entry]\n";
        return text.insert(text.find(group) + group.size(), line + "\n");
    };
    const std::string outdated = "[Desktop Entry]\nType=Application\nName=KOVA\nComment=Puts windows into tiles\n"
                                 "Exec=/nonexistent/kova-agent\nNoDisplay=true\nTerminal=false\n";
    const std::vector<Case> cases = {
        {"an entry that the user wrote", theirs, Status::enabled, theirs, with(theirs, "Hidden=true")},
        {"hidden", with(theirs, "Hidden=true"), Status::notRegistered, theirs, with(theirs, "Hidden=true")},
        {"switched off by a desktop", with(kRegisteredEntry, "X-GNOME-Autostart-enabled=false"), Status::notRegistered,
         kRegisteredEntry, with(with(kRegisteredEntry, "X-GNOME-Autostart-enabled=false"), "Hidden=true")},
        {"the program has moved", outdated, Status::notFound, kRegisteredEntry, ""},
        {"a file without an entry", "nonsense\n", Status::notFound,
         "nonsense\n[Desktop Entry]\nExec=/bin/true\nTryExec=/bin/true\n", "nonsense\n[Desktop Entry]\nHidden=true\n"},
    };
    for (const Case& c : cases) {
        folder.write(kUserFile, c.before);
        EXPECT_EQ(autostart().status(), c.status) << c.name;
        EXPECT_EQ(entryText(), c.before) << c.name << ": a query of the status changes no file";
        EXPECT_EQ(autostart().registerAtLogin(), std::nullopt) << c.name;
        EXPECT_EQ(entryText(), c.afterRegistering) << c.name;
        folder.write(kUserFile, c.before);
        EXPECT_EQ(autostart().unregisterAtLogin(), std::nullopt) << c.name;
        EXPECT_EQ(hasEntry() ? entryText() : "", c.afterUnregistering) << c.name;
        EXPECT_EQ(autostart().status(), Status::notRegistered) << c.name;
    }
}

TEST_F(AutostartEntryTest, TheStatusIncludesTheSystemWideEntryAndTheServiceUnit) {
    folder.write(kSystemWideFile, kRegisteredEntry);
    EXPECT_EQ(autostart().status(), Status::enabled);
    EXPECT_EQ(autostart().unregisterAtLogin(), std::nullopt);
    EXPECT_NE(entryText().find("Hidden=true"), std::string::npos) << "the user's entry hides the system-wide entry";
    EXPECT_EQ(autostart().status(), Status::notRegistered);
    EXPECT_EQ(autostart().registerAtLogin(), std::nullopt);
    EXPECT_EQ(autostart().status(), Status::enabled);

    const auto wants = folder.path() / "home/systemd/user/graphical-session.target.wants";
    std::filesystem::create_directories(wants);
    std::filesystem::create_symlink("/usr/lib/systemd/user/kova-agent.service", wants / "kova-agent.service");
    const auto problem = autostart().unregisterAtLogin();
    ASSERT_TRUE(problem);
    EXPECT_NE(problem->find("systemctl --user disable kova-agent.service"), std::string::npos);
    EXPECT_EQ(autostart().status(), Status::enabled);
    std::filesystem::create_symlink("/dev/null", folder.path() / "home/systemd/user/kova-agent.service");
    EXPECT_EQ(autostart().status(), Status::notRegistered) << "a masked unit starts nothing";
}

TEST_F(AutostartEntryTest, QuotesItsProgramAndReportsErrors) {
    const auto program = folder.write("a \"$5\" 100% \\ folder/kova-agent", "#!/bin/sh\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    EXPECT_EQ(autostart(program.string()).registerAtLogin(), std::nullopt);
    // The status is `enabled` only if parsing the Exec line gives the path of the program.
    EXPECT_EQ(autostart().status(), Status::enabled) << entryText();
    std::filesystem::remove_all(folder.path() / "home");
    folder.write("home/autostart", "a file, no folder");
    const auto problem = autostart().registerAtLogin();
    ASSERT_TRUE(problem);
    EXPECT_NE(problem->find(kUserFile), std::string::npos) << *problem;
}

} // namespace
} // namespace kova
