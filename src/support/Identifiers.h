// The ids of windows, displays, slots and applications. Each kind of id has its own type, so that a window id cannot be
// passed for a display id. Ids are converted to and from text only where they are stored, sent on the socket or read
// from a desktop.
#pragma once

#include <compare>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace kova {

/// Copies share one text, which never changes: each operation of the workspace copies and compares ids many times, and
/// most of these are copies of one id.
template <class Tag>
class Identifier {
  public:
    Identifier() = default;
    explicit Identifier(std::string text) :
        text_(text.empty() ? nullptr : std::make_shared<const std::string>(std::move(text))) {}
    explicit Identifier(std::string_view text) : Identifier(std::string(text)) {}
    /// Implicit for literals only: the code around a literal shows which kind of id it is.
    template <std::size_t size>
    Identifier(const char (&literal)[size]) : Identifier(std::string(literal)) {}

    const std::string& text() const {
        static const std::string kNone;
        return text_ ? *text_ : kNone;
    }
    bool empty() const { return !text_; }

    /// In JSON an id is its text.
    template <class Json>
    friend void to_json(Json& json, const Identifier& id) {
        json = id.text();
    }

    /// The JSON library would write a map whose keys are ids as an array of pairs. Write an object with the ids' texts
    /// instead.
    template <class Json, class Value>
    friend void to_json(Json& json, const std::map<Identifier, Value>& map) = delete;

    friend bool operator==(const Identifier& a, const Identifier& b) {
        return a.text_ == b.text_ || (a.text_ && b.text_ && *a.text_ == *b.text_);
    }
    friend std::strong_ordering operator<=>(const Identifier& a, const Identifier& b) {
        if (a.text_ == b.text_) return std::strong_ordering::equal;
        if (!a.text_ || !b.text_) return a.text_ ? std::strong_ordering::greater : std::strong_ordering::less;
        return *a.text_ <=> *b.text_;
    }
    /// For the messages of failed tests.
    template <class Stream>
    friend Stream& operator<<(Stream& stream, const Identifier& id) {
        stream << id.text();
        return stream;
    }

  private:
    std::shared_ptr<const std::string> text_; // null for the empty id
};

/// Process identifier, ":", hash of the element; does not change while the window exists.
using WindowID = Identifier<struct WindowTag>;
/// "display-" and the device's UUID, or the integral numbers of the display's frame: "display-0-0-2560x1440".
using DisplayID = Identifier<struct DisplayTag>;
/// A tile of a layout, unique within it: "focus-main".
using SlotID = Identifier<struct SlotTag>;
/// An application: on a Mac its bundle identifier, elsewhere the id of its desktop entry, else its window class in
/// lower case.
using BundleID = Identifier<struct BundleTag>;

} // namespace kova

template <class Tag>
struct std::hash<kova::Identifier<Tag>> {
    std::size_t operator()(const kova::Identifier<Tag>& id) const { return std::hash<std::string>{}(id.text()); }
};
