// Platform interface to the panels in which a user picks a file.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <variant>

namespace kova {

struct FileProblem {
    std::string message; // in the system's words
    bool operator==(const FileProblem&) const = default;
};

/// Main thread; never waits. Each completion is called at most once, on the main thread and after the call has
/// returned; not at all if the user cancels.
class DocumentPanelServicing {
  public:
    virtual ~DocumentPanelServicing() = default;
    /// Asks where to save the JSON text and writes it there atomically.
    virtual void saveDocument(const std::string& proposedName, std::string json,
                              std::function<void(const std::optional<FileProblem>&)> completion) = 0;
    /// Asks for a JSON file and reads the whole of it.
    virtual void openDocument(std::function<void(const std::variant<std::string, FileProblem>&)> completion) = 0;
};

} // namespace kova
