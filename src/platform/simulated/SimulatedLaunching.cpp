// Launching and quitting applications, and alerts.
#include "platform/simulated/SimulatedDesktop.h"

#include <algorithm>

namespace kova {

namespace {

constexpr Seconds kQuittingTime{0.1};
constexpr Seconds kBetweenWindows{0.5};

} // namespace

LaunchableApplication SimulatedDesktop::install(std::string name, InstallationTraits traits) {
    LaunchableApplication application{.identifier = "/Applications/" + name,
                                      .name = name,
                                      .bundleIdentifier = std::nullopt,
                                      .location = "/Applications/" + name,
                                      .icon = traits.traits.icon};
    if (traits.hasBundleIdentifier) {
        std::string lowercased = name;
        std::transform(name.begin(), name.end(), lowercased.begin(),
                       [](char letter) { return letter >= 'A' && letter <= 'Z' ? char(letter - 'A' + 'a') : letter; });
        application.bundleIdentifier = traits.bundleIdentifier.value_or(BundleID("sim." + lowercased));
    }
    traits.traits.bundleIdentifier = application.bundleIdentifier;
    traits.traits.hasBundleIdentifier = traits.hasBundleIdentifier;
    installations_.push_back({application, std::move(traits)});
    return application;
}

void SimulatedDesktop::uninstall(std::string_view name) {
    std::erase_if(installations_, [&](const Installation& candidate) { return candidate.application.name == name; });
}

bool SimulatedDesktop::isRunning(std::string_view name) const {
    return std::any_of(applications_.begin(), applications_.end(),
                       [&](const Application& candidate) { return candidate.name == name; });
}

void SimulatedDesktop::setQuittingHabit(std::string_view name, QuittingHabit habit) {
    application(name).quittingHabit = habit;
}

// ApplicationServicing

std::vector<LaunchableApplication> SimulatedDesktop::launchableApplications() const {
    requireMainThread("launchableApplications");
    std::vector<LaunchableApplication> applications;
    for (const auto& installation : installations_) applications.push_back(installation.application);
    std::sort(applications.begin(), applications.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    return applications;
}

std::optional<LaunchableApplication> SimulatedDesktop::launchableApplication(const BundleID& bundleIdentifier) const {
    requireMainThread("launchableApplication");
    for (const auto& installation : installations_) {
        if (installation.application.bundleIdentifier == bundleIdentifier) return installation.application;
    }
    return std::nullopt;
}

const SimulatedDesktop::Installation* SimulatedDesktop::findInstallation(const std::string& identifier) const {
    for (const auto& installation : installations_) {
        if (installation.application.identifier == identifier) return &installation;
    }
    return nullptr;
}

void SimulatedDesktop::launch(const LaunchableApplication& launched, LaunchActivation activation,
                              LaunchCompletion completion) {
    requireMainThread("launch");
    addToJournal(launched.name +
                 (activation == LaunchActivation::activates ? ": launch" : ": launch in the background"));
    const auto* known = findInstallation(launched.identifier);
    const Seconds delay = known ? known->traits.startsAfter : Seconds(0);
    queue_.after(delay, lifetime_.guard([this, launched, activation, completion = std::move(completion)] {
        const auto* installation = findInstallation(launched.identifier);
        LaunchResult result;
        if (!installation) {
            result.error = launched.name + " is not installed";
        } else if (installation->traits.fails) {
            result.error = installation->traits.fails;
        } else if (installation->traits.forks) {
            result.processIdentifier = startForking(*installation, activation);
        } else {
            startInstalled(*installation, activation);
            result.processIdentifier = processIdentifier(launched.name);
        }
        completion(result);
    }));
}

pid_t SimulatedDesktop::startForking(const Installation& installation, LaunchActivation activation) {
    const pid_t program = ++lastProcessIdentifier_;
    forkingPrograms_[program] = false;
    queue_.post(lifetime_.guard([this, program] { forkingPrograms_[program] = true; }));
    queue_.after(installation.traits.opensAfter,
                 lifetime_.guard([this, identifier = installation.application.identifier, activation] {
                     if (const auto* installed = findInstallation(identifier)) startInstalled(*installed, activation);
                 }));
    return program;
}

bool SimulatedDesktop::hasLaunchedProcessSucceeded(pid_t process) const {
    const auto program = forkingPrograms_.find(process);
    return program != forkingPrograms_.end() && program->second;
}

void SimulatedDesktop::startInstalled(const Installation& installation, LaunchActivation activation) {
    const auto& [launchable, traits] = installation;
    const bool wasRunning = isRunning(launchable.name);
    const pid_t process =
        wasRunning ? processIdentifier(launchable.name) : launch(launchable.name, ApplicationTraits(traits.traits));
    if (wasRunning && activation == LaunchActivation::activates) {
        setHidden(application(launchable.name), false);
        frontmost_ = process;
    }
    const int windows = !wasRunning ? traits.windowCount : traits.opensWhenRunning ? 1 : 0;
    for (int i = 0; i < windows; ++i) {
        openLater(process, traits.window, traits.opensAfter + i * kBetweenWindows, activation);
    }
}

void SimulatedDesktop::openLater(pid_t process, const WindowTraits& traits, Seconds delay,
                                 LaunchActivation activation) {
    queue_.after(delay, lifetime_.guard([this, process, traits, activation] {
        const auto* owner = findApplication(process);
        if (!owner) return;
        const auto frontmostBefore = frontmost_;
        open(owner->name, traits);
        if (activation == LaunchActivation::inBackground) frontmost_ = frontmostBefore;
    }));
}

bool SimulatedDesktop::terminate(pid_t process) {
    requireMainThread("terminate");
    const auto* requested = findApplication(process);
    if (!requested) return false;
    addToJournal(requested->name + ": terminate");
    if (requested->quittingHabit == QuittingHabit::refuses || !requested->responds) return true;
    queue_.after(kQuittingTime, lifetime_.guard([this, process] {
        if (findApplication(process)) end(process);
    }));
    return true;
}

std::optional<std::string> SimulatedDesktop::forceTerminate(pid_t process) {
    requireMainThread("forceTerminate");
    const auto* ended = findApplication(process);
    if (!ended || process == kOwnProcessIdentifier) return "there is no such application";
    if (ended->record.isPartOfDesktop) return "it belongs to the desktop";
    if (!ended->isVerified) return "its process is not known";
    addToJournal(ended->name + ": force terminate");
    queue_.post(lifetime_.guard([this, process] {
        if (findApplication(process)) end(process);
    }));
    return std::nullopt;
}

// AlertServicing

void SimulatedDesktop::inform(const Alert& alert) {
    requireMainThread("inform");
    if (alternativeAlerts_) return alternativeAlerts_->inform(alert);
    alerts_.push_back(alert);
}

void SimulatedDesktop::confirm(const Alert& alert, std::function<void(bool)> answer) {
    requireMainThread("confirm");
    if (alternativeAlerts_) return alternativeAlerts_->confirm(alert, std::move(answer));
    alerts_.push_back(alert);
    pendingConfirmations_.push_back(std::move(answer));
}

void SimulatedDesktop::answerAlert(bool isConfirmed) {
    const auto answer = std::move(pendingConfirmations_.at(0));
    pendingConfirmations_.pop_front();
    answer(isConfirmed);
}

} // namespace kova
