#include "agent/SessionAgent.h"

#include "app/SystemSettings.h"
#include "support/Log.h"
#include "support/Version.h"

#include <utility>

namespace kova {

namespace {

constexpr Seconds kFirstPollTimeout{2};
constexpr Seconds kFirstPollCheckInterval{0.002};

template <class Controller>
std::optional<SystemSetting> settingOf(Controller* controller, SystemSetting (*setting)(Controller&)) {
    return controller ? std::optional(setting(*controller)) : std::nullopt;
}

std::vector<const DiagnosticsServicing*> withUserInterface(std::vector<const DiagnosticsServicing*> parts,
                                                           const UserInterfaceController* userInterface) {
    if (userInterface) parts.push_back(userInterface);
    return parts;
}

} // namespace

SessionAgent::SessionAgent(const AgentServices& services) :
    queue_(services.workspace.queue), delegate_(services.workspace, services.shell),
    userHistory_(*delegate_.onboarding().isCompleted() ? UserHistory::existingUser : UserHistory::newUser),
    documents_(services.documentPanels ? std::make_unique<DocumentExchange>(
                                             delegate_.workspace(), *services.documentPanels, services.workspace.alerts)
                                       : nullptr),
    menu_({.delegate = delegate_,
           .documents = services.dialogs ? services.dialogs : static_cast<DocumentExchangeControl*>(documents_.get()),
           .updates = services.updates,
           // Posted, so that the client that chose to quit gets its response first.
           .quit = [this, quit = services.quit] { queue_.post(quit); }}),
    methods_({.controller = delegate_.workspace(),
              .urls = delegate_.urls(),
              .shortcuts = delegate_.shortcutSettings(),
              .preferences = services.workspace.preferences,
              .diagnostics = withUserInterface(services.diagnostics, delegate_.userInterface()),
              .keys = services.shell.keys,
              .queue = services.workspace.queue,
              .quit = services.quit,
              .startAtLogin = settingOf(delegate_.launchAtLogin(), startAtLoginSetting),
              .dockAutoHide = settingOf(delegate_.dockAutoHide(), dockAutoHideSetting),
              .firstSteps = [this] { return firstSteps(); },
              .overlay = &delegate_.overlay(),
              .menu = &menu_,
              .userInterface = delegate_.userInterface(),
              .dialogs = services.dialogs,
              .settingsWindow = [this] { return delegate_.settingsWindow(); },
              .onboardingWindow = [this] { return delegate_.onboardingWindow(); },
              .permission = &delegate_.permission()}) {
    delegate_.onOpenPalette([this] {
        methods_.handle({"ui.palette", nlohmann::json::object()}, nullptr, [this](const ControlReply& reply) {
            if (!reply) delegate_.workspace().perform(action::ShowMessage{reply.error().message});
        });
    });
    const auto& state = delegate_.workspace().state();
    messages_ = state.lastActionMessage.observe([](const std::optional<std::string>& message) {
        if (message) log(LogLevel::detail, *message);
    });
}

std::optional<AgentClaim> SessionAgent::claimSession(const std::function<void(const std::string&)>& reportProblem) {
    auto claim = AgentClaim::take(controlSocketPlace());
    if (const auto* refusal = std::get_if<AgentClaimRefusal>(&claim)) {
        reportProblem(refusal->holder ? "process " + std::to_string(*refusal->holder) + " already manages this session"
                                      : refusal->message);
        return std::nullopt;
    }
    return std::get<AgentClaim>(std::move(claim));
}

std::optional<std::string> SessionAgent::start(AgentClaim claim) {
    server_.emplace(std::move(claim), queue_, methods_);
    if (auto problem = server_->start()) return problem;
    const bool isAbsent = delegate_.workspace().whyWindowsAreUnavailable().has_value();
    log(LogLevel::note, isAbsent ? "kova-agent " KOVA_VERSION " answers, and can manage no window of this session"
                                 : "kova-agent " KOVA_VERSION " manages this session");
    delegate_.applicationDidFinishLaunching();
    if (const auto text = firstSteps()) log(LogLevel::note, *text);
    serveOnceWindowsAreKnown(queue_.uptime() + kFirstPollTimeout);
    return std::nullopt;
}

/// Serves requests from the first poll on, so that an arrangement right after the start includes the existing windows.
/// In a locked session there is no poll, so requests are served from `until` (uptime) on at the latest.
void SessionAgent::serveOnceWindowsAreKnown(Seconds until) {
    if (!delegate_.workspace().hasPolled() && queue_.uptime() < until) {
        queue_.after(kFirstPollCheckInterval, lifetime_.guard([this, until] { serveOnceWindowsAreKnown(until); }));
        return;
    }
    isServing_ = true;
    server_->serve();
    delegate_.openURLs(std::exchange(waitingURLs_, {}));
}

void SessionAgent::openURLs(const std::vector<std::string>& urls) {
    if (isServing_) return delegate_.openURLs(urls);
    waitingURLs_.insert(waitingURLs_.end(), urls.begin(), urls.end());
}

std::optional<std::string> SessionAgent::firstSteps() {
    return kova::firstSteps(userHistory_, delegate_.workspace());
}

} // namespace kova
