#include "control/ControlMethods.h"

#include "control/ActionMethods.h"
#include "control/AgentStatus.h"
#include "control/ApplicationMethods.h"
#include "control/ControlRecords.h"
#include "control/DeletedScenes.h"
#include "control/DividerMethods.h"
#include "control/Doctor.h"
#include "control/DocumentTransfer.h"
#include "control/LaunchCounts.h"
#include "control/LauncherMethods.h"
#include "control/LayoutMethods.h"
#include "control/LearningMethods.h"
#include "control/MethodTable.h"
#include "control/OverlayBroadcast.h"
#include "control/PermissionMethods.h"
#include "control/QueryMethods.h"
#include "control/Refusal.h"
#include "control/RuleMethods.h"
#include "control/SceneListeners.h"
#include "control/SceneMethods.h"
#include "control/SettingMethods.h"
#include "control/SettingsBroadcast.h"
#include "control/SettingsSections.h"
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

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kova {

namespace {

using nlohmann::json;

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
        addMethods();
    }

    ~Table() {
        if (context_.dialogs) context_.dialogs->connect(std::nullopt);
    }
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;

    bool deferUntilCurrent(const ControlRequest& request, std::function<void()> ready) {
        const Method* method = find(request.method);
        const Needs needs = method ? method->needs : Needs::nothing;
        if (needs == Needs::currentFrames) {
            context_.controller.readFrames(std::move(ready));
            return true;
        }
        if (needs == Needs::nothing && !request.parameters.contains("window")) return false;
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
        if (reply) settings_.noteChange();
        if (!reply || !method->respondsOnceSaved) return respond(std::move(reply));
        context_.preferences.save(
            [result = std::move(*reply), respond = std::move(respond)](const auto& problem) mutable {
                if (problem) result["unsaved"] = *problem;
                respond(std::move(result));
            });
    }

  private:
    void addMethods() {
        OverlayBroadcast* overlay = overlay_ ? &*overlay_ : nullptr;
        WorkspaceController& controller = context_.controller;
        addActionMethods(*this, controller, context_.urls);
        addWindowCommandMethods(*this, controller);
        addDividerMethods(*this, controller);
        addLayoutMethods(*this, controller);
        addRuleMethods(*this, controller);
        addApplicationMethods(*this, controller, launches_);
        addLearningMethods(*this, controller);
        addSceneMethods(*this, controller, sceneListeners_, deletedScenes_);
        transfer_.addTo(*this);
        addThemeMethods(*this, controller, [overlay] { return overlay && overlay->hasSubscribers(); });
        shortcuts_.addTo(*this);
        addQueryMethods(*this, controller);
        addExplanationMethods(*this, controller);
        addSettingMethods(*this, "login", context_.startAtLogin);
        addSettingMethods(*this, "dock", context_.dockAutoHide);
        addUserInterfaceMethods(*this, userInterfaceParts(overlay));
        addLauncherMethods(*this, controller, overlay);
        addUpdateMethods(*this, context_.menu);
        addPermissionMethods(*this, controller, context_.permission);
        addAgentMethods();
    }

    void connectDialogs() {
        if (!context_.dialogs || !overlay_) return;
        context_.dialogs->connect(UserInterfaceDialogs::Connection{
            [this](const std::string& what, const json& parameters) {
                return overlay_->show(what, parameters) ? overlay_->subscribers() : UserInterfaceDialogs::Clients();
            },
            [this] { return overlay_->hasSubscribers(); },
            [this](const std::string& text) { context_.controller.perform(action::ShowMessage{text}); }});
    }

    /// Shows the error of a refused request of the overlay as status message, since the overlay itself shows no errors.
    void showInOverlay(const ControlFailure& failure, const std::shared_ptr<ControlPeer>& peer) {
        if (failure.code == controlCode::refused && overlay_ && overlay_->isSubscriber(peer))
            context_.controller.perform(action::ShowMessage{failure.message});
    }

    void addAgentMethods() {
        add("query.state", {}, [this](const MethodCall&) -> ControlReply {
            return json{{"state", broadcast_.state()}};
        });
        add("status", {}, [this](const MethodCall&) -> ControlReply { return agentStatus(context_, shortcuts_); });
        add("doctor", {}, [this](const MethodCall&) -> ControlReply { return examine(context_, shortcuts_); });
        add("subscribe", {"topic"}, [this](const MethodCall& call) { return subscribe(call); });
        add("quit", {}, [this](const MethodCall&) -> ControlReply {
            context_.queue.post(context_.quit); // after the response
            return json{{"process", getpid()}};
        });
    }

    UserInterfaceParts userInterfaceParts(OverlayBroadcast* overlay) {
        return {.controller = context_.controller,
                .menu = context_.menu,
                .textOf = [this](const KovaShortcut& shortcut) { return shortcuts_.textOf(shortcut); },
                .interface = context_.userInterface,
                .dialogs = context_.dialogs,
                .overlay = overlay,
                .settings = [this] { return context_.settingsWindow ? context_.settingsWindow() : nullptr; },
                .onboarding = [this] { return context_.onboardingWindow ? context_.onboardingWindow() : nullptr; }};
    }

    ControlReply subscribe(const MethodCall& call) {
        const auto topic = call.parameters.optional("topic");
        if (!topic) return broadcast_.subscribe(call.peer);
        if (topic->string() == "settings") return settings_.subscribe(call.peer);
        if (topic->string() != "overlay") topic->fail("the topics are “overlay” and “settings”");
        if (!overlay_) return refusal("This agent has no overlay");
        return overlay_->subscribe(call.peer);
    }

    /// The contents of the settings window. Most sections are the results of methods that commands use, too.
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
