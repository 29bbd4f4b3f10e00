#include "platform/linux/PreferencesFile.h"

#include "persistence/PreferenceKeys.h"
#include "platform/linux/XdgFolders.h"
#include "support/Dates.h"
#include "support/JsonDecoding.h"
#include "support/posix/AtomicFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstring>
#include <thread>
#include <utility>

namespace kova {

namespace {

namespace fs = std::filesystem;

/// A larger file was not written by KOVA: scenes and rules take at most 64 MiB when exported, and at most a third more
/// in this file, where they are indented one level deeper.
constexpr off_t kLargestFileBytes = 96 << 20;
/// The longest wait for another agent's lock; an agent that keeps the lock for longer is assumed to hang.
constexpr auto kLongestLockWait = std::chrono::seconds(1);
constexpr int kMostLinks = 40;

std::string reasonOf(int error) {
    return std::strerror(error);
}

/// An unused name beside the file: "preferences.json.damaged-20261121-035455".
fs::path freeNameBeside(const fs::path& file, const std::string& word, WallTime now) {
    const std::string base =
        file.string() + "." + word + "-" + localDateStamp(std::chrono::floor<std::chrono::microseconds>(now));
    fs::path name = base;
    struct stat status {};
    for (int i = 2; lstat(name.c_str(), &status) == 0; ++i) name = base + "-" + std::to_string(i);
    return name;
}

/// Follows symbolic links to the file, which need not exist. Absent if the links form a cycle.
std::optional<fs::path> targetOf(fs::path path) {
    for (int i = 0; i < kMostLinks; ++i) {
        std::error_code error;
        const auto next = fs::read_symlink(path, error);
        if (error) return path;
        path = path.parent_path() / next;
    }
    return std::nullopt;
}

PreferenceValue valueOf(const nlohmann::json& json) {
    if (json.is_boolean()) return json.get<bool>();
    if (json.is_string()) return json.get<std::string>();
    return PreferenceData{json.dump()};
}

/// If the record is not valid JSON, `is_discarded()` of the result is true.
nlohmann::json jsonOf(const PreferenceValue& value) {
    if (const auto* boolean = std::get_if<bool>(&value)) return *boolean;
    if (const auto* string = std::get_if<std::string>(&value)) return *string;
    return nlohmann::json::parse(std::get<PreferenceData>(value).json, nullptr, false);
}

/// Whether the record is state that an agent computes in its own session. Such a record is replaced instead of merged
/// with that of another agent.
bool isStateOfOneAgent(const std::string& key) {
    return key == preferenceKey::workspaceSession || key == preferenceKey::autoArrangeLearning;
}

/// False for values that each agent sets for its own session: overwriting such a value loses nothing that the user
/// wrote.
bool isWorthACopy(const std::string& place) {
    return place != std::string(preferenceKey::workspaceProduct) + ".activeSceneID" &&
           place != std::string(preferenceKey::workspaceProfile) + ".id";
}

/// The values as they would be read from the file, so that equal records have equal texts. `known` must have
/// this form already.
PreferenceValues asInFile(const PreferenceValues& values, const PreferenceValues& known) {
    PreferenceValues out;
    for (const auto& [key, value] : values) {
        const auto before = known.find(key);
        if (!std::holds_alternative<PreferenceData>(value) || (before != known.end() && before->second == value)) {
            out.emplace(key, value);
        } else if (const auto json = jsonOf(value); !json.is_discarded()) {
            out.emplace(key, valueOf(json));
        } else if (before != known.end()) {
            out.insert(*before);
        }
    }
    return out;
}

constexpr std::string_view kIndentation = "  ";

std::string jsonText(const nlohmann::json& json, int indentation) {
    return json.dump(indentation, ' ', false, nlohmann::json::error_handler_t::replace);
}

/// The value's text in the file, where it is a member of the outermost object.
std::string memberText(const PreferenceValue& value) {
    const std::string text = jsonText(jsonOf(value), static_cast<int>(kIndentation.size()));
    std::string indented;
    for (const char character : text) {
        indented += character;
        if (character == '\n') indented += kIndentation;
    }
    return indented;
}

PreferenceValues valuesOf(const std::string& text) {
    PreferenceValues values;
    const auto document = parseJson(text);
    if (!document.is_object()) throw DecodingError("", "expected an object");
    for (const auto& [key, value] : document.items()) values.emplace(key, valueOf(value));
    return values;
}

std::optional<PreferenceValue> at(const PreferenceValues& values, const std::string& key) {
    const auto found = values.find(key);
    if (found == values.end()) return std::nullopt;
    return found->second;
}

JsonOrAbsent jsonAt(const PreferenceValues& values, const std::string& key) {
    const auto found = values.find(key);
    if (found == values.end()) return std::nullopt;
    return jsonOf(found->second);
}

bool isRecord(const std::optional<PreferenceValue>& value) {
    return value && std::holds_alternative<PreferenceData>(*value);
}

/// Reads the whole file into `text`; 0, or the error.
int readAll(const fs::path& file, std::string& text) {
    // Non-blocking, since the path may be a pipe.
    const Descriptor descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!descriptor.isOpen()) return errno;
    struct stat status {};
    if (fstat(descriptor.number(), &status) != 0) return errno;
    if (S_ISDIR(status.st_mode)) return EISDIR;
    if (!S_ISREG(status.st_mode)) return EINVAL;
    if (status.st_size > kLargestFileBytes) return EFBIG;
    char chunk[16384];
    while (true) {
        const auto count = ::read(descriptor.number(), chunk, sizeof chunk);
        if (count == 0) return 0;
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return errno;
        text.append(chunk, static_cast<std::size_t>(count));
    }
}

/// Removes temporary files that a killed process left.
void removeAbandonedDrafts(const fs::path& target) {
    const auto prefix = draftPrefix(target);
    std::error_code error;
    for (fs::directory_iterator it(target.parent_path(), error), end; !error && it != end; it.increment(error)) {
        const auto name = it->path().filename().string();
        if (!name.starts_with(prefix)) continue;
        pid_t writer = 0;
        std::from_chars(name.data() + prefix.size(), name.data() + name.size(), writer);
        if (writer > 0 && kill(writer, 0) != 0 && errno == ESRCH) unlink(it->path().c_str());
    }
}

/// Locks the folder against agents of other sessions, for the lifetime of this object. Best effort: a folder that
/// cannot be locked, as on some network file systems, is used without a lock.
class FolderLock {
  public:
    explicit FolderLock(const fs::path& folder) : folder_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        const auto end = std::chrono::steady_clock::now() + kLongestLockWait;
        while (folder_.isOpen() && flock(folder_.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK &&
               std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }

  private:
    Descriptor folder_; // closing it releases the lock
};

std::string cannotReadNow(const fs::path& target, int error) {
    return target.string() + " cannot be read now: " + reasonOf(error);
}

/// True if the path has something other than a preference file; false if the path has a file that cannot be read at the
/// moment.
bool isDamage(int error) {
    return error == EISDIR || error == EINVAL || error == EFBIG;
}

} // namespace

bool PreferencesFile::Fingerprint::operator==(const Fingerprint& other) const {
    return device == other.device && inode == other.inode && size == other.size &&
           changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
}

PreferencesFile::PreferencesFile(fs::path path, FolderSync folderSync) :
    path_(std::move(path)), syncFolder_(std::move(folderSync)) {}

int PreferencesFile::syncFolder(const fs::path& folder) {
    const Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!opened.isOpen()) return errno;
    // EINVAL: the file system cannot sync folders and need not.
    return fsync(opened.number()) == 0 || errno == EINVAL ? 0 : errno;
}

