#include "app/KovaMenuBarContent.h"

#include "app/DisplayLayoutMenu.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace kova {

namespace {

constexpr std::array kDirections = {WorkspaceDirection::left, WorkspaceDirection::right, WorkspaceDirection::up,
                                    WorkspaceDirection::down};
constexpr std::array kFocusShortcuts = {KovaShortcutAction::focusLeft, KovaShortcutAction::focusRight,
                                        KovaShortcutAction::focusUp, KovaShortcutAction::focusDown};
constexpr std::array kMoveShortcuts = {KovaShortcutAction::moveLeft, KovaShortcutAction::moveRight,
                                       KovaShortcutAction::moveUp, KovaShortcutAction::moveDown};
constexpr std::array kSwapShortcuts = {KovaShortcutAction::swapLeft, KovaShortcutAction::swapRight,
                                       KovaShortcutAction::swapUp, KovaShortcutAction::swapDown};
constexpr std::size_t kNumberedTiles = 9; // the first tiles have shortcuts of their own
constexpr std::array<const char*, 4> kFocusTitles = {"Focus Left", "Focus Right", "Focus Up", "Focus Down"};
constexpr std::array<const char*, 4> kMoveTitles = {"Move Window Left", "Move Window Right", "Move Window Up",
                                                    "Move Window Down"};

enum class Enabled { no, yes };
enum class Checked { no, yes };

Enabled enabledIf(bool condition) {
    return condition ? Enabled::yes : Enabled::no;
}
Checked checkedIf(bool condition) {
    return condition ? Checked::yes : Checked::no;
}

/// UTF-8 of a code point of the Mac's range for function keys (U+F700 to U+F8FF).
std::string functionKey(unsigned codePoint) {
    return {static_cast<char>(0xE0 | (codePoint >> 12)), static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)),
            static_cast<char>(0x80 | (codePoint & 0x3F))};
}

bool isOneCharacter(std::string_view text) {
    const auto isStart = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; };
    return std::count_if(text.begin(), text.end(), isStart) == 1;
}

} // namespace

std::string menuKeyEquivalent(const KovaShortcut& shortcut) {
    static const std::map<std::uint16_t, std::string> kNamedKeys = {
        {36, "\r"},
        {48, "\t"},
        {49, " "},
        {51, "\b"},
        {53, "\x1b"},
        {117, functionKey(0xF728)},
        {126, functionKey(0xF700)},
        {125, functionKey(0xF701)},
        {123, functionKey(0xF702)},
        {124, functionKey(0xF703)},
        {115, functionKey(0xF729)},
        {119, functionKey(0xF72B)},
        {116, functionKey(0xF72C)},
        {121, functionKey(0xF72D)},
        {122, functionKey(0xF704)},
        {120, functionKey(0xF705)},
        {99, functionKey(0xF706)},
        {118, functionKey(0xF707)},
        {96, functionKey(0xF708)},
        {97, functionKey(0xF709)},
        {98, functionKey(0xF70A)},
        {100, functionKey(0xF70B)},
        {101, functionKey(0xF70C)},
        {109, functionKey(0xF70D)},
        {103, functionKey(0xF70E)},
        {111, functionKey(0xF70F)},
    };
    const auto named = kNamedKeys.find(shortcut.keyCode);
    if (named != kNamedKeys.end()) return named->second;
    std::string label = shortcut.keyLabel;
    if (!isOneCharacter(label)) return {};
    // A capital letter would stand for Shift and the letter.
    if (label[0] >= 'A' && label[0] <= 'Z') label[0] = static_cast<char>(label[0] - 'A' + 'a');
    return label;
}

