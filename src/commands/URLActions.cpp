#include "commands/URLActions.h"

#include "support/text/Text.h"

#include <algorithm>
#include <vector>

namespace kova {

namespace {

constexpr std::string_view kScheme = "kova";

/// Changes ASCII letters only, so that no other letter becomes equal to an ASCII letter.
std::string lowerCased(std::string_view text) {
    std::string out(text);
    for (char& c : out) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return out;
}

bool isControl(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 || byte == 0x7F;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::optional<unsigned> hexadecimalDigit(char c) {
    if (isDigit(c)) return static_cast<unsigned>(c - '0');
    if (c >= 'a' && c <= 'f') return static_cast<unsigned>(c - 'a' + 10);
    if (c >= 'A' && c <= 'F') return static_cast<unsigned>(c - 'A' + 10);
    return std::nullopt;
}

/// Absent if a percent sign has no two hexadecimal digits after it, if it encodes NUL, or if the result is not UTF-8.
std::optional<std::string> percentDecoded(std::string_view segment) {
    std::string out;
    while (!segment.empty()) {
        if (segment.front() != '%') {
            out += segment.front();
            segment.remove_prefix(1);
            continue;
        }
        if (segment.size() < 3) return std::nullopt;
        const auto high = hexadecimalDigit(segment[1]);
        const auto low = hexadecimalDigit(segment[2]);
        if (!high || !low || *high * 16 + *low == 0) return std::nullopt;
        out += static_cast<char>(*high * 16 + *low);
        segment.remove_prefix(3);
    }
    return validUtf8(out) == out ? std::optional(out) : std::nullopt;
}

/// The host of the authority, without user and port; absent if the port is not a number.
std::optional<std::string_view> hostOf(std::string_view authority) {
    if (const auto at = authority.rfind('@'); at != std::string_view::npos) authority.remove_prefix(at + 1);
    const auto colon = authority.find(':');
    if (colon == std::string_view::npos) return authority;
    const auto port = authority.substr(colon + 1);
    return std::all_of(port.begin(), port.end(), isDigit) ? std::optional(authority.substr(0, colon)) : std::nullopt;
}

/// The host and the parts of the path, percent-encoded as in the URL; empty parts are left out. The list is empty for
/// an invalid URL and for another scheme.
std::vector<std::string_view> segmentsOf(std::string_view url) {
    if (url.size() > kLongestURL || std::any_of(url.begin(), url.end(), isControl)) return {};
    const auto colon = url.find(':');
    if (colon == std::string_view::npos || lowerCased(url.substr(0, colon)) != kScheme) return {};
    url.remove_prefix(colon + 1);
    url = url.substr(0, url.find_first_of("?#"));

    std::vector<std::string_view> segments;
    if (url.starts_with("//")) {
        url.remove_prefix(2);
        const auto authority = url.substr(0, url.find('/'));
        const auto host = hostOf(authority);
        if (!host) return {};
        if (!host->empty()) segments.push_back(*host);
        url.remove_prefix(authority.size());
    }
    while (!url.empty()) {
        const auto segment = url.substr(0, url.find('/'));
        if (!segment.empty()) segments.push_back(segment);
        url.remove_prefix(std::min(segment.size() + 1, url.size()));
    }
    return segments;
}

std::optional<WorkspaceDirection> directionNamed(std::string_view word) {
    using enum WorkspaceDirection;
    for (const auto direction : {left, right, up, down}) {
        if (word == describe(direction)) return direction;
    }
    return std::nullopt;
}

std::optional<DisplayStep> displayStepNamed(std::string_view word) {
    if (word == "next") return DisplayStep::next;
    if (word == "previous") return DisplayStep::previous;
    return std::nullopt;
}

/// A number from 1 to 99; absent for any other text.
std::optional<std::size_t> tileNumberIn(std::string_view word) {
    if (word.empty() || word.size() > 2 || word.front() == '0' || !std::all_of(word.begin(), word.end(), isDigit)) {
        return std::nullopt;
    }
    std::size_t number = 0;
    for (const char digit : word) number = 10 * number + static_cast<std::size_t>(digit - '0');
    return number;
}

/// The action of "focus", "move" or "swap" and the words that follow: a direction, or "display" and a step.
std::optional<URLAction> towards(std::string_view verb, std::string_view where, std::string_view step) {
    if (const auto direction = directionNamed(where)) {
        if (verb == "focus") return action::Focus{*direction};
        if (verb == "move") return action::Move{*direction};
        return WindowCommand(command::Swap{{}, *direction});
    }
    const auto display = where == "display" ? displayStepNamed(step) : std::nullopt;
    if (!display || verb == "swap") return std::nullopt;
    if (verb == "focus") return WindowCommand(command::FocusDisplay{*display});
    return WindowCommand(command::MoveToDisplay{{}, *display});
}

} // namespace

std::optional<URLAction> parseURLAction(std::string_view url) {
    const auto segments = segmentsOf(url);
    const auto segment = [&](std::size_t i) {
        return i < segments.size() ? percentDecoded(segments[i]).value_or("") : std::string();
    };
    const auto word = [&](std::size_t i) { return lowerCased(segment(i)); };

    if (word(0) == "scene") {
        const std::string name = segment(1);
        return name.empty() ? std::nullopt : std::optional<URLAction>(OpenSceneNamed{name});
    }
    if (word(0) != "action") return std::nullopt;
    const std::string verb = word(1);
    if (verb == "arrange") return action::Arrange{};
    if (verb == "undo") return action::Undo{};
    if (verb == "zoom") return action::ToggleFocusZoom{};
    if (verb == "stack") return action::CycleStack{word(2) == "previous" ? StackStep::previous : StackStep::next};
    if (verb == "float") return WindowCommand(command::ToggleFloating{});
    if (verb == "tile") return WindowCommand(command::Tile{});
    if (verb == "focus" || verb == "move" || verb == "swap") return towards(verb, word(2), word(3));
    const auto number = verb == "place" ? tileNumberIn(word(2)) : std::nullopt;
    if (number) return WindowCommand(command::PlaceInNumbered{{}, *number});
    return std::nullopt;
}

} // namespace kova
