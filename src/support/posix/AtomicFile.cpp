#include "support/posix/AtomicFile.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdio>

namespace kova {

namespace {

namespace fs = std::filesystem;

bool writeDraft(int descriptor, std::string_view text, const FileReplacement& how, struct stat* written) {
    if (how.exactMode && fchmod(descriptor, *how.exactMode) != 0) return false;
    if (!writeAll(descriptor, text)) return false;
    if (how.durability != Durability::survivesProcess && fsync(descriptor) != 0) return false;
    return !written || fstat(descriptor, written) == 0;
}

} // namespace

bool writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const auto count = ::write(descriptor, text.data(), text.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

std::string draftPrefix(const fs::path& target) {
    return "." + target.filename().string() + ".draft-";
}

int replaceFileAtomically(const fs::path& target, std::string_view text, const FileReplacement& how,
                          struct stat* written) {
    const fs::path folder = target.parent_path();
    const fs::path draft = folder / (draftPrefix(target) + std::to_string(getpid()));
    unlink(draft.c_str()); // an earlier process with the same id may have left a draft behind
    int error = 0;
    {
        const Descriptor file(open(draft.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, how.mode));
        if (!file.isOpen()) return errno;
        if (!writeDraft(file.number(), text, how, written)) error = errno;
    }
    if (error == 0 && std::rename(draft.c_str(), target.c_str()) != 0) error = errno;
    if (error != 0) {
        unlink(draft.c_str());
        return error;
    }
    if (how.durability == Durability::survivesPowerLoss) {
        // Syncs the folder, since otherwise a power loss may bring the old file back.
        const Descriptor opened(open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (opened.isOpen()) fsync(opened.number());
    }
    return 0;
}

} // namespace kova
