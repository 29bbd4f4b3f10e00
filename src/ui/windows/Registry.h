// A list to which source files add entries before main() begins, so that adding a window or a pane changes no other
// file.
#pragma once

#include <utility>
#include <vector>

namespace kova::ui {

template <class Entry>
class Registry {
  public:
    /// Adds an entry when it is constructed. Define it as a constant at namespace scope:
    /// `const Registry<WindowKind>::Addition registration({...});`
    struct Addition {
        explicit Addition(Entry entry) { list().push_back(std::move(entry)); }
    };
    /// All entries, in no particular order.
    static const std::vector<Entry>& entries() { return list(); }

  private:
    static std::vector<Entry>& list() {
        static std::vector<Entry> entries;
        return entries;
    }
};

} // namespace kova::ui
