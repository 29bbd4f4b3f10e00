// The preference file on disk: JSON that a person can read and edit, every key beside its value, records as structure.
// At every moment the file is whole, the old one or the new one. What cannot be read is never overwritten, and neither
// is what somebody else wrote meanwhile: the one is set aside under a dated name, the other is merged.
#pragma once

#include "persistence/PreferencesStore.h"
#include "support/MainQueue.h"

#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace kova {

using PreferenceValues = std::map<std::string, PreferenceValue, std::less<>>;

/// Any thread; calls wait for one another and for the disk.
class PreferencesFile {
  public:
    /// A path that is a link is written through to what it points to.
    explicit PreferencesFile(std::filesystem::path path);

    struct Loaded {
        PreferenceValues values;
        std::string problem; // in words for a person; empty when there is none
    };
    Loaded load(WallTime now);

    /// A key that somebody else changed in the file and we did not: its value there, absent when it was removed.
    using TakenOver = std::map<std::string, std::optional<PreferenceValue>>;
    struct Written {
        bool isOnDisk = false;
        TakenOver takenOver;
        std::string notice;  // what a person should know of, although all went well
        std::string problem; // why nothing was written
    };
    /// Writes all the values, unless they are on disk already. `version` grows with every change of the values: an
    /// older version than one written before is dropped.
    Written write(const PreferenceValues& values, std::uint64_t version, WallTime now);

  private:
    /// Tells two states of a file apart without reading it.
    struct Fingerprint {
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = 0;
        timespec changed{};
        bool operator==(const Fingerprint& other) const;
    };
    /// What is in the file now; values are absent when there is no file, or none that could be kept.
    struct Reading {
        std::optional<PreferenceValues> values;
        std::string text;
        std::string notice;
        bool isBlocked = false; // something unreadable is in the way, and could not be set aside: `notice` says what
    };
    Reading read(const std::filesystem::path& target, WallTime now);
    static std::optional<Fingerprint> fingerprint(const std::filesystem::path& target);
    /// Empty when done, else why not.
    std::string replace(const std::filesystem::path& target, const std::string& text);

    const std::filesystem::path path_;
    std::mutex mutex_;
    PreferenceValues known_; // in the file, as far as we know
    std::optional<Fingerprint> knownFingerprint_;
    std::uint64_t newestVersion_ = 0;
};

} // namespace kova
