#include "ui/launcher/Entries.h"

#include "ui/windows/JsonText.h"

#include <QCollator>

#include <algorithm>
#include <numeric>

namespace kova::ui {

namespace {

// The number of uses, at most this number, is added to the score: of equally good matches, the one that is used most
// often comes first.
constexpr int kMostUsesThatCount = 50;

} // namespace

std::vector<LauncherEntry> applicationEntries(const nlohmann::json& result, const std::string& tile) {
    std::vector<LauncherEntry> entries;
    for (const auto& application : result.value("applications", nlohmann::json::array())) {
        if (!application.is_object()) continue;
        const std::string id = memberText(application, "id").toStdString(),
                          name = memberText(application, "name").toStdString();
        if (id.empty() || name.empty()) continue;
        entries.push_back({.title = QString::fromStdString(name),
                           .application = {id, name},
                           .iconName = memberText(application, "icon"),
                           .words = QString::fromStdString(id).section(u'/', -1).section(u'.', -1),
                           .uses = application.value("launches", 0),
                           .method = "launch",
                           .parameters = {{"application", id}, {"tile", tile}}});
    }
    return entries;
}

void EntryList::set(std::vector<LauncherEntry> entries) {
    entries_ = std::move(entries);
    sort();
}

void EntryList::add(std::vector<LauncherEntry> entries) {
    entries_.insert(entries_.end(), std::make_move_iterator(entries.begin()), std::make_move_iterator(entries.end()));
    sort();
}

void EntryList::sort() {
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::stable_sort(entries_.begin(), entries_.end(), [&](const LauncherEntry& one, const LauncherEntry& other) {
        if (one.uses != other.uses) return one.uses > other.uses;
        return collator.compare(one.title, other.title) < 0;
    });
    folded_.clear();
    for (const LauncherEntry& entry : entries_) folded_.push_back(folded(entry.title));
}

std::vector<std::size_t> EntryList::matching(const QString& query) const {
    const FuzzyQuery fuzzy(query);
    std::vector<std::size_t> indexes;
    if (fuzzy.isEmpty()) {
        indexes.resize(entries_.size());
        std::iota(indexes.begin(), indexes.end(), std::size_t{0});
        return indexes;
    }
    std::vector<int> scores(entries_.size());
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        auto score = fuzzy.score(folded_[i]);
        if (!score && !entries_[i].words.isEmpty()) {
            score = fuzzy.score(folded(entries_[i].words));
            if (score) *score /= 2; // a match in the title, which is visible, scores higher
        }
        if (!score) continue;
        scores[i] = *score + std::min(entries_[i].uses, kMostUsesThatCount);
        indexes.push_back(i);
    }
    std::stable_sort(indexes.begin(), indexes.end(),
                     [&](std::size_t one, std::size_t other) { return scores[one] > scores[other]; });
    return indexes;
}

} // namespace kova::ui
