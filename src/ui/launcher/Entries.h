// The entries that the launcher and the palette offer, and their order. Plain values.
#pragma once

#include "ui/launcher/FuzzyMatch.h"
#include "ui/style/Style.h"

#include <QString>

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace kova::ui {

/// What a question of a command asks for.
enum class Subject {
    text,
    number,
    scene,
    rule,
    window,
    application, // one that has an open window
    tile,
    slot, // of the layouts in force
    display,
    divider,
    theme,
    accentColor,
    shortcutAction,
    learnedApplication,
};

struct Question {
    std::string key; // name of the parameter that the answer sets; unused if it sets several
    Subject subject = Subject::text;
    QString prompt;
};

struct LauncherEntry {
    QString title;
    QString kind{};                // shown beside the title; empty if all entries are of one kind
    ApplicationName application{}; // the application whose icon is shown
    QString iconName{};            // a name in the icon theme, or a file path; if empty, `application` decides
    QString words{};               // further words by which the search finds the entry
    int uses = 0;                  // how often the application was launched by KOVA
    std::string method{};          // the agent's method to call when the entry is chosen
    nlohmann::json parameters = nlohmann::json::object();
    std::vector<Question> questions{}; // asked in order; each answer is an entry with further parameters
    bool isConfirmedFirst = false;     // an alert asks for confirmation before the method is called
};

/// The applications in the result of `app.list`, each as an entry that launches it into the tile. Does not throw;
/// invalid elements are left out.
std::vector<LauncherEntry> applicationEntries(const nlohmann::json& result, const std::string& tile);

/// Entries in order: most used first, then by title. Titles are folded for the search (see `folded`) when they are
/// added, not at each query.
class EntryList {
  public:
    void set(std::vector<LauncherEntry> entries);
    void add(std::vector<LauncherEntry> entries);
    const LauncherEntry& at(std::size_t index) const { return entries_[index]; }
    std::size_t size() const { return entries_.size(); }
    /// Indexes of the entries that match the query, best match first; all entries for an empty query.
    std::vector<std::size_t> matching(const QString& query) const;

  private:
    void sort();

    std::vector<LauncherEntry> entries_;
    std::vector<QString> folded_; // the folded title of the entry with the same index
};

} // namespace kova::ui
