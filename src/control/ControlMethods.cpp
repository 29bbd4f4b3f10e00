#include "control/ControlMethods.h"

#include "control/ActionMethods.h"
#include "control/AgentStatus.h"
#include "control/ApplicationMethods.h"
#include "control/ControlRecords.h"
#include "control/ControllerMethods.h"
#include "control/DeletedScenes.h"
#include "control/DividerMethods.h"
#include "control/Doctor.h"
#include "control/DocumentTransfer.h"
#include "control/LaunchCounts.h"
#include "control/LauncherMethods.h"
#include "control/LearningMethods.h"
#include "control/MethodTable.h"
#include "control/NameLookup.h"
#include "control/OnboardingWindowControl.h"
#include "control/OverlayBroadcast.h"
#include "control/PermissionMethods.h"
#include "control/Refusal.h"
#include "control/SceneListeners.h"
#include "control/SceneMethods.h"
#include "control/SettingMethods.h"
#include "control/SettingsBroadcast.h"
#include "control/SettingsSections.h"
#include "control/SettingsWindowControl.h"
#include "control/ShortcutMethods.h"
#include "control/StateBroadcast.h"
#include "control/ThemeMethods.h"
#include "control/UpdateMethods.h"
#include "control/UserInterfaceDialogs.h"
#include "control/UserInterfaceMethods.h"
#include "control/WindowCommandMethods.h"
#include "control/WindowExplanation.h"
#include "control/client/ControlCodes.h"
#include "persistence/PreferencesStore.h"
#include "support/JsonDecoding.h"
#include "workspace/WorkspaceController.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace kova {

namespace {

using nlohmann::json;

/// Performs the action on the window that the parameters name.
template <class Action, class... Argument>
ControlReply performOn(WorkspaceController& controller, const JsonCursor& parameters, Argument... argument) {
    auto window = wantedWindow(controller, parameters);
    if (!window) return window.error();
    return performAction(controller, Action{argument..., *std::move(window)});
}

} // namespace

class ControlMethods::Table final : MethodTable {
  public:
    explicit Table(ControlContext context) :
        context_(std::move(context)), broadcast_(context_.controller, context_.queue),
        sceneListeners_(context_.controller), deletedScenes_(context_.controller),
        transfer_(context_.controller, context_.queue),
        shortcuts_(context_.shortcuts, context_.keys, context_.queue, context_.controller.state().isSuspended,
                   context_.preferences),
        launches_(context_.preferences),
        settings_(
            sections(), [this](const auto& changed) { return observeSettings(context_, changed); }, context_.queue) {
        if (context_.overlay) {
            overlay_.emplace(
                *context_.overlay, context_.queue,
                [this](OverlayContents& contents) {
                    if (contents.message && deletedScenes_.isShownByStatusMessage())
                        contents.message->undoMethod = "scene.undelete";
                },
                [this] {
                    if (context_.dialogs) context_.dialogs->clientDisconnected();
                });
        }
        connectDialogs();
        addControllerMethods(*this, context_.controller);
        addActions();
        addApplications();
        addScenes();
        addAppearance();
        addShortcuts();
        addQueries();
        addSettings();
        addUserInterface();
        addAgent();
    }

    ~Table() {
        if (context_.dialogs) context_.dialogs->connect(std::nullopt);
    }
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;

    bool deferUntilCurrent(const ControlRequest& request, std::function<void()> ready) {
        if (request.method == "verify") {
            context_.controller.readFrames(std::move(ready));
            return true;
        }
        static constexpr std::array<std::string_view, 5> kConcernAllWindows = {"arrange", "openURL", "scene.capture",
                                                                               "scene.open", "scene.diff"};
        const bool concernsAll =
            std::find(kConcernAllWindows.begin(), kConcernAllWindows.end(), request.method) != kConcernAllWindows.end();
        if (!concernsAll && !request.parameters.contains("window")) return false;
        return context_.controller.awaitCurrent(std::move(ready));
    }

    void handle(const ControlRequest& request, const std::shared_ptr<ControlPeer>& peer, ControlResponder respond) {
        const Method* method = find(request.method);
        if (!method) {
            return respond(
                ControlFailure{controlCode::methodNotFound, "There is no such method", {{"methods", names()}}});
        }
        ControlReply reply = call(*method, request.parameters, peer);
        if (!reply) showInOverlay(reply.error(), peer);
        if (reply) settings_.touch();
        if (!reply || !method->respondsOnceSaved) return respond(std::move(reply));
        context_.preferences.save(
            [result = std::move(*reply), respond = std::move(respond)](const auto& problem) mutable {
                if (problem) result["unsaved"] = *problem;
                respond(std::move(result));
            });
    }

