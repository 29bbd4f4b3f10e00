#include "app/UserInterfaceController.h"

#include "persistence/PreferenceKeys.h"
#include "persistence/StoredValues.h"
#include "support/Log.h"

#include <utility>

namespace kova {

namespace {

constexpr const char* kSubject = "user interface";

} // namespace

UserInterfaceController::UserInterfaceController(UserInterfaceServicing& service, PreferencesStore& preferences,
                                                 MainQueue& queue) :
    service_(service),
    preferences_(preferences), queue_(queue),
    isOn_(storedBoolean(preferences, preferenceKey::userInterface).value_or(true)) {}

UserInterfaceController::~UserInterfaceController() {
    stop();
}

void UserInterfaceController::start() {
    isStarted_ = true;
    backoff_.forget();
    if (isOn_ && !service_.unavailableReason()) run();
}

void UserInterfaceController::stop() {
    if (!isStarted_) return;
    isStarted_ = false;
    end();
}

void UserInterfaceController::setOn(bool isOn) {
    preferences_.setValue(preferenceKey::userInterface, isOn);
    isOn_ = isOn;
    if (!isStarted_) return;
    if (!isOn) return end();
    backoff_.forget();
    if (!service_.process() && !service_.unavailableReason()) run();
}

bool UserInterfaceController::restart() {
    if (!isOn_ || !isStarted_) return false;
    end();
    backoff_.forget();
    run();
    return true;
}

void UserInterfaceController::run() {
    problem_.reset();
    report_.reset();
    const std::uint64_t run = ++run_;
    service_.start(lifetime_.guard([this, run](UserInterfaceEnd how) {
        if (run == run_) ended(how);
    }));
}

void UserInterfaceController::end() {
    ++run_;
    problem_.reset();
    report_.reset();
    service_.end();
}

void UserInterfaceController::ended(UserInterfaceEnd how) {
    const std::uint64_t run = run_;
    switch (how) {
    case UserInterfaceEnd::byItself:
        problem_ = "kova-ui was closed. Start it again with “kova ui restart”";
        return;
    case UserInterfaceEnd::notStarted:
        problem_ = "kova-ui could not be started. Install it again, then run “kova ui restart”";
        break;
    case UserInterfaceEnd::unexpectedly:
        if (const auto delay = backoff_.delayAfterCrash(queue_.uptime())) {
            problem_ = "kova-ui ended unexpectedly and is started again";
            queue_.after(*delay, lifetime_.guard([this, run] {
                if (run == run_) this->run();
            }));
        } else {
            problem_ =
                "kova-ui ended unexpectedly 5 times within a minute. Start it again with “kova ui restart”, or switch "
                "it off with “kova ui off”";
        }
        break;
    }
    log(LogLevel::warning, *problem_);
}

void UserInterfaceController::reportProblem(const std::string& problem, std::weak_ptr<ControlPeer> reporter) {
    report_ = {problem, std::move(reporter)};
    log(LogLevel::warning, problem);
}

std::optional<std::string> UserInterfaceController::problem() const {
    const auto reporter = report_ ? report_->reporter.lock() : nullptr;
    if (reporter && reporter->isConnected()) return report_->problem;
    return problem_;
}

UserInterfaceStatus UserInterfaceController::status() const {
    return {isOn_, service_.process(), problem()};
}

std::vector<DiagnosticLine> UserInterfaceController::diagnose() const {
    using enum DiagnosticVerdict;
    if (const auto reason = service_.unavailableReason()) return {{kSubject, note, *reason + "."}};
    if (!isOn_) return {{kSubject, note, "kova-ui is switched off: no tile footers, backdrop or settings are shown."}};
    if (const auto present = problem()) return {{kSubject, wrong, *present + "."}};
    return {{kSubject, fine, "kova-ui shows tile footers, backdrop and settings."}};
}

} // namespace kova
