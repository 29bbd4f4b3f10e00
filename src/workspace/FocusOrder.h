// The order in which windows were focused, the most recent first. A plain value.
#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kova {

class FocusOrder {
  public:
    void note(const std::string& windowID) {
        if (!windowIDs_.empty() && windowIDs_.front() == windowID) return;
        std::erase(windowIDs_, windowID);
        windowIDs_.insert(windowIDs_.begin(), windowID);
    }
    void keepOnly(const std::function<bool(const std::string&)>& isLive) {
        std::erase_if(windowIDs_, [&](const std::string& id) { return !isLive(id); });
    }
    /// Renames the window.
    void rename(const std::string& windowID, const std::string& newID) {
        std::replace(windowIDs_.begin(), windowIDs_.end(), windowID, newID);
    }
    /// Without windows that were never focused since the agent started.
    const std::vector<std::string>& windowIDs() const { return windowIDs_; }

  private:
    std::vector<std::string> windowIDs_;
};

} // namespace kova
