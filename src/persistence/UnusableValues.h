// The list of a store's unusable values, with the reason and the place of the copy of each.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

class UnusableValues {
  public:
    /// Records the key and the reason. False if both were recorded before.
    bool note(std::string_view key, const std::string& reason);
    /// The keys of values that have no copy yet.
    std::set<std::string, std::less<>> notKept() const;
    /// Records that the values of these keys have a copy at the place.
    void keptAt(const std::set<std::string, std::less<>>& keys, const std::string& place);
    /// A text for the user about each value, in the order of the `note` calls.
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
