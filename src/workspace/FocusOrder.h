// The windows in the order in which they were focused last, the most recent first. A plain value.
#pragma once

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kova {

class FocusOrder {
  public:
    /// The window has the focus now.
    void note(const WindowID& windowID) {
        if (!windowIDs_.empty() && windowIDs_.front() == windowID) return;
        std::erase(windowIDs_, windowID);
        windowIDs_.insert(windowIDs_.begin(), windowID);
    }
    void keepOnly(const std::function<bool(const WindowID&)>& isLive) {
        std::erase_if(windowIDs_, [&](const WindowID& id) { return !isLive(id); });
    }
    void rename(const WindowID& windowID, const WindowID& newID) {
        std::replace(windowIDs_.begin(), windowIDs_.end(), windowID, newID);
    }
    /// The most recent first. Contains only windows that were focused since the agent started.
    const std::vector<WindowID>& windowIDs() const { return windowIDs_; }

  private:
    std::vector<WindowID> windowIDs_;
};

} // namespace kova
