// A value that notifies observers when it changes. Main thread only.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace kova {

/// Keeps an observer registered as long as the subscription exists. A subscription may outlive the observed value.
class Subscription {
  public:
    Subscription() = default;
    explicit Subscription(std::shared_ptr<void> token) : token_(std::move(token)) {}

  private:
    std::shared_ptr<void> token_;
};

/// Observers of one event, called in the order of their subscription. Subscriptions may begin and end during a call.
template <class... Arguments>
class Observers {
  public:
    using Observer = std::function<void(Arguments...)>;

    [[nodiscard]] Subscription add(Observer observer) {
        auto kept = std::make_shared<Observer>(std::move(observer));
        observers_.push_back(kept);
        return Subscription(kept);
    }
    /// Whether there is an observer now.
    bool hasAny() const {
        return std::any_of(observers_.begin(), observers_.end(),
                           [](const auto& observer) { return !observer.expired(); });
    }
    void notify(Arguments... arguments) {
        notifyWhile([] { return true; }, arguments...);
    }
    /// Notifies one observer after the other, and stops when `isWanted` returns false. `isWanted` is called before each
    /// observer.
    template <std::predicate IsWanted>
    void notifyWhile(IsWanted isWanted, Arguments... arguments) {
        std::erase_if(observers_, [](const auto& observer) { return observer.expired(); });
        const auto present = observers_;
        for (const auto& weak : present) {
            if (!isWanted()) return;
            if (const auto observer = weak.lock()) (*observer)(arguments...);
        }
    }

  private:
    std::vector<std::weak_ptr<Observer>> observers_;
};

template <std::equality_comparable T>
class Published {
  public:
    Published() = default;
    explicit Published(T initial) : value_(std::move(initial)) {}
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;

    const T& get() const { return value_; }
    const T& operator*() const { return value_; }
    const T* operator->() const { return &value_; }

    /// Notifies only if the value changed. If an observer calls set() again, the remaining observers get only the
    /// newest value. Observers get a copy, which a later set() does not change.
    void set(T next) {
        if (next == value_) return;
        value_ = next;
        const std::uint64_t round = ++round_;
        observers_.notifyWhile([this, round] { return round == round_; }, next);
    }
    /// Const because observing does not change the value.
    [[nodiscard]] Subscription observe(std::function<void(const T&)> observer) const {
        return observers_.add(std::move(observer));
    }

  private:
    T value_{};
    std::uint64_t round_ = 0; // number of changes so far
    mutable Observers<const T&> observers_;
};

} // namespace kova
