#include "layout/TileTarget.h"

namespace kova {

namespace {

constexpr std::string_view kSeparator = "::";

} // namespace

std::string TileTarget::text() const {
    return std::string(display.text()).append(kSeparator).append(slot.text());
}

TileTarget TileTarget::from(std::string_view text) {
    const std::size_t end = text.find(kSeparator);
    if (end == std::string_view::npos) return {DisplayID(text), {}};
    return {DisplayID(text.substr(0, end)), SlotID(text.substr(end + kSeparator.size()))};
}

std::strong_ordering operator<=>(const TileTarget& left, const TileTarget& right) {
    if (left.display == right.display) return left.slot <=> right.slot;
    const std::string &first = left.display.text(), &second = right.display.text();
    // One id begins with the other one. The separator decides: ":" sorts after the digits with which the longer id may
    // continue.
    if (first.starts_with(second) || second.starts_with(first)) return left.text() <=> right.text();
    return first <=> second;
}

TileTarget withDisplayRenamed(TileTarget target, const DisplayID& formerID, const DisplayID& newID) {
    if (target.display == formerID) target.display = newID;
    return target;
}

} // namespace kova
