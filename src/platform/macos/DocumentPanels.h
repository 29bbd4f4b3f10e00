// The system's panels for the document of scenes and rules: where to write it, and which file to read. Both are shown
// at once and answered later, on the main thread; whoever cancels is not heard of again. Main thread.
#pragma once

#include <functional>
#include <string>

namespace kova::macos {

/// Tells the path that was chosen; an existing file there may be replaced.
void chooseWhereToExport(const std::string& proposedName, std::function<void(const std::string& path)> chosen);
void chooseWhatToImport(std::function<void(const std::string& path)> chosen);

/// Writes aside and moves into place. Gives the system's description of what went wrong; empty when it is done.
std::string writeWholeFile(const std::string& path, const std::string& bytes);
/// The whole file, or nothing and the system's description of what went wrong.
struct FileContents {
    std::string bytes;
    std::string problem; // empty when the file was read
};
FileContents readWholeFile(const std::string& path);

} // namespace kova::macos
