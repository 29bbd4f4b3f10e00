// Preferences in a file of their own. Reads answer from memory; a change is written soon after, together with others
// that came meanwhile, on a work queue, so that nobody waits for the disk.
#pragma once

#include "persistence/PreferencesStore.h"
#include "platform/linux/PreferencesFile.h"
#include "support/Lifetime.h"
#include "support/MainQueue.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace kova {

class FilePreferencesStore final : public PreferencesStore {
  public:
    /// Changes that come within this time of the first are written together.
    static constexpr Seconds kGatheringTime{1.0};

    /// Reads the file, which need not be there. `problemFound` hears of each problem when it shows. The queues outlive
    /// the store.
    FilePreferencesStore(std::filesystem::path file, MainQueue& queue, WorkQueue& diskQueue,
                         std::function<void(const std::string&)> problemFound = {});

    std::optional<PreferenceValue> value(std::string_view key) const override;
    void setValue(std::string_view key, PreferenceValue value) override;
    void setValueLater(std::string_view key, std::function<PreferenceValue()> make) override;
    void removeValue(std::string_view key) override;
    void synchronize() override;
    std::string problem() const override;

  private:
    void takePromised();
    void store(std::string_view key, PreferenceValue value);
    void writeLater();
    void writeSoon();
    void adopt(const PreferencesFile::Written& written, const PreferenceValues& asked);
    void report(const std::string& text);

    MainQueue& queue_;
    WorkQueue& diskQueue_;
    std::function<void(const std::string&)> problemFound_;
    std::shared_ptr<PreferencesFile> file_; // a job on the work queue may outlive the store
    PreferenceValues values_;
    std::map<std::string, std::function<PreferenceValue()>, std::less<>> promised_; // newer than `values_`
    std::uint64_t version_ = 0;
    bool isWriteScheduled_ = false;
    bool isUnwritten_ = false;
    std::string notice_;       // stays until the agent ends
    std::string writeProblem_; // stays until a write succeeds
    Lifetime lifetime_;
};

} // namespace kova
