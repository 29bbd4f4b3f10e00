// Files are replaced as a whole: written to a draft beside the target, then renamed, so that a reader sees the old file
// or the new one.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace kova {

/// Owns a file descriptor and closes it; negative: none.
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

/// False, with `errno` set, when not all of the text could be written.
[[nodiscard]] bool writeAll(int descriptor, std::string_view text);

enum class Durability {
    survivesPowerLoss,        // waits for the disk
    contentSurvivesPowerLoss, // without syncing the folder, which the caller does
    survivesProcess,
};

struct FileReplacement {
    mode_t mode = 0666;                // reduced by the umask
    std::optional<mode_t> exactMode{}; // independent of the umask
    Durability durability = Durability::survivesPowerLoss;
};

/// 0, or the error number, after which the target is as it was. `written` gets the status of the new file.
[[nodiscard]] int replaceFileAtomically(const std::filesystem::path& target, std::string_view text,
                                        const FileReplacement& how, struct stat* written = nullptr);

/// What the name of a draft begins with; the number of the process that writes it follows.
std::string draftPrefix(const std::filesystem::path& target);

} // namespace kova