/// Builds the menu and the operation of each entry.
class KovaMenuBarContent::Build {
  public:
    explicit Build(const MenuBarServices& services) :
        services_(services), workspace_(services.delegate.workspace()), state_(workspace_.state()),
        isGranted_(*state_.permissionState == AccessibilityPermissionState::granted),
        isActive_(services.delegate.isWorkspaceStarted() && !services.delegate.isWorkspaceSuspended()),
        mayMoveWindows_(isGranted_ && isActive_), focused_(mayMoveWindows_ ? workspace_.focusedWindow() : nullptr) {
        addWindowEntries();
        addLayoutEntries();
        addSceneEntries();
        separate();
        addSwitch("theme-background", "Use Theme Background", *state_.useThemeBackground, [this](bool on) {
            workspace_.perform(action::Switch{action::Setting::useThemeBackground, on});
        });
        const bool hasWindow = hasSettingsWindow();
        if (hasWindow) {
            add("settings", "Settings", Enabled::yes,
                [this] { showMessageIfRefused(services_.delegate.settingsWindow()->show(std::nullopt)); });
        }
        if (hasWindow && services_.delegate.onboardingWindow()) {
            add("onboarding", "Introduction to KOVA", Enabled::yes,
                [this] { showMessageIfRefused(services_.delegate.onboardingWindow()->show()); });
        }
        inSubmenu(hasWindow ? "Quick Settings" : "Settings", [this] { addSettings(); });
        addProgramEntries();
    }

    std::vector<MenuEntry> takeEntries() { return std::move(entries_); }
    /// The operation of the entry; empty if the entry does not exist or is disabled.
    std::function<void()> takeOperation(std::string_view id) {
        const auto found = operations_.find(id);
        return found == operations_.end() ? nullptr : std::move(found->second);
    }

  private:
    void add(std::string id, std::string title, Enabled enabled, std::function<void()> operation,
             Checked checked = Checked::no, std::optional<KovaShortcutAction> shortcutOf = std::nullopt) {
        MenuEntry entry{.id = std::move(id), .title = std::move(title)};
        entry.isEnabled = enabled == Enabled::yes;
        entry.isChecked = checked == Checked::yes;
        if (shortcutOf) entry.shortcut = services_.delegate.shortcutSettings().shortcut(*shortcutOf);
        if (entry.isEnabled) operations_[entry.id] = std::move(operation);
        entries_.push_back(std::move(entry));
    }
    void add(std::string id, std::string title, Enabled enabled, std::function<void()> operation,
             KovaShortcutAction shortcutOf) {
        add(std::move(id), std::move(title), enabled, std::move(operation), Checked::no, shortcutOf);
    }
    void addSwitch(std::string id, std::string title, bool isOn, const std::function<void(bool)>& set) {
        add(
            std::move(id), std::move(title), Enabled::yes, [set, isOn] { set(!isOn); }, checkedIf(isOn));
    }
    void separate() { entries_.push_back({.kind = MenuEntry::Kind::separator}); }
    /// A line of text without an operation; none if `text` is empty.
    void addHeading(const std::string& text) {
        if (text.empty()) return;
        MenuEntry heading{.kind = MenuEntry::Kind::heading, .title = text};
        heading.isEnabled = false;
        entries_.push_back(std::move(heading));
    }
    template <class Add>
    void inSubmenu(std::string title, Add addEntries) {
        auto outer = std::exchange(entries_, {});
        addEntries();
        MenuEntry submenu{.kind = MenuEntry::Kind::submenu, .title = std::move(title)};
        submenu.entries = std::exchange(entries_, std::move(outer));
        submenu.isEnabled = !submenu.entries.empty();
        entries_.push_back(std::move(submenu));
    }
    void perform(const WorkspaceAction& action) { workspace_.perform(action); }
    /// Adds an entry that has the title of its shortcut.
    void addCommand(std::string id, KovaShortcutAction named, Enabled enabled, WindowCommand command) {
        add(
            std::move(id), std::string(kova::title(named)), enabled,
            [this, command = std::move(command)] { perform(command); }, named);
    }

    bool isFocusedInTile() const { return focused_ && workspace_.assignments().isAssigned(focused_->id); }
    bool hasWindowBehindFocused() const {
        const auto tile = focused_ ? workspace_.assignments().targetOf(focused_->id) : std::nullopt;
        if (!tile) return false;
        const auto& stacks = workspace_.assignments().stackWindowIDsByTarget;
        const auto stack = stacks.find(*tile);
        return stack != stacks.end() && stack->second.size() > 1;
    }

    void addWindowEntries() {
        addMessages();
        addWorkspaceActions();
        addTileActions();
    }

