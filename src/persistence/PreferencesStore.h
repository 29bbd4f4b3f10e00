// Where preferences are kept: typed values under versioned keys.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

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
    /// Becomes durable soon after; `save` tells when, `synchronize` waits for that.
    virtual void setValue(std::string_view key, PreferenceValue value) = 0;
    /// The same for a value that takes a while to put together: a store that gathers changes asks for it only when it
    /// is read or written out, and not at all when another value comes first. `make` must not depend on anything that
    /// may end or change before.
    virtual void setValueLater(std::string_view key, std::function<PreferenceValue()> make) { setValue(key, make()); }
    virtual void removeValue(std::string_view key) = 0;

    /// What a save came to: absent when everything is on disk, else why it is in memory only.
    using Saved = std::function<void(const std::optional<std::string>& problem)>;
    /// Begins to write everything set so far and returns; `done` is called once it is on disk or could not be written,
    /// at once when nothing is left to write. A store that ends before drops it.
    virtual void save(Saved done) = 0;
    /// Returns when everything set so far is on disk, or could not be written.
    virtual void synchronize() = 0;

    /// Says that the value under the key, or the part of it that the reason names, is not used. Before the value is
    /// first overwritten, a copy of what is stored is kept. Saying the same twice changes nothing.
    virtual void noteUnusable(std::string_view key, const std::string& reason) = 0;
    /// What is wrong with the store and with what is in it, in words for a person; empty when nothing is.
    virtual std::vector<std::string> problems() const = 0;

    /// Whether anything is stored under the key, also a value of a type that counts as absent.
    virtual bool contains(std::string_view key) const { return value(key).has_value(); }
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
