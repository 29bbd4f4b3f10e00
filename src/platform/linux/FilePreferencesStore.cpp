#include "platform/linux/FilePreferencesStore.h"

#include <utility>

namespace kova {

FilePreferencesStore::FilePreferencesStore(std::filesystem::path file, MainQueue& queue, WorkQueue& diskQueue,
                                           std::function<void(const std::string&)> problemFound) :
    queue_(queue),
    diskQueue_(diskQueue), problemFound_(std::move(problemFound)),
    file_(std::make_shared<PreferencesFile>(std::move(file))) {
    auto loaded = file_->load(queue_.now());
    values_ = std::move(loaded.values);
    notice_ = std::move(loaded.problem);
    report(notice_);
}

std::optional<PreferenceValue> FilePreferencesStore::value(std::string_view key) const {
    if (const auto promise = promised_.find(key); promise != promised_.end()) return promise->second();
    const auto found = values_.find(key);
    if (found == values_.end() || found->second == PreferenceValue(PreferenceData{"null"})) return std::nullopt;
    return found->second;
}

void FilePreferencesStore::setValue(std::string_view key, PreferenceValue value) {
    if (const auto promise = promised_.find(key); promise != promised_.end()) promised_.erase(promise);
    store(key, std::move(value));
}

void FilePreferencesStore::setValueLater(std::string_view key, std::function<PreferenceValue()> make) {
    promised_.insert_or_assign(std::string(key), std::move(make));
    writeLater();
}

void FilePreferencesStore::takePromised() {
    for (const auto& [key, make] : std::exchange(promised_, {})) store(key, make());
}

void FilePreferencesStore::store(std::string_view key, PreferenceValue value) {
    const auto found = values_.find(key);
    if (found == values_.end()) {
        values_.emplace(key, std::move(value));
    } else if (found->second != value) {
        found->second = std::move(value);
    } else {
        return;
    }
    ++version_;
    isUnwritten_ = true;
    writeLater();
}

void FilePreferencesStore::removeValue(std::string_view key) {
    if (const auto promise = promised_.find(key); promise != promised_.end()) promised_.erase(promise);
    const auto found = values_.find(key);
    if (found == values_.end()) return;
    values_.erase(found);
    ++version_;
    isUnwritten_ = true;
    writeLater();
}

void FilePreferencesStore::writeLater() {
    if (std::exchange(isWriteScheduled_, true)) return;
    queue_.after(kGatheringTime, lifetime_.guard([this] {
        takePromised();
        isWriteScheduled_ = false;
        if (isUnwritten_) writeSoon();
    }));
}

void FilePreferencesStore::writeSoon() {
    isUnwritten_ = false;
    const std::function<void(const PreferencesFile::Written&, const PreferenceValues&)> adoptLater = lifetime_.guard(
        [this](const PreferencesFile::Written& written, const PreferenceValues& asked) { adopt(written, asked); });
    const bool hadProblem = !writeProblem_.empty();
    diskQueue_.post([file = file_, values = values_, version = version_, now = queue_.now(), &queue = queue_,
                     hadProblem, adoptLater] {
        auto written = file->write(values, version, now);
        // Nothing to tell: the main queue need not wake up for it.
        if (written.isOnDisk && written.takenOver.empty() && written.notice.empty() && !hadProblem) return;
        queue.post([adoptLater, written = std::move(written), values] { adoptLater(written, values); });
    });
}

void FilePreferencesStore::synchronize() {
    takePromised();
    adopt(file_->write(values_, version_, queue_.now()), values_);
}

void FilePreferencesStore::adopt(const PreferencesFile::Written& written, const PreferenceValues& asked) {
    if (!written.isOnDisk) isUnwritten_ = true; // tried again with the next change
    for (const auto& [key, theirs] : written.takenOver) {
        const auto ours = std::as_const(values_).find(key), before = asked.find(key);
        const bool isChangedSince = (ours == values_.cend()) != (before == asked.end()) ||
                                    (ours != values_.cend() && ours->second != before->second);
        if (isChangedSince) continue;
        if (theirs) {
            values_.insert_or_assign(key, *theirs);
        } else {
            values_.erase(key);
        }
    }
    if (!written.notice.empty() && written.notice != notice_) report(notice_ = written.notice);
    if (written.problem != writeProblem_) report(writeProblem_ = written.problem);
}

void FilePreferencesStore::report(const std::string& text) {
    if (!text.empty() && problemFound_) problemFound_(text);
}

std::string FilePreferencesStore::problem() const {
    if (notice_.empty() || writeProblem_.empty() || notice_ == writeProblem_) {
        return notice_.empty() ? writeProblem_ : notice_;
    }
    return notice_ + "; " + writeProblem_;
}

} // namespace kova
