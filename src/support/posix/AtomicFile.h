// Replaces files as a whole: the text is written to a draft beside the target, which is then renamed, so that a reader
// sees either the old file or the new one.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace kova {

/// Owns a file descriptor and closes it. A negative number means no descriptor.
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
    contentSurvivesPowerLoss, // syncs only the file; the caller syncs the folder
    survivesProcess,          // syncs nothing
};

struct FileReplacement {
    mode_t mode = 0666;                // reduced by the umask
    std::optional<mode_t> exactMode{}; // independent of the umask
    Durability durability = Durability::survivesPowerLoss;
};

/// Returns 0, or an error number; after an error the target is unchanged. `written` gets the status of the new file.
[[nodiscard]] int replaceFileAtomically(const std::filesystem::path& target, std::string_view text,
                                        const FileReplacement& how, struct stat* written = nullptr);

/// The name of a draft is this prefix, followed by the id of the process that writes the draft.
std::string draftPrefix(const std::filesystem::path& target);

} // namespace kova
