#include "support/Spelling.h"

#include <algorithm>
#include <vector>

namespace kova {

namespace {

/// In bytes. A longer text is not a misspelled word, and its comparison would take long.
constexpr std::size_t kLongestCompared = 64;

} // namespace

std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> beforeLast(b.size() + 1), last(b.size() + 1), row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) last[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, replaced});
            const bool isExchanged = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (isExchanged) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
        std::swap(beforeLast, last);
        std::swap(last, row);
    }
    return last[b.size()];
}

std::optional<std::size_t> nearestWord(std::string_view wanted, std::span<const std::string> words) {
    if (wanted.empty() || wanted.size() > kLongestCompared) return std::nullopt;
    std::size_t best = wanted.size() <= 4 ? 1 : 2;
    std::optional<std::size_t> nearest;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i].size() > kLongestCompared || std::max(wanted.size(), words[i].size()) < 2) continue;
        const std::size_t distance = editDistance(wanted, words[i]);
        if (distance > best || (nearest && distance == best)) continue;
        best = distance;
        nearest = i;
    }
    return nearest;
}

} // namespace kova
