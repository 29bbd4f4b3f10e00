// Interface to the stored preferences: typed values under versioned keys.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kova {

/// A record as JSON text. A store may write the record to disk as part of its own JSON document, not as a text.
struct PreferenceData {
    std::string json;
    bool operator==(const PreferenceData&) const = default;
};

using PreferenceValue = std::variant<bool, std::string, PreferenceData>;

/// Main thread only. A value of another type than requested counts as absent.
class PreferencesStore {
  public:
    virtual ~PreferencesStore() = default;

    /// Absent when nothing is stored under the key.
    virtual std::optional<PreferenceValue> value(std::string_view key) const = 0;
    /// Sets the value, and writes it to disk soon afterwards. `save` reports when that is done, `synchronize` waits for
    /// it.
    virtual void setValue(std::string_view key, PreferenceValue value) = 0;
    /// Sets a value that is expensive to make. A store may call `make` only when the value is read or written to disk,
    /// and never if another value replaces it first, so `make` must own all that it uses. The default implementation
    /// calls `make` immediately.
    virtual void setValueLater(std::string_view key, std::function<PreferenceValue()> make) { setValue(key, make()); }
    virtual void removeValue(std::string_view key) = 0;

    /// Called with the result of a save: absent if everything is on disk, else the reason why changes are only in
    /// memory.
    using SaveHandler = std::function<void(const std::optional<std::string>& problem)>;
    /// Begins to write all changes and returns. `done` is called when the write has succeeded or failed, immediately if
    /// there is nothing to write, and never if the store is destroyed first.
    virtual void save(SaveHandler done) = 0;
    /// Waits until everything that was set is on disk, or writing it has failed.
    virtual void synchronize() = 0;

    /// Reports that the value under the key, or the part that the reason names, is unusable. The store keeps a copy
    /// before the value is first overwritten. No-op if this reason was reported for the key before.
    virtual void noteUnusable(std::string_view key, const std::string& reason) = 0;
    /// Problems of the store and its values, for the user; empty for none.
    virtual std::vector<std::string> problems() const = 0;

    /// Whether any value is stored under the key, even one whose type `PreferenceValue` does not have.
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
