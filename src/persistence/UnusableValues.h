// Stored values that cannot be used, and where a copy of them is kept once they are overwritten. Any store has one.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

class UnusableValues {
  public:
    /// False when the same was noted before.
    bool note(std::string_view key, const std::string& reason);
    /// Keys of values that no copy is kept of yet.
    std::set<std::string, std::less<>> notKept() const;
    /// A copy of the values under these keys is kept at the place.
    void keptAt(const std::set<std::string, std::less<>>& keys, const std::string& place);
    /// One sentence or two for each, in the order in which they were noted.
    std::vector<std::string> texts() const;

  private:
    struct Entry {
        std::string key;
        std::string reason;
        std::string place; // empty until a copy is kept
    };
    std::vector<Entry> entries_;
};

} // namespace kova