    /// The status message, and why windows cannot be managed.
    void addMessages() {
        const std::string message = state_.lastActionMessage->value_or("");
        addHeading(message);
        if (!isGranted_) {
            if (const auto problem = workspace_.permissionProblem(); problem != message) addHeading(problem);
            if (services_.delegate.permission().canAsk()) {
                add("permission", "Allow Accessibility Access…", Enabled::yes,
                    [this] { services_.delegate.permission().ask(); });
            }
        }
        if (!isGranted_ || !message.empty()) separate();
    }

    void addWorkspaceActions() {
        add(
            "arrange", "Arrange Windows into Zones", enabledIf(mayMoveWindows_ && !state_.windows->empty()),
            [this] { perform(action::Arrange{}); }, KovaShortcutAction::arrangeWindows);
        add(
            "undo", "Undo Window Action", enabledIf(mayMoveWindows_ && *state_.canUndo),
            [this] { perform(action::Undo{}); }, KovaShortcutAction::undo);
        const bool isZoomed = state_.focusMode->has_value();
        add(
            "zoom", "Focus Mode", enabledIf(isActive_ && (isZoomed || focused_)),
            [this] { perform(action::ToggleFocusZoom{}); }, checkedIf(isZoomed), KovaShortcutAction::focusZoom);
        add(
            "stack", "Next Window in Current Zone", enabledIf(hasWindowBehindFocused()),
            [this] { perform(action::CycleStack{}); }, KovaShortcutAction::cycleStack);
        add(
            "stack-previous", "Previous Window in Current Zone", enabledIf(hasWindowBehindFocused()),
            [this] { perform(action::CycleStack{StackStep::previous}); }, KovaShortcutAction::previousInStack);
        add(
            "float", "Float Window", enabledIf(focused_), [this] { perform(command::ToggleFloating{}); },
            checkedIf(focused_ && state_.floatingWindowIDs->contains(focused_->id)),
            KovaShortcutAction::toggleFloating);
    }

    /// The submenus of commands for the focused window.
    void addTileActions() {
        const Enabled fromTile = enabledIf(isFocusedInTile());
        const Enabled toDisplay = enabledIf(mayMoveWindows_ && state_.screens->size() > 1);
        inSubmenu("Focus", [&] {
            for (std::size_t i = 0; i < kDirections.size(); ++i) {
                const auto direction = kDirections[i];
                add(
                    "focus." + std::string(describe(direction)), kFocusTitles[i], fromTile,
                    [this, direction] { perform(action::Focus{direction}); }, kFocusShortcuts[i]);
            }
            separate();
            addCommand("focus.next-display", KovaShortcutAction::focusNextDisplay, toDisplay,
                       command::FocusDisplay{DisplayStep::next});
            addCommand("focus.previous-display", KovaShortcutAction::focusPreviousDisplay, toDisplay,
                       command::FocusDisplay{DisplayStep::previous});
        });
        inSubmenu("Move", [&] {
            for (std::size_t i = 0; i < kDirections.size(); ++i) {
                const auto direction = kDirections[i];
                add(
                    "move." + std::string(describe(direction)), kMoveTitles[i], fromTile,
                    [this, direction] { perform(action::Move{direction}); }, kMoveShortcuts[i]);
            }
            separate();
            const Enabled movable = enabledIf(focused_ && toDisplay == Enabled::yes);
            addCommand("move.next-display", KovaShortcutAction::moveToNextDisplay, movable,
                       command::MoveToDisplay{std::nullopt, DisplayStep::next});
            addCommand("move.previous-display", KovaShortcutAction::moveToPreviousDisplay, movable,
                       command::MoveToDisplay{std::nullopt, DisplayStep::previous});
        });
        inSubmenu("Swap", [&] {
            for (std::size_t i = 0; i < kDirections.size(); ++i) {
                addCommand("swap." + std::string(describe(kDirections[i])), kSwapShortcuts[i], fromTile,
                           command::Swap{std::nullopt, kDirections[i]});
            }
        });
        inSubmenu("Place Window in Zone", [&] { addPlaces(); });
    }

