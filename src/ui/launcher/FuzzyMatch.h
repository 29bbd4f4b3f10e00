// Scores how well a typed text matches a name: "ffx" matches "Firefox", "res libre" matches "LibreOffice Réseau". Case
// and accents are ignored. Pure functions on texts.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace kova::ui {

/// The text with case folded and without accents.
QString folded(const QString& text);

/// A query, split into words once for many names.
class FuzzyQuery {
  public:
    explicit FuzzyQuery(const QString& query);

    bool isEmpty() const { return words_.isEmpty(); }
    /// Greater is better; absent if a word of the query does not match. A word matches if its characters occur in the
    /// name in order and the first of them begins a word of the name. `name` must be folded.
    std::optional<int> score(const QString& name) const;

  private:
    QStringList words_;
};

} // namespace kova::ui
