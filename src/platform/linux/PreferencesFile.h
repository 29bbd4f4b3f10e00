// The preference file on disk: JSON that a user can read and edit. At every moment the file has either the old or the
// new content in full. Changes by other writers (the user, or the agent of another session) are kept: this agent's
// changes are merged into the file, and if both changed one value, or the file is damaged, a copy is kept under a dated
// name.
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
    /// Syncs a folder to disk; returns 0 or the error number.
    using FolderSync = std::function<int(const std::filesystem::path&)>;
    static int syncFolder(const std::filesystem::path& folder);

    /// If the path is a symbolic link, its target is written.
    explicit PreferencesFile(std::filesystem::path path, FolderSync folderSync = syncFolder);

    /// The texts are for the user; an empty text means that there is nothing to report.
    struct Loaded {
        PreferenceValues values;
        std::string notice;  // what happened to a damaged file
        std::string problem; // why the file cannot be read now
    };
    Loaded load(WallTime now);

    struct Request {
        PreferenceValues values;
        std::uint64_t version = 0; // grows with every change of the values
        PreferenceKeySet unusable; // keys whose stored value is kept in a copy before it is overwritten
    };
    /// Keys that only another writer changed, with the value in the file; absent if it was removed. Records are not
    /// included: the agent continues to use its own copy, and only the file contains the changes of both.
    using TakenOver = std::map<std::string, std::optional<PreferenceValue>>;
    struct Written {
        bool isOnDisk = false;
        TakenOver takenOver;
        std::string keptAt;  // the copy of a file with unusable values; empty when none was made
        std::string notice;  // for the user, although the write succeeded
        std::string problem; // why the values are not on disk
    };
    /// Writes all the values, unless they are on disk already. A request with an older version than one written before
    /// is dropped.
    Written write(const Request& request, WallTime now);

  private:
    /// Distinguishes two states of a file without reading it.
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
    /// The file can be neither read nor written now.
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
    /// Empty if the copy exists or no copy is needed, else the error.
    std::string keepCopies(const std::filesystem::path& target, const PreferenceValues& next, const Request& request,
                           const std::string& disputed, WallTime now, Written& written) KOVA_REQUIRES(mutex_);
    /// The texts of the values in the file, by key.
    using MemberTexts = std::map<std::string, std::string, std::less<>>;
    MemberTexts memberTexts(const PreferenceValues& values) const KOVA_REQUIRES(mutex_);
    static std::string documentOf(const MemberTexts& texts);
    static Fingerprint fingerprintOf(const struct stat& status);
    /// Absent if there is no file, or if it cannot be examined (errno).
    static std::optional<Fingerprint> fingerprint(const std::filesystem::path& target);
    /// Empty on success, with `knownFingerprint_` that of the new file; else the error.
    std::string replace(const std::filesystem::path& target, const std::string& text) KOVA_REQUIRES(mutex_);
    /// Syncs the folder after the file was replaced, so that the new file survives a power loss. Empty on success or if
    /// the folder is synced already, else the error.
    std::string makeNameDurable(const std::filesystem::path& target) KOVA_REQUIRES(mutex_);

    const std::filesystem::path path_;
    const FolderSync syncFolder_;
    Mutex mutex_;
    PreferenceValues known_ KOVA_GUARDED_BY(mutex_);  // values in the file when it was last read or written
    MemberTexts memberTexts_ KOVA_GUARDED_BY(mutex_); // of `known_`; empty until the first write
    PreferenceValues ours_ KOVA_GUARDED_BY(mutex_);   // values of this agent at its last write, or as read at the start
    // The file could not be read at the start; its values take precedence once it can be read.
    bool isUnread_ KOVA_GUARDED_BY(mutex_) = false;
    std::optional<Fingerprint> knownFingerprint_ KOVA_GUARDED_BY(mutex_);
    std::optional<Fingerprint> copiedFingerprint_ KOVA_GUARDED_BY(mutex_); // of the file that was copied last
    std::string copiedTo_ KOVA_GUARDED_BY(mutex_);
    std::uint64_t newestVersion_ KOVA_GUARDED_BY(mutex_) = 0;
    // False from the replacement of the file until its folder is on disk.
    bool isNameOnDisk_ KOVA_GUARDED_BY(mutex_) = true;
};

} // namespace kova