    /// The tiles of the current display by number and name; the tiles of the focused window are checked.
    void addPlaces() {
        const auto display = focused_ ? workspace_.currentDisplayID() : std::nullopt;
        if (!display) return;
        const auto targets = workspace_.assignments().targetsAnchorFirst(focused_->id);
        std::size_t number = 0;
        for (const WorkspaceTile& tile : workspace_.tiles()) {
            if (tile.displayID != *display) continue;
            std::optional<KovaShortcutAction> shortcut;
            if (number < kNumberedTiles) {
                shortcut = static_cast<KovaShortcutAction>(static_cast<std::size_t>(KovaShortcutAction::placeInTile1) +
                                                           number);
            }
            ++number;
            add(
                "place." + std::to_string(number), std::to_string(number) + "  " + tile.slot.name, Enabled::yes,
                [this, target = tile.target] {
                    perform(command::Place{std::nullopt, target});
                },
                checkedIf(std::ranges::find(targets, tile.target) != targets.end()), shortcut);
        }
    }

    /// `prefix` distinguishes the entries of one display from those of another.
    void addLayoutMenu(std::string title, const std::string& prefix, const DisplayLayoutMenu& menu, Enabled enabled) {
        inSubmenu(std::move(title), [&] {
            for (const auto& option : menu.options) {
                add(
                    prefix + option.id, option.name, enabled,
                    [this, display = menu.id, id = option.id] { (void)chooseLayout(workspace_, display, id); },
                    checkedIf(option.id == menu.selectedOptionID));
            }
        });
    }

    void addLayoutEntries() {
        separate();
        const auto display = isActive_ ? workspace_.currentDisplayID() : std::nullopt;
        const LayoutDefinition* current = display ? workspace_.resolvedLayout(*display) : nullptr;
        const std::string currentID = current ? current->id : "";
        const Enabled enabled = enabledIf(current);
        const auto menus = displayLayoutMenus(workspace_);
        for (const auto& menu : menus) {
            if (menu.id == display) addLayoutMenu("Layout on Current Display", "layout.", menu, enabled);
        }
        if (menus.empty() || !display) inSubmenu("Layout on Current Display", [] {});
        for (const auto& menu : menus) {
            if (menus.size() < 2) break;
            addLayoutMenu("Layout on " + menu.title, "layout." + menu.id.text() + ".", menu, enabledIf(isActive_));
        }
        add(
            "layout-next", "Next Layout on Current Display", enabled,
            [this] { workspace_.perform(action::CycleLayout{}); }, KovaShortcutAction::nextLayout);
        add(
            "layout-previous", "Previous Layout on Current Display", enabled,
            [this] { workspace_.perform(action::CycleLayout{LayoutStep::previous}); },
            KovaShortcutAction::previousLayout);
        add("layout-reset", "Reset Layout Sizes on Current Display",
            enabledIf(current && state_.profile->layoutWeightsByDisplay.contains(*display)),
            [this, display] { workspace_.perform(action::ResetLayoutSizes{display}); });
    }

    void addSceneEntries() {
        separate();
        inSubmenu("Scenes", [this] {
            for (const auto& scene : *state_.scenes) {
                add(
                    "scene." + scene.id.string(), scene.name, enabledIf(mayMoveWindows_),
                    [this, id = scene.id] { perform(action::ActivateScene{id}); },
                    checkedIf(*state_.activeSceneID == scene.id));
            }
            if (!state_.scenes->empty()) separate();
            add("scene-save", "Capture Workspace as Scene", enabledIf(mayMoveWindows_),
                [this] { workspace_.perform(action::CaptureScene{}); });
        });
        addSwitch("continuous-management", "Continuously apply window rules", *state_.continuousManagementEnabled,
                  [this](bool on) {
                      workspace_.perform(action::Switch{action::Setting::continuousManagement, on});
                  });
        addHeading("Rules are explainable and run only when continuous management is enabled.");
    }

    bool hasSettingsWindow() const {
        UserInterfaceController* userInterface = services_.delegate.userInterface();
        return services_.delegate.settingsWindow() && userInterface && !userInterface->unavailableReason();
    }
    void showMessageIfRefused(const std::optional<std::string>& reason) {
        if (reason) perform(action::ShowMessage{*reason});
    }

