// Launched applications are moved from the agent's control group into control groups of their own, called scopes.
#include "platform/linux/ApplicationScopes.h"
#include "platform/linux/DesktopLauncher.h"
#include "tests/linux/LoopTime.h"
#include "tests/linux/PrivateBus.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <iterator>

namespace kova {
namespace {

using Property = sdbus::Struct<std::string, sdbus::Variant>;

TEST(ApplicationScopes, AreNamedAfterTheApplicationAndItsProcess) {
    EXPECT_EQ(scopeName("org.example.Maps", 4711), "app-kova-org.example.Maps-4711.scope");
    EXPECT_EQ(scopeName("kde-konsole", 1), R"(app-kova-kde\x2dkonsole-1.scope)");
    EXPECT_EQ(scopeName("é/ @", 1), R"(app-kova-\xc3\xa9\x2f\x20\x40-1.scope)");
    EXPECT_LT(scopeName(std::string(1000, '/'), 1).size(), 255U);
}

TEST(ApplicationScopes, EachLaunchedApplicationGetsAScopeOfItsOwn) {
    PrivateBus bus;
    bus.start();
    bus.startUserManager();
    TemporaryFolder home;
    home.write("applications/org.test.Sleeper.desktop",
               "[Desktop Entry]\nType=Application\nName=Sleeper\nExec=sleep 1000\n");
    XdgFolders folders;
    folders.dataHome = home.path();
    DesktopEntries entries(folders, "C");
    EventLoop loop;
    ApplicationScopes scopes(bus.address(), loop);
    DesktopLauncher launcher(entries, loop, &scopes);
    std::vector<pid_t> processes;
    for (int i = 0; i < 2; ++i) {
        launcher.launch(*entries.launchableApplication("org.test.Sleeper"), LaunchActivation::activates,
                        [&](const LaunchResult& result) { processes.push_back(result.processIdentifier.value_or(0)); });
    }
    ASSERT_TRUE(letPassUntil(loop, [&] { return processes.size() == 2 && bus.scopes().size() == 2; }));
    for (const pid_t process : processes) kill(process, SIGKILL);
    std::vector<std::string> names;
    std::vector<std::uint32_t> moved;
    for (const auto& scope : bus.scopes()) {
        names.push_back(scope.at(0).get<std::string>());
        EXPECT_EQ(scope.at(1).get<std::string>(), "fail");
        for (const Property& property : scope.at(2).get<std::vector<Property>>()) {
            if (std::get<0>(property) != "PIDs") continue;
            for (const std::uint32_t process : std::get<1>(property).get<std::vector<std::uint32_t>>())
                moved.push_back(process);
        }
    }
    EXPECT_EQ(moved, std::vector<std::uint32_t>(processes.begin(), processes.end()));
    EXPECT_EQ(names,
              (std::vector{scopeName("org.test.Sleeper", processes[0]), scopeName("org.test.Sleeper", processes[1])}));
}

TEST(ApplicationScopes, WithoutAUserManagerOrABusARequestIsDroppedAndLaterRequestsStillWork) {
    PrivateBus bus;
    bus.start();
    EventLoop loop;
    ApplicationScopes scopes(bus.address(), loop);
    scopes.moveToOwnScope(1, "org.test.Early", "Early");
    ApplicationScopes withMissingBus("unix:path=/nonexistent", loop), withoutAddress("", loop);
    withMissingBus.moveToOwnScope(1, "org.test.Early", "Early");
    withoutAddress.moveToOwnScope(1, "org.test.Early", "Early");
    letPass(loop, Seconds(0.2));
    bus.startUserManager();
    scopes.moveToOwnScope(2, "org.test.Late", "Late");
    ASSERT_TRUE(letPassUntil(loop, [&] { return !bus.scopes().empty(); }));
    ASSERT_EQ(bus.scopes().size(), 1U);
    EXPECT_EQ(bus.scopes()[0].at(0).get<std::string>(), scopeName("org.test.Late", 2));
}

/// An application without a scope of its own belongs to the agent's service, and must survive the end of the service.
TEST(ServiceUnit, StoppingTheServiceEndsOnlyTheAgent) {
    std::ifstream file(KOVA_SERVICE_UNIT);
    const std::string unit{std::istreambuf_iterator<char>(file), {}};
    EXPECT_NE(unit.find("\nKillMode=process\n"), std::string::npos) << unit;
}

} // namespace
} // namespace kova
