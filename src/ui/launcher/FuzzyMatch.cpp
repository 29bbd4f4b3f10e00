#include "ui/launcher/FuzzyMatch.h"

#include <algorithm>

namespace kova::ui {

namespace {

constexpr int kWholeName = 1000, kBeginning = 400, kWordBeginning = 250, kScattered = 100;
constexpr int kMostLength = 60; // of two names up to this length, the shorter one scores better

bool beginsWord(const QString& name, qsizetype at) {
    return at == 0 || !name[at - 1].isLetterOrNumber();
}

/// The number of characters of the name that are skipped if the word's characters are searched in order from `begin`;
/// absent if not all characters are found.
std::optional<int> skippedFrom(const QString& name, qsizetype begin, const QString& word) {
    qsizetype at = begin;
    for (const QChar wanted : word) {
        at = name.indexOf(wanted, at);
        if (at < 0) return std::nullopt;
        ++at;
    }
    return static_cast<int>(at - begin - word.size());
}

std::optional<int> scoreOfWord(const QString& name, const QString& word) {
    std::optional<int> best;
    for (qsizetype at = name.indexOf(word[0]); at >= 0; at = name.indexOf(word[0], at + 1)) {
        if (!beginsWord(name, at)) continue;
        const auto skipped = skippedFrom(name, at, word);
        if (!skipped) break; // the word does not match from a later position either
        const int score =
            *skipped > 0 ? kScattered - std::min(*skipped, kScattered - 1) : (at > 0 ? kWordBeginning : kBeginning);
        best = std::max(best.value_or(0), score);
    }
    return best;
}

} // namespace

QString folded(const QString& text) {
    QString out;
    out.reserve(text.size());
    for (const QChar each : text.normalized(QString::NormalizationForm_KD)) {
        if (each.category() != QChar::Mark_NonSpacing) out.append(each.toCaseFolded());
    }
    return out;
}

FuzzyQuery::FuzzyQuery(const QString& query) : words_(folded(query).split(u' ', Qt::SkipEmptyParts)) {}

std::optional<int> FuzzyQuery::score(const QString& name) const {
    int sum = name == words_.join(u' ') ? kWholeName : 0;
    for (const QString& word : words_) {
        const auto score = scoreOfWord(name, word);
        if (!score) return std::nullopt;
        sum += *score;
    }
    return sum + kMostLength - static_cast<int>(std::min<qsizetype>(name.size(), kMostLength));
}

} // namespace kova::ui