  private:
    void connectDialogs() {
        if (!context_.dialogs || !overlay_) return;
        context_.dialogs->connect(UserInterfaceDialogs::Connection{
            [this](const std::string& what, const json& parameters) {
                return overlay_->show(what, parameters) ? overlay_->peers() : UserInterfaceDialogs::Clients();
            },
            [this] { return overlay_->hasPeers(); },
            [this](const std::string& text) { context_.controller.perform(action::ShowMessage{text}); }});
    }

    /// A refused action of the overlay sets the status message: a click has no other place for the error.
    void showInOverlay(const ControlFailure& failure, const std::shared_ptr<ControlPeer>& peer) {
        if (failure.code == controlCode::refused && overlay_ && overlay_->isPeer(peer))
            context_.controller.perform(action::ShowMessage{failure.message});
    }

    void addActions() {
        WorkspaceController& controller = context_.controller;
        add("arrange", {"dryRun"}, [&controller](const Call& call) { return arrange(controller, call.parameters); });
        add("focus", {"direction", "window", "display"}, [&controller](const Call& call) {
            return performOn<action::Focus>(controller, call.parameters, wantedDirection(call.parameters));
        });
        add("move", {"direction", "window", "display"}, [&controller](const Call& call) {
            return performOn<action::Move>(controller, call.parameters, wantedDirection(call.parameters));
        });
        add("zoom", {"window", "display"}, [&controller](const Call& call) {
            return performOn<action::ToggleFocusZoom>(controller, call.parameters);
        });
        add("undo", {}, [&controller](const Call&) { return performAction(controller, action::Undo{}); });
        add("openURL", {"url"},
            [this](const Call& call) { return openURL(context_.controller, context_.urls, call.parameters); });
        add("history", {}, [&controller](const Call&) { return listHistory(controller); });
        add("divider.list", {"display"},
            [&controller](const Call& call) { return listDividers(controller, call.parameters); });
        add("divider.drag", {"split", "boundary", "points", "display"},
            [&controller](const Call& call) { return dragDivider(controller, call.parameters); });
        add("divider.reset", {"split", "boundary", "display"},
            [&controller](const Call& call) { return resetDivider(controller, call.parameters); });
    }

    void addApplications() {
        WorkspaceController& controller = context_.controller;
        add("launch", {"application", "tile", "display"}, [&controller, this](const Call& call) {
            return launchIntoTile(controller, launches_, call.parameters, call.peer);
        });
        add("app.list", {}, [&controller, this](const Call&) { return listApplications(controller, launches_); });
        add("app.quit", {"window"},
            [&controller](const Call& call) { return endApplication(controller, call.parameters, Ending::quit); });
        add("app.forceQuit", {"window"},
            [&controller](const Call& call) { return endApplication(controller, call.parameters, Ending::forceQuit); });
        add("app.learned", {}, [&controller](const Call&) { return listLearned(controller); });
        addSaved("app.forget", {"application"},
                 [&controller](const Call& call) { return forgetApplication(controller, call.parameters); });
        add("forceQuitAll", {"confirmed"},
            [&controller](const Call& call) { return forceQuitAll(controller, call.parameters); });
    }

    void addScenes() {
        WorkspaceController& controller = context_.controller;
        addSaved("scene.capture", {"name"},
                 [&controller](const Call& call) { return captureScene(controller, call.parameters); });
        add("scene.list", {}, [&controller](const Call&) { return listScenes(controller); });
        add("scene.show", {"scene"},
            [&controller](const Call& call) { return showScene(controller, call.parameters); });
        addSaved("scene.open", {"scene", "wait"}, [this](const Call& call) {
            return openScene(context_.controller, sceneListeners_, call.parameters, call.peer);
        });
        addSaved("scene.rename", {"scene", "newName"},
                 [&controller](const Call& call) { return renameScene(controller, call.parameters); });
        addSaved("scene.delete", {"scene"},
                 [this](const Call& call) { return deletedScenes_.deleteScene(call.parameters); });
        addSaved("scene.undelete", {}, [this](const Call&) { return deletedScenes_.undelete(); });
        add("scene.diff", {"scene"},
            [&controller](const Call& call) { return diffScene(controller, call.parameters); });
        add("export", {}, [this](const Call&) { return transfer_.exportDocument(); });
        addSaved("import", {"text", "more", "dryRun"},
                 [this](const Call& call) { return transfer_.importDocument(call.parameters, call.peer); });
    }

