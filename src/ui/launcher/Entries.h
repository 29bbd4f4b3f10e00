// The entries that the launcher and the palette offer, and their order. Plain values.
#pragma once

#include "ui/launcher/FuzzyMatch.h"
#include "ui/style/Style.h"

#include <QString>

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace kova::ui {

/// What a command asks for before it is carried out.
enum class Subject {
    text,
    number,
    scene,
    rule,
    window,
    application, // of an open window
    tile,
    slot, // of a tile of the layouts in force
    display,
    divider,
    theme,
    accentColor,
    shortcutAction,
    learnedApplication,
};

struct Question {
    std::string key; // of the parameter; unused where an answer brings several
    Subject subject = Subject::text;
    QString prompt;
};

struct LauncherEntry {
    QString title;
    QString kind{};                // shown beside the title; empty in a list of one kind
    ApplicationName application{}; // whose icon it has
    QString iconName{};            // of the icon theme, or a file; empty: found by the application
    QString words{};               // further words by which it is found
    int uses = 0;
    std::string method{}; // of the agent, for choosing it
    nlohmann::json parameters = nlohmann::json::object();
    std::vector<Question> questions{}; // asked in this order; an answer is an entry with the parameters to add
    bool isConfirmedFirst = false;     // an alert asks before it is carried out
};

/// The entries of `app.list`: each launches into the tile. Does not throw; invalid entries are left out.
std::vector<LauncherEntry> applicationEntries(const nlohmann::json& result, const std::string& tile);

/// Entries with their texts folded once, in the order for an empty query: most used first, then by title.
class EntryList {
  public:
    void set(std::vector<LauncherEntry> entries);
    void add(std::vector<LauncherEntry> entries);
    const LauncherEntry& at(std::size_t index) const { return entries_[index]; }
    std::size_t size() const { return entries_.size(); }
    /// Indexes of the entries that fit the query, best first; all of them for an empty one.
    std::vector<std::size_t> matching(const QString& query) const;

  private:
    void sort();

    std::vector<LauncherEntry> entries_;
    std::vector<QString> folded_; // beside the entries
};

} // namespace kova::ui