PreferencesFile::Fingerprint PreferencesFile::fingerprintOf(const struct stat& status) {
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

std::optional<PreferencesFile::Fingerprint> PreferencesFile::fingerprint(const fs::path& target) {
    struct stat status {};
    if (lstat(target.c_str(), &status) != 0) return std::nullopt;
    return fingerprintOf(status);
}

PreferencesFile::Reading PreferencesFile::read(const fs::path& target, WallTime now) {
    Text reading;
    const int error = readAll(target, reading.text);
    if (error == ENOENT || error == ENOTDIR) return Absent{};
    if (isDamage(error)) return setAside(target, reasonOf(error), now);
    if (error != 0) return Blocked{cannotReadNow(target, error)};
    try {
        reading.values = valuesOf(reading.text);
        return reading;
    } catch (const DecodingError& decodingError) {
        return setAside(target, decodingError.what(), now);
    }
}

/// If the path is a link, the link is set aside: its target may be a file of another program.
PreferencesFile::Reading PreferencesFile::setAside(const fs::path& target, const std::string& reason, WallTime now) {
    std::error_code error;
    const fs::path& damaged = fs::is_symlink(path_, error) ? path_ : target;
    const auto aside = freeNameBeside(damaged, "damaged", now);
    const std::string what = target.string() + " could not be read (" + reason + ")";
    if (rename(damaged.c_str(), aside.c_str()) == 0) return SetAside{what + "; it was set aside as " + aside.string()};
    return Blocked{what + " and could not be set aside (" + reasonOf(errno) + ")"};
}

PreferencesFile::Loaded PreferencesFile::load(WallTime now) {
    const MutexLock lock(mutex_);
    const auto target = targetOf(path_);
    if (!target) return {{}, {}, path_.string() + " is a link that leads back to itself"};
    removeAbandonedDrafts(*target);
    knownFingerprint_ = fingerprint(*target);
    const auto reading = read(*target, now);
    if (const auto* text = std::get_if<Text>(&reading)) {
        ours_ = known_ = text->values;
        memberTexts_.clear();
        return {known_, {}, {}};
    }
    knownFingerprint_.reset();
    if (const auto* aside = std::get_if<SetAside>(&reading)) return {{}, aside->notice, {}};
    const auto* blocked = std::get_if<Blocked>(&reading);
    isUnread_ = blocked != nullptr;
    return {{}, {}, blocked ? blocked->reason : std::string()};
}

PreferenceValues PreferencesFile::mergeInto(const PreferenceValues& theirs, const PreferenceValues& ours,
                                            Written& written, std::string& disputed) const {
    PreferenceKeySet keys;
    for (const auto* side : {&theirs, &ours}) {
        for (const auto& entry : *side) keys.insert(entry.first);
    }
    PreferenceValues next;
    for (const auto& key : keys) {
        const auto our = at(ours, key), their = at(theirs, key), base = at(ours_, key);
        std::optional<PreferenceValue> value = our;
        if (our == base || our == at(known_, key)) { // not changed by this agent, or taken over by an earlier reading
            value = their;
        } else if (their != base && their != our && !isStateOfOneAgent(key)) {
            const auto merged = merge(key, {jsonAt(ours_, key), jsonAt(ours, key), jsonAt(theirs, key),
                                            jsonAt(known_, key), isUnread_ ? MergeWinner::theirs : MergeWinner::ours});
            value = merged.value ? std::optional(valueOf(*merged.value)) : std::nullopt;
            for (const auto& place : merged.disputed) {
                if (isWorthACopy(place)) disputed += (disputed.empty() ? "" : ", ") + place;
            }
        }
        if (value != our && !isRecord(value) && !isRecord(our)) written.takenOver.emplace(key, value);
        if (value) next.emplace(key, *std::move(value));
    }
    return next;
}

std::string PreferencesFile::keepCopies(const fs::path& target, const PreferenceValues& next, const Request& request,
                                        const std::string& disputed, WallTime now, Written& written) {
    const bool overwritesUnusable = std::ranges::any_of(request.unusable, [&](const auto& key) {
        mutex_.assertHeld();
        return at(next, key) != at(known_, key);
    });
    if (disputed.empty() && !overwritesUnusable) return {};
    const auto present = fingerprint(target);
    if (!present) return {};             // nothing is overwritten
    if (present != copiedFingerprint_) { // else this is a retry, and the copy exists
        const auto aside = freeNameBeside(target, disputed.empty() ? "damaged" : "edited", now);
        std::string text;
        int error = readAll(target, text);
        if (error == 0) {
            const Descriptor copy(open(aside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
            const bool isKept = copy.isOpen() && writeAll(copy.number(), text) && fsync(copy.number()) == 0;
            error = isKept ? 0 : errno;
            if (copy.isOpen() && error != 0) unlink(aside.c_str());
        }
        if (error != 0) return "no copy of " + target.string() + " could be kept: " + reasonOf(error);
        copiedFingerprint_ = present;
        copiedTo_ = aside.string();
    }
    if (!disputed.empty()) {
        written.notice = target.string() + " was edited while " + disputed +
                         " also changed here; the edited file was kept as " + copiedTo_;
    }
    if (overwritesUnusable) written.keptAt = copiedTo_;
    return {};
}

PreferencesFile::Written PreferencesFile::write(const Request& request, WallTime now) {
    const MutexLock lock(mutex_);
    Written written;
    if (request.version < newestVersion_) {
        written.isOnDisk = true; // as part of the newer version
        return written;
    }
    auto target = targetOf(path_);
    if (!target) {
        written.problem = path_.string() + " is a link that leads back to itself";
        return written;
    }
    const FolderLock folderLock(target->parent_path());
    const auto present = fingerprint(*target);
    if (!present && errno != ENOENT && errno != ENOTDIR) {
        written.problem = cannotReadNow(*target, errno);
        return written;
    }
    std::optional<PreferenceValues> inFile;
    if (present && present == knownFingerprint_) {
        inFile = known_;
    } else if (present) {
        auto reading = read(*target, now);
        if (auto* blocked = std::get_if<Blocked>(&reading)) {
            written.problem = blocked->reason;
            return written;
        }
        if (auto* aside = std::get_if<SetAside>(&reading)) {
            written.notice = aside->notice;
            target = targetOf(path_).value_or(path_); // if a link was set aside, its target is not used any more
        }
        if (auto* text = std::get_if<Text>(&reading)) inFile = std::move(text->values);
    }
    auto ours = asInFile(request.values, ours_);
    // If the file was removed or damaged meanwhile, it is written again in full.
    std::string disputed;
    auto next = mergeInto(inFile.value_or(known_), ours, written, disputed);
    // A file that has these values already is not rewritten, since the user may have formatted it. Without any values
    // no file is made.
    MemberTexts texts;
    if (inFile ? next != *inFile : !next.empty()) {
        written.problem = keepCopies(*target, next, request, disputed, now, written);
        texts = memberTexts(next);
        if (written.problem.empty()) written.problem = replace(*target, documentOf(texts));
    } else {
        knownFingerprint_ = present;
    }
    if (written.problem.empty()) written.problem = makeNameDurable(*target);
    if (!written.problem.empty()) {
        written.takenOver.clear();
        return written;
    }
    if (!texts.empty() || next != known_) memberTexts_ = std::move(texts);
    known_ = std::move(next);
    ours_ = std::move(ours);
    isUnread_ = false;
    newestVersion_ = request.version;
    written.isOnDisk = true;
    return written;
}

/// Most writes change one or two values; the texts of all others are those of the last write.
PreferencesFile::MemberTexts PreferencesFile::memberTexts(const PreferenceValues& values) const {
    MemberTexts texts;
    for (const auto& [key, value] : values) {
        const auto known = known_.find(key);
        const auto last = memberTexts_.find(key);
        const bool isUnchanged = last != memberTexts_.end() && known != known_.end() && known->second == value;
        texts.emplace(key, isUnchanged ? last->second : memberText(value));
    }
    return texts;
}

std::string PreferencesFile::documentOf(const MemberTexts& texts) {
    if (texts.empty()) return "{}\n";
    std::string document = "{";
    for (const auto& [key, text] : texts) {
        if (document.size() > 1) document += ',';
        document.append("\n").append(kIndentation).append(jsonText(key, -1)).append(": ").append(text);
    }
    return document + "\n}\n";
}

std::string PreferencesFile::replace(const fs::path& target, const std::string& text) {
    const auto folder = target.parent_path();
    // The folder of a link's target is not created.
    if (target == path_ && !createPrivateFolder(folder)) {
        return "cannot make the folder " + folder.string() + ": " + reasonOf(errno);
    }
    const auto failure = [&target](int error) { return "cannot write " + target.string() + ": " + reasonOf(error); };
    // The next start would set a larger file aside as damaged.
    if (text.size() > static_cast<std::size_t>(kLargestFileBytes)) return failure(EFBIG);
    struct stat status {};
    const int error = replaceFileAtomically(
        target, text, {.mode = 0600, .durability = Durability::contentSurvivesPowerLoss}, &status);
    if (error != 0) return failure(error);
    knownFingerprint_ = fingerprintOf(status);
    isNameOnDisk_ = false;
    return {};
}

std::string PreferencesFile::makeNameDurable(const fs::path& target) {
    if (isNameOnDisk_) return {};
    if (const int error = syncFolder_(target.parent_path()); error != 0) {
        knownFingerprint_.reset(); // the next try reads the file again
        return "cannot make sure that " + target.string() + " lasts: " + reasonOf(error);
    }
    isNameOnDisk_ = true;
    return {};
}

} // namespace kova
