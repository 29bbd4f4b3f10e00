// A whole agent on the simulated desktop. Tests reach the agent over a real socket. The test's thread is the agent's
// main thread, so simulated time does not advance while the agent serves requests.
#pragma once

#include "app/KovaMenuBarContent.h"
#include "commands/LayoutShortcutCoordinator.h"
#include "commands/URLHandler.h"
#include "control/ControlMethods.h"
#include "control/ControlServer.h"
#include "control/PermissionControl.h"
#include "control/UserInterfaceDialogs.h"
#include "tests/control/SocketClient.h"
#include "tests/harness/Scenario.h"
#include "tests/harness/SimulatedUpdates.h"
#include "tests/linux/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace kova {

class AgentStage {
  public:
    AgentStage() {
        // Applications respond and start without delay, since simulated time does not advance.
        desk.desktop.setResponseTime(Seconds(0));
        desk.display(2560, 1440).layout("jarvis.dual-split");
        desk.opens("Mail", {.title = "Inbox"}).opens("Notes").opens("Terminal");
        desk.desktop.install("Maps", {.bundleIdentifier = "org.example.Maps", .startsAfter = Seconds(0)});
        desk.desktop.showAlertsBy(dialogs);
        desk.start();
        desk.delegate().applicationDidFinishLaunching(); // the workspace has started already
        urls.emplace(desk.controller(), desk.desktop.queue());
        ControlContext context{.controller = desk.controller(),
                               .urls = *urls,
                               .shortcuts = shortcuts,
                               .preferences = disk,
                               .diagnostics = {&desk.desktop},
                               .keys = &desk.desktop.keyboard(),
                               .queue = desk.desktop.queue(),
                               .quit = [this] { hasQuit = true; },
                               .overlay = &desk.delegate().overlay(),
                               .menu = &menu.emplace(MenuBarServices{
                                   .delegate = desk.delegate(), .documents = &dialogs, .updates = &updates}),
                               .userInterface = &userInterface,
                               .dialogs = &dialogs,
                               .settingsWindow = [this] { return desk.delegate().settingsWindow(); },
                               .onboardingWindow = [this] { return desk.delegate().onboardingWindow(); },
                               .permission = &permission};
        for (auto* setting : {&context.startAtLogin, &context.dockAutoHide}) {
            const auto isOn = std::make_shared<bool>(false);
            *setting = SystemSetting{[this, isOn] {
                                         return SystemSetting::State{*isOn, settingProblem, "Said by the system.", {}};
                                     },
                                     [this, isOn](bool wanted) { *isOn = settingProblem ? *isOn : wanted; }};
        }
        methods.emplace(std::move(context));
        monitors.emplace(desk.controller(), shortcuts, desk.desktop.keyboard(), desk.desktop.queue()).installMonitors();
        auto claim = AgentClaim::take({socketPath(), true});
        server.emplace(std::get<AgentClaim>(std::move(claim)), desk.desktop.queue(), *methods);
        EXPECT_EQ(server->start(), std::nullopt);
        server->serve();
    }

    std::string socketPath() const { return (folder.path() / "kova" / "agent.sock").string(); }
    void runAgentOnce() { desk.desktop.queue().runDue(); }
    SocketClient client() {
        return SocketClient(socketPath(), [this] { runAgentOnce(); });
    }

    /// Starts each of the three applications again that has ended. Each opens a window.
    void reopen() {
        for (const char* name : {"Mail", "Notes", "Terminal"}) {
            if (!desk.desktop.isRunning(name)) desk.opens(name);
        }
        desk.settle();
    }

    /// A store for which the test decides when a save ends, and with which result.
    class Disk final : public MemoryPreferencesStore {
      public:
        void save(SaveHandler done) override {
            if (!isHeld) return done(problem);
            waiting.push_back(std::move(done));
        }
        std::vector<std::string> problems() const override {
            return problem ? std::vector{*problem} : std::vector<std::string>();
        }
        bool isHeld = false;
        std::optional<std::string> problem;
        std::vector<SaveHandler> waiting;
    };

    /// A fake kova-ui, which runs while it is switched on.
    class UserInterface final : public UserInterfaceControl {
      public:
        std::optional<std::string> unavailableReason() const override { return std::nullopt; }
        UserInterfaceStatus status() const override {
            return {isOn, isOn ? std::optional(4243) : std::nullopt, problem};
        }
        void setOn(bool on) override { isOn = on; }
        bool restart() override { return isOn; }
        void reportProblem(const std::string& reported, std::weak_ptr<ControlPeer>) override { problem = reported; }
        std::optional<std::string> problem;
        bool isOn = true;
    };

    std::optional<std::string> settingProblem; // why settings of the system cannot be changed; absent if they can
    class Permission final : public PermissionControl {
      public:
        bool canAsk() const override { return isAskable; }
        void ask() override { ++timesAsked; }
        bool isAskable = false;
        int timesAsked = 0;
    };

    Disk disk;
    Permission permission;
    UserInterface userInterface;
    SimulatedUpdates updates;
    Scenario desk;
    UserInterfaceDialogs dialogs{desk.desktop.queue()};
    KovaShortcutSettings shortcuts{desk.preferences};
    void endServer() { server.reset(); }

    bool hasQuit = false;

  private:
    TemporaryFolder folder;
    std::optional<URLHandler> urls;
    std::optional<KovaMenuBarContent> menu;
    std::optional<LayoutShortcutCoordinator> monitors;
    std::optional<ControlMethods> methods;
    std::optional<ControlServer> server;
};

/// The lines that begin with `mark` in the document's fenced blocks of `language`; the mark itself is removed.
inline std::vector<std::string> documentedLines(const std::string& file, const std::string& language,
                                                const std::string& mark) {
    std::ifstream stream(file);
    EXPECT_TRUE(stream) << file;
    std::vector<std::string> found;
    bool isInside = false;
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with("```")) isInside = line == "```" + language;
        if (isInside && line.starts_with(mark)) found.push_back(line.substr(mark.size()));
    }
    return found;
}

} // namespace kova
