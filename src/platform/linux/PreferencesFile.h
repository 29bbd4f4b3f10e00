// The preference file on disk: JSON that a person can read and edit, every key beside its value, records as structure.
// At every moment the file is whole, the old one or the new one. Nothing of another writer, a person or the agent of
// another session, is overwritten: what we changed is merged into what is there, and where both changed one value, or
// the file is damaged, a copy is kept under a dated name.
#pragma once

#include "persistence/PreferenceMerge.h"
#include "persistence/PreferencesStore.h"
#include "support/MainQueue.h"
#include "support/Mutex.h"

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

#include <sys/stat.h>
#include <sys/types.h>

namespace kova {

using PreferenceValues = std::map<std::string, PreferenceValue, std::less<>>;
using PreferenceKeySet = std::set<std::string, std::less<>>;

/// Any thread; calls wait for one another and for the disk.
class PreferencesFile {
  public:
    /// Puts the names in a folder on disk; 0, or the error.
    using FolderSync = std::function<int(const std::filesystem::path&)>;
    static int syncFolder(const std::filesystem::path& folder);

    /// A path that is a link is written through to what it points to.
    explicit PreferencesFile(std::filesystem::path path, FolderSync folderSync = syncFolder);

    /// In words for a person; empty when there is nothing to say.
    struct Loaded {
        PreferenceValues values;
        std::string notice;  // what became of a damaged file
        std::string problem; // why the file cannot be read at the moment
    };
    Loaded load(WallTime now);

    struct Request {
        PreferenceValues values;
        std::uint64_t version = 0; // grows with every change of the values
        PreferenceKeySet unusable; // keys whose stored value is kept in a copy before it is overwritten
    };
    /// A key that was changed in the file and not by us: its value there, absent when it was removed. Records are not
    /// among them: the copy in memory stays in use, and only the file has both sides' changes.
    using TakenOver = std::map<std::string, std::optional<PreferenceValue>>;
    struct Written {
        bool isOnDisk = false;
        TakenOver takenOver;
        std::string keptAt;  // the copy of a file with unusable values; empty when none was made
        std::string notice;  // what a person should know of, although all went well
        std::string problem; // why it is not on disk
    };
    /// Writes all the values, unless they are on disk already. An older version than one written before is dropped.
    Written write(const Request& request, WallTime now);

  private:
    /// Tells two states of a file apart without reading it.
    struct Fingerprint {
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = 0;
        timespec changed{};
        bool operator==(const Fingerprint& other) const;
    };
    struct Absent {};
    struct SetAside {
        std::string notice;
    };
    /// Not now: it is neither read nor written.
    struct Blocked {
        std::string reason;
    };
    struct Text {
        PreferenceValues values;
        std::string text;
    };
    using Reading = std::variant<Absent, Text, SetAside, Blocked>;

    Reading read(const std::filesystem::path& target, WallTime now) KOVA_REQUIRES(mutex_);
    Reading setAside(const std::filesystem::path& target, const std::string& reason, WallTime now);
    PreferenceValues mergeInto(const PreferenceValues& theirs, const PreferenceValues& ours, Written& written,
                               std::string& disputed) const KOVA_REQUIRES(mutex_);
    /// Empty when done or done before, else why not.
    std::string keepCopies(const std::filesystem::path& target, const PreferenceValues& next, const Request& request,
                           const std::string& disputed, WallTime now, Written& written) KOVA_REQUIRES(mutex_);
    static Fingerprint fingerprintOf(const struct stat& status);
    /// Absent when there is no file, or when errno says why it cannot be looked at.
    static std::optional<Fingerprint> fingerprint(const std::filesystem::path& target);
    /// Empty when done, else why not. Then `knownFingerprint_` is that of the new file.
    std::string replace(const std::filesystem::path& target, const std::string& text) KOVA_REQUIRES(mutex_);
    /// Puts the new name of a file that was replaced on disk. Empty when done or done before, else why not.
    std::string makeNameLast(const std::filesystem::path& target) KOVA_REQUIRES(mutex_);

    const std::filesystem::path path_;
    const FolderSync syncFolder_;
    Mutex mutex_;
    PreferenceValues known_ KOVA_GUARDED_BY(mutex_); // in the file, as far as we know
    PreferenceValues ours_ KOVA_GUARDED_BY(mutex_);  // what we wrote last, or read at the start
    // The file could not be read at the start, and what it holds goes before ours.
    bool isUnread_ KOVA_GUARDED_BY(mutex_) = false;
    std::optional<Fingerprint> knownFingerprint_ KOVA_GUARDED_BY(mutex_);
    std::optional<Fingerprint> copiedFingerprint_ KOVA_GUARDED_BY(mutex_); // of the file that the last copy was made of
    std::string copiedTo_ KOVA_GUARDED_BY(mutex_);
    std::uint64_t newestVersion_ KOVA_GUARDED_BY(mutex_) = 0;
    // False from the replacement of the file until its folder is on disk.
    bool isNameOnDisk_ KOVA_GUARDED_BY(mutex_) = true;
};

} // namespace kova
