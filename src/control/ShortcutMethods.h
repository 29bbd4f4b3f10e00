// The socket's methods that list, set, clear and record keyboard shortcuts. Main thread only.
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
    /// A recording ends after this time, since no other program receives keys during it.
    static constexpr Seconds kRecordingTimeout{60};

    /// All arguments outlive the object; `keys` is null if KOVA cannot receive keys in this session. No shortcut is
    /// recorded while the workspace is suspended: the lock screen needs the keyboard, and a password must not become a
    /// shortcut.
    ShortcutMethods(KovaShortcutSettings& settings, KeyMonitorServicing* keys, MainQueue& queue,
                    const Published<bool>& isSuspended, PreferencesStore& preferences);

    void addTo(MethodTable& methods);
    /// The shortcuts that another program or the system holds, as texts like "Ctrl+Alt+H (Focus Left)".
    std::vector<std::string> heldByOthers() const;
    /// The holders that `heldByOthers` can detect on this desktop: "program" for every other program, or "system".
    std::string_view possibleHolder() const;

    /// The text that shows the shortcut to the user, like "Ctrl+Alt+H".
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
    /// A client that changed the shortcut of `action` and waits for the notification whether another program holds it.
    struct Waiting {
        std::weak_ptr<ControlPeer> peer;
        KovaShortcutAction action;
    };

    ControlReply list() const;
    ControlReply set(const JsonCursor& parameters, const std::shared_ptr<ControlPeer>& peer);
    ControlReply clear(const JsonCursor& parameters);
    /// Starts a recording. The client gets a notification for every result, and the last one when the recording ends.
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
    /// Ends a recording that changed the shortcut. The client is notified once the change is on disk.
    void endOnceSaved(ShortcutRecorder::Step step);
    enum class Claiming { done, underWay };
    /// Notifies the client when it is known whether another program holds the new shortcut of the action.
    void notifyOnceClaimed(const std::weak_ptr<ControlPeer>& peer, KovaShortcutAction action, Claiming claiming);
    void notifyClaimed();

    KovaShortcutSettings& settings_;
    KeyMonitorServicing* keys_;
    MainQueue& queue_;
    const Published<bool>& isSuspended_;
    PreferencesStore& preferences_;
    std::optional<Recording> recording_;
    std::uint64_t recordings_ = 0; // the number of recordings since the agent's start
    std::vector<Waiting> waiting_;
    Subscription claims_;
    Subscription suspensions_;
    Lifetime lifetime_;
};

} // namespace kova
