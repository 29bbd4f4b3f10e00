#include "platform/linux/FilePreferencesStore.h"

#include <algorithm>
#include <utility>

namespace kova {

FilePreferencesStore::FilePreferencesStore(std::filesystem::path file, MainQueue& queue, WorkQueue& diskQueue,
                                           std::function<void(const std::string&)> problemFound) :
    queue_(queue),
    diskQueue_(diskQueue), problemFound_(std::move(problemFound)),
    file_(std::make_shared<PreferencesFile>(std::move(file))) {
    auto loaded = file_->load(queue_.now());
    values_ = std::move(loaded.values);
    if (!loaded.notice.empty()) notices_.push_back(loaded.notice);
    report(loaded.notice);
    report(writeProblem_ = loaded.problem);
    if (!writeProblem_.empty()) noteChange(); // the write that follows tries to read the file again
}

std::optional<PreferenceValue> FilePreferencesStore::value(std::string_view key) const {
    if (const auto deferred = deferred_.find(key); deferred != deferred_.end()) return deferred->second();
    const auto found = values_.find(key);
    if (found == values_.end() || found->second == PreferenceValue(PreferenceData{"null"})) return std::nullopt;
    return found->second;
}

void FilePreferencesStore::setValue(std::string_view key, PreferenceValue value) {
    if (const auto deferred = deferred_.find(key); deferred != deferred_.end()) deferred_.erase(deferred);
    store(key, std::move(value));
}

void FilePreferencesStore::setValueLater(std::string_view key, std::function<PreferenceValue()> make) {
    deferred_.insert_or_assign(std::string(key), std::move(make));
    writeWithin(kGatheringTime);
}

void FilePreferencesStore::makeDeferredValues() {
    for (const auto& [key, make] : std::exchange(deferred_, {})) store(key, make());
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
    noteChange();
}

void FilePreferencesStore::removeValue(std::string_view key) {
    if (const auto deferred = deferred_.find(key); deferred != deferred_.end()) deferred_.erase(deferred);
    const auto found = values_.find(key);
    if (found == values_.end()) return;
    values_.erase(found);
    noteChange();
}

void FilePreferencesStore::noteChange() {
    ++version_;
    writeWithin(kGatheringTime);
}

void FilePreferencesStore::writeWithin(Seconds delay) {
    const Seconds due = queue_.uptime() + delay;
    if (scheduledWrite_) {
        if (scheduledFor_ <= due) return;
        scheduledWrite_->cancel();
    }
    scheduledFor_ = due;
    scheduledWrite_ = queue_.after(delay, lifetime_.guard([this] {
        scheduledWrite_.reset();
        writeNow();
    }));
}

PreferencesFile::Request FilePreferencesStore::request() const {
    return {values_, version_, unusable_.notKept()};
}

/// Changes that are made during a write are written by the next one.
void FilePreferencesStore::writeNow() {
    makeDeferredValues();
    if (isWriting_ || isWritten()) return;
    if (scheduledWrite_) scheduledWrite_->cancel();
    scheduledWrite_.reset();
    isWriting_ = true;
    const std::function<void(const PreferencesFile::Request&, const PreferencesFile::Written&)> finishLater =
        lifetime_.guard([this](const PreferencesFile::Request& requested, const PreferencesFile::Written& written) {
            isWriting_ = false;
            finish(requested, written);
            if (!pendingSaves_.empty()) writeNow();
        });
    diskQueue_.post([file = file_, requested = std::make_shared<const PreferencesFile::Request>(request()),
                     now = queue_.now(), &queue = queue_, finishLater] {
        auto written = std::make_shared<const PreferencesFile::Written>(file->write(*requested, now));
        queue.post([finishLater, requested, written] { finishLater(*requested, *written); });
    });
}

void FilePreferencesStore::save(SaveHandler done) {
    makeDeferredValues();
    if (isWritten()) return done(std::nullopt);
    pendingSaves_.push_back({version_, std::move(done)});
    writeNow();
}

void FilePreferencesStore::synchronize() {
    makeDeferredValues();
    const auto requested = request();
    finish(requested, file_->write(requested, queue_.now()));
}

void FilePreferencesStore::finish(const PreferencesFile::Request& requested, const PreferencesFile::Written& written) {
    takeOver(written.takenOver, requested.values);
    if (!written.keptAt.empty()) {
        unusable_.keptAt(requested.unusable, written.keptAt);
        report("the preferences with values that cannot be used were kept as " + written.keptAt);
    }
    if (!written.notice.empty() && std::ranges::find(notices_, written.notice) == notices_.end()) {
        notices_.push_back(written.notice);
        report(written.notice);
    }
    if (written.problem != writeProblem_) report(writeProblem_ = written.problem);
    if (written.isOnDisk) {
        writtenVersion_ = std::max(writtenVersion_, requested.version);
        retryDelay_ = kFirstRetry;
        if (!isWritten()) writeWithin(kGatheringTime);
    } else {
        writeWithin(retryDelay_);
        retryDelay_ = std::min(2 * retryDelay_, kLongestRetry);
    }
    completeSaves(requested.version);
}

/// Adopts what another program has changed in the file, except for values that this agent has changed since the
/// request.
void FilePreferencesStore::takeOver(const PreferencesFile::TakenOver& changes, const PreferenceValues& requested) {
    for (const auto& [key, theirs] : changes) {
        const auto ours = std::as_const(values_).find(key), before = requested.find(key);
        const bool isChangedSince = (ours == values_.cend()) != (before == requested.end()) ||
                                    (ours != values_.cend() && ours->second != before->second);
        if (isChangedSince) continue;
        if (theirs) {
            values_.insert_or_assign(key, *theirs);
        } else {
            values_.erase(key);
        }
    }
}

/// Completes the saves up to `version`, also after a failed write: the changes are in memory, and the write will be
/// retried.
void FilePreferencesStore::completeSaves(std::uint64_t version) {
    const auto firstRemaining =
        std::ranges::find_if(pendingSaves_, [version](const PendingSave& save) { return save.version > version; });
    std::vector<PendingSave> finished(std::make_move_iterator(pendingSaves_.begin()),
                                      std::make_move_iterator(firstRemaining));
    pendingSaves_.erase(pendingSaves_.begin(), firstRemaining);
    const auto problem = writeProblem_.empty() ? std::nullopt : std::optional(writeProblem_);
    for (const PendingSave& save : finished) save.done(problem);
}

void FilePreferencesStore::noteUnusable(std::string_view key, const std::string& reason) {
    if (unusable_.note(key, reason)) report(unusable_.texts().back());
}

void FilePreferencesStore::report(const std::string& text) {
    if (!text.empty() && problemFound_) problemFound_(text);
}

std::vector<std::string> FilePreferencesStore::problems() const {
    std::vector<std::string> all = unusable_.texts();
    all.insert(all.end(), notices_.begin(), notices_.end());
    if (!writeProblem_.empty()) {
        all.push_back(writeProblem_ + ". Changes are in memory only; writing is tried again");
    }
    return all;
}

} // namespace kova