    void addSettings() {
        addSwitch("arrange-after-launch", "Automatically arrange after launch", state_.profile->autoArrangeOnLaunch,
                  [this](bool on) {
                      workspace_.perform(action::Switch{action::Setting::autoArrangeOnLaunch, on});
                  });
        addSwitch("tile-backgrounds", "Show Tile Backgrounds", *state_.showTileBackgrounds, [this](bool on) {
            workspace_.perform(action::Switch{action::Setting::showTileBackgrounds, on});
        });
        addSwitch("bring-forward", "Bring Next Window Forward", *state_.bringsNextForward, [this](bool on) {
            workspace_.perform(action::Switch{action::Setting::bringsNextForward, on});
        });
        addSystemSettings();
        addUpdateSettings();
        if (!services_.documents) return;
        separate();
        const Enabled canAsk = enabledIf(services_.documents->canAsk());
        add("export", "Export Scenes and Rules…", canAsk, [this] { services_.documents->exportDocument(); });
        add("import", "Import Scenes and Rules…", canAsk, [this] { services_.documents->importDocument(); });
        addHeading("Portable JSON · local-first");
    }

    /// An error of the system is shown below the switch.
    void addSystemSettings() {
        if (LaunchAtLoginController* login = services_.delegate.launchAtLogin()) {
            addSwitch("start-at-login", "Start at Login", *login->startsAtLogin(),
                      [login](bool on) { login->setStartsAtLogin(on); });
            addHeading(login->errorMessage()->value_or(""));
        }
        DockAutoHideController* dock = services_.delegate.dockAutoHide();
        if (!dock || dock->unavailableReason()) return;
        addSwitch("hide-dock", "Hide the Dock Automatically", *dock->hidesSystemDock(),
                  [dock](bool on) { dock->setHidesSystemDock(on); });
        addHeading(dock->errorMessage()->value_or(""));
    }

    void addUpdateSettings() {
        UpdateChecker* updates = services_.updates;
        if (!updates) return;
        const bool checks = updates->automaticallyChecksForUpdates();
        const bool downloads = updates->automaticallyDownloadsUpdates();
        separate();
        addSwitch("update-automatically", "Check for Updates Automatically", checks,
                  [updates](bool on) { updates->setAutomaticallyChecksForUpdates(on); });
        // Automatic downloads need automatic checks.
        add(
            "update-download", "Download Updates Automatically", enabledIf(checks),
            [updates, downloads] { updates->setAutomaticallyDownloadsUpdates(!downloads); }, checkedIf(downloads));
    }

    void addProgramEntries() {
        separate();
        const bool isPaused = *state_.isPaused;
        add(
            "pause", "Pause KOVA", enabledIf(services_.delegate.isWorkspaceStarted()),
            [this, isPaused] {
                workspace_.perform(action::Switch{action::Setting::isPaused, !isPaused});
            },
            checkedIf(isPaused), KovaShortcutAction::pauseOrResume);
        add("force-quit-all", "Force Quit All Open Applications…", enabledIf(isActive_),
            [this] { workspace_.perform(action::ForceQuitAll{}); });
        add("recheck", "Recheck Accessibility", enabledIf(isActive_), [this] { workspace_.recheckAccessibility(); });
        if (UpdateChecker* updates = services_.updates) {
            add("update", "Check for Updates…", enabledIf(updates->canCheckForUpdates()),
                [updates] { updates->checkForUpdates(); });
        }
        if (!services_.quit) return;
        separate();
        add("quit", "Quit KOVA", Enabled::yes, services_.quit);
    }

    const MenuBarServices& services_;
    WorkspaceController& workspace_;
    const WorkspaceState& state_;
    const bool isGranted_, isActive_, mayMoveWindows_;
    const ManagedWindow* focused_;
    std::vector<MenuEntry> entries_;
    std::map<std::string, std::function<void()>, std::less<>> operations_;
};

std::vector<MenuEntry> KovaMenuBarContent::entries() const {
    return Build(services_).takeEntries();
}

MenuBarSymbol KovaMenuBarContent::symbol() const {
    const bool hasMessage = services_.delegate.workspace().state().lastActionMessage->has_value();
    return hasMessage ? MenuBarSymbol::message : MenuBarSymbol::usual;
}

Subscription KovaMenuBarContent::observeSymbol(std::function<void()> changed) {
    return services_.delegate.workspace().state().lastActionMessage.observe(
        [changed = std::move(changed)](const auto&) { changed(); });
}

bool KovaMenuBarContent::choose(std::string_view id) {
    Build menu(services_);
    const auto operation = menu.takeOperation(id);
    if (operation) operation();
    return operation != nullptr;
}

} // namespace kova
