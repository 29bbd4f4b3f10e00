// The result of a function that can fail: a value or an error.
#pragma once

#include <type_traits>
#include <utility>
#include <variant>

namespace kova {

/// The two types must differ. Access the value only if the result converts to true, else the error.
template <class Value, class Error>
class [[nodiscard]] Result {
  public:
    template <class Given>
    requires(std::is_convertible_v<Given, Value> && !std::is_same_v<std::remove_cvref_t<Given>, Error> &&
             !std::is_same_v<std::remove_cvref_t<Given>, Result>) Result(Given&& value) :
        held_(std::in_place_index<0>, std::forward<Given>(value)) {}
    Result(Error error) : held_(std::in_place_index<1>, std::move(error)) {}

    explicit operator bool() const { return held_.index() == 0; }
    Value& operator*() { return *std::get_if<0>(&held_); }
    const Value& operator*() const { return *std::get_if<0>(&held_); }
    Value* operator->() { return std::get_if<0>(&held_); }
    const Value* operator->() const { return std::get_if<0>(&held_); }

    Error& error() { return *std::get_if<1>(&held_); }
    const Error& error() const { return *std::get_if<1>(&held_); }

  private:
    std::variant<Value, Error> held_;
};

} // namespace kova
