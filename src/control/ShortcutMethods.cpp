#include "control/ShortcutMethods.h"

#include "commands/KeyNames.h"
#include "control/JsonRpc.h"
#include "control/MethodTable.h"
#include "control/NameLookup.h"
#include "control/Refusal.h"
#include "support/Quoted.h"

#include <algorithm>
#include <utility>

namespace kova {

namespace {

using nlohmann::json;

/// How often the agent checks whether the client that records a shortcut is still connected.
constexpr Seconds kConnectionCheckInterval{0.2};
/// How long to wait for the window system's report on claimed combinations. The report comes within milliseconds, or
/// not at all if nothing is registered.
constexpr Seconds kClaimReportDelay{0.5};

constexpr const char* kNoKeys = "KOVA cannot receive keys in this session";
constexpr const char* kSuspended = "Suspended while the screen is asleep, locked or another user's";

/// Makes "focus-left" of "focusLeft".
std::string kebab(std::string_view camel) {
    std::string out;
    for (const char c : camel) {
        const bool isCapital = c >= 'A' && c <= 'Z';
        if (isCapital) out += '-';
        out += isCapital ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return out;
}

ControlResult<KovaShortcutAction> wantedAction(const JsonCursor& parameters) {
    std::vector<NamedThing> things;
    for (const auto action : kShortcutActions) {
        const std::string name(rawValue(action)), shown(title(action));
        things.push_back({name, {kebab(name), shown}, name + "  " + shown});
    }
    const auto found = lookUp("action", parameters.required("action").string(), things, Numbered::no);
    if (!found) return found.error();
    return kShortcutActions[*found];
}

std::string_view word(ShortcutRecorder::Outcome outcome) {
    switch (outcome) {
    case ShortcutRecorder::Outcome::recorded:
        return "recorded";
    case ShortcutRecorder::Outcome::cleared:
        return "cleared";
    case ShortcutRecorder::Outcome::canceled:
        return "cancelled";
    case ShortcutRecorder::Outcome::refused:
        return "refused";
    }
    return "";
}

json modifiersRecord(std::uint64_t modifiers) {
    json names = json::array();
    for (const auto& [bit, name] : {std::pair{modifierFlag::control, "control"},
                                    {modifierFlag::option, "option"},
                                    {modifierFlag::shift, "shift"},
                                    {modifierFlag::command, "command"}}) {
        if (modifiers & bit) names.push_back(name);
    }
    return names;
}

} // namespace

ShortcutMethods::ShortcutMethods(KovaShortcutSettings& settings, KeyMonitorServicing* keys, MainQueue& queue,
                                 const Published<bool>& isSuspended, PreferencesStore& preferences) :
    settings_(settings),
    keys_(keys), queue_(queue), isSuspended_(isSuspended), preferences_(preferences) {
    if (keys_) claims_ = keys_->observeHeldByOthers([this] { notifyClaimed(); });
    suspensions_ = isSuspended_.observe([this](bool isNow) {
        if (isNow) endRecording("cancelled", kSuspended);
    });
}

bool ShortcutMethods::isHeldByOther(const KovaShortcut& shortcut) const {
    if (!keys_) return false;
    const auto held = keys_->heldByOthers();
    return std::ranges::find(held, KeyCombination{shortcut.keyCode, shortcut.modifierFlagsRawValue}) != held.end();
}

std::string_view ShortcutMethods::possibleHolder() const {
    return keys_ && keys_->knownHolders() == KnownHolders::systemOnly ? "system" : "program";
}

ModifierNames ShortcutMethods::modifierNames() const {
    return keys_ ? keys_->modifierNames() : ModifierNames::words;
}

/// The text of the shortcut in the active keyboard layout, in which the key's character may differ from the stored
/// label.
std::string ShortcutMethods::textOf(KovaShortcut shortcut) const {
    const std::string written = keys_ ? keys_->charactersOf(shortcut.keyCode) : "";
    const std::string label = keyLabel({shortcut.keyCode, 0, false, written});
    if (label != kUnknownKeyLabel) shortcut.keyLabel = label;
    return shortcutText(shortcut, modifierNames());
}

json ShortcutMethods::recordOf(KovaShortcutAction action) const {
    json out = {{"action", rawValue(action)}, {"title", title(action)}, {"keys", nullptr},
                {"label", nullptr},           {"keyCode", nullptr},     {"modifiers", nullptr},
                {"conflict", nullptr},        {"isHeldByOther", false}, {"heldBy", nullptr}};
    if (const auto shortcut = settings_.shortcut(action)) {
        out["keys"] = textOf(*shortcut);
        out["label"] = shortcut->keyLabel;
        out["keyCode"] = shortcut->keyCode;
        out["modifiers"] = modifiersRecord(shortcut->modifierFlagsRawValue);
        if (const auto other = settings_.conflictingAction(*shortcut, action)) out["conflict"] = rawValue(*other);
        out["isHeldByOther"] = action != KovaShortcutAction::commandCenter && isHeldByOther(*shortcut);
        if (out["isHeldByOther"]) out["heldBy"] = possibleHolder();
    }
    return out;
}

json ShortcutMethods::recordsOfAll() const {
    json shortcuts = json::array();
    for (const auto action : kShortcutActions) shortcuts.push_back(recordOf(action));
    return shortcuts;
}

std::vector<std::string> ShortcutMethods::heldByOthers() const {
    std::vector<std::string> texts;
    for (const auto action : kShortcutActions) {
        const auto shortcut = settings_.shortcut(action);
        if (!shortcut || action == KovaShortcutAction::commandCenter || !isHeldByOther(*shortcut)) continue;
        texts.push_back(textOf(*shortcut) + " (" + std::string(title(action)) + ")");
    }
    return texts;
}

ControlReply ShortcutMethods::list() const {
    return json{
        {"canHearKeys", keys_ != nullptr}, {"isRecording", *settings_.isRecording}, {"shortcuts", recordsOfAll()}};
}

ControlReply ShortcutMethods::set(const JsonCursor& parameters, const std::shared_ptr<ControlPeer>& peer) {
    const JsonCursor keys = parameters.required("keys");
    const auto parsed = parseShortcut(
        keys.string(), [this](std::uint16_t code) { return keys_ ? keys_->charactersOf(code) : ""; }, modifierNames());
    if (const auto* problem = std::get_if<std::string>(&parsed)) keys.fail(*problem);
    const auto found = wantedAction(parameters);
    if (!found) return found.error();
    const auto action = *found;
    const auto& shortcut = std::get<KovaShortcut>(parsed);
    if (!canBeShortcut(shortcut.modifierFlagsRawValue)) {
        return refusal("A shortcut needs " + std::string(mainModifiers(modifierNames())) + ": without them " +
                       quoted(shortcutText(shortcut, modifierNames())) + " could not be typed any more");
    }
    if (const auto holder = settings_.conflictingAction(shortcut, action)) return refusal(conflictMessage(*holder));
    const auto before = settings_.shortcut(action);
    if (!settings_.setShortcut(shortcut, action)) return refusal("The shortcut was not changed");
    notifyOnceClaimed(peer, action, before == shortcut ? Claiming::done : Claiming::underWay);
    return json{{"shortcut", recordOf(action)}};
}

ControlReply ShortcutMethods::clear(const JsonCursor& parameters) {
    const auto found = wantedAction(parameters);
    if (!found) return found.error();
    const auto action = *found;
    if (!settings_.setShortcut(std::nullopt, action)) return refusal("The shortcut was not changed");
    return json{{"shortcut", recordOf(action)}};
}

ControlReply ShortcutMethods::restoreDefaults() {
    settings_.restoreDefaults();
    return json{{"shortcuts", recordsOfAll()}};
}

// Recording

ControlReply ShortcutMethods::record(const JsonCursor& parameters, const std::shared_ptr<ControlPeer>& peer) {
    const auto found = wantedAction(parameters);
    if (!found) return found.error();
    if (!keys_) return refusal(kNoKeys);
    if (*isSuspended_) return refusal(kSuspended);
    const auto action = *found;
    endRecording("cancelled", "Another shortcut is being recorded");
    const auto number = ++recordings_;
    recording_.emplace(Recording{action, ShortcutRecorder(settings_, action), peer, queue_.uptime(), number, {}});
    settings_.isRecording.set(true);
    recording_->keys = keys_->recordKeys([this](const KeyPress& press) { return takeKey(press); },
                                         [this](const std::string& reason) { endRecording("failed", reason); });
    checkConnection(number);
    return json{{"shortcut", recordOf(action)}, {"prompt", kRecorderPrompt}};
}

/// Returns true if the recording has ended.
bool ShortcutMethods::takeKey(const KeyPress& press) {
    if (!recording_) return true;
    // A repeated press can come from a key that was pressed before the recording.
    if (press.isRepeat) return false;
    const auto step = recording_->recorder.take(press);
    if (!step.endsRecording()) {
        notifyRecorded(*recording_, word(step.outcome), step.message);
        return false;
    }
    const bool isChange =
        step.outcome == ShortcutRecorder::Outcome::recorded || step.outcome == ShortcutRecorder::Outcome::cleared;
    if (isChange) {
        endOnceSaved(step);
    } else {
        endRecording(word(step.outcome), step.message);
    }
    return true;
}

/// Ends the recording, and with it the grab of the keyboard, if the client has disconnected or the timeout has passed;
/// otherwise checks again later.
void ShortcutMethods::checkConnection(std::uint64_t number) {
    queue_.after(kConnectionCheckInterval, lifetime_.guard([this, number] {
        if (!recording_ || recording_->number != number) return;
        const auto peer = recording_->peer.lock();
        if (!peer || !peer->isConnected()) return endRecording("cancelled", "");
        if (queue_.uptime() - recording_->since >= kRecordingTimeout) {
            return endRecording("cancelled", "Nothing was typed for a minute");
        }
        checkConnection(number);
    }));
}

void ShortcutMethods::notifyRecorded(const Recording& recording, std::string_view outcome, const std::string& message,
                                     const std::optional<std::string>& unsaved) const {
    const auto peer = recording.peer.lock();
    if (!peer) return;
    json parameters = {{"outcome", outcome},
                       {"message", message.empty() ? json(nullptr) : json(message)},
                       {"shortcut", recordOf(recording.action)}};
    if (unsaved) parameters["unsaved"] = *unsaved;
    peer->sendAfterResponse(jsonrpc::line(jsonrpc::notification("recorded", std::move(parameters))));
}

void ShortcutMethods::endRecording(std::string_view outcome, const std::string& message) {
    const auto ended = std::exchange(recording_, std::nullopt);
    if (!ended) return;
    settings_.isRecording.set(false);
    notifyRecorded(*ended, outcome, message);
}

void ShortcutMethods::endOnceSaved(ShortcutRecorder::Step step) {
    const auto ended = std::make_shared<Recording>(*std::exchange(recording_, std::nullopt));
    settings_.isRecording.set(false);
    preferences_.save(lifetime_.guard([this, ended, step](const std::optional<std::string>& problem) {
        notifyRecorded(*ended, word(step.outcome), step.message, problem);
        // After a recording all shortcuts are claimed again, even if none has changed.
        if (step.outcome == ShortcutRecorder::Outcome::recorded)
            notifyOnceClaimed(ended->peer, ended->action, Claiming::underWay);
    }));
}

// Claims

void ShortcutMethods::notifyOnceClaimed(const std::weak_ptr<ControlPeer>& peer, KovaShortcutAction action,
                                        Claiming claiming) {
    waiting_.push_back({peer, action});
    queue_.after(claiming == Claiming::done ? Seconds(0) : kClaimReportDelay,
                 lifetime_.guard([this] { notifyClaimed(); }));
}

void ShortcutMethods::notifyClaimed() {
    for (const Waiting& waiting : std::exchange(waiting_, {})) {
        const auto peer = waiting.peer.lock();
        if (!peer) continue;
        peer->sendAfterResponse(
            jsonrpc::line(jsonrpc::notification("claimed", {{"shortcut", recordOf(waiting.action)}})));
    }
}

void ShortcutMethods::addTo(MethodTable& methods) {
    methods.add("shortcut.list", {}, [this](const MethodCall&) { return list(); });
    methods.addSaved("shortcut.set", {"action", "keys"},
                     [this](const MethodCall& call) { return set(call.parameters, call.peer); });
    methods.addSaved("shortcut.clear", {"action"}, [this](const MethodCall& call) { return clear(call.parameters); });
    methods.add("shortcut.record", {"action"},
                [this](const MethodCall& call) { return record(call.parameters, call.peer); });
    methods.addSaved("shortcut.restoreDefaults", {}, [this](const MethodCall&) { return restoreDefaults(); });
}

} // namespace kova
