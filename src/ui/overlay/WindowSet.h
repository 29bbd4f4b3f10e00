// The windows of the tiles, by tile id. A window that is no longer needed is reused for the next tile, since layouts
// often change and each new window takes several requests to the window system. Main thread only.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace kova::ui {

template <class Window>
class WindowSet {
  public:
    explicit WindowSet(std::function<std::unique_ptr<Window>()> make) : make_(std::move(make)) {}

    /// Takes the windows of all other ids off the screen, for reuse.
    void keepOnly(const std::set<std::string>& ids) {
        for (auto shown = shown_.begin(); shown != shown_.end();) {
            if (ids.contains(shown->first)) {
                ++shown;
                continue;
            }
            if (retired_.size() < kMostRetired) {
                shown->second->retire();
                retired_.push_back(std::move(shown->second));
            }
            shown = shown_.erase(shown);
        }
    }
    /// The window of the id; reused or created if there is none.
    Window& of(const std::string& id) {
        auto& window = shown_[id];
        if (window) return *window;
        if (retired_.empty()) {
            window = make_();
        } else {
            window = std::move(retired_.back());
            retired_.pop_back();
        }
        return *window;
    }
    void clear() {
        shown_.clear();
        retired_.clear();
    }
    const std::map<std::string, std::unique_ptr<Window>>& shown() const { return shown_; }

  private:
    static constexpr std::size_t kMostRetired = 6;

    std::function<std::unique_ptr<Window>()> make_;
    std::map<std::string, std::unique_ptr<Window>> shown_;
    std::vector<std::unique_ptr<Window>> retired_;
};

} // namespace kova::ui