    void addAppearance() {
        WorkspaceController& controller = context_.controller;
        add("theme.list", {}, [this](const Call&) { return withIsDrawn(listThemes(context_.controller)); });
        addSaved("theme.select", {"theme"},
                 [this](const Call& call) { return withIsDrawn(selectTheme(context_.controller, call.parameters)); });
        add("accent.list", {}, [&controller](const Call&) { return listAccentColors(controller); });
        addSaved("accent.select", {"accentColor"}, [this](const Call& call) {
            return withIsDrawn(selectAccentColor(context_.controller, call.parameters));
        });
        addSwitch("theme.background", action::Setting::useThemeBackground);
        addSwitch("theme.brain", action::Setting::showBrain);
        addSwitch("theme.tileBackgrounds", action::Setting::showTileBackgrounds);
        addSwitch("bringForward", action::Setting::bringsNextForward);
        addSwitch("arrangeAfterLaunch", action::Setting::autoArrangeOnLaunch);
    }

    void addSwitch(const char* name, action::Setting setting) {
        addSaved(name, {"isOn"}, [this, setting](const Call& call) {
            return withIsDrawn(switchPreference(context_.controller, call.parameters, setting));
        });
    }

    /// Adds whether a client draws the overlay.
    ControlReply withIsDrawn(ControlReply reply) {
        if (reply) (*reply)["isDrawn"] = overlay_ && overlay_->hasPeers();
        return reply;
    }

    void addShortcuts() {
        add("shortcut.list", {}, [this](const Call&) { return shortcuts_.list(); });
        addSaved("shortcut.set", {"action", "keys"},
                 [this](const Call& call) { return shortcuts_.set(call.parameters, call.peer); });
        addSaved("shortcut.clear", {"action"}, [this](const Call& call) { return shortcuts_.clear(call.parameters); });
        add("shortcut.record", {"action"},
            [this](const Call& call) { return shortcuts_.record(call.parameters, call.peer); });
        addSaved("shortcut.restoreDefaults", {}, [this](const Call&) { return shortcuts_.restoreDefaults(); });
    }

    void addQueries() {
        const WorkspaceController& controller = context_.controller;
        add("query.displays", {}, [&controller](const Call&) -> ControlReply {
            return json{{"displays", controlRecord::displays(controller)},
                        {"current", orNull(controller.currentDisplayID())}};
        });
        add("query.windows", {}, [&controller](const Call&) -> ControlReply {
            return json{{"windows", controlRecord::windows(controller)}};
        });
        add("query.tiles", {}, [&controller](const Call&) -> ControlReply {
            return json{{"tiles", controlRecord::tiles(controller)}};
        });
        add("query.focus", {}, [&controller](const Call&) { return describeFocus(controller); });
        add("query.windowAt", {"x", "y"},
            [&controller](const Call& call) { return findWindowAt(controller, call.parameters); });
        add("query.state", {}, [this](const Call&) -> ControlReply { return json{{"state", broadcast_.state()}}; });
        add("explain", {"window"}, [&controller](const Call& call) { return explain(controller, call.parameters); });
    }

    void addSettings() {
        const auto addSwitch = [this](const std::string& name, const std::optional<SystemSetting>& setting) {
            add(name + ".status", {}, [&setting](const Call&) { return settingStatus(setting); });
            addSaved(name + ".on", {}, [&setting](const Call&) { return switchSetting(setting, true); });
            addSaved(name + ".off", {}, [&setting](const Call&) { return switchSetting(setting, false); });
        };
        addSwitch("login", context_.startAtLogin);
        addSwitch("dock", context_.dockAutoHide);
    }

    void addUserInterface() {
        add("menu", {}, [this](const Call&) {
            return listMenu(context_.menu,
                            [this](const KovaShortcut& shortcut) { return shortcuts_.textOf(shortcut); });
        });
        addSaved("menu.choose", {"id"}, [this](const Call& call) {
            return chooseFromMenu(context_.menu, context_.controller, call.parameters);
        });
        add("ui.status", {}, [this](const Call&) { return userInterfaceStatus(context_.userInterface); });
        add("ui.report", {"problem"}, [this](const Call& call) {
            return noteUserInterfaceProblem(context_.userInterface, call.parameters, call.peer);
        });
        add("ui.restart", {},
            [this](const Call&) { return switchUserInterface(context_.userInterface, UserInterfaceSwitch::restart); });
        addSaved("ui.on", {},
                 [this](const Call&) { return switchUserInterface(context_.userInterface, UserInterfaceSwitch::on); });
        addSaved("ui.off", {}, [this](const Call&) {
            if (SettingsWindowControl* window = settingsWindow()) window->close();
            if (OnboardingWindowControl* window = onboardingWindow()) window->close();
            return switchUserInterface(context_.userInterface, UserInterfaceSwitch::off);
        });
        add("ui.show", {"what"},
            [this](const Call& call) { return showInUserInterface(userInterfaceWindows(), call.parameters); });
        add("ui.hide", {"what"},
            [this](const Call& call) { return hideInUserInterface(userInterfaceWindows(), call.parameters); });
        add("ui.answer", {"id", "isConfirmed"}, [this](const Call& call) -> ControlReply {
            if (!context_.dialogs) return refusal("This agent shows its alerts itself");
            return context_.dialogs->answer(call.parameters);
        });
        add("ui.launcher", {"tile", "display"}, [this](const Call& call) {
            return showLauncher(overlay_ ? &*overlay_ : nullptr, context_.controller, call.parameters);
        });
        add("ui.palette", {"tile", "display"}, [this](const Call& call) {
            return showPalette(overlay_ ? &*overlay_ : nullptr, context_.controller, call.parameters);
        });
        add("settings.show", {"pane"},
            [this](const Call& call) { return showSettings(userInterfaceWindows(), call.parameters); });
    }

