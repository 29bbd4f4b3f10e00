// Preferences in a file. Reads use the values in memory. Changes are collected for a second, or until `save`, and
// written on a work queue, so that the main queue never waits for the disk. Failed writes are retried at growing
// intervals.
#pragma once

#include "persistence/PreferencesStore.h"
#include "persistence/UnusableValues.h"
#include "platform/linux/PreferencesFile.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kova {

class FilePreferencesStore final : public PreferencesStore {
  public:
    /// Changes within this time after the first are written together, unless a save is requested.
    static constexpr Seconds kGatheringTime{1.0};
    /// The pause after a failed write; it doubles with each further failure up to `kLongestRetry`.
    static constexpr Seconds kFirstRetry{1.0};
    static constexpr Seconds kLongestRetry{60.0};

    /// Reads the file, which need not exist. `problemFound` is called for each problem when it is noticed. The queues
    /// must outlive the store.
    FilePreferencesStore(std::filesystem::path file, MainQueue& queue, WorkQueue& diskQueue,
                         std::function<void(const std::string&)> problemFound = {});

    std::optional<PreferenceValue> value(std::string_view key) const override;
    void setValue(std::string_view key, PreferenceValue value) override;
    void setValueLater(std::string_view key, std::function<PreferenceValue()> make) override;
    void removeValue(std::string_view key) override;
    void save(SaveHandler done) override;
    void synchronize() override;
    void noteUnusable(std::string_view key, const std::string& reason) override;
    std::vector<std::string> problems() const override;

  private:
    struct PendingSave {
        std::uint64_t version;
        SaveHandler done;
    };

    void makeDeferredValues();
    void store(std::string_view key, PreferenceValue value);
    void noteChange();
    bool isWritten() const { return version_ == writtenVersion_; }
    void writeWithin(Seconds delay);
    void writeNow();
    PreferencesFile::Request request() const;
    void finish(const PreferencesFile::Request& requested, const PreferencesFile::Written& written);
    /// Uses the changes of other writers, except for keys that have changed here since the request to write.
    void takeOver(const PreferencesFile::TakenOver& changes, const PreferenceValues& requested);
    void completeSaves(std::uint64_t version);
    void report(const std::string& text);

    MainQueue& queue_;
    WorkQueue& diskQueue_;
    std::function<void(const std::string&)> problemFound_;
    std::shared_ptr<PreferencesFile> file_; // a job on the work queue may outlive the store
    PreferenceValues values_;
    /// Functions that make the newest values of their keys; `values_` has older ones.
    std::map<std::string, std::function<PreferenceValue()>, std::less<>> deferred_;
    std::uint64_t version_ = 0;
    std::uint64_t writtenVersion_ = 0;
    bool isWriting_ = false; // on the work queue
    std::shared_ptr<ScheduledWork> scheduledWrite_;
    Seconds scheduledFor_{0}; // uptime
    Seconds retryDelay_{kFirstRetry};
    std::vector<PendingSave> pendingSaves_; // oldest first
    UnusableValues unusable_;
    std::vector<std::string> notices_; // stay until the agent ends
    std::string writeProblem_;         // stays until a write succeeds
    Lifetime lifetime_;
};

} // namespace kova
