// The entries of the menu-bar menu and their actions, while windows open and close.
#include "app/KovaMenuBarContent.h"

#include "app/DisplayLayoutMenu.h"
#include "app/DocumentExchange.h"
#include "app/DocumentPanelServicing.h"
#include "persistence/MemoryPreferencesStore.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "tests/harness/SimulatedUpdates.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kova {
namespace {

class FakePanels final : public DocumentPanelServicing {
  public:
    void saveDocument(const std::string& proposedName, std::string,
                      std::function<void(const std::optional<FileProblem>&)>) override {
        calls += "save " + proposedName + " ";
    }
    void openDocument(std::function<void(const std::variant<std::string, FileProblem>&)>) override { calls += "open "; }
    std::string calls;
};

class FakeLoginItem final : public LaunchAtLoginServicing {
  public:
    LaunchAtLoginStatus status() const override {
        return isOn ? LaunchAtLoginStatus::enabled : LaunchAtLoginStatus::notRegistered;
    }
    std::optional<std::string> registerAtLogin() override {
        if (!problem) isOn = true;
        return problem;
    }
    std::optional<std::string> unregisterAtLogin() override {
        if (!problem) isOn = false;
        return problem;
    }
    bool isOn = false;
    std::optional<std::string> problem;
};

class FakeDock final : public DockAutoHideServicing {
  public:
    explicit FakeDock(MainQueue& queue) : queue_(queue) {}
    std::optional<std::string> unavailableReason() const override { return missing; }
    void readAutoHide(ReadCompletion completion) override {
        queue_.post([this, completion] { completion(isHidden); });
    }
    void writeAutoHide(bool hides, WriteCompletion completion) override {
        queue_.post([this, hides, completion] {
            isHidden = hides;
            completion({});
        });
    }
    std::optional<std::string> missing;
    bool isHidden = false;

  private:
    MainQueue& queue_;
};

class MenuBar : public ::testing::Test {
  protected:
    MenuBar() {
        desktop.addDisplay({.name = "A", .size = {2560, 1440}});
        advance(0);
        (void)workspace.perform(action::SelectLayout{displayID(desktop.screens().front()),
                                                     DisplayLayoutSelection::layout("jarvis.dual-split")});
        delegate.startWorkspace();
    }
    ~MenuBar() override { EXPECT_EQ(desktop.violations(), std::vector<std::string>{}); }

    void opens(const std::string& name) {
        if (!desktop.isRunning(name)) desktop.launch(name);
        desktop.open(name);
        advance(0.6);
    }
    void advance(double seconds) { desktop.queue().advance(Seconds(seconds)); }
    static std::string line(const MenuEntry& entry) {
        const bool isCommand = entry.kind == MenuEntry::Kind::command;
        return (entry.isEnabled ? "" : "(") + entry.title + (entry.isEnabled ? "" : ")") +
               (entry.isChecked ? " ✓" : "") + (isCommand ? "" : ":");
    }
    /// One line per entry: its title, in parentheses if the entry is not enabled, with "✓" if it is checked, and with
    /// ":" if it is a submenu or a heading. A separator is "---". The entries of submenus are left out.
    std::string picture(const std::vector<MenuEntry>& entries) {
        std::string lines;
        for (const auto& entry : entries) {
            lines += (entry.kind == MenuEntry::Kind::separator ? "---" : line(entry)) + "\n";
        }
        return lines;
    }
    MenuEntry entry(const std::string& title) { return entryIn(menu.entries(), title).value_or(MenuEntry{}); }
    static std::optional<MenuEntry> entryIn(const std::vector<MenuEntry>& entries, const std::string& title) {
        for (const auto& candidate : entries) {
            if (candidate.title == title) return candidate;
            if (const auto inside = entryIn(candidate.entries, title)) return inside;
        }
        return std::nullopt;
    }
    bool isEnabled(const std::string& title) { return entry(title).isEnabled && !entry(title).title.empty(); }
    /// Chooses an entry by its title.
    bool choose(const std::string& title) {
        const bool chosen = menu.choose(entry(title).id);
        advance(2.4);
        return chosen;
    }
    std::string message() { return workspace.state().lastActionMessage.get().value_or(""); }