    SettingsWindowControl* settingsWindow() const {
        return context_.settingsWindow ? context_.settingsWindow() : nullptr;
    }
    OnboardingWindowControl* onboardingWindow() const {
        return context_.onboardingWindow ? context_.onboardingWindow() : nullptr;
    }
    UserInterfaceWindows userInterfaceWindows() {
        return {
            .overlay = overlay_ ? &*overlay_ : nullptr, .settings = settingsWindow(), .onboarding = onboardingWindow()};
    }

    void addAgent() {
        add("updates.status", {}, [this](const Call&) { return updatesStatus(context_.menu); });
        add("updates.check", {}, [this](const Call&) { return checkForUpdates(context_.menu); });
        for (const auto& [name, which] : {std::pair("updates.automatic", UpdateSwitch::checks),
                                          std::pair("updates.download", UpdateSwitch::downloads)}) {
            add(name, {"isOn"}, [this, which = which](const Call& call) {
                return switchUpdates(context_.menu, which, call.parameters);
            });
        }
        add("permission.status", {},
            [this](const Call&) { return permissionStatus(context_.controller, context_.permission); });
        add("permission.ask", {},
            [this](const Call&) { return askForPermission(context_.controller, context_.permission); });
        add("status", {}, [this](const Call&) -> ControlReply { return agentStatus(context_, shortcuts_); });
        add("doctor", {}, [this](const Call&) -> ControlReply { return examine(context_, shortcuts_); });
        add("subscribe", {"topic"}, [this](const Call& call) { return subscribe(call); });
        add("quit", {}, [this](const Call&) -> ControlReply {
            context_.queue.post(context_.quit); // after the response
            return json{{"process", getpid()}};
        });
    }

    ControlReply subscribe(const Call& call) {
        const auto topic = call.parameters.optional("topic");
        if (!topic) return broadcast_.subscribe(call.peer);
        if (topic->string() == "settings") return settings_.subscribe(call.peer);
        if (topic->string() != "overlay") topic->fail("the topics are “overlay” and “settings”");
        if (!overlay_) return refusal("This agent has no overlay");
        return overlay_->subscribe(call.peer);
    }

    /// The contents of the settings window. Each section is the result of a method that commands use, too.
    std::vector<SettingsBroadcast::Section> sections() {
        const WorkspaceController& controller = context_.controller;
        const auto resultOf = [this](const char* method) {
            return [this, method]() -> json {
                const ControlReply reply = call(*find(method), json::object(), nullptr);
                return reply ? *reply : json(nullptr);
            };
        };
        return {{"settings", [&controller] { return controlRecord::settings(controller); }},
                {"displays", [&controller] { return controlRecord::displays(controller); }},
                {"login", resultOf("login.status")},
                {"dock", resultOf("dock.status")},
                {"userInterface", resultOf("ui.status")},
                {"shortcuts", resultOf("shortcut.list")},
                {"themes", resultOf("theme.list")},
                {"accentColors", resultOf("accent.list")},
                {"layouts", resultOf("layout.fit")},
                {"rules", resultOf("rule.list")},
                {"scenes", resultOf("scene.list")},
                {"learned", resultOf("app.learned")},
                {"permission", resultOf("permission.status")},
                {"updates", resultOf("updates.status")}};
    }

    ControlContext context_;
    StateBroadcast broadcast_;
    std::optional<OverlayBroadcast> overlay_;
    SceneListeners sceneListeners_;
    DeletedScenes deletedScenes_;
    DocumentTransfer transfer_;
    ShortcutMethods shortcuts_;
    LaunchCounts launches_;
    SettingsBroadcast settings_;
};

ControlMethods::ControlMethods(ControlContext context) : table_(std::make_unique<Table>(std::move(context))) {}

ControlMethods::~ControlMethods() = default;

bool ControlMethods::deferUntilCurrent(const ControlRequest& request, std::function<void()> ready) {
    return table_->deferUntilCurrent(request, std::move(ready));
}

void ControlMethods::handle(const ControlRequest& request, const std::shared_ptr<ControlPeer>& peer,
                            ControlResponder respond) {
    table_->handle(request, peer, std::move(respond));
}

} // namespace kova
