// Reads a whole file, and replaces a whole file.
#pragma once

#include "support/Result.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kova::cli {

/// As a path, this text means standard input or standard output.
inline constexpr std::string_view kStandardStream = "-";

struct FileProblem {
    std::string message; // names the file
};

/// Returns the file's text. Fails if the file has more than `mostBytes` bytes; then it is not read to its end.
Result<std::string, FileProblem> readFile(const std::string& path, std::size_t mostBytes);

/// The path of the file to write. If `path` is a folder, this is the file `nameInFolder` in it. Symbolic links are
/// resolved.
std::string documentPath(const std::string& path, std::string_view nameInFolder);

/// True if a file exists at the path, so that writing would replace it.
bool wouldOverwrite(const std::string& path);

/// Replaces the file atomically and keeps its mode. Anything but a regular file, such as a pipe, is written to
/// directly. Returns the problem; absent on success.
std::optional<FileProblem> replaceFile(const std::string& path, std::string_view text);

} // namespace kova::cli
