#include "platform/linux/PreferencesFile.h"

#include "platform/linux/XdgFolders.h"
#include "support/JsonDecoding.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstring>
#include <ctime>
#include <set>
#include <utility>

namespace kova {

namespace {

namespace fs = std::filesystem;

constexpr off_t kLargestFileBytes = 64 << 20;
constexpr int kMostLinks = 40;

std::string reasonOf(int error) {
    return std::strerror(error);
}

/// "20261121-035455", in local time, as a person looks at a clock.
std::string dateStamp(WallTime now) {
    const auto seconds = std::chrono::system_clock::to_time_t(now);
    tm local{};
    localtime_r(&seconds, &local);
    char text[32];
    return {text, std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", &local)};
}

/// A name beside the file that nothing has yet: "preferences.json.damaged-20261121-035455".
fs::path freeNameBeside(const fs::path& file, const std::string& word, WallTime now) {
    const std::string base = file.string() + "." + word + "-" + dateStamp(now);
    fs::path name = base;
    struct stat status {};
    for (int i = 2; lstat(name.c_str(), &status) == 0; ++i) name = base + "-" + std::to_string(i);
    return name;
}

/// The file that a path means: links are followed, the last one even when it points to nothing. Absent in a circle.
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

/// Discarded for a record that is no JSON.
nlohmann::json jsonOf(const PreferenceValue& value) {
    if (const auto* boolean = std::get_if<bool>(&value)) return *boolean;
    if (const auto* string = std::get_if<std::string>(&value)) return *string;
    return nlohmann::json::parse(std::get<PreferenceData>(value).json, nullptr, false);
}

/// The values as they come back from the file: a record's text depends on its content alone.
PreferenceValues asInFile(const PreferenceValues& values, const PreferenceValues& known) {
    PreferenceValues out;
    for (const auto& [key, value] : values) {
        if (!std::holds_alternative<PreferenceData>(value)) {
            out.emplace(key, value);
        } else if (const auto json = jsonOf(value); !json.is_discarded()) {
            out.emplace(key, valueOf(json));
        } else if (const auto before = known.find(key); before != known.end()) {
            out.insert(*before);
        }
    }
    return out;
}

std::string documentOf(const PreferenceValues& values) {
    auto document = nlohmann::json::object();
    for (const auto& [key, value] : values) document[key] = jsonOf(value);
    return document.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
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

/// Brings into `ours` what somebody changed in the file (from `before` to `theirs`) and we did not. Gives the keys that
/// both changed, to different values, as a list for people; there ours stays.
std::string merge(const PreferenceValues& before, const PreferenceValues& theirs, PreferenceValues& ours,
                  PreferencesFile::TakenOver& takenOver) {
    std::set<std::string> keys;
    for (const auto& entry : theirs) keys.insert(entry.first);
    for (const auto& entry : before) keys.insert(entry.first);
    std::string disputed;
    for (const auto& key : keys) {
        const auto valueBefore = at(before, key), theirValue = at(theirs, key), ourValue = at(ours, key);
        if (theirValue == valueBefore || theirValue == ourValue) continue;
        if (ourValue != valueBefore) {
            disputed += (disputed.empty() ? "" : ", ") + key;
            continue;
        }
        takenOver.emplace(key, theirValue);
        ours.erase(key);
        if (theirValue) ours.emplace(key, *theirValue);
    }
    return disputed;
}

class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) close(number_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }

  private:
    int number_;
};

/// 0 when all is in `text`, else the error.
int readAll(const fs::path& file, std::string& text) {
    // Not blocking: somebody may have put a pipe there.
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

/// 0 when all of the text is on disk, else the error.
int writeDurably(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const auto count = ::write(descriptor, text.data(), text.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return errno;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return fsync(descriptor) == 0 ? 0 : errno;
}

std::string draftPrefix(const fs::path& target) {
    return "." + target.filename().string() + ".draft-";
}

/// What a killed process left behind.
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

} // namespace

bool PreferencesFile::Fingerprint::operator==(const Fingerprint& other) const {
    return device == other.device && inode == other.inode && size == other.size &&
           changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
}

PreferencesFile::PreferencesFile(fs::path path) : path_(std::move(path)) {}

std::optional<PreferencesFile::Fingerprint> PreferencesFile::fingerprint(const fs::path& target) {
    struct stat status {};
    if (lstat(target.c_str(), &status) != 0) return std::nullopt;
    return Fingerprint{status.st_dev, status.st_ino, status.st_size, status.st_mtim};
}

PreferencesFile::Reading PreferencesFile::read(const fs::path& target, WallTime now) {
    Reading reading;
    std::string reason;
    const int error = readAll(target, reading.text);
    if (error == ENOENT || error == ENOTDIR) return reading;
    if (error == 0) {
        try {
            reading.values = valuesOf(reading.text);
            return reading;
        } catch (const DecodingError& decodingError) {
            reason = decodingError.what();
        }
    } else {
        reason = reasonOf(error);
    }
    const auto aside = freeNameBeside(target, "damaged", now);
    if (rename(target.c_str(), aside.c_str()) == 0) {
        reading.notice = target.string() + " could not be read (" + reason + "); it was set aside as " + aside.string();
    } else {
        reading.isBlocked = true;
        reading.notice = target.string() + " could not be read (" + reason + ") and not be set aside (" +
                         reasonOf(errno) + "); preferences are not written";
    }
    return reading;
}

PreferencesFile::Loaded PreferencesFile::load(WallTime now) {
    const std::lock_guard lock(mutex_);
    const auto target = targetOf(path_);
    if (!target) return {{}, path_.string() + " is a link that leads back to itself; preferences are not written"};
    removeAbandonedDrafts(*target);
    knownFingerprint_ = fingerprint(*target);
    auto reading = read(*target, now);
    if (!reading.values) knownFingerprint_.reset();
    known_ = reading.values.value_or(PreferenceValues{});
    return {known_, reading.notice};
}

PreferencesFile::Written PreferencesFile::write(const PreferenceValues& values, std::uint64_t version, WallTime now) {
    const std::lock_guard lock(mutex_);
    Written written;
    if (version < newestVersion_) {
        written.isOnDisk = true; // as part of the newer version
        return written;
    }
    const auto target = targetOf(path_);
    if (!target) {
        written.problem = path_.string() + " is a link that leads back to itself";
        return written;
    }
    auto next = asInFile(values, known_);
    const auto present = fingerprint(*target);
    std::optional<PreferenceValues> inFile;
    if (present && present == knownFingerprint_) {
        inFile = known_;
    } else if (present) {
        auto reading = read(*target, now);
        if (reading.isBlocked) {
            written.problem = reading.notice;
            return written;
        }
        written.notice = reading.notice;
        inFile = std::move(reading.values);
        const auto disputed = inFile ? merge(known_, *inFile, next, written.takenOver) : std::string();
        if (!disputed.empty()) {
            const auto aside = freeNameBeside(*target, "edited", now);
            const Descriptor copy(open(aside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
            if (const int error = copy.isOpen() ? writeDurably(copy.number(), reading.text) : errno; error != 0) {
                written.problem =
                    target->string() + " was edited meanwhile, and no copy of it could be kept: " + reasonOf(error);
                written.takenOver.clear();
                return written;
            }
            written.notice = target->string() + " was edited while " + disputed +
                             " also changed here; the edited file was kept as " + aside.string();
        }
    }
    // A file that says all this already stays as a person wrote it, and nobody gets a file for nothing.
    if (inFile ? next != *inFile : !next.empty()) {
        written.problem = replace(*target, documentOf(next));
        if (!written.problem.empty()) {
            written.takenOver.clear();
            return written;
        }
    }
    knownFingerprint_ = fingerprint(*target);
    known_ = std::move(next);
    newestVersion_ = version;
    written.isOnDisk = true;
    return written;
}

std::string PreferencesFile::replace(const fs::path& target, const std::string& text) {
    const auto folder = target.parent_path();
    // Where a link leads is not ours to make.
    if (target == path_ && !createPrivateFolder(folder)) {
        return "cannot make the folder " + folder.string() + ": " + reasonOf(errno);
    }
    const auto draft = folder / (draftPrefix(target) + std::to_string(getpid()));
    const auto failure = [&target](int error) { return "cannot write " + target.string() + ": " + reasonOf(error); };
    // At the next start it would be set aside as damaged, with all that is in it.
    if (text.size() > static_cast<std::size_t>(kLargestFileBytes)) return failure(EFBIG);
    {
        const Descriptor file(open(draft.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600));
        if (!file.isOpen()) return failure(errno);
        if (const int error = writeDurably(file.number(), text); error != 0) {
            unlink(draft.c_str());
            return failure(error);
        }
    }
    if (rename(draft.c_str(), target.c_str()) != 0) {
        const int error = errno;
        unlink(draft.c_str());
        return failure(error);
    }
    // The new name lasts only once its folder is on disk too. The file is whole either way.
    const Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.isOpen()) fsync(opened.number());
    return {};
}

} // namespace kova
