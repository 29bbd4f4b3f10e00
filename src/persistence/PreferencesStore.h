// Where preferences are kept: typed values under versioned keys.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace kova {

/// JSON text of a record; on disk it may be kept as structure rather than as text.
struct PreferenceData {
    std::string json;
    bool operator==(const PreferenceData&) const = default;
};

using PreferenceValue = std::variant<bool, std::string, PreferenceData>;

/// Main thread only. A value of another type than asked for counts as absent.
class PreferencesStore {
  public:
    virtual ~PreferencesStore() = default;

    /// Absent when nothing is stored under the key.
    virtual std::optional<PreferenceValue> value(std::string_view key) const = 0;
    /// Becomes durable soon after; `synchronize` waits for that.
    virtual void setValue(std::string_view key, PreferenceValue value) = 0;
    /// The same for a value that takes a while to put together: a store that gathers changes asks for it only when it is
    /// read or written out, and not at all when another value comes first. `make` must not depend on anything that
    /// may end or change before.
    virtual void setValueLater(std::string_view key, std::function<PreferenceValue()> make) { setValue(key, make()); }
    virtual void removeValue(std::string_view key) = 0;
    /// Returns when everything set so far is on disk, or could not be written.
    virtual void synchronize() = 0;
    /// What went wrong with the store, in words for a person; empty when nothing did.
    virtual std::string problem() const { return {}; }

    bool contains(std::string_view key) const { return value(key).has_value(); }
    std::optional<bool> boolean(std::string_view key) const { return typed<bool>(key); }
    std::optional<std::string> string(std::string_view key) const { return typed<std::string>(key); }
    std::optional<PreferenceData> data(std::string_view key) const { return typed<PreferenceData>(key); }

  private:
    template <class T>
    std::optional<T> typed(std::string_view key) const {
        const auto stored = value(key);
        if (!stored || !std::holds_alternative<T>(*stored)) return std::nullopt;
        return std::get<T>(*stored);
    }
};

} // namespace kova
