// Keyboard shortcuts, as methods of the socket. Main thread only.
#pragma once

#include "commands/KovaShortcutSettings.h"
#include "commands/ShortcutRecorder.h"
#include "control/ControlHandling.h"
#include "persistence/PreferencesStore.h"
#include "support/JsonDecoding.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

class MethodTable;

class ShortcutMethods {
  public:
    /// Recording ends after this time, since no other program gets the keyboard meanwhile.
    static constexpr Seconds kRecordingTimeout{60};

    /// All of them outlive the methods; `keys` is null in a session without keys. Nothing is recorded while the
    /// workspace is suspended: the lock screen needs the keyboard, and a password must not become a shortcut.
    ShortcutMethods(KovaShortcutSettings& settings, KeyMonitorServicing* keys, MainQueue& queue,
                    const Published<bool>& isSuspended, PreferencesStore& preferences);

    void addTo(MethodTable& methods);
    /// The shortcuts that another program or the system holds, as a user reads them: "Ctrl+Alt+H (Focus Left)".
    std::vector<std::string> heldByOthers() const;
    /// What can hold a combination on this desktop: another "program", or the "system".
    std::string_view possibleHolder() const;

    std::string textOf(KovaShortcut shortcut) const;

  private:
    struct Recording {
        KovaShortcutAction action;
        ShortcutRecorder recorder;
        std::weak_ptr<ControlPeer> peer;
        Seconds since; // uptime
        std::uint64_t number;
        Subscription keys;
    };
    /// A client that changed a shortcut and will be notified whether another program holds it.
    struct Waiting {
        std::weak_ptr<ControlPeer> peer;
        KovaShortcutAction action;
    };

    ControlReply list() const;
    ControlReply set(const JsonCursor& parameters, const std::shared_ptr<ControlPeer>& peer);
    ControlReply clear(const JsonCursor& parameters);
    /// Starts a recording. Its results are sent as notifications, the last of which ends the recording.
    ControlReply record(const JsonCursor& parameters, const std::shared_ptr<ControlPeer>& peer);
    ControlReply restoreDefaults();
    nlohmann::json recordOf(KovaShortcutAction action) const;
    nlohmann::json recordsOfAll() const;
    bool isHeldByOther(const KovaShortcut& shortcut) const;
    ModifierNames modifierNames() const;
    bool takeKey(const KeyPress& press);
    void checkConnection(std::uint64_t number);
    void notifyRecorded(const Recording& recording, std::string_view outcome, const std::string& message,
                        const std::optional<std::string>& unsaved = std::nullopt) const;
    void endRecording(std::string_view outcome, const std::string& message);
    /// As `endRecording`, for a changed shortcut: the client is notified once the change is on disk.
    void endOnceSaved(ShortcutRecorder::Step step);
    enum class Claiming { done, underWay };
    void notifyOnceClaimed(const std::weak_ptr<ControlPeer>& peer, KovaShortcutAction action, Claiming claiming);
    void notifyClaimed();

    KovaShortcutSettings& settings_;
    KeyMonitorServicing* keys_;
    MainQueue& queue_;
    const Published<bool>& isSuspended_;
    PreferencesStore& preferences_;
    std::optional<Recording> recording_;
    std::uint64_t recordings_ = 0; // count since the agent's start
    std::vector<Waiting> waiting_;
    Subscription claims_;
    Subscription suspensions_;
    Lifetime lifetime_;
};

} // namespace kova