    SimulatedDesktop desktop;
    MemoryPreferencesStore preferences;
    FakeLoginItem loginItem;
    FakeDock dock{desktop.queue()};
    AppDelegate delegate{
        {desktop, desktop, desktop, desktop, desktop, preferences, desktop.queue(), desktop.pollingQueue(), desktop},
        {.launchAtLogin = &loginItem, .dockAutoHide = &dock}};
    WorkspaceController& workspace = delegate.workspace();
    KovaShortcutSettings& shortcuts = delegate.shortcutSettings();
    FakePanels panels;
    DocumentExchange documents{workspace, panels, desktop};
    SimulatedUpdates updates;
    int quits = 0;
    KovaMenuBarContent menu{
        {.delegate = delegate, .documents = &documents, .updates = &updates, .quit = [this] { ++quits; }}};
};

TEST_F(MenuBar, ShowsAStatusMessageUntilItEnds) {
    advance(4.1); // until the message about the layout has ended
    int changes = 0;
    const auto subscription = menu.observeSymbol([&] { ++changes; });
    EXPECT_EQ(menu.symbol(), MenuBarSymbol::usual);
    workspace.perform(action::ShowMessage{"Windows arranged"});
    EXPECT_EQ(menu.symbol(), MenuBarSymbol::message);
    EXPECT_EQ(menu.entries().front().title, "Windows arranged");
    EXPECT_FALSE(menu.entries().front().isEnabled);
    advance(4.1);
    EXPECT_EQ(menu.symbol(), MenuBarSymbol::usual);
    EXPECT_EQ(menu.entries().front().title, "Arrange Windows into Zones");
    EXPECT_EQ(changes, 2);
}

TEST_F(MenuBar, EnablesTheCommandsThatAreAvailableNow) {
    advance(4.1); // until the message about the layout has ended
    EXPECT_EQ(picture(menu.entries()), "(Arrange Windows into Zones)\n"
                                       "Undo Window Action\n"
                                       "(Focus Mode)\n"
                                       "(Next Window in Current Zone)\n"
                                       "(Previous Window in Current Zone)\n"
                                       "(Float Window)\n"
                                       "Focus:\n"
                                       "Move:\n"
                                       "Swap:\n"
                                       "(Place Window in Zone):\n"
                                       "---\n"
                                       "Layout on Current Display:\n"
                                       "Next Layout on Current Display\n"
                                       "Previous Layout on Current Display\n"
                                       "(Reset Layout Sizes on Current Display)\n"
                                       "---\n"
                                       "Scenes:\n"
                                       "Continuously apply window rules\n"
                                       "(Rules are explainable and run only when continuous management is enabled.):\n"
                                       "---\n"
                                       "Use Theme Background\n"
                                       "Settings:\n"
                                       "---\n"
                                       "Pause KOVA\n"
                                       "Force Quit All Open Applications…\n"
                                       "Recheck Accessibility\n"
                                       "Check for Updates…\n"
                                       "---\n"
                                       "Quit KOVA\n");
    EXPECT_FALSE(choose("Arrange Windows into Zones"));
    EXPECT_FALSE(isEnabled("Focus Left"));

    for (const char* name : {"Mail", "Notes", "Chat"}) opens(name);
    desktop.userFocuses("Mail");
    EXPECT_TRUE(choose("Arrange Windows into Zones"));
    EXPECT_EQ(message(), "Windows arranged into zones — Undo is available");
    EXPECT_TRUE(isEnabled("Undo Window Action"));
    desktop.userFocuses("Mail");
    advance(0.6);
    EXPECT_TRUE(isEnabled("Focus Left") && isEnabled("Move Window Right"));
    const WindowID front = workspace.focusedWindow()->id;
    const auto target = workspace.assignments().targetOf(front);
    ASSERT_TRUE(target);
    const auto& stacks = workspace.assignments().stackWindowIDsByTarget;
    EXPECT_EQ(isEnabled("Next Window in Current Zone"), stacks.contains(*target) && stacks.at(*target).size() > 1);

    // The chosen entry is carried out and can be undone.
    const bool isLeft = desktop.window("Mail").frame.origin.x < 1000;
    EXPECT_TRUE(choose(isLeft ? "Move Window Right" : "Move Window Left"));
    EXPECT_NE(workspace.assignments().targetOf(front), target);
    EXPECT_TRUE(choose("Undo Window Action"));
    EXPECT_EQ(workspace.assignments().targetOf(front), target);
    EXPECT_TRUE(choose("Focus Mode"));
    EXPECT_TRUE(entry("Focus Mode").isChecked);
    EXPECT_TRUE(choose("Focus Mode"));
    EXPECT_FALSE(entry("Focus Mode").isChecked);

    EXPECT_TRUE(choose("Quit KOVA"));
    EXPECT_EQ(quits, 1);
    EXPECT_FALSE(menu.choose(""));
    EXPECT_FALSE(menu.choose("nonsense"));
}

TEST_F(MenuBar, HasTheCommandsForOneWindow) {
    for (const char* name : {"Mail", "Notes"}) opens(name);
    desktop.userFocuses("Mail");
    EXPECT_TRUE(choose("Arrange Windows into Zones"));
    desktop.userFocuses("Mail");
    advance(0.6);
    const WindowID mail = workspace.focusedWindow()->id;
    const auto places = entry("Place Window in Zone").entries;
    ASSERT_EQ(places.size(), 2u);
    EXPECT_NE(places[0].isChecked, places[1].isChecked);
    const bool isFirst = places[0].isChecked;
    const TileTarget first = *workspace.assignments().targetOf(mail);
    EXPECT_TRUE(choose(places[isFirst ? 1 : 0].title));
    EXPECT_NE(workspace.assignments().targetOf(mail), first);
    EXPECT_TRUE(entry("Place Window in Zone").entries[isFirst ? 1 : 0].isChecked);
    EXPECT_TRUE(choose(isFirst ? "Swap with Window Left" : "Swap with Window Right"));
    EXPECT_EQ(workspace.assignments().targetOf(mail), first) << message();
    EXPECT_TRUE(choose("Float Window"));
    EXPECT_TRUE(entry("Float Window").isChecked);
    EXPECT_FALSE(workspace.assignments().isAssigned(mail));
    EXPECT_FALSE(isEnabled("Swap with Window Left"));
    EXPECT_TRUE(choose("Float Window"));
    EXPECT_TRUE(workspace.assignments().isAssigned(mail));

    EXPECT_FALSE(isEnabled("Move Window to Next Display")) << "only one display is connected";
    desktop.addDisplay({.name = "Beamer", .size = {1920, 1080}});
    advance(3);
    EXPECT_TRUE(choose("Move Window to Next Display"));
    EXPECT_NE(workspace.assignments().targetOf(mail)->display, displayID(desktop.screens().front()));
    EXPECT_TRUE(choose("Focus Previous Display"));

    EXPECT_TRUE(choose("Pause KOVA"));
    EXPECT_TRUE(*workspace.state().isPaused && entry("Pause KOVA").isChecked);
    EXPECT_FALSE(isEnabled("Arrange Windows into Zones") || isEnabled("Float Window"));
    EXPECT_TRUE(choose("Pause KOVA"));
    EXPECT_TRUE(isEnabled("Arrange Windows into Zones"));
}

TEST_F(MenuBar, ChecksTheLayoutAndTheSceneInForce) {
    opens("Mail");
    const auto checked = [&](const std::string& submenu) {
        std::string titles;
        for (const auto& candidate : entry(submenu).entries) titles += candidate.isChecked ? candidate.title + ";" : "";
        return titles;
    };
    EXPECT_EQ(entry("Layout on Current Display").entries.size(), workspace.catalogue().size() + 1)
        << "all layouts, and Automatic";
    EXPECT_EQ(checked("Layout on Current Display"),
              workspace.resolvedLayout(*workspace.currentDisplayID())->name + ";");
    const std::string other = entry("Layout on Current Display").entries.back().title;
    EXPECT_TRUE(choose(other));
    EXPECT_EQ(checked("Layout on Current Display"), other + ";");
    EXPECT_TRUE(choose("Next Layout on Current Display"));
    EXPECT_TRUE(choose("Previous Layout on Current Display"));
    EXPECT_EQ(checked("Layout on Current Display"), other + ";");

    const auto dividers = workspace.dividers();
    ASSERT_FALSE(dividers.empty());
    EXPECT_FALSE(isEnabled("Reset Layout Sizes on Current Display"));
    ASSERT_TRUE(workspace.perform(action::BeginDividerDrag{dividers.front()}));
    workspace.perform(action::UpdateDividerDrag{dividers.front(), 60});
    workspace.perform(action::EndDividerDrag{dividers.front()});
    advance(1);
    EXPECT_TRUE(choose("Reset Layout Sizes on Current Display"));
    EXPECT_FALSE(isEnabled("Reset Layout Sizes on Current Display"));

    EXPECT_EQ(entry("Scenes").entries.size(), 1u);
    EXPECT_TRUE(choose("Capture Workspace as Scene"));
    ASSERT_EQ(workspace.state().scenes->size(), 1u);
    const WorkspaceScene scene = workspace.state().scenes->front();
    EXPECT_EQ(checked("Scenes"), scene.name + ";");
    const std::string id = entry(scene.name).id;
    EXPECT_TRUE(choose("Next Layout on Current Display"));
    EXPECT_TRUE(menu.choose(id));
    advance(2.4);
    EXPECT_EQ(checked("Layout on Current Display"), other + ";");
    // The scene was deleted by another client while the menu was open.
    EXPECT_TRUE(workspace.perform(action::DeleteScene{scene.id}));
    EXPECT_FALSE(menu.choose(id));
}

TEST_F(MenuBar, ChoosesTheLayoutOfEachDisplay) {
    const std::string first = displayLayoutMenus(workspace).front().title;
    EXPECT_FALSE(entryIn(menu.entries(), "Layout on " + first)) << "there is only one display";
    desktop.addDisplay({.name = "Beamer", .size = {1920, 1080}});
    advance(3);
    const auto menuOfBeamer = [&] { return displayLayoutMenus(workspace).at(1); };
    EXPECT_EQ(menuOfBeamer().title, "Beamer");
    EXPECT_EQ(menuOfBeamer().options.size(), workspace.catalogue().size() + 1);
    EXPECT_EQ(menuOfBeamer().selectedOptionID, workspace.resolvedLayout(menuOfBeamer().id)->id);
    const auto chooseOption = [&](std::size_t option) {
        EXPECT_TRUE(menu.choose(entry("Layout on Beamer").entries.at(option).id));
        EXPECT_TRUE(entry("Layout on Beamer").entries.at(option).isChecked);
    };
    chooseOption(0);
    EXPECT_EQ(menuOfBeamer().selectedOptionID, "automatic");
    chooseOption(3);
    EXPECT_EQ(workspace.resolvedLayout(menuOfBeamer().id)->id, workspace.catalogue().at(2).id);
    EXPECT_EQ(displayLayoutMenus(workspace).front().selectedOptionID,
              workspace.resolvedLayout(displayLayoutMenus(workspace).front().id)->id);
    EXPECT_FALSE(chooseLayout(workspace, "unknown", "automatic"));
}

TEST_F(MenuBar, ShowsWhyTheEntriesAreDisabled) {
    advance(4.1); // until the message about the layout has ended
    opens("Mail");
    desktop.setTrusted(false);
    advance(3);
    EXPECT_EQ(menu.entries().front().title, "Accessibility permission is required");
    for (const char* title :
         {"Arrange Windows into Zones", "Undo Window Action", "Focus Mode", "Next Window in Current Zone", "Focus Left",
          "Move Window Down", "Capture Workspace as Scene"}) {
        EXPECT_FALSE(isEnabled(title)) << title;
    }
    EXPECT_TRUE(isEnabled("Next Layout on Current Display")) << "a layout can be chosen without the permission";
    desktop.setTrusted(true);
    EXPECT_TRUE(choose("Recheck Accessibility"));
    EXPECT_TRUE(isEnabled("Arrange Windows into Zones"));

    delegate.handleSystemActivityEvent(SystemActivityEvent::systemWillSleep);
    for (const char* title : {"Arrange Windows into Zones", "Next Layout on Current Display", "Recheck Accessibility",
                              "Force Quit All Open Applications…"}) {
        EXPECT_FALSE(isEnabled(title)) << title;
    }
    EXPECT_TRUE(isEnabled("Quit KOVA") && isEnabled("Use Theme Background"));
    delegate.handleSystemActivityEvent(SystemActivityEvent::systemDidWake);
    advance(3);
    EXPECT_TRUE(isEnabled("Arrange Windows into Zones"));
}

TEST_F(MenuBar, EntriesChangeTheirSettings) {
    opens("Mail");
    for (const char* title :
         {"Use Theme Background", "Continuously apply window rules", "Automatically arrange after launch",
          "Show Tile Backgrounds", "Check for Updates Automatically", "Download Updates Automatically"}) {
        const bool before = entry(title).isChecked;
        EXPECT_TRUE(choose(title)) << title;
        EXPECT_NE(entry(title).isChecked, before) << title;
        if (title == std::string("Check for Updates Automatically")) {
            EXPECT_FALSE(isEnabled("Download Updates Automatically"));
            EXPECT_TRUE(choose(title));
        }
    }
    EXPECT_TRUE(*workspace.state().continuousManagementEnabled);
    EXPECT_TRUE(updates.downloads);
    EXPECT_TRUE(choose("Check for Updates…"));
    EXPECT_FALSE(isEnabled("Check for Updates…")) << "a check is under way";
    EXPECT_TRUE(choose("Export Scenes and Rules…"));
    EXPECT_TRUE(choose("Import Scenes and Rules…"));
    EXPECT_EQ(panels.calls, "save KOVA-Workspace.json open ");

    EXPECT_TRUE(choose("Start at Login"));
    EXPECT_TRUE(loginItem.isOn && entry("Start at Login").isChecked);
    loginItem.problem = "The disk is full.";
    EXPECT_TRUE(choose("Start at Login"));
    EXPECT_TRUE(loginItem.isOn && entry("Start at Login").isChecked);
    EXPECT_EQ(entry("The disk is full.").kind, MenuEntry::Kind::heading);
    EXPECT_TRUE(choose("Hide the Dock Automatically"));
    EXPECT_TRUE(dock.isHidden && entry("Hide the Dock Automatically").isChecked);
    dock.missing = "There is no Dock.";
    EXPECT_FALSE(isEnabled("Hide the Dock Automatically"));

    // Applications are only ended after the user's confirmation.
    EXPECT_TRUE(choose("Force Quit All Open Applications…"));
    ASSERT_EQ(desktop.takeAlerts().size(), 1u);
    EXPECT_TRUE(desktop.isRunning("Mail"));
    desktop.answerAlert(true);
    advance(1);
    EXPECT_FALSE(desktop.isRunning("Mail"));
}

TEST_F(MenuBar, ShowsTheShortcutsThatAreSet) {
    opens("Mail");
    const auto arrange = shortcuts.shortcut(KovaShortcutAction::arrangeWindows);
    ASSERT_TRUE(arrange);
    EXPECT_EQ(entry("Arrange Windows into Zones").shortcut, arrange);
    EXPECT_EQ(entry("Focus Up").shortcut, shortcuts.shortcut(KovaShortcutAction::focusUp));
    EXPECT_EQ(entry("Move Window Left").shortcut, shortcuts.shortcut(KovaShortcutAction::moveLeft));
    EXPECT_EQ(entry("Quit KOVA").shortcut, std::nullopt);
    ASSERT_TRUE(shortcuts.setShortcut(std::nullopt, KovaShortcutAction::arrangeWindows));
    EXPECT_EQ(entry("Arrange Windows into Zones").shortcut, std::nullopt);

    const std::pair<KovaShortcut, std::string> known[] = {
        {{.keyCode = 0, .modifierFlagsRawValue = 0, .keyLabel = "A"}, "a"},
        {{.keyCode = 41, .modifierFlagsRawValue = 0, .keyLabel = "Ö"}, "Ö"},
        {{.keyCode = 123, .modifierFlagsRawValue = 0, .keyLabel = "←"}, "\xEF\x9C\x82"}, // U+F702
        {{.keyCode = 122, .modifierFlagsRawValue = 0, .keyLabel = "F1"}, "\xEF\x9C\x84"},
        {{.keyCode = 49, .modifierFlagsRawValue = 0, .keyLabel = "Space"}, " "},
        {{.keyCode = 200, .modifierFlagsRawValue = 0, .keyLabel = "Key (event.keyCode)"}, ""},
        {{.keyCode = 200, .modifierFlagsRawValue = 0, .keyLabel = ""}, ""},
    };
    for (const auto& [shortcut, character] : known) EXPECT_EQ(menuKeyEquivalent(shortcut), character);
}

TEST_F(MenuBar, LeavesOutTheEntriesOfMissingServices) {
    KovaMenuBarContent bare({.delegate = delegate});
    for (const char* title :
         {"Check for Updates…", "Quit KOVA", "Export Scenes and Rules…", "Check for Updates Automatically"}) {
        EXPECT_FALSE(entryIn(bare.entries(), title)) << title;
    }
    // Ids are unique, and separators only stand between two groups.
    std::vector<std::string> ids;
    const std::function<void(const std::vector<MenuEntry>&)> gather = [&](const std::vector<MenuEntry>& entries) {
        for (const auto& each : entries) {
            if (each.kind == MenuEntry::Kind::command) ids.push_back(each.id);
            gather(each.entries);
        }
    };
    gather(menu.entries());
    std::ranges::sort(ids);
    EXPECT_EQ(std::ranges::adjacent_find(ids), ids.end());
    for (const auto& shown : {menu.entries(), bare.entries()}) {
        for (std::size_t i = 0; i + 1 < shown.size(); ++i) {
            EXPECT_FALSE(shown[i].kind == MenuEntry::Kind::separator &&
                         shown[i + 1].kind == MenuEntry::Kind::separator);
        }
        EXPECT_NE(shown.back().kind, MenuEntry::Kind::separator);
    }
}

} // namespace
} // namespace kova
